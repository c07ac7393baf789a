#include "simulator/window/devicepage.h"

#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/window/fingerscrollarea.h"
#include "simulator/window/pageparts.h"
#include "simulator/window/twocolumns.h"

#include <QFrame>
#include <QGridLayout>
#include <QVBoxLayout>

namespace panelkit::simulator {

namespace {

// Milliseconds; the load shows soon and is then quiet enough to be read.
const qint64 firstInterval = 200;
const qint64 refreshInterval = 1000;

// The rows of the figures, in their order.
const char *const rowNames[] = {"load",       "memory", "disk",       "diskFree",
                                "deviceKind", "model",  "iotVersion", "libraryVersion"};

QFrame *makeCard(QWidget *parent)
{
    auto *const card = new QFrame(parent);
    setPart(card, Part::Card);
    return card;
}

QString parity(int check)
{
    switch (check) {
    case 0:
        return DevicePage::tr("no parity");
    case 1:
        return DevicePage::tr("odd parity");
    case 2:
        return DevicePage::tr("even parity");
    default:
        return QString::number(check);
    }
}

QString textOf(const PlcPlace &place)
{
    const bool isIpv6 = place.host.contains(QLatin1Char(':'));
    return (isIpv6 ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2")).arg(place.host).arg(place.port);
}

// Where the PLC is really looked for stands first: that is what an operator can do something about.
QString networkPlace(const LinkValue &link, const std::optional<PlcPlace> &used)
{
    const PlcPlace defined = placeInDefinition(link);
    if (!used || *used == defined)
        return textOf(defined);
    return DevicePage::tr("%1, in the project %2").arg(textOf(*used), textOf(defined));
}

QString parametersOf(const LinkValue &link, const std::optional<PlcPlace> &used)
{
    const QString place = link.portName.contains(QLatin1String("Ethernet"))
                              ? networkPlace(link, used)
                              : DevicePage::tr("%1, %2 baud, %3 data bits, %4, stop bits: %5")
                                    .arg(link.portName)
                                    .arg(link.baud)
                                    .arg(link.dataBits)
                                    .arg(parity(link.check))
                                    .arg(link.stopBits);
    return place + QLatin1Char('\n') +
           DevicePage::tr("station %1, every %2 ms, time-out %3 ms, retries: %4")
               .arg(link.station)
               .arg(link.interval)
               .arg(link.timeout)
               .arg(link.retry);
}

QString stateText(const LinkState &state)
{
    const QString text = describe(state);
    return text.left(1).toUpper() + text.mid(1);
}

Part partOf(LinkCondition condition)
{
    switch (condition) {
    case LinkCondition::Connected:
        return Part::Notice;
    case LinkCondition::Disturbed:
    case LinkCondition::Away:
        return Part::Refusal;
    default:
        return Part::Hint;
    }
}

// Mebibytes, as the library gives them.
QString diskText(float mebibytes)
{
    return mebibytes < 10240 ? QStringLiteral("%1 MiB").arg(static_cast<double>(mebibytes), 0, 'f', 0)
                             : QStringLiteral("%1 GiB").arg(static_cast<double>(mebibytes) / 1024, 0, 'f', 1);
}

} // namespace

DevicePage::DevicePage(Session &session, QWidget *parent) : Page(parent), m_session(session)
{
    m_processor.firstCall = 1;
    takeFigures();

    auto *const columns = new TwoColumns(1, 1, nullptr);
    columns->setNarrowestForTwo(480);
    columns->first()->addWidget(buildFigures());
    m_linksHeading = new QLabel(columns);
    setPart(m_linksHeading, Part::Heading);
    columns->second()->addWidget(m_linksHeading);
    for (const int number : session.communication().linkNumbers())
        if (number > 0)
            columns->second()->addWidget(buildLink(number));

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->addWidget(new FingerScrollArea(columns, this));
    retranslate();
}

QWidget *DevicePage::buildFigures()
{
    QFrame *const card = makeCard(this);
    auto *const grid = new QGridLayout(card);
    grid->setContentsMargins(10, 8, 10, 8);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    for (const char *name : rowNames) {
        const int line = grid->rowCount();
        Row row{new QLabel(card), new SentenceLabel(name, Part::Heading, card)};
        setPart(row.caption, Part::Caption);
        row.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(row.caption, line, 0);
        grid->addWidget(row.value, line, 1);
        m_rows << row;
    }
    m_memoryNote = new SentenceLabel("memoryNote", Part::Hint, card);
    grid->addWidget(m_memoryNote, grid->rowCount(), 0, 1, 2);
    return card;
}

QWidget *DevicePage::buildLink(int number)
{
    QFrame *const card = makeCard(this);
    auto *const column = new QVBoxLayout(card);
    column->setContentsMargins(10, 6, 10, 6);
    column->setSpacing(2);
    const QByteArray suffix = QByteArray::number(number);
    Link link{number, new SentenceLabel("linkName" + suffix, Part::Heading, card),
              new SentenceLabel("linkState" + suffix, Part::Hint, card),
              new SentenceLabel("linkParameters" + suffix, Part::Hint, card)};
    link.name->setText(
        QStringLiteral("%1  %2").arg(QString::number(number), m_session.communication().linkName(number)));
    column->addWidget(link.name);
    column->addWidget(link.state);
    column->addWidget(link.parameters);
    m_links << link;
    return card;
}

QString DevicePage::title() const
{
    return tr("Device");
}

void DevicePage::retranslate()
{
    const QString captions[] = {tr("CPU load"), tr("Free memory"), tr("Disk"),        tr("Free on disk"),
                                tr("Kind"),     tr("Model"),       tr("IoT version"), tr("Library")};
    for (int i = 0; i < m_rows.size(); ++i) {
        m_rows.at(i).caption->setText(captions[i]);
        m_rows.at(i).value->setAccessibleName(captions[i]);
    }
    m_linksHeading->setText(tr("Links"));
    showFigures();
    showLinks();
}

void DevicePage::refresh()
{
    if (m_taken.elapsed() < (m_hasLoad ? refreshInterval : firstInterval))
        return;
    takeFigures();
    m_hasLoad = true;
    showFigures();
    showLinks();
}

void DevicePage::takeFigures()
{
    m_figures = takeDeviceFigures(m_processor, tools_systemRoot());
    m_taken.start();
}

void DevicePage::showFigures()
{
    const DeviceFigures &figures = m_figures;
    const QString texts[] = {
        m_hasLoad ? QStringLiteral("%1 %").arg(figures.load, 0, 'f', 1) : QStringLiteral("-"),
        QStringLiteral("%1 MiB").arg(figures.freeMemory / 1024),
        diskText(figures.disk.totalMB),
        diskText(figures.disk.freeMB),
        deviceKind(figures),
        figures.model.isEmpty() ? tr("not set") : figures.model,
        QString::number(figures.iotVersion),
        QStringLiteral("panelkit " PANELKIT_VERSION),
    };
    for (int i = 0; i < m_rows.size(); ++i)
        m_rows.at(i).value->setText(texts[i]);
    m_memoryNote->say(Part::Hint,
                      figures.isMemoryWrapped()
                          ? tr("A panel counts memory to 4 GiB and begins again; here %1 MiB are free.")
                                .arg(figures.freeMemoryOfMachine / 1024)
                          : QString());
}

void DevicePage::showLinks()
{
    for (const Link &link : m_links) {
        Communication &comm = m_session.communication();
        const LinkState state = comm.linkState(link.number);
        link.state->say(partOf(state.condition), stateText(state));
        link.parameters->setText(
            parametersOf(comm.getLinkValue(static_cast<quint16>(link.number)), comm.plcPlace(link.number)));
    }
}

} // namespace panelkit::simulator
