#include "simulator/window/panelheader.h"

#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/window/linklamp.h"
#include "simulator/window/panelstyle.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTime>

#include <algorithm>

namespace panelkit::simulator {

namespace {

// Ends with dots where the whole text does not fit.
class ElidedLabel : public QLabel
{
public:
    ElidedLabel(const QString &text, QWidget *parent) : QLabel(parent), m_whole(text)
    {
        setAccessibleName(text);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        setText(fontMetrics().elidedText(m_whole, Qt::ElideRight, width()));
    }

private:
    const QString m_whole;
};

// How much a link wants to be looked at, the most last.
int rankOf(LinkCondition condition)
{
    switch (condition) {
    case LinkCondition::Internal:
    case LinkCondition::Connected:
        return 0;
    case LinkCondition::Idle:
        return 1;
    case LinkCondition::Unknown:
    case LinkCondition::WithoutConnection:
        return 2;
    case LinkCondition::Disturbed:
        return 3;
    case LinkCondition::Away:
        break;
    }
    return 4;
}

} // namespace

PanelHeader::PanelHeader(const Session &session, QWidget *parent)
    : QWidget(parent),
      m_session(session),
      m_name(new ElidedLabel(session.project().name, this)),
      m_clock(new QLabel(this)),
      m_language(new QPushButton(this))
{
    const QSize screen(session.project().screenWidth, session.project().screenHeight);
    const Sizes sizes = sizesFor(screen);
    setObjectName(QStringLiteral("header"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedHeight(sizes.header);
    m_name->setObjectName(QStringLiteral("projectName"));
    m_language->setObjectName(QStringLiteral("language"));
    m_language->setFocusPolicy(Qt::NoFocus);
    m_language->setFixedHeight(sizes.header);
    m_clock->setVisible(screen.width() >= 400);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(sizes.gap + 4, 0, 0, 0);
    row->setSpacing(isPortrait(screen) ? 4 : sizes.gap + 2);
    row->addWidget(m_name, 1);
    const Communication &comm = session.communication();
    for (const LinkDefinition &link : session.project().links) {
        m_lamps.push_back(new LinkLamp(link.number, comm.linkName(link.number), this));
        row->addWidget(m_lamps.back());
    }
    row->addWidget(m_clock);
    row->addWidget(m_language);
    connect(m_language, &QPushButton::clicked, this, &PanelHeader::otherLanguageWanted);
    refresh();
}

void PanelHeader::refresh()
{
    for (LinkLamp *lamp : m_lamps) {
        const LinkState state = m_session.communication().linkState(lamp->linkNumber());
        lamp->setState(state.condition, describe(state));
    }
    showLamps();
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm"));
    if (m_clock->text() != time)
        m_clock->setText(time);
}

void PanelHeader::setOtherLanguage(const QString &name)
{
    m_language->setText(name);
    arrangeLamps();
}

bool PanelHeader::event(QEvent *event)
{
    const bool isHandled = QWidget::event(event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest ||
        event->type() == QEvent::Show)
        arrangeLamps();
    return isHandled;
}

// What the others leave; of the name no more than a part is counted on.
int PanelHeader::roomForLamps() const
{
    const QMargins margins = layout()->contentsMargins();
    int room = width() - margins.left() - margins.right() - m_name->minimumWidth();
    for (const QWidget *other : {static_cast<QWidget *>(m_clock), static_cast<QWidget *>(m_language)})
        if (!other->isHidden())
            room -= other->sizeHint().width() + layout()->spacing();
    return room;
}

QString PanelHeader::textOf(const LinkLamp &lamp, Lamps lamps) const
{
    QString number = QString::number(lamp.linkNumber());
    switch (lamps) {
    case Lamps::WithNumbers:
        return number;
    case Lamps::WithoutNumbers:
        return {};
    case Lamps::WorstOnly:
        break;
    }
    return QStringLiteral("%1 +%2").arg(number, QString::number(m_lamps.size() - 1));
}

int PanelHeader::widthOf(Lamps lamps) const
{
    int width = 0;
    for (const LinkLamp *lamp : m_lamps)
        width += lamp->widthWith(textOf(*lamp, lamps)) + layout()->spacing();
    return width;
}

void PanelHeader::arrangeLamps()
{
    m_name->ensurePolished();
    const int wholeName = m_name->fontMetrics().horizontalAdvance(m_session.project().name);
    m_name->setMinimumWidth(qMin(wholeName, width() / 4));
    const int room = roomForLamps();
    m_shown = Lamps::WorstOnly;
    for (const Lamps lamps : {Lamps::WithoutNumbers, Lamps::WithNumbers})
        if (widthOf(lamps) <= room)
            m_shown = lamps;
    showLamps();
}

void PanelHeader::showLamps()
{
    const auto worst = std::max_element(m_lamps.begin(), m_lamps.end(), [](LinkLamp *left, LinkLamp *right) {
        return rankOf(left->condition()) < rankOf(right->condition());
    });
    for (LinkLamp *lamp : m_lamps) {
        lamp->setText(textOf(*lamp, m_shown));
        lamp->setVisible(m_shown != Lamps::WorstOnly || lamp == *worst);
    }
}

} // namespace panelkit::simulator
