#include "simulator/project/projectfile.h"

#include "tests/simulator/project/validproject.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

using panelkit::simulator::ItemDefinition;
using panelkit::simulator::LinkDefinition;
using panelkit::simulator::Parity;
using panelkit::simulator::Project;
using panelkit::simulator::ProjectError;
using panelkit::simulator::readProject;
using panelkit::simulator::readProjectFile;
using panelkit::simulator::TextVariableDefinition;
using panelkit::simulator::VariableDefinition;
using panelkit::testing::contents;
using panelkit::testing::dataPath;
using panelkit::testing::readValid;
using panelkit::testing::validProject;

namespace {

// The rows of a table whose first line names the columns.
QList<QStringList> table(const char *name, int columnCount)
{
    QList<QStringList> rows;
    const QStringList lines = QString::fromUtf8(contents(dataPath(name))).split(QLatin1Char('\n'));
    for (int i = 1; i < lines.size(); ++i) {
        if (lines[i].isEmpty())
            continue;
        rows << lines[i].split(QLatin1Char('\t'));
        EXPECT_EQ(rows.last().size(), columnCount) << name << " line " << i + 1;
    }
    return rows;
}

// The valid project with one place changed.
QByteArray changed(const QString &from, const QString &to)
{
    QString json = QString::fromUtf8(validProject());
    EXPECT_EQ(json.count(from), 1) << from.toStdString() << " must stand in valid.json once";
    return json.replace(from, to).toUtf8();
}

} // namespace

TEST(ProjectFile, ReadsScreenAndName)
{
    const Project project = readValid();
    EXPECT_EQ(project.name, QStringLiteral("Small project"));
    EXPECT_EQ(project.screenWidth, 480);
    EXPECT_EQ(project.screenHeight, 272);
}

TEST(ProjectFile, ReadsAnEthernetLink)
{
    const LinkDefinition link = readValid().links.at(0);
    EXPECT_EQ(link.number, 1);
    EXPECT_EQ(link.name, QStringLiteral("Press"));
    EXPECT_EQ(link.port, QStringLiteral("Ethernet 2"));
    EXPECT_TRUE(link.isEthernet());
    EXPECT_EQ(link.driver, QStringLiteral("drivers/Modbus"));
    EXPECT_EQ(link.driverBaseName(), QStringLiteral("Modbus"));
    EXPECT_EQ(link.blocks, (QStringList{QStringLiteral("3x"), QStringLiteral("4x")}));
    EXPECT_THAT(link.ip, ::testing::ElementsAre(192, 168, 1, 10));
    EXPECT_EQ(link.tcpPort, 1502);
    EXPECT_EQ(link.baud, 0);
    EXPECT_EQ(link.dataBits, 0);
    EXPECT_EQ(link.stopBits, 0);
    EXPECT_EQ(link.station, 7);
    EXPECT_FALSE(link.manyStations);
    EXPECT_EQ(link.interval, 100);
    EXPECT_EQ(link.timeout, 900);
    EXPECT_EQ(link.retry, 4);
    EXPECT_EQ(link.addressGap, 16);
}

