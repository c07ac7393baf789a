#include "simulator/window/pagerow.h"

#include "simulator/window/panelstyle.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QPushButton>

namespace panelkit::simulator {

namespace {

constexpr int columnsInPortrait = 3;
constexpr int fingerHeight = 44;

} // namespace

PageRow::PageRow(const QSize &screen, QWidget *parent)
    : QWidget(parent),
      m_isPortrait(isPortrait(screen)),
      m_grid(new QGridLayout(this)),
      m_group(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("pageRow"));
    setAttribute(Qt::WA_StyledBackground);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(0);
    if (!m_isPortrait)
        setFixedWidth(screen.width() / 6 + 4);
    m_group->setExclusive(true);
    connect(m_group, &QButtonGroup::idClicked, this, &PageRow::pageWanted);
}

void PageRow::addPage()
{
    const int page = static_cast<int>(m_buttons.size());
    auto *button = new QPushButton(this);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setMinimumHeight(fingerHeight);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_group->addButton(button, page);
    m_buttons.push_back(button);
    if (m_isPortrait)
        m_grid->addWidget(button, page / columnsInPortrait, page % columnsInPortrait);
    else
        m_grid->addWidget(button, page, 0);
}

void PageRow::setTitle(int page, const QString &title)
{
    button(page)->setText(title);
}

void PageRow::setCurrent(int page)
{
    button(page)->setChecked(true);
}

} // namespace panelkit::simulator
