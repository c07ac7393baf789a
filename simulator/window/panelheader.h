// The line above the pages.
#pragma once

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

namespace panelkit::simulator {

class LinkLamp;
class Session;

// The project's name, a lamp for each link to a PLC, the time where there is room, and the button that
// changes the language.
class PanelHeader : public QWidget
{
    Q_OBJECT
public:
    PanelHeader(const Session &session, QWidget *parent);

    void refresh(); // lamps and time

    // What stands on the language button: the name of the language that it changes to.
    void setOtherLanguage(const QString &name);

Q_SIGNALS:
    void otherLanguageWanted();

private:
    const Session &m_session;
    QLabel *m_name;
    std::vector<LinkLamp *> m_lamps;
    QLabel *m_clock;
    QPushButton *m_language;
};

} // namespace panelkit::simulator
