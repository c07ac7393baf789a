#include "simulator/window/twocolumns.h"

#include <QVBoxLayout>

namespace panelkit::simulator {

TwoColumns::TwoColumns(int firstStretch, int secondStretch, QWidget *parent)
    : QWidget(parent),
      m_columns(new QBoxLayout(QBoxLayout::TopToBottom, this)),
      m_first(new QVBoxLayout),
      m_second(new QVBoxLayout),
      m_firstStretch(firstStretch),
      m_secondStretch(secondStretch)
{
    m_columns->setContentsMargins(0, 0, 0, 0);
    m_columns->setSpacing(8);
    for (QVBoxLayout *part : {m_first, m_second}) {
        part->setSpacing(4);
        auto *const column = new QVBoxLayout;
        column->addLayout(part);
        column->addStretch(1);
        m_columns->addLayout(column);
    }
    m_columns->addStretch();
}

void TwoColumns::resizeEvent(QResizeEvent *event)
{
    const bool isPortrait = width() < m_narrowestForTwo;
    m_columns->setDirection(isPortrait ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_columns->setStretch(0, isPortrait ? 0 : m_firstStretch);
    m_columns->setStretch(1, isPortrait ? 0 : m_secondStretch);
    m_columns->setStretch(2, isPortrait ? 1 : 0); // what room is left stays below
    QWidget::resizeEvent(event);
}

} // namespace panelkit::simulator
