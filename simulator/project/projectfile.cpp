#include "simulator/project/projectfile.h"

#include "simulator/project/jsonreader.h"
#include "simulator/project/valuetypes.h"

#include <QFile>
#include <QHash>
#include <QJsonDocument>

#include <limits>

namespace panelkit::simulator {

namespace {

constexpr qint64 largestFile = Q_INT64_C(16) * 1024 * 1024;
constexpr int largestNumber = std::numeric_limits<int>::max();
constexpr int smallestNumber = std::numeric_limits<int>::min();
constexpr int largestWord = 65535; // most link parameters travel in one system register
constexpr int largestStation = 255;
constexpr int mostWords = 64; // what getValueToQString reads at most
constexpr int mostDigits = 32;

// Names of links, blocks and variables stand in lists separated by commas and in Lua texts.
constexpr TextRule titleRule = {64, "", false, false, "1 to 64 characters without blanks at the ends"};
constexpr TextRule linkNameRule = {longestLinkName, ",\"\\", false, false,
                                   "1 to 64 characters without , \" \\ and without blanks at the ends"};
constexpr TextRule blockRule = {
    longestBlockName, ",\"\\/#", true, false,
    "1 to 32 Latin-1 characters without , \" \\ / # and without blanks at the ends"};
constexpr TextRule variableNameRule = {64, ",=;", false, false,
                                       "1 to 64 characters without , = ; and without blanks at the ends"};
constexpr TextRule numberRule = {32, "", false, false, "a register number as a text of 1 to 32 characters"};
constexpr TextRule addressRule = {15, "", true, false, "an IPv4 address such as \"192.168.1.10\""};
constexpr TextRule driverRule = {64, "", true, false,
                                 "FOLDER/NAME or NAME, of ASCII letters, digits, \"_\", \"-\" and \".\""};
constexpr TextRule portRule = {32, "", false, false, "a port that begins with \"Ethernet\" or \"COM\""};

struct ParityName
{
    const char *name;
    Parity parity;
};
constexpr std::array<ParityName, 3> parityNames = {
    {{"none", Parity::None}, {"odd", Parity::Odd}, {"even", Parity::Even}}};

QString anotherThan(const QString &path)
{
    return QStringLiteral("another one than that of ") + path;
}

// Refuses a value that an earlier element of the list has already, with that element's place.
template <typename Value>
class UniqueValues
{
public:
    void enter(const Value &value, ObjectReader &reader, const char *key, const QString &path)
    {
        if (m_paths.contains(value))
            reader.refuse(key, anotherThan(m_paths.value(value)));
        m_paths.insert(value, path);
    }

private:
    QHash<Value, QString> m_paths;
};

std::optional<std::array<quint8, 4>> ipAddress(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    std::array<quint8, 4> bytes = {};
    if (parts.size() != 4)
        return std::nullopt;
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        const uint byte = parts[i].toUInt(&isNumber);
        if (!isNumber || byte > 255 || QString::number(byte) != parts[i])
            return std::nullopt;
        bytes[static_cast<std::size_t>(i)] = static_cast<quint8>(byte);
    }
    return bytes;
}

bool isDriver(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('/'));
    for (const QString &part : parts) {
        if (part.isEmpty() || parts.size() > 2)
            return false;
        for (const QChar character : part)
            if (character.unicode() > 127 ||
                (!character.isLetterOrNumber() && !QStringLiteral("_-.").contains(character)))
                return false;
    }
    return true;
}

class ProjectReader
{
public:
    explicit ProjectReader(FaultSlot &faults) : m_faults(faults) {}

    Project read(const QJsonValue &root);

private:
    LinkDefinition readLink(ObjectReader &reader);
    void readBlocks(ObjectReader &reader, LinkDefinition &link);
    void readPort(ObjectReader &reader, LinkDefinition &link);
    AddressDefinition readAddress(ObjectReader &reader);
    ItemDefinition readItem(ObjectReader &reader);
    void readValueFormat(ObjectReader &reader, ItemDefinition &item);
    MacroDefinition readMacro(ObjectReader &reader);
    VariableDefinition readVariable(ObjectReader &reader);

    // Calls `readElement(reader, path)` for every element of an array of objects until one is refused.
    template <typename ReadElement>
    void readList(ObjectReader &parent, const char *key, ReadElement readElement)
    {
        const QJsonArray elements = parent.array(key);
        for (int i = 0; i < elements.size() && m_faults.isEmpty(); ++i) {
            const QString path = parent.path(key, i);
            ObjectReader reader(elements.at(i), path, m_faults);
            readElement(reader, path);
            reader.finish();
        }
    }

    const LinkDefinition *findLink(const QString &name) const;

    FaultSlot &m_faults;
    Project m_project;
    QHash<QString, std::size_t> m_linkPlaces; // in the project's list, by name
};

