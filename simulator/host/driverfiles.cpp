#include "simulator/host/driverfiles.h"

#include "platform/sys_base.h"
#include "runtime/systemroot.h"
#include "simulator/host/panelfiles.h"
#include "simulator/host/session.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

#include <dlfcn.h>

namespace panelkit::simulator {

namespace {

class DriverProblem
{
    Q_DECLARE_TR_FUNCTIONS(DriverProblem)

public:
    static QString ofFile(DriverFileState state)
    {
        switch (state) {
        case DriverFileState::Missing:
            return tr("There is no such file, or it cannot be read.");
        case DriverFileState::NotALibrary:
            return tr("The file is no shared library.");
        case DriverFileState::ForeignProcessor:
            return tr("The library is for another processor.");
        case DriverFileState::Truncated:
            return tr("The end of the library is missing: the copy broke off.");
        case DriverFileState::Complete:
            break;
        }
        return QString();
    }

    static QString ofLoading(const QString &systemError)
    {
        return tr("The system does not load it: %1").arg(systemError);
    }

    static QString ofEntryPoints(const QStringList &missing)
    {
        return tr("It lacks %1.").arg(missing.join(QLatin1String(", ")));
    }
};

void diagnoseLibrary(DriverDiagnosis &diagnosis)
{
    QLibrary library(diagnosis.file);
    diagnosis.loads = library.load();
    if (!diagnosis.loads) {
        diagnosis.problem = DriverProblem::ofLoading(library.errorString());
        return;
    }
    const struct
    {
        const char *name;
        bool &found;
    } entryPoints[] = {
        {"intf_checkAddr", diagnosis.hasCheckAddr},
        {"intf_checkAddrValidity", diagnosis.hasCheckAddrValidity},
        {"intf_getRegDiscription", diagnosis.hasGetRegDiscription},
    };
    QStringList missing;
    for (const auto &entryPoint : entryPoints) {
        entryPoint.found = library.resolve(entryPoint.name) != nullptr;
        if (!entryPoint.found)
            missing << QLatin1String(entryPoint.name);
    }
    library.unload();
    if (!missing.isEmpty())
        diagnosis.problem = DriverProblem::ofEntryPoints(missing);
}

// By whatever lies there, and be it a link that leads nowhere.
bool isTaken(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

} // namespace

// In a folder beside the stand-in of the system library, wherever that is.
QString ownDriverFolder()
{
    Dl_info place;
    if (dladdr(reinterpret_cast<void *>(&sys_base_get_app_pro), &place) == 0)
        return QString();
    return QFileInfo(QFile::decodeName(place.dli_fname)).absolutePath() + QLatin1String("/drivers");
}

bool placeDrivers(const Project &project, const PanelFiles &files, QString &error)
{
    const QString folder = ownDriverFolder();
    for (const LinkDefinition &link : project.links) {
        QFile driver(folder + QLatin1String("/lib") + link.driverBaseName() + QLatin1String(".so"));
        if (!driver.open(QIODevice::ReadOnly))
            continue;
        const QString place = tools_driverFilePath(link.driver, link.number).mid(tools_systemRoot().size());
        if (isTaken(files.path(place)))
            continue;
        if (!files.write(place, driver.readAll(), error))
            return false;
    }
    return true;
}

std::vector<DriverDiagnosis> diagnoseDrivers(const Session &session)
{
    std::vector<DriverDiagnosis> diagnoses;
    for (const LinkDefinition &link : session.project().links) {
        DriverDiagnosis diagnosis;
        diagnosis.linkNumber = link.number;
        diagnosis.linkName = link.name;
        diagnosis.file = tools_driverFilePath(link.driver, link.number);
        diagnosis.state = tools_driverFileState(diagnosis.file);
        diagnosis.problem = DriverProblem::ofFile(diagnosis.state);
        if (diagnosis.state == DriverFileState::Complete)
            diagnoseLibrary(diagnosis);
        diagnoses.push_back(diagnosis);
    }
    return diagnoses;
}

} // namespace panelkit::simulator
