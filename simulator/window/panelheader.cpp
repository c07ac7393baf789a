#include "simulator/window/panelheader.h"

#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/window/linklamp.h"
#include "simulator/window/panelstyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTime>

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
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm"));
    if (m_clock->text() != time)
        m_clock->setText(time);
}

void PanelHeader::setOtherLanguage(const QString &name)
{
    m_language->setText(name);
}

} // namespace panelkit::simulator