Project ProjectReader::read(const QJsonValue &root)
{
    ObjectReader reader(root, QString(), m_faults);
    m_project.name = reader.text("name", titleRule);
    m_project.screenWidth = reader.integer("screenWidth", 1, 8192);
    m_project.screenHeight = reader.integer("screenHeight", 1, 8192);

    UniqueValues<int> linkNumbers;
    UniqueValues<QString> linkNames, itemNames, variableNames;
    readList(reader, "links", [&](ObjectReader &element, const QString &path) {
        m_project.links.push_back(readLink(element));
        m_linkPlaces.insert(m_project.links.back().name, m_project.links.size() - 1);
        linkNumbers.enter(m_project.links.back().number, element, "number", path);
        linkNames.enter(m_project.links.back().name, element, "name", path);
    });
    readList(reader, "items", [&](ObjectReader &element, const QString &path) {
        m_project.items.push_back(readItem(element));
        itemNames.enter(m_project.items.back().name, element, "name", path);
    });
    readList(reader, "variables", [&](ObjectReader &element, const QString &path) {
        m_project.variables.push_back(readVariable(element));
        variableNames.enter(m_project.variables.back().name, element, "name", path);
    });
    reader.finish();
    return std::move(m_project);
}

const LinkDefinition *ProjectReader::findLink(const QString &name) const
{
    const auto found = m_linkPlaces.find(name);
    return found == m_linkPlaces.end() ? nullptr : &m_project.links[found.value()];
}

LinkDefinition ProjectReader::readLink(ObjectReader &reader)
{
    LinkDefinition link;
    link.number = reader.integer("number", 1, largestWord);
    link.name = reader.text("name", linkNameRule);
    if (link.name == QLatin1String(internalStorageName))
        reader.refuse("name", QStringLiteral("another name: this is the panel's own memory"));
    link.driver = reader.text("driver", driverRule);
    if (reader.ok() && !isDriver(link.driver))
        reader.refuse("driver", QLatin1String(driverRule.description));
    readBlocks(reader, link);
    readPort(reader, link);
    link.station = reader.integer("station", 0, largestStation, 1);
    link.manyStations = reader.boolean("manyStations", false);
    link.interval = reader.integer("interval", 0, largestWord, 500);
    link.timeout = reader.integer("timeout", 1, largestWord, 1000);
    link.retry = reader.integer("retry", 0, largestWord, 2);
    link.addressGap = reader.integer("addressGap", 0, largestWord, 8);
    return link;
}

void ProjectReader::readBlocks(ObjectReader &reader, LinkDefinition &link)
{
    const QStringList internalBlocks = {QStringLiteral("LB"), QStringLiteral("LW"), QStringLiteral("RWI")};
    link.blocks = reader.texts("blocks", blockRule);
    QHash<QString, int> places;
    for (int i = 0; i < link.blocks.size(); ++i) {
        const QString &block = link.blocks.at(i);
        if (internalBlocks.contains(block))
            m_faults.refuse(reader.path("blocks", i), quoted(block),
                            QStringLiteral("a block of the PLC: this one is the panel's own"));
        if (places.contains(block))
            m_faults.refuse(reader.path("blocks", i), quoted(block),
                            anotherThan(reader.path("blocks", places.value(block))));
        places.insert(block, i);
    }
}

void ProjectReader::readPort(ObjectReader &reader, LinkDefinition &link)
{
    link.port = reader.text("port", portRule);
    const bool isSerial = link.port.startsWith(QLatin1String("COM")) && !link.isEthernet();
    if (reader.ok() && !isSerial && !link.port.startsWith(QLatin1String("Ethernet")))
        reader.refuse("port", QLatin1String(portRule.description));
    if (!reader.ok()) {
        reader.skip({"ip", "tcpPort", "baud", "dataBits", "parity", "stopBits"});
    } else if (isSerial) {
        link.baud = reader.integer("baud", 300, 4000000, 9600);
        link.dataBits = reader.integer("dataBits", 5, 8, 8);
        link.parity = reader.choice("parity", parityNames, "none").parity;
        link.stopBits = reader.integer("stopBits", 1, 2, 1);
        reader.refuseIfPresent({"ip", "tcpPort"}, QStringLiteral("nothing: the port is a serial port"));
    } else {
        const std::optional<std::array<quint8, 4>> ip = ipAddress(reader.text("ip", addressRule));
        if (reader.ok() && !ip)
            reader.refuse("ip", QLatin1String(addressRule.description));
        link.ip = ip.value_or(link.ip);
        link.tcpPort = reader.integer("tcpPort", 1, largestWord);
        reader.refuseIfPresent({"baud", "dataBits", "parity", "stopBits"},
                               QStringLiteral("nothing: the port is an Ethernet port"));
    }
}

AddressDefinition ProjectReader::readAddress(ObjectReader &reader)
{
    AddressDefinition address;
    address.link = reader.text("Link", linkNameRule);
    address.block = reader.text("Block", blockRule);
    address.index = reader.integer("index", 0, largestNumber);

    const LinkDefinition *link = findLink(address.link);
    const bool isInternal = address.link == QLatin1String(internalStorageName);
    if (reader.ok() && link == nullptr && !isInternal)
        reader.refuse("Link", QStringLiteral("the name of a link of this project, or ") +
                                  quoted(QLatin1String(internalStorageName)));
    if (!reader.ok())
        reader.skip({"station"});
    else if (isInternal)
        address.station = reader.integer("station", -1, -1, -1);
    else if (link != nullptr && !link->manyStations)
        address.station = reader.integer("station", 0, largestStation, link->station);
    else
        address.station = reader.integer("station", 0, largestStation);
    return address;
}

