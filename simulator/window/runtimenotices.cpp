#include "simulator/window/runtimenotices.h"

#include "widgets/hmimessagebox.h"
#include "widgets/mymessagebox.h"

#include <QDialog>
#include <QEvent>
#include <QStringList>
#include <QTextLayout>

namespace panelkit::simulator {

namespace {

constexpr int widestLine = 290;    // pixels; what is wider than 300 the library's box breaks within words
constexpr int roomBesideText = 90; // left and right of it on the screen

// The text with a line break wherever a line would be wider than `width`. The toolkit's boxes would measure
// by the PC's screen.
QString inLines(const QString &text, const QFont &font, int width)
{
    QStringList lines;
    for (const QString &paragraph : text.split(QLatin1Char('\n'))) {
        QTextLayout layout(paragraph, font);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            lines << paragraph.mid(line.textStart(), line.textLength()).trimmed();
        }
        layout.endLayout();
    }
    return lines.join(QLatin1Char('\n'));
}

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
    box->ensurePolished();
    box->setText(inLines(text, box->font(), lineWidth()));
    return box;
}

QDialog *RuntimeNotices::passingBox(const QString &text, int seconds)
{
    auto *box = new MyMessagebox(QString());
    box->setParent(m_window, box->windowFlags());
    box->setText(inLines(text, box->font(), lineWidth()), seconds);
    return box;
}

int RuntimeNotices::lineWidth() const
{
    return qMin(widestLine, m_window->width() - roomBesideText);
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
