#include "simulator/window/linklamp.h"

#include "simulator/window/panelstyle.h"

#include <QPainter>

namespace panelkit::simulator {

namespace {

constexpr int diameter = 14;
constexpr int gap = 4;

QColor lampColour(LinkCondition condition)
{
    switch (condition) {
    case LinkCondition::Connected:
    case LinkCondition::Internal:
        return colour::good;
    case LinkCondition::Disturbed:
        return colour::doubtful;
    case LinkCondition::Away:
        return colour::bad;
    case LinkCondition::Idle:
    case LinkCondition::WithoutConnection:
    case LinkCondition::Unknown:
        break;
    }
    return colour::dim;
}

bool isFilled(LinkCondition condition)
{
    return lampColour(condition) != colour::dim;
}

} // namespace

LinkLamp::LinkLamp(int linkNumber, const QString &linkName, QWidget *parent)
    : QWidget(parent),
      m_linkNumber(linkNumber),
      m_linkName(linkName),
      m_text(QString::number(linkNumber))
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void LinkLamp::setState(LinkCondition condition, const QString &description)
{
    const QString text = m_linkName + QLatin1String(": ") + description;
    if (toolTip() != text) {
        setToolTip(text);
        setAccessibleName(text);
    }
    if (condition == m_condition)
        return;
    m_condition = condition;
    update();
}

void LinkLamp::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    updateGeometry();
    update();
}

int LinkLamp::widthWith(const QString &text) const
{
    ensurePolished();
    return diameter + 2 + (text.isEmpty() ? 0 : gap + fontMetrics().horizontalAdvance(text));
}

QSize LinkLamp::sizeHint() const
{
    return {widthWith(m_text), qMax(diameter + 2, fontMetrics().height())};
}

void LinkLamp::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF lamp(1.5, (height() - diameter) / 2.0 + 0.5, diameter - 1, diameter - 1);
    painter.setPen(QPen(lampColour(m_condition), 2));
    painter.setBrush(isFilled(m_condition) ? QBrush(lampColour(m_condition)) : QBrush(Qt::NoBrush));
    painter.drawEllipse(lamp);

    const QRectF sign = lamp.adjusted(3.5, 3.5, -3.5, -3.5);
    painter.setPen(QPen(colour::bar, 2));
    if (m_condition == LinkCondition::Away) {
        painter.drawLine(sign.topLeft(), sign.bottomRight());
        painter.drawLine(sign.topRight(), sign.bottomLeft());
    } else if (m_condition == LinkCondition::Disturbed) {
        painter.drawLine(QPointF(sign.left(), sign.center().y()), QPointF(sign.right(), sign.center().y()));
    }
    painter.setPen(colour::onBar);
    painter.drawText(rect().adjusted(diameter + gap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, m_text);
}

} // namespace panelkit::simulator