ItemDefinition ProjectReader::readItem(ObjectReader &reader)
{
    ItemDefinition item;
    item.name = reader.text("name", titleRule);
    item.address = readAddress(reader);
    item.number = reader.text("No", numberRule);
    readValueFormat(reader, item);
    item.length = reader.integer("length", 1, largestWord, item.wordCount);
    item.macro = readMacro(reader);
    return item;
}

void ProjectReader::readValueFormat(ObjectReader &reader, ItemDefinition &item)
{
    const ValueType &type = reader.choice("type", valueTypes);
    item.type = type.item;
    item.view = reader.choice("view", viewNames, "dec").view;
    if (reader.ok() && item.view != NUM_VIEW_DEC && item.type != NUM_UINT16 && item.type != NUM_UINT32)
        reader.refuse("view", QStringLiteral("\"dec\", the only view of a ") + QLatin1String(type.name));
    const bool hasDigits = item.type != NUM_BIT && item.type != NUM_STRING;
    item.digits = reader.integer("digits", 1, mostDigits, hasDigits ? std::nullopt : std::optional<int>(1));
    item.decimals = reader.integer("decimals", 0, reader.ok() ? item.digits : mostDigits, 0);
    item.wordCount = reader.integer("words", 1, mostWords,
                                    type.wordCount > 0 ? std::optional<int>(type.wordCount) : std::nullopt);
}

MacroDefinition ProjectReader::readMacro(ObjectReader &reader)
{
    constexpr TextRule lineRule = {10000, "", false, true, "a line of at most 10000 characters"};
    MacroDefinition macro;
    macro.mode = reader.integer("macroMode", 0, 3, 0);
    macro.press = reader.texts("pressmacro", lineRule).join(QLatin1Char('\n'));
    macro.release = reader.texts("releasemacro", lineRule).join(QLatin1Char('\n'));
    readList(reader, "textVariables", [&](ObjectReader &element, const QString &) {
        TextVariableDefinition variable;
        variable.name = element.text("name", variableNameRule);
        variable.address = readAddress(element);
        variable.extra = element.integer("extra", smallestNumber, largestNumber, 0);
        macro.textVariables.push_back(variable);
    });
    return macro;
}

VariableDefinition ProjectReader::readVariable(ObjectReader &reader)
{
    VariableDefinition variable;
    variable.name = reader.text("name", variableNameRule);
    variable.address = readAddress(reader);
    variable.extra = reader.integer("extra", smallestNumber, largestNumber, 0);
    variable.dataType = reader.choice("type", valueTypes).variable;
    if (variable.dataType < 0)
        reader.refuse("type",
                      QStringLiteral("a type that a script variable can have, which \"string\" is not"));
    return variable;
}

// The parser stops at the fault or right behind it; lines and columns count from 1.
ProjectError syntaxError(const QByteArray &json, const QJsonParseError &parseError)
{
    const QByteArray before = json.left(parseError.offset);
    const int line = static_cast<int>(before.count('\n')) + 1;
    const QByteArray lineBefore = before.mid(before.lastIndexOf('\n') + 1);
    // As a string of C++: Qt 5 takes a byte array only up to a zero.
    const int column = static_cast<int>(QString::fromStdString(lineBefore.toStdString()).size()) + 1;
    return {QStringLiteral("line %1, column %2").arg(line).arg(column),
            QStringLiteral("a syntax error (%1)").arg(parseError.errorString()), QStringLiteral("JSON")};
}

} // namespace

QString ProjectError::text() const
{
    return where + QLatin1String(": found ") + found + QLatin1String(", expected ") + expected;
}

std::optional<Project> readProject(const QByteArray &json, ProjectError &error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        error = syntaxError(json, parseError);
        return std::nullopt;
    }
    FaultSlot faults;
    const QJsonValue root = document.isObject() ? QJsonValue(document.object()) : document.array();
    Project project = ProjectReader(faults).read(root);
    if (!faults.isEmpty()) {
        error = faults.fault();
        return std::nullopt;
    }
    return project;
}

std::optional<QByteArray> readProjectBytes(const QString &path, ProjectError &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = {path, file.errorString(), QStringLiteral("a project file")};
        return std::nullopt;
    }
    const QByteArray json = file.read(largestFile + 1);
    if (json.size() > largestFile) {
        error = {path, QStringLiteral("more than 16 MiB"), QStringLiteral("a project file")};
        return std::nullopt;
    }
    return json;
}

std::optional<Project> readProjectFile(const QString &path, ProjectError &error)
{
    const std::optional<QByteArray> json = readProjectBytes(path, error);
    return json ? readProject(*json, error) : std::nullopt;
}

} // namespace panelkit::simulator
