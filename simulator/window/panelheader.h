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

// The project's name, a lamp for each link to a PLC, the time on a wide screen, and the button that changes
// the language. Where many links take the room of the others, their lamps stand without numbers; where they
// still do, only that of the link that does worst is left, with its number and how many others there are.
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

protected:
    bool event(QEvent *event) override;

private:
    enum class Lamps
    {
        WithNumbers,
        WithoutNumbers,
        WorstOnly
    };

    int roomForLamps() const;
    int widthOf(Lamps lamps) const;
    QString textOf(const LinkLamp &lamp, Lamps lamps) const;
    void arrangeLamps();
    void showLamps();

    const Session &m_session;
    QLabel *m_name;
    std::vector<LinkLamp *> m_lamps;
    Lamps m_shown = Lamps::WithNumbers;
    QLabel *m_clock;
    QPushButton *m_language;
};

} // namespace panelkit::simulator