TEST(ProjectFile, ReadsASerialLink)
{
    const LinkDefinition link = readValid().links.at(2);
    EXPECT_EQ(link.number, 3);
    EXPECT_FALSE(link.isEthernet());
    EXPECT_EQ(link.blocks, (QStringList{QStringLiteral("Gewicht"), QString::fromUtf8("Größe")}));
    EXPECT_EQ(link.baud, 38400);
    EXPECT_EQ(link.dataBits, 7);
    EXPECT_EQ(link.parity, Parity::Odd);
    EXPECT_EQ(link.stopBits, 2);
    EXPECT_THAT(link.ip, ::testing::ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(link.tcpPort, 0);
}

TEST(ProjectFile, FillsTheDefaultsOfALink)
{
    const Project project = readValid();
    const LinkDefinition &ethernet = project.links.at(1);
    EXPECT_EQ(ethernet.driverBaseName(), QStringLiteral("Modbus"));
    EXPECT_TRUE(ethernet.manyStations);
    EXPECT_EQ(ethernet.station, 1);
    EXPECT_EQ(ethernet.interval, 500);
    EXPECT_EQ(ethernet.timeout, 1000);
    EXPECT_EQ(ethernet.retry, 2);
    EXPECT_EQ(ethernet.addressGap, 8);

    const LinkDefinition &serial = project.links.at(3);
    EXPECT_TRUE(serial.blocks.isEmpty());
    EXPECT_EQ(serial.baud, 9600);
    EXPECT_EQ(serial.dataBits, 8);
    EXPECT_EQ(serial.parity, Parity::None);
    EXPECT_EQ(serial.stopBits, 1);
}

TEST(ProjectFile, ReadsAnItem)
{
    const ItemDefinition item = readValid().items.at(0);
    EXPECT_EQ(item.name, QStringLiteral("Force"));
    EXPECT_EQ(item.address.link, QStringLiteral("Press"));
    EXPECT_EQ(item.address.station, 9);
    EXPECT_EQ(item.address.block, QStringLiteral("3x"));
    EXPECT_EQ(item.address.index, 100);
    EXPECT_EQ(item.number, QStringLiteral("101"));
    EXPECT_EQ(item.length, 5);
    EXPECT_EQ(item.type, NUM_UINT32);
    EXPECT_EQ(item.view, NUM_VIEW_HEX);
    EXPECT_EQ(item.digits, 8);
    EXPECT_EQ(item.decimals, 3);
    EXPECT_EQ(item.wordCount, 3);
    EXPECT_EQ(item.macro.mode, 0);
    EXPECT_TRUE(item.macro.press.isEmpty());
    EXPECT_TRUE(item.macro.textVariables.empty());
}

TEST(ProjectFile, FillsTheDefaultsOfAnItem)
{
    const Project project = readValid();
    const ItemDefinition &heat = project.items.at(1);
    EXPECT_EQ(heat.view, NUM_VIEW_DEC);
    EXPECT_EQ(heat.decimals, 0);
    EXPECT_EQ(heat.wordCount, 2);
    EXPECT_EQ(heat.length, 2);

    const ItemDefinition &door = project.items.at(2);
    EXPECT_EQ(door.type, NUM_BIT);
    EXPECT_EQ(door.address.station, 7) << "the link's";
    EXPECT_EQ(door.digits, 1);
    EXPECT_EQ(door.wordCount, 1);
    EXPECT_EQ(door.length, 1);

    const ItemDefinition &label = project.items.at(3);
    EXPECT_EQ(label.address.station, -1) << "the internal storage has none";
    EXPECT_EQ(label.wordCount, 6);
    EXPECT_EQ(label.length, 6);
}

TEST(ProjectFile, JoinsMacroLines)
{
    const ItemDefinition item = readValid().items.at(3);
    EXPECT_EQ(item.macro.mode, 3);
    EXPECT_EQ(item.macro.press, QStringLiteral("local f = force\n\n\tresult = f / 2;"));
    EXPECT_EQ(item.macro.release, QStringLiteral("result = 0"));
}

TEST(ProjectFile, ReadsTextVariables)
{
    const std::vector<TextVariableDefinition> variables = readValid().items.at(3).macro.textVariables;
    ASSERT_EQ(variables.size(), 2u);
    EXPECT_EQ(variables[0].name, QStringLiteral("heat"));
    EXPECT_EQ(variables[0].address.link, QStringLiteral("Ovens"));
    EXPECT_EQ(variables[0].address.station, 22);
    EXPECT_EQ(variables[0].address.block, QStringLiteral("4x"));
    EXPECT_EQ(variables[0].address.index, 8);
    EXPECT_EQ(variables[0].extra, 3);
    EXPECT_EQ(variables[1].address.station, -1);
    EXPECT_EQ(variables[1].extra, 0);
}

TEST(ProjectFile, ReadsScriptVariables)
{
    const std::vector<VariableDefinition> variables = readValid().variables;
    ASSERT_EQ(variables.size(), 2u);
    EXPECT_EQ(variables[0].name, QStringLiteral("force"));
    EXPECT_EQ(variables[0].address.link, QStringLiteral("Press"));
    EXPECT_EQ(variables[0].address.station, 7);
    EXPECT_EQ(variables[0].address.block, QStringLiteral("3x"));
    EXPECT_EQ(variables[0].address.index, 100);
    EXPECT_EQ(variables[0].extra, -2);
    EXPECT_EQ(variables[0].dataType, 4);
    EXPECT_EQ(variables[1].dataType, 7);
    EXPECT_EQ(variables[1].extra, 0);
}

TEST(ProjectFile, AcceptsAProjectWithoutLinksItemsAndVariables)
{
    ProjectError error;
    const std::optional<Project> project =
        readProject(R"({"name": "Empty", "screenWidth": 1, "screenHeight": 8192})", error);
    ASSERT_TRUE(project) << error.text().toStdString();
    EXPECT_TRUE(project->links.empty());
    EXPECT_TRUE(project->items.empty());
    EXPECT_TRUE(project->variables.empty());
}

TEST(ProjectFile, RefusesEachFaultWithItsPlaceValueAndWhatWasExpected)
{
    for (const QStringList &row : table("refused.tsv", 5)) {
        SCOPED_TRACE(row.join(QStringLiteral(" | ")).toStdString());
        ProjectError error;
        EXPECT_FALSE(readProject(changed(row[0], row[1]), error));
        EXPECT_EQ(error.where, row[2]);
        EXPECT_EQ(error.found, row[3]);
        EXPECT_EQ(error.expected, row[4]);
        EXPECT_FALSE(error.text().contains(QLatin1Char('\n')));
    }
}

TEST(ProjectFile, AcceptsEachLimit)
{
    for (const QStringList &row : table("accepted.tsv", 2)) {
        SCOPED_TRACE(row.join(QStringLiteral(" | ")).toStdString());
        ProjectError error;
        EXPECT_TRUE(readProject(changed(row[0], row[1]), error)) << error.text().toStdString();
    }
}

TEST(ProjectFile, NamesEachDataTypeAndView)
{
    const struct
    {
        const char *name;
        NUM_DATA_TYPE type;
        int wordCount;
    } types[] = {
        {"bit", NUM_BIT, 1},     {"uint16", NUM_UINT16, 1},   {"uint32", NUM_UINT32, 2},
        {"int16", NUM_INT16, 1}, {"int32", NUM_INT32, 2},     {"bcd16", NUM_BCD16, 1},
        {"bcd32", NUM_BCD32, 2}, {"float32", NUM_FLOAT32, 2},
    };
    for (const auto &row : types) {
        SCOPED_TRACE(row.name);
        ProjectError error;
        const auto project = readProject(
            changed(QStringLiteral("\"type\": \"float32\", \"digits\": 5"),
                    QStringLiteral("\"type\": \"%1\", \"digits\": 5").arg(QLatin1String(row.name))),
            error);
        ASSERT_TRUE(project) << error.text().toStdString();
        EXPECT_EQ(project->items.at(1).type, row.type);
        EXPECT_EQ(project->items.at(1).wordCount, row.wordCount);
    }

    const struct
    {
        const char *name;
        NUM_DATA_VIEW_TYPE view;
    } views[] = {{"dec", NUM_VIEW_DEC}, {"hex", NUM_VIEW_HEX}, {"oct", NUM_VIEW_OCT}, {"bin", NUM_VIEW_BIN}};
    for (const auto &row : views) {
        SCOPED_TRACE(row.name);
        ProjectError error;
        const auto project =
            readProject(changed(QStringLiteral("\"view\": \"hex\""),
                                QStringLiteral("\"view\": \"%1\"").arg(QLatin1String(row.name))),
                        error);
        ASSERT_TRUE(project) << error.text().toStdString();
        EXPECT_EQ(project->items.at(0).view, row.view);
    }
}

TEST(ProjectFile, NumbersTheDataTypesOfVariables)
{
    const struct
    {
        const char *name;
        int dataType;
    } types[] = {{"bit", 0},    {"uint16", 1}, {"int16", 2}, {"bcd16", 3},
                 {"uint32", 4}, {"int32", 5},  {"bcd32", 6}, {"float32", 7}};
    for (const auto &row : types) {
        SCOPED_TRACE(row.name);
        ProjectError error;
        const auto project =
            readProject(changed(QStringLiteral("-2, \"type\": \"uint32\""),
                                QStringLiteral("-2, \"type\": \"%1\"").arg(QLatin1String(row.name))),
                        error);
        ASSERT_TRUE(project) << error.text().toStdString();
        EXPECT_EQ(project->variables.at(0).dataType, row.dataType);
    }
}

TEST(ProjectFile, NumbersTheParities)
{
    ProjectError error;
    const auto even = readProject(
        changed(QStringLiteral("\"parity\": \"odd\""), QStringLiteral("\"parity\": \"even\"")), error);
    ASSERT_TRUE(even) << error.text().toStdString();
    EXPECT_EQ(static_cast<int>(even->links.at(2).parity), 2);
    EXPECT_EQ(static_cast<int>(Parity::None), 0);
    EXPECT_EQ(static_cast<int>(Parity::Odd), 1);
}

TEST(ProjectFile, TellsLineAndColumnOfASyntaxError)
{
    const struct
    {
        const char *json;
        const char *message;
    } rows[] = {
        {"", "line 1, column 1: found a syntax error (illegal value), expected JSON"},
        {"{\n  \"name\" 1\n}",
         "line 2, column 11: found a syntax error (missing name separator), expected JSON"},
        {"{\n  \"name\": 1,\n}",
         "line 3, column 2: found a syntax error (object is missing after a comma), expected JSON"},
        {"{\"ü\": 'x'}", "line 1, column 7: found a syntax error (illegal number), expected JSON"},
        {"\xEF\xBB\xBF{\"a\": ?}", "line 1, column 7: found a syntax error (illegal number), expected JSON"},
        {"{} x",
         "line 1, column 4: found a syntax error (garbage at the end of the document), expected JSON"},
        {"{\"a\": \"\xFF\"}", "line 1, column 8: found a syntax error (invalid UTF8 string), expected JSON"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.json);
        ProjectError error;
        EXPECT_FALSE(readProject(row.json, error));
        EXPECT_EQ(error.text(), QString::fromUtf8(row.message));
    }
}

TEST(ProjectFile, CountsAZeroAsACharacterBeforeASyntaxError)
{
    ProjectError error;
    EXPECT_FALSE(readProject(QByteArray("{\"a\0b\": 'x'}", 12), error));
    EXPECT_EQ(error.where, QStringLiteral("line 1, column 9"));
}

TEST(ProjectFile, RefusesARootThatIsNoObject)
{
    ProjectError error;
    EXPECT_FALSE(readProject("[1, 2]", error));
    EXPECT_EQ(error.text(), QStringLiteral("the file: found an array, expected an object"));
}

TEST(ProjectFile, ListsAllKnownKeysWhenNoneIsNear)
{
    ProjectError error;
    EXPECT_FALSE(readProject(R"({"colour": 1})", error));
    EXPECT_EQ(error.text(),
              QStringLiteral("colour: found an unknown key, expected one of \"name\", \"screenWidth\", "
                             "\"screenHeight\", \"links\", \"items\", \"variables\""));
}

TEST(ProjectFile, TakesTheLastValueOfAKeyGivenTwice)
{
    ProjectError error;
    const auto project = readProject(changed(QStringLiteral("\"screenWidth\": 480"),
                                             QStringLiteral("\"screenWidth\": 0, \"screenWidth\": 7")),
                                     error);
    ASSERT_TRUE(project) << error.text().toStdString();
    EXPECT_EQ(project->screenWidth, 7);
}

TEST(ProjectFile, CutsWhatAMessageRepeats)
{
    ProjectError error;
    EXPECT_FALSE(readProject("{\"" + QByteArray(100000, 'k') + "\": 1}", error));
    EXPECT_EQ(error.where,
              QStringLiteral("[\"") + QString(40, QLatin1Char('k')) + QChar(0x2026) + QStringLiteral("\"]"));
    EXPECT_FALSE(readProject("{\"name\": \"" + QByteArray(100000, 'n') + "\"}", error));
    EXPECT_EQ(error.found,
              QStringLiteral("\"") + QString(40, QLatin1Char('n')) + QChar(0x2026) + QStringLiteral("\""));
}

TEST(ProjectFile, ReadsTheExampleOfItsPage)
{
    const QByteArray page = contents(QStringLiteral(PANELKIT_FORMATS "/project.md"));
    const int start = static_cast<int>(page.indexOf("```json\n")) + 8;
    ProjectError error;
    const auto project = readProject(page.mid(start, page.indexOf("```", start) - start), error);
    ASSERT_TRUE(project) << error.text().toStdString();
    EXPECT_EQ(project->items.at(0).name, QStringLiteral("Boiler temperature"));
}

TEST(ProjectFile, LeavesTheErrorAloneOnSuccess)
{
    ProjectError error{QStringLiteral("where"), QStringLiteral("found"), QStringLiteral("expected")};
    EXPECT_TRUE(readProject(validProject(), error));
    EXPECT_EQ(error.text(), QStringLiteral("where: found found, expected expected"));
}

TEST(ProjectFile, ReadsAFileByItsPath)
{
    ProjectError error;
    const std::optional<Project> project = readProjectFile(dataPath("valid.json"), error);
    ASSERT_TRUE(project) << error.text().toStdString();
    EXPECT_EQ(project->items.size(), 4u);
}

TEST(ProjectFile, RefusesAFileThatCannotBeRead)
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing.json"));
    ProjectError error;
    EXPECT_FALSE(readProjectFile(missing, error));
    EXPECT_EQ(error.where, missing);
    EXPECT_FALSE(error.found.isEmpty());
    EXPECT_EQ(error.expected, QStringLiteral("a project file"));

    EXPECT_FALSE(readProjectFile(folder.path(), error));
    EXPECT_EQ(error.where, folder.path());
}

TEST(ProjectFile, RefusesAFileBeyond16MiB)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("large.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QByteArray project = validProject();
    file.write(project + QByteArray(16 * 1024 * 1024 - static_cast<int>(project.size()), ' '));
    file.flush();
    ProjectError error;
    EXPECT_TRUE(readProjectFile(file.fileName(), error)) << error.text().toStdString();

    file.write(" ");
    file.flush();
    EXPECT_FALSE(readProjectFile(file.fileName(), error));
    EXPECT_EQ(error.where, file.fileName());
    EXPECT_EQ(error.found, QStringLiteral("more than 16 MiB"));
}
