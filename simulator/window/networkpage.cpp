#include "simulator/window/networkpage.h"

#include "network/panelip.h"
#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/window/fingerscrollarea.h"
#include "simulator/window/pageparts.h"
#include "simulator/window/twocolumns.h"
#include "widgets/mylineedit.h"
#include "widgets/touch.h"

#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace panelkit::simulator {

NetworkPage::NetworkPage(Session &session, QWidget *parent) : Page(parent), m_session(session)
{
    addSetting("ip", &NetworkSettings::ip);
    addSetting("netMask", &NetworkSettings::netMask);
    addSetting("gateway", &NetworkSettings::gateway);
    addSetting("dns", &NetworkSettings::dns);
    buildLayout();
    m_reveal.setSingleShot(true);
    connect(m_scroll->verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
        if (m_message->isVisible())
            m_reveal.start();
    });
    connect(&m_reveal, &QTimer::timeout, this, [this] { m_scroll->ensureWidgetVisible(m_message, 0, 0); });
    connect(m_reload, &QPushButton::clicked, this, &NetworkPage::reload);
    connect(m_apply, &QPushButton::clicked, this, &NetworkPage::apply);
    retranslate();
}

void NetworkPage::addSetting(const char *objectName, QString NetworkSettings::*text)
{
    auto *const edit = new MyLineEdit(this);
    edit->setObjectName(QLatin1String(objectName));
    edit->setMaxLength(23); // four numbers of a register each
    edit->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    connect(edit, &QLineEdit::textChanged, this, &NetworkPage::noteEdit);
    m_settings << Setting{text, edit, new CaptionedField(edit, this)};
}

void NetworkPage::buildLayout()
{
    auto *const content = new QWidget;
    auto *const fields = new TwoColumns(1, 1, content);
    fields->first()->addWidget(m_settings.at(0).field);
    fields->first()->addWidget(m_settings.at(1).field);
    fields->second()->addWidget(m_settings.at(2).field);
    fields->second()->addWidget(m_settings.at(3).field);
    m_message = new SentenceLabel("message", Part::Hint, content);
    auto *const column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(fields);
    column->addWidget(m_message);
    column->addStretch(1);
    m_scroll = new FingerScrollArea(content, this);

    m_reload = new QPushButton(this);
    m_reload->setObjectName(QStringLiteral("reload"));
    m_apply = new QPushButton(this);
    m_apply->setObjectName(QStringLiteral("apply"));
    setPart(m_apply, Part::Primary);
    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    for (QPushButton *button : {m_reload, m_apply}) {
        button->setMinimumHeight(fingerHeight);
        buttons->addWidget(button, 1);
    }

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(6);
    layout->addWidget(m_scroll, 1);
    layout->addLayout(buttons);
}

QString NetworkPage::title() const
{
    return tr("Network");
}

void NetworkPage::retranslate()
{
    const QString captions[] = {tr("IP address"), tr("Subnet mask"), tr("Gateway"), tr("DNS server")};
    for (int i = 0; i < m_settings.size(); ++i)
        m_settings.at(i).field->setCaption(captions[i]);
    m_reload->setText(tr("Reload"));
    m_warnings.clear();
    m_apply->setText(tr("Apply"));
    m_message->say(Part::Hint, QString());
}

// What the registers hold may be what somebody typed and never applied.
void NetworkPage::showEvent(QShowEvent *event)
{
    if (!m_isEdited)
        requestNetworkSettings(m_session.communication());
    Page::showEvent(event);
}

void NetworkPage::reload()
{
    m_isEdited = false;
    m_isApplying = false;
    m_warnings.clear();
    m_apply->setText(tr("Apply"));
    m_message->say(Part::Hint, QString());
    requestNetworkSettings(m_session.communication());
}

void NetworkPage::noteEdit()
{
    if (m_isFilling)
        return;
    m_isEdited = true;
    m_warnings.clear();
    m_apply->setText(tr("Apply"));
    m_message->say(Part::Hint, QString());
}

void NetworkPage::refresh()
{
    Communication &comm = m_session.communication();
    if (isNetworkRequestPending(comm))
        return;
    if (m_isApplying)
        takeAnswer();
    if (m_isEdited)
        return;
    const NetworkSettings stored = storedNetworkSettings();
    const NetworkSettings registered = registeredNetworkSettings(comm);
    m_isFilling = true;
    for (const Setting &setting : m_settings) {
        const QString nothing = QStringLiteral("0.0.0.0");
        const QString text = registered.*setting.text;
        const QString shown = (stored.*setting.text).isEmpty() && text == nothing ? QString() : text;
        if (setting.edit->text() != shown) // or a cursor in it would go to the end
            setting.edit->setText(shown);
    }
    m_isFilling = false;
}

// The first thing that keeps the settings from being one; empty when nothing does.
QString NetworkPage::complaint(const NetworkSettings &settings) const
{
    const QString sentences[] = {
        tr("The IP address is not four numbers from 0 to 255 with dots between."),
        tr("The subnet mask is not four numbers from 0 to 255 with dots between."),
        tr("The gateway is not four numbers from 0 to 255 with dots between."),
        tr("The DNS server is not four numbers from 0 to 255 with dots between."),
    };
    for (int i = 0; i < m_settings.size(); ++i)
        if (!checkIPAddr(settings.*m_settings.at(i).text))
            return sentences[i];
    return QString();
}

void NetworkPage::apply()
{
    NetworkSettings wanted;
    bool fitsRegisters = true;
    for (const Setting &setting : m_settings) {
        wanted.*setting.text = setting.edit->text().trimmed();
        fitsRegisters = fitsRegisters && !partsOfAddress(wanted.*setting.text).isEmpty();
    }
    if (!fitsRegisters) {
        say(Part::Refusal, complaint(wanted));
        return;
    }
    const QStringList warnings = networkWarnings(wanted);
    if (complaint(wanted).isEmpty() && !warnings.isEmpty() && warnings != m_warnings) {
        m_warnings = warnings;
        m_apply->setText(tr("Apply anyway"));
        say(Part::Refusal, warnings.join(QLatin1Char('\n')));
        return;
    }
    enterNetworkSettings(m_session.communication(), wanted);
    m_wanted = registeredNetworkSettings(m_session.communication());
    m_isApplying = true;
    say(Part::Hint, tr("Applying..."));
}

void NetworkPage::takeAnswer()
{
    m_isApplying = false;
    m_warnings.clear();
    m_apply->setText(tr("Apply"));
    if (storedNetworkSettings() == m_wanted) {
        m_isEdited = false;
        say(Part::Notice, tr("The panel now has the IP address %1.").arg(m_wanted.ip));
        return;
    }
    const QString reason = complaint(m_wanted);
    say(Part::Refusal,
        reason.isEmpty() ? tr("The panel could not store the settings: is its disk full?") : reason);
}

void NetworkPage::say(Part part, const QString &text)
{
    m_message->say(part, text);
    m_reveal.start();
}

} // namespace panelkit::simulator
