#include "simulator/host/session.h"

#include "platform/sys_base.h"
#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/host/driverfiles.h"
#include "simulator/host/flagpolling.h"
#include "simulator/host/panelfiles.h"
#include "simulator/platform/eventlibrary.h"
#include "simulator/platform/systembase.h"
#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"
#include "simulator/project/projectfile.h"
#include "simulator/project/projectlinks.h"
#include "simulator/project/projecttree.h"
#include "simulator/sample/sample.h"

#include <netdb.h>
#include <system_error>

namespace panelkit::simulator {

namespace {

const char *const linkListPath = "/usr/tesk42/project/cache/links.json";
const char *const iotLinkListPath = "/usr/tesk42/iot_work/iotRunTime/LinkConfiguration.json";

// The PLC that a session brings along, in real time.
struct OwnPlc
{
    PlcMemory memory{BottlingLine::units(), BottlingLine::registersPerTable};
    BottlingLine line{memory};
    BottlingLineClock clock{line};
    PlcServer server{memory};
};

bool isKnownHost(const QString &host)
{
    addrinfo *found = nullptr;
    if (getaddrinfo(host.toUtf8().constData(), nullptr, nullptr, &found) != 0)
        return false;
    freeaddrinfo(found);
    return true;
}

std::optional<Project> loadProject(const QString &file, QString &error)
{
    ProjectError fault;
    std::optional<Project> project =
        file.isEmpty() ? readProject(sampleProject(), fault) : readProjectFile(file, fault);
    if (!project) {
        error = fault.text();
        if (!file.isEmpty() && fault.where != file)
            error.prepend(file + QLatin1String(": "));
    }
    return project;
}

} // namespace

std::optional<PlcAddress> parsePlcAddress(const QString &text)
{
    const int colon = static_cast<int>(text.lastIndexOf(QLatin1Char(':')));
    if (colon < 1)
        return std::nullopt;
    PlcAddress address;
    address.host = text.left(colon);
    if (address.host.startsWith(QLatin1Char('[')) && address.host.endsWith(QLatin1Char(']')))
        address.host = address.host.mid(1, address.host.size() - 2);
    else if (address.host.contains(QLatin1Char(':')))
        return std::nullopt;
    bool isNumber = false;
    address.port = text.mid(colon + 1).toUShort(&isNumber);
    if (!isNumber || address.port == 0 || address.host.isEmpty())
        return std::nullopt;
    return address;
}

// In the order in which they are made; they go in the opposite one.
struct Session::Parts
{
    Project project;
    std::unique_ptr<PanelFiles> files;
    std::unique_ptr<ProjectTree> tree;
    std::unique_ptr<OwnPlc> plc;
    PlcAddress plcAddress;
    std::unique_ptr<Communication> communication;
    std::unique_ptr<FlagPolling> flags;
    sys_base_app_pro record = {};
};

std::unique_ptr<Session> Session::open(const SessionOptions &options, QString &error)
{
    auto session = std::unique_ptr<Session>(new Session);
    Parts &parts = *session->m_parts;

    std::optional<Project> project = loadProject(options.projectFile, error);
    if (!project)
        return nullptr;
    parts.project = std::move(*project);
    parts.files = PanelFiles::create(options.root, error);
    if (!parts.files || !parts.files->write(QLatin1String(linkListPath), linksJson(parts.project), error) ||
        !parts.files->write(QLatin1String(iotLinkListPath), iotLinksJson(parts.project), error) ||
        !placeDrivers(parts.project, *parts.files, error))
        return nullptr;
    parts.tree = std::make_unique<ProjectTree>(parts.project);

    if (options.plc) {
        if (!isKnownHost(options.plc->host)) {
            error = QStringLiteral("%1: there is no such host: give --plc the address or the name of one")
                        .arg(options.plc->host);
            return nullptr;
        }
        parts.plcAddress = *options.plc;
    } else {
        try {
            parts.plc = std::make_unique<OwnPlc>();
        } catch (const std::system_error &fault) {
            error =
                QStringLiteral("no PLC can be started on a loopback port (%1): name one with --plc HOST:PORT")
                    .arg(QString::fromLocal8Bit(fault.what()));
            return nullptr;
        }
        parts.plcAddress = {QStringLiteral("127.0.0.1"), parts.plc->server.port()};
    }
    CommunicationOptions connection;
    connection.plcHost = parts.plcAddress.host;
    connection.plcPort = parts.plcAddress.port;
    try {
        parts.communication = std::make_unique<Communication>(linkRecords(parts.project), connection);
    } catch (const std::system_error &fault) {
        error = QStringLiteral("the links cannot be started (%1): end other programs, or raise the limit of "
                               "processes and memory")
                    .arg(QString::fromLocal8Bit(fault.what()));
        return nullptr;
    }

    parts.flags = std::make_unique<FlagPolling>(*parts.communication,
                                                parts.files->path(QLatin1String(linkSettingsPath)));
    parts.flags->loadLinks();

    if (!options.screen.isEmpty()) {
        parts.project.screenWidth = options.screen.width();
        parts.project.screenHeight = options.screen.height();
    }
    parts.record.screenWidth = parts.project.screenWidth;
    parts.record.screenHeight = parts.project.screenHeight;
    parts.record.announceMessageBoxClose = options.announceMessageBoxClose ? 1 : 0;
    parts.record.comm = parts.communication.get();
    tools_setSystemRoot(parts.files->root());
    setConfigurationFile(parts.files->path(QLatin1String(configurationPath)));
    setApplicationRecord(&parts.record);
    setCommandPolicy(options.runCommands ? CommandPolicy::Run : CommandPolicy::Record);
    return session;
}

Session::Session() : m_parts(std::make_unique<Parts>()) {}

Session::~Session()
{
    setCommandPolicy(CommandPolicy::Record);
    clearRecordedCommands();
    setApplicationRecord(nullptr);
    setConfigurationFile(QString());
    clearEventLibrary();
    tools_setSystemRoot(QString());
}

const Project &Session::project() const
{
    return m_parts->project;
}

object *Session::projectRoot() const
{
    return m_parts->tree->root();
}

object *Session::itemNode(std::size_t index) const
{
    return m_parts->tree->item(index);
}

Communication &Session::communication() const
{
    return *m_parts->communication;
}

FlagPolling &Session::flags() const
{
    return *m_parts->flags;
}

PlcAddress Session::plcAddress() const
{
    return m_parts->plcAddress;
}

} // namespace panelkit::simulator
