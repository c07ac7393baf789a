#include "simulator/window/macrobutton.h"

#include "simulator/window/panelstyle.h"

#include <QEvent>
#include <QPainter>

namespace panelkit::simulator {

namespace {

constexpr int least = 54;  // pixels, of the height
constexpr int runMark = 6; // height of the bar that says that it runs
constexpr int margin = 8;

} // namespace

MacroButton::MacroButton(const QString &name, QWidget *parent) : QAbstractButton(parent)
{
    setText(name);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void MacroButton::setRunning(bool isRunning)
{
    if (isRunning == m_isRunning)
        return;
    m_isRunning = isRunning;
    update();
}

QSize MacroButton::sizeHint() const
{
    ensurePolished();
    return {100, qMax(least, 2 * fontMetrics().lineSpacing() + 2 * runMark + 4)};
}

void MacroButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isDown() ? colour::accent : colour::line);
    painter.setBrush(isDown() ? colour::accent : colour::card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    if (m_isRunning) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? colour::onBar : colour::accent);
        painter.drawRoundedRect(QRectF(margin, height() - runMark - 3, width() - 2 * margin, runMark), 3, 3);
    }
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(isDown() ? QColor(Qt::white) : colour::ink);
    painter.drawText(rect().adjusted(margin, 2, -margin, -2), Qt::AlignCenter | Qt::TextWordWrap, text());
}

bool MacroButton::event(QEvent *event)
{
    if (event->type() == QEvent::Hide || event->type() == QEvent::WindowBlocked)
        release();
    return QAbstractButton::event(event);
}

void MacroButton::release()
{
    if (!isDown())
        return;
    setDown(false);
    Q_EMIT released();
}

} // namespace panelkit::simulator
