#include "simulator/window/runtimenotices.h"

#include "widgets/hmimessagebox.h"
#include "widgets/mymessagebox.h"

#include <QDialog>
#include <QEvent>
#include <QLabel>

namespace panelkit::simulator {

namespace {

constexpr int widestText = 360;    // pixels
constexpr int roomBesideText = 90; // left and right of it on the screen

} // namespace

RuntimeNotices::RuntimeNotices(QWidget *window) : QObject(window), m_window(window) {}

void RuntimeNotices::show(const QString &text, int seconds, int needsAnswer)
{
    m_waiting.push_back({text, seconds, needsAnswer != 0});
    if (m_box == nullptr)
        showNext();
}

void RuntimeNotices::showNext()
{
    if (m_waiting.empty())
        return;
    const Request request = m_waiting.front();
    m_waiting.pop_front();
    m_box = request.needsAnswer ? questionBox(request.text) : passingBox(request.text, request.seconds);
    m_box->installEventFilter(this);
    m_box->show();
}

QDialog *RuntimeNotices::questionBox(const QString &text)
{
    auto *box = new HMIMessageBox(m_window, m_window->windowTitle(), text, tr("OK"), QString());
    box->setWindowModality(Qt::WindowModal);
    // As wide as the panel allows: the toolkit would measure by the PC's screen.
    if (auto *label = box->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        label->setWordWrap(true);
        label->setFixedWidth(qMin(widestText, m_window->width() - roomBesideText));
    }
    return box;
}

QDialog *RuntimeNotices::passingBox(const QString &text, int seconds)
{
    auto *box = new MyMessagebox(QString());
    box->setParent(m_window, box->windowFlags());
    box->setText(text, seconds);
    return box;
}

// However a box goes, it hides; the next one follows when it is out of the way.
bool RuntimeNotices::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_box && event->type() == QEvent::Hide && !event->spontaneous()) {
        m_box->deleteLater();
        m_box.clear();
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_box == nullptr)
                    showNext();
            },
            Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace panelkit::simulator
