#include "simulator/window/valuetile.h"

#include "simulator/window/panelstyle.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>

namespace panelkit::simulator {

namespace {

constexpr int margin = 8;     // left and right of the texts
constexpr int smallest = 12;  // pixels, of any text
constexpr int captionTop = 5; // above the name

QString dash()
{
    return QString(QChar(0x2013));
}

} // namespace

ValueTile::ValueTile(const QString &name, const Sizes &sizes, QWidget *parent)
    : QWidget(parent),
      m_name(name),
      m_sizes(sizes),
      m_text(dash())
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(name);
}

void ValueTile::setValue(const QString &text, bool isCurrent)
{
    const bool isNewText = isCurrent && text != m_text;
    if (!isNewText && isCurrent == m_isCurrent)
        return;
    if (isNewText)
        m_text = text;
    m_isCurrent = isCurrent;
    update(valueRect());
}

int ValueTile::widthFor(const QString &text) const
{
    ensurePolished();
    QFont font = this->font();
    font.setPixelSize(m_sizes.value);
    return QFontMetrics(font).horizontalAdvance(text) + 2 * margin;
}

QSize ValueTile::sizeHint() const
{
    return {minimumSizeHint().width(), captionTop + m_sizes.caption + m_sizes.value + 16};
}

QSize ValueTile::minimumSizeHint() const
{
    return {100, captionTop + m_sizes.caption + m_sizes.value + 16};
}

QRect ValueTile::valueRect() const
{
    return rect().adjusted(margin, captionTop + m_sizes.caption + 4, -margin, -4);
}

// The largest size in which the text is no wider than `width`.
QFont ValueTile::fontFor(const QString &text, int largest, int least, int width) const
{
    QFont font = this->font();
    font.setPixelSize(largest);
    const int needed = QFontMetrics(font).horizontalAdvance(text);
    if (needed > width)
        font.setPixelSize(qMax(least, largest * width / needed));
    return font;
}

void ValueTile::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colour::line);
    painter.setBrush(colour::card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);

    const QRect value = valueRect();
    if (!value.contains(event->rect())) {
        const QRect caption(margin, captionTop, value.width(), m_sizes.caption + 4);
        const QFont font = fontFor(m_name, m_sizes.caption, smallest, value.width());
        painter.setFont(font);
        painter.setPen(colour::faintInk);
        painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter,
                         QFontMetrics(font).elidedText(m_name, Qt::ElideRight, value.width()));
    }
    const QFont font = fontFor(m_text, m_sizes.value, smallest, value.width());
    painter.setFont(font);
    painter.setPen(m_isCurrent ? colour::ink : colour::dim);
    painter.drawText(value, Qt::AlignRight | Qt::AlignVCenter,
                     QFontMetrics(font).elidedText(m_text, Qt::ElideRight, value.width()));
}

void ValueTile::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(event);
}

} // namespace panelkit::simulator
