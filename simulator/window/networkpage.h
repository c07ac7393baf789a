// The panel's own address, as the operator sets it.
#pragma once

#include "simulator/host/networksettings.h"
#include "simulator/window/page.h"
#include "simulator/window/panelstyle.h"

#include <QTimer>

class MyLineEdit;
class QPushButton;
class QScrollArea;

namespace panelkit::simulator {

class CaptionedField;
class SentenceLabel;
class Session;

// Works through the panel's registers and flags as any screen does: the session's FlagPolling, which somebody
// else must call, does what is asked for. Fields that the operator has not touched follow the registers.
class NetworkPage final : public Page
{
    Q_OBJECT
public:
    NetworkPage(Session &session, QWidget *parent); // `session` must live longer

    QString title() const override;
    void refresh() override;

protected:
    void retranslate() override;
    void showEvent(QShowEvent *event) override;

private:
    struct Setting
    {
        QString NetworkSettings::*text;
        MyLineEdit *edit;
        CaptionedField *field;
    };

    void buildLayout();
    void addSetting(const char *objectName, QString NetworkSettings::*text);
    void reload();
    void apply();
    void noteEdit();
    void takeAnswer();
    QString complaint(const NetworkSettings &settings) const;
    void say(Part part, const QString &text);

    Session &m_session;
    QList<Setting> m_settings; // address, mask, gateway, DNS server
    QStringList m_warnings;    // that the operator has seen and may apply all the same
    NetworkSettings m_wanted;  // what was asked for
    bool m_isEdited = false;
    bool m_isFilling = false;
    bool m_isApplying = false;
    SentenceLabel *m_message = nullptr;
    QTimer m_reveal; // scrolls to the message when it has its place
    QScrollArea *m_scroll = nullptr;
    QPushButton *m_reload = nullptr;
    QPushButton *m_apply = nullptr;
};

} // namespace panelkit::simulator
