#include "simulator/window/valuespage.h"

#include "simulator/host/itemdisplay.h"
#include "simulator/host/session.h"
#include "simulator/window/fingerscrolling.h"
#include "simulator/window/panelstyle.h"
#include "simulator/window/valuetile.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace panelkit::simulator {

ValuesPage::ValuesPage(Session &session, QWidget *parent)
    : Page(parent),
      m_session(session),
      m_area(new QScrollArea(this))
{
    const Sizes sizes = sizesFor({session.project().screenWidth, session.project().screenHeight});
    auto *content = new QWidget;
    m_grid = new QGridLayout(content);
    m_grid->setContentsMargins(sizes.gap, sizes.gap, sizes.gap, sizes.gap);
    m_grid->setSpacing(sizes.gap);
    for (const ItemDefinition &item : session.project().items)
        m_tiles.push_back(new ValueTile(item.name, sizes, content));
    m_area->setWidget(content);
    m_area->setWidgetResizable(true);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_area->setFocusPolicy(Qt::NoFocus);
    scrollByFingerWithin(m_area);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_area);
    watchItems(session);
    retranslate();
}

QString ValuesPage::title() const
{
    return tr("Values");
}

void ValuesPage::refresh()
{
    for (std::size_t i = 0; i < m_tiles.size(); ++i) {
        if (m_tiles[i]->visibleRegion().isEmpty())
            continue;
        if (!isDisplayedAtOnce(m_session, i)) {
            m_tiles[i]->setValue({}, false);
            continue;
        }
        const ItemDisplay display = displayItem(m_session, i);
        m_tiles[i]->setValue(display.text, display.isCurrent);
    }
}

void ValuesPage::retranslate() {}

void ValuesPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    arrange();
}

// In as many columns as have room for a value of eight digits; longer ones get two.
void ValuesPage::arrange()
{
    if (m_tiles.empty())
        return;
    const int needed = m_tiles.front()->widthFor(QStringLiteral("00000000"));
    const int gap = m_grid->spacing();
    const int width = this->width() - m_area->verticalScrollBar()->sizeHint().width() - gap;
    const int columns = qMax(1, width / (needed + gap));
    if (columns == m_columns)
        return;
    m_columns = columns;
    int row = 0;
    int column = 0;
    for (std::size_t i = 0; i < m_tiles.size(); ++i) {
        const ItemDefinition &item = m_session.project().items[i];
        const int span = item.type == NUM_STRING || item.digits > 10 ? qMin(2, columns) : 1;
        if (column + span > columns) {
            column = 0;
            ++row;
        }
        m_grid->addWidget(m_tiles[i], row, column, 1, span);
        column += span;
    }
    for (int i = 0; i < columns; ++i)
        m_grid->setColumnStretch(i, 1);
    m_grid->setRowStretch(row + 1, 1);
}

} // namespace panelkit::simulator
