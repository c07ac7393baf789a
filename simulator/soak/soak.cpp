#include "simulator/soak/soak.h"

#include "simulator/host/session.h"
#include "simulator/platform/eventlibrary.h"
#include "simulator/project/projectfile.h"
#include "simulator/sample/sample.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/checkroad.h"
#include "simulator/soak/csvroad.h"
#include "simulator/soak/inifile.h"
#include "simulator/soak/linksettingsroad.h"
#include "simulator/soak/macroroad.h"
#include "simulator/soak/paneladdressroad.h"
#include "simulator/soak/pdfroad.h"
#include "simulator/soak/showroad.h"
#include "simulator/soak/soakdrivers.h"
#include "simulator/soak/soakplc.h"
#include "simulator/soak/soakproject.h"
#include "simulator/soak/widgetsroad.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QPixmapCache>
#include <QTemporaryDir>

#include <system_error>

namespace panelkit::simulator {

namespace {

// The draws that are made before the first action.
constexpr quint64 drawsOfProject = ~quint64(0);

std::optional<QByteArray> projectBytes(const QString &path, QString &error)
{
    if (path.isEmpty())
        return sampleProject();
    ProjectError fault;
    auto file = readProjectBytes(path, fault);
    if (!file)
        error = fault.text();
    return file;
}

} // namespace

struct Soak::Parts
{
    Parts(const SoakOptions &theOptions, const SoakProject &theProject)
        : options(theOptions),
          project(theProject),
          plc(project.stations),
          drivers(project.refusingLinks),
          show(project, plc),
          check(project, drivers),
          macro(project, plc),
          linkSettings(project, plc)
    {
    }

    // How often of a hundred times each road is taken; what is left is the PLC's.
    struct Share
    {
        Road &road;
        int percent;
    };
    std::vector<Share> shares()
    {
        return {{show, 34},        {check, 14}, {macro, 14}, {linkSettings, 7},
                {panelAddress, 6}, {csv, 7},    {pdf, 1},    {widgets, 10}};
    }

    // Each road once at the begin of a shift, then by chance; null for the PLC.
    Road *roadOf(Chance &chance)
    {
        const std::vector<Share> all = shares();
        const auto place = static_cast<std::size_t>(actionsOfAShift - actionsLeft);
        if (place < all.size())
            return &all[place].road;
        int percent = chance.between(1, 100);
        for (const Share &share : all) {
            percent -= share.percent;
            if (percent <= 0)
                return &share.road;
        }
        return nullptr;
    }

    const SoakOptions options;
    const SoakProject project;
    QTemporaryDir root; // the panel's system root
    QString projectFile;
    SoakPlc plc;
    SoakDrivers drivers;
    ShowRoad show;
    CheckRoad check;
    MacroRoad macro;
    LinkSettingsRoad linkSettings;
    PanelAddressRoad panelAddress;
    CsvRoad csv;
    PdfRoad pdf;
    WidgetsRoad widgets;

