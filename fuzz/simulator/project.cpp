// The bytes of a project file: refused in one line, or made into all that a panel takes of it.

#include "simulator/project/projectfile.h"

#include "fuzz/support/demand.h"
#include "link/linklist.h"
#include "simulator/project/projectlinks.h"
#include "simulator/project/projecttree.h"

#include <cstddef>
#include <cstdint>

using namespace panelkit;
using namespace panelkit::simulator;

// Qt 5.15's parser loses an array or object whose key comes again behind it.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json(reinterpret_cast<const char *>(data), static_cast<int>(size));
    ProjectError error;
    const auto project = readProject(json, error);
    if (!project) {
        const QString text = error.text();
        demand(!text.isEmpty() && !text.contains(QLatin1Char('\n')), "it is refused in one line");
        return 0;
    }
    demand(error.where.isEmpty() && error.found.isEmpty() && error.expected.isEmpty(), "nothing is refused");

    const ProjectTree tree(*project);
    for (std::size_t i = 0; i < project->items.size(); ++i)
        demand(tree.item(i) != nullptr, "every item has its node");
    demand(linkRecords(*project).size() == project->links.size() + 1, "every link has its record");
    QMap<QString, QString> drivers;
    readLinkList(linksJson(*project), projectLinkList, drivers);
    demand(drivers.size() == static_cast<int>(project->links.size()), "the list of links is read again");
    QMap<QString, QString> iotDrivers;
    readLinkList(iotLinksJson(*project), iotLinkList, iotDrivers);
    demand(drivers == iotDrivers, "both lists say the same");
    return 0;
}
