// The message boxes that the library and the macros ask for.
#pragma once

#include <QDialog>
#include <QObject>
#include <QPointer>
#include <QString>

#include <deque>

class QWidget;

namespace panelkit::simulator {

// Shows them in the library's boxes, one at a time, in the order of the requests, in front of `window`.
class RuntimeNotices : public QObject
{
    Q_OBJECT
public:
    explicit RuntimeNotices(QWidget *window);

    // A box that waits for the operator where `needsAnswer` is not 0; else one that goes by itself after
    // `seconds`. These are the two numbers of a UMessageBoxEvent.
    void show(const QString &text, int seconds, int needsAnswer);

    QDialog *box() const { return m_box; } // the one that is shown, or null
    int waiting() const { return static_cast<int>(m_waiting.size()); }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Request
    {
        QString text;
        int seconds;
        bool needsAnswer;
    };

    void showNext();
    QDialog *questionBox(const QString &text);
    QDialog *passingBox(const QString &text, int seconds);
    int lineWidth() const; // pixels, of a message on the panel's screen

    QWidget *m_window;
    QPointer<QDialog> m_box;
    std::deque<Request> m_waiting;
};

} // namespace panelkit::simulator
