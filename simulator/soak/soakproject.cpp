#include "simulator/soak/soakproject.h"

#include "simulator/project/projectfile.h"
#include "simulator/project/valuetypes.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/soakplc.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace panelkit::simulator {

namespace {

const char *const inputBlock = "3x";
const char *const holdingBlock = "4x";
const char *const witnessName = "Soak witness";
constexpr int witnessesPerLink = 12;
constexpr int refusingLinkCount = 6;

bool isModbusTcpLink(const LinkDefinition &link)
{
    return link.isEthernet() && link.driverBaseName() == QLatin1String("Modbus");
}

QJsonObject addressOn(const LinkDefinition &link, const char *block, int index)
{
    QJsonObject address{{QStringLiteral("Link"), link.name},
                        {QStringLiteral("Block"), QLatin1String(block)},
                        {QStringLiteral("index"), index}};
    if (link.manyStations)
        address.insert(QStringLiteral("station"), link.station);
    return address;
}

QJsonObject internalBit(const QString &name, int index)
{
    return {{QStringLiteral("name"), name},
            {QStringLiteral("Link"), QLatin1String(internalStorageName)},
            {QStringLiteral("Block"), QStringLiteral("LB")},
            {QStringLiteral("No"), QString::number(index)},
            {QStringLiteral("index"), index},
            {QStringLiteral("type"), QStringLiteral("bit")}};
}

void addWitnesses(QJsonArray &items, const LinkDefinition &link, Chance &chance)
{
    for (int i = 0; i < witnessesPerLink; ++i) {
        const ValueType &type =
            valueTypes[static_cast<std::size_t>(chance.between(1, 7))]; // bit and string not
        const int index = SoakPlc::firstWitness + chance.between(0, SoakPlc::witnessCount - type.wordCount);
        QJsonObject item = addressOn(link, inputBlock, index);
        item.insert(
            QStringLiteral("name"),
            QStringLiteral("%1 %2 of link %3").arg(QLatin1String(witnessName)).arg(i + 1).arg(link.number));
        item.insert(QStringLiteral("No"), QString::number(index + 1));
        item.insert(QStringLiteral("type"), QLatin1String(type.name));
        const int digits = chance.between(1, 32);
        item.insert(QStringLiteral("digits"), digits);
        item.insert(QStringLiteral("decimals"), chance.between(0, digits));
        if (type.item == NUM_UINT16 || type.item == NUM_UINT32)
            item.insert(QStringLiteral("view"), QLatin1String(chance.of(viewNames).name));
        items << item;
    }
}

void addCounter(QJsonArray &items, QJsonArray &variables, const LinkDefinition &link, SoakProject &soak)
{
    SoakProject::Counter counter;
    const int number = static_cast<int>(soak.counters.size());
    counter.item = QStringLiteral("Soak counter of link %1").arg(link.number);
    counter.link = link.name;
    counter.station = link.station;
    counter.index = SoakPlc::firstCounter + 2 * number;
    counter.variable = QStringLiteral("soakCounter%1").arg(link.number);

    QJsonObject variable = addressOn(link, holdingBlock, counter.index);
    variable.insert(QStringLiteral("name"), counter.variable);
    variable.insert(QStringLiteral("type"), QStringLiteral("uint32"));
    variables << variable;

    QJsonObject item = internalBit(counter.item, 900 + number);
    item.insert(QStringLiteral("macroMode"), 3);
    item.insert(QStringLiteral("pressmacro"), QJsonArray{QStringLiteral("local count = ") + counter.variable,
                                                         counter.variable + QStringLiteral(" = count + 1")});
    item.insert(QStringLiteral("releasemacro"),
                QJsonArray{QStringLiteral("local hoard = {}"),
                           QStringLiteral("for i = 1, 1000000 do hoard[i] = i end")});
    items << item;
    soak.counters.push_back(counter);
}

// False when the numbers have run out.
bool addRefusingLinks(QJsonArray &links, const Project &project, SoakProject &soak)
{
    int number = 900;
    while (static_cast<int>(soak.refusingLinks.size()) < refusingLinkCount && ++number <= 65535) {
        const auto isTaken = [number](const LinkDefinition &link) {
            return link.number == number;
        };
        if (std::any_of(project.links.begin(), project.links.end(), isTaken))
            continue;
        links << QJsonObject{{QStringLiteral("number"), number},
                             {QStringLiteral("name"), QStringLiteral("Soak link %1").arg(number)},
                             {QStringLiteral("driver"), QStringLiteral("drivers/SoakDriver")},
                             {QStringLiteral("blocks"), QJsonArray{QLatin1String(holdingBlock)}},
                             {QStringLiteral("port"), QStringLiteral("COM1")}};
        soak.refusingLinks.push_back(number);
    }
    return static_cast<int>(soak.refusingLinks.size()) == refusingLinkCount;
}

void noteStations(const Project &project, std::vector<int> &stations)
{
    for (const LinkDefinition &link : project.links)
        stations.push_back(link.station);
    for (const ItemDefinition &item : project.items)
        stations.push_back(item.address.station);
    std::sort(stations.begin(), stations.end());
    stations.erase(std::unique(stations.begin(), stations.end()), stations.end());
    stations.erase(stations.begin(), std::lower_bound(stations.begin(), stations.end(), 1));
}

} // namespace

bool SoakProject::isWitness(const ItemDefinition &item) const
{
    return item.name.startsWith(QLatin1String(witnessName)) &&
           item.address.block == QLatin1String(inputBlock);
}

std::optional<SoakProject> makeSoakProject(const QByteArray &file, Chance &chance, QString &error)
{
    ProjectError fault;
    std::optional<Project> given = readProject(file, fault);
    if (!given) {
        error = fault.text();
        return std::nullopt;
    }
    SoakProject soak;
    QJsonObject root = QJsonDocument::fromJson(file).object();
    QJsonArray links = root.value(QLatin1String("links")).toArray();
    QJsonArray items = root.value(QLatin1String("items")).toArray();
    QJsonArray variables = root.value(QLatin1String("variables")).toArray();
    for (const LinkDefinition &link : given->links) {
        if (!isModbusTcpLink(link))
            continue;
        if (link.blocks.contains(QLatin1String(inputBlock)))
            addWitnesses(items, link, chance);
        if (link.blocks.contains(QLatin1String(holdingBlock)))
            addCounter(items, variables, link, soak);
    }
    if (!addRefusingLinks(links, *given, soak)) {
        error = QStringLiteral("the links leave no numbers from 901 to 65535 for those of the soak");
        return std::nullopt;
    }
    root.insert(QStringLiteral("links"), links);
    root.insert(QStringLiteral("items"), items);
    root.insert(QStringLiteral("variables"), variables);
    soak.file = QJsonDocument(root).toJson();
    given = readProject(soak.file, fault);
    if (!given) {
        error = QStringLiteral("with what a soak adds to it: ") + fault.text();
        return std::nullopt;
    }
    soak.project = *given;
    noteStations(soak.project, soak.stations);
    return soak;
}

} // namespace panelkit::simulator
