#include "widgets/wrappinglabel.h"

#include <QPainter>
#include <QPointF>
#include <QTextLayout>
#include <QTextOption>

namespace panelkit {

namespace {

// Breaks the text into lines of `width` pixels and gives the height of all of them.
int breakIntoLines(QTextLayout &layout, Qt::Alignment alignment, int width)
{
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += line.height();
    }
    layout.endLayout();
    return static_cast<int>(height) + 1;
}

QString layoutText(QString text)
{
    return text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

} // namespace

WrappingLabel::WrappingLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

QSize WrappingLabel::minimumSizeHint() const
{
    return QSize(fontMetrics().height(), fontMetrics().height());
}

int WrappingLabel::heightForWidth(int width) const
{
    const int frame = 2 * frameWidth();
    QTextLayout layout(layoutText(text()), font());
    return breakIntoLines(layout, alignment(), width - frame) + frame;
}

void WrappingLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect();
    QTextLayout layout(layoutText(text()), font());
    const int height = breakIntoLines(layout, alignment(), room.width());
    const int above = alignment() & Qt::AlignVCenter ? qMax(0, room.height() - height) / 2 : 0;
    layout.draw(&painter, QPointF(room.x(), room.y() + above));
}

} // namespace panelkit