    std::unique_ptr<Session> session;
    quint64 actions = 0;
    int actionsLeft = 0; // of the shift
    quint64 shifts = 0;
    std::optional<Footprint> warm;
    std::optional<Footprint> last;
    QStringList losses; // that belong to no road
};

Soak::Soak() = default;
Soak::~Soak()
{
    if (m_parts && m_parts->session)
        endShift();
}

std::unique_ptr<Soak> Soak::open(const SoakOptions &options, QString &error)
{
    const auto file = projectBytes(options.projectFile, error);
    if (!file)
        return nullptr;
    Chance chance(options.seed, drawsOfProject);
    const auto project = makeSoakProject(*file, chance, error);
    if (!project) {
        if (!options.projectFile.isEmpty())
            error.prepend(options.projectFile + QLatin1String(": "));
        return nullptr;
    }
    auto soak = std::unique_ptr<Soak>(new Soak);
    try {
        soak->m_parts = std::make_unique<Parts>(options, *project);
    } catch (const std::system_error &fault) {
        error = QStringLiteral("no PLC can be started on a loopback port: %1")
                    .arg(QString::fromLocal8Bit(fault.what()));
        return nullptr;
    }
    // Its pictures would be taken for growth until it is full, and emptied it would keep their names for
    // ever.
    QPixmapCache::setCacheLimit(0);
    Parts &parts = *soak->m_parts;
    parts.projectFile = parts.root.filePath(QStringLiteral("soak.json"));
    if (!parts.root.isValid() || !replaceFile(parts.projectFile, project->file)) {
        error = QStringLiteral("no temporary folder can be written in %1 (%2): name another place in the "
                               "environment variable TMPDIR")
                    .arg(qEnvironmentVariable("TMPDIR", QDir::tempPath()), parts.root.errorString());
        return nullptr;
    }
    if (!parts.drivers.load(error))
        return nullptr;
    for (const int link : parts.drivers.links()) {
        if (!parts.drivers.place(parts.root.path(), link, SoakDriver::Whole)) {
            error = QStringLiteral("%1: no driver can be written").arg(parts.root.path());
            return nullptr;
        }
    }
    return soak;
}

bool Soak::act()
{
    Parts &parts = *m_parts;
    if (!parts.session && !beginShift())
        return false;
    Chance chance(parts.options.seed, parts.actions++);
    Road *const taken = parts.roadOf(chance);
    if (taken != nullptr)
        taken->act(chance);
    else
        parts.plc.act(chance);
    if (--parts.actionsLeft == 0)
        endShift();
    return true;
}

bool Soak::beginShift()
{
    Parts &parts = *m_parts;
    SessionOptions options;
    options.projectFile = parts.projectFile;
    options.root = parts.root.path();
    options.plc = PlcAddress{QStringLiteral("127.0.0.1"), parts.plc.port()};
    QString error;
    parts.session = Session::open(options, error);
    if (!parts.session) {
        parts.losses << QStringLiteral("no session can be opened any more: ") + error;
        return false;
    }
    for (const Parts::Share &share : parts.shares())
        share.road.beginShift(*parts.session);
    parts.actionsLeft = actionsOfAShift;
    return true;
}

// Closes everything and measures what is left.
void Soak::endShift()
{
    Parts &parts = *m_parts;
    for (const Parts::Share &share : parts.shares())
        share.road.endShift();
    parts.session.reset();
    parts.plc.recover();
    if (!parts.plc.isLeftAlone())
        parts.losses << QStringLiteral("connections to the PLC stayed open");
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    clearEventLibrary();
    parts.last = parts.last ? Footprint::settled(parts.last->threads) : Footprint::now();
    ++parts.shifts;
}

void Soak::end()
{
    if (m_parts->session)
        endShift();
}

void Soak::endWarmUp()
{
    m_parts->warm = m_parts->last;
}

quint64 Soak::actions() const
{
    return m_parts->actions;
}

quint64 Soak::shifts() const
{
    return m_parts->shifts;
}

std::vector<const Road *> Soak::roads() const
{
    std::vector<const Road *> roads;
    for (const Parts::Share &share : m_parts->shares())
        roads.push_back(&share.road);
    return roads;
}

std::map<QString, quint64> Soak::faults() const
{
    return m_parts->plc.faults();
}

Soak::Rows Soak::rows() const
{
    return {m_parts->csv.rowsExported(), m_parts->csv.rowsInFiles(), m_parts->csv.rowsReported()};
}

quint64 Soak::plcRequests() const
{
    return m_parts->plc.requests();
}

quint64 Soak::plcFaultyAnswers() const
{
    return m_parts->plc.faultyAnswers();
}

std::optional<Footprint> Soak::footprintWarm() const
{
    return m_parts->warm;
}

std::optional<Footprint> Soak::footprint() const
{
    return m_parts->last;
}

QStringList Soak::losses() const
{
    QStringList losses = m_parts->losses;
    for (const Parts::Share &share : m_parts->shares()) {
        losses << share.road.losses();
        const RoadCount &count = share.road.count();
        if (!count.isComplete())
            losses << QStringLiteral("%1: %2 were asked, %3 answered and %4 refused")
                          .arg(share.road.name())
                          .arg(count.asked)
                          .arg(count.answered)
                          .arg(count.refused);
    }
    return losses;
}

QStringList Soak::growths() const
{
    return m_parts->warm && m_parts->last ? growth(*m_parts->warm, *m_parts->last) : QStringList();
}

} // namespace panelkit::simulator
