#include "simulator/window/operatepage.h"

#include "simulator/comm/communication.h"
#include "simulator/host/registertext.h"
#include "simulator/host/session.h"
#include "simulator/window/fingerscrolling.h"
#include "simulator/window/macrobutton.h"
#include "simulator/window/panelruntime.h"
#include "simulator/window/panelstyle.h"

#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace panelkit::simulator {

namespace {

constexpr int columns = 2;

// The mode is a sum of the two.
bool runsOnPress(const ItemDefinition &item)
{
    return (item.macro.mode & ITEM_MACRO_PRESS) != 0 && !item.macro.press.isEmpty();
}

bool runsOnRelease(const ItemDefinition &item)
{
    return (item.macro.mode & ITEM_MACRO_RELEASE) != 0 && !item.macro.release.isEmpty();
}

QString textOf(const std::optional<MacroValue> &value)
{
    return value ? numberText(*value) : QStringLiteral("?");
}

QScrollArea *scrollAround(QWidget *content, QWidget *parent)
{
    auto *area = new QScrollArea(parent);
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    scrollByFingerWithin(area);
    return area;
}

} // namespace

OperatePage::OperatePage(Session &session, PanelRuntime &runtime, QWidget *parent)
    : Page(parent),
      m_session(session),
      m_runtime(runtime)
{
    const Sizes sizes = sizesFor({session.project().screenWidth, session.project().screenHeight});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(sizes.gap, sizes.gap, sizes.gap, sizes.gap);
    layout->setSpacing(sizes.gap);
    layout->addWidget(buildButtons(), 3);
    layout->addWidget(buildOutcome(), 2);
    m_grid->setSpacing(sizes.gap);
    for (std::size_t i = 0; i < session.project().items.size(); ++i)
        if (runsOnPress(session.project().items[i]) || runsOnRelease(session.project().items[i]))
            addButton(i);
    connect(&runtime, &PanelRuntime::macroEnded, this, &OperatePage::showEnd);
    retranslate();
}

QWidget *OperatePage::buildButtons()
{
    auto *content = new QWidget;
    m_grid = new QGridLayout(content);
    m_grid->setContentsMargins(0, 0, 0, 0);
    return scrollAround(content, this);
}

QWidget *OperatePage::buildOutcome()
{
    auto *card = new QFrame(this);
    setPart(card, Part::Card);
    auto *content = new QWidget;
    m_outcome = new QLabel(content);
    m_details = new QLabel(content);
    m_outcome->setObjectName(QStringLiteral("outcome"));
    m_details->setObjectName(QStringLiteral("details"));
    for (QLabel *label : {m_outcome, m_details}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    auto *texts = new QVBoxLayout(content);
    texts->setContentsMargins(4, 0, 0, 0);
    texts->setSpacing(2);
    texts->addWidget(m_outcome);
    texts->addWidget(m_details);
    texts->addStretch(1);
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(scrollAround(content, card));
    return card;
}

void OperatePage::addButton(std::size_t item)
{
    auto *button = new MacroButton(m_session.project().items[item].name, this);
    const int place = static_cast<int>(m_buttons.size());
    m_grid->addWidget(button, place / columns, place % columns);
    m_buttons[item] = button;
    connect(button, &MacroButton::pressed, this, [this, item] {
        if (!runsOnPress(m_session.project().items[item]))
            return;
        m_runtime.press(item);
        noteRun(item, 1);
    });
    connect(button, &MacroButton::released, this, [this, item] {
        if (!runsOnRelease(m_session.project().items[item]))
            return;
        m_runtime.release(item);
        noteRun(item, 1);
    });
}

void OperatePage::noteRun(std::size_t item, int change)
{
    m_runs[item] += change;
    m_buttons.at(item)->setRunning(m_runs[item] > 0);
}

QString OperatePage::title() const
{
    return tr("Operate");
}

// Watched is what has been read of late, so it is announced again and again.
void OperatePage::refresh()
{
    for (const RegisterValueChange &address : m_watched)
        m_session.communication().watchAddress(address, 1);
}

void OperatePage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    m_watched.clear();
    for (const auto &[item, button] : m_buttons)
        for (const RegisterValueChange &address : m_runtime.watchedAddresses(item))
            m_watched.push_back(address);
}

void OperatePage::showEnd(const MacroWorker::Ended &ended)
{
    noteRun(ended.owner.item, -1);
    m_last = ended;
    m_hasRun = true;
    retranslate();
}

// The declared variable of that register, or else the register itself.
QString OperatePage::variableAt(const MacroAddress &address) const
{
    for (const VariableDefinition &variable : m_session.project().variables)
        if (variable.address.link == address.link && variable.address.station == address.station &&
            variable.address.block == address.block && variable.address.index == address.index)
            return variable.name;
    return address.block + QLatin1Char(' ') + QString::number(address.index);
}

QString OperatePage::accessText(const MacroAccess &access) const
{
    return QStringLiteral("%1: %2 → %3")
        .arg(variableAt(access.address), textOf(access.before), textOf(access.value));
}

void OperatePage::retranslate()
{
    if (m_buttons.empty() || !m_hasRun) {
        setPart(m_outcome, Part::Hint);
        m_outcome->setText(m_buttons.empty()
                               ? tr("The project has no item with a macro.")
                               : tr("A button's macro runs when it is pressed, released, or both."));
        return;
    }
    const QString name = m_session.project().items[m_last.owner.item].name;
    const MacroResult &result = m_last.result;
    QStringList details = m_last.printed;
    for (const MacroAccess &access : result.accesses)
        if (access.isWrite && access.failure.isEmpty())
            details << accessText(access);
    if (result.isDone()) {
        setPart(m_outcome, Part::Notice);
        m_outcome->setText(tr("%1: done").arg(name));
    } else {
        setPart(m_outcome, Part::Refusal);
        m_outcome->setText(
            result.line > 0
                ? tr("%1: ended in line %2: %3").arg(name, QString::number(result.line), result.message)
                : tr("%1: ended: %2").arg(name, result.message));
    }
    m_details->setText(details.join(QLatin1Char('\n')));
}

} // namespace panelkit::simulator
