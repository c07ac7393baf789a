#include "simulator/project/projecttree.h"

#include "simulator/project/projectlinks.h"
#include "simulator/sample/sample.h"
#include "tests/simulator/project/validproject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

using panelkit::simulator::LinkRecord;
using panelkit::simulator::ObjectTree;
using panelkit::simulator::Project;
using panelkit::simulator::ProjectTree;
using panelkit::testing::readValid;

namespace {

int number(object *node, const char *name)
{
    return object_get_property_value_type_int32(node, name, -12345);
}

QString text(object *node, const char *name)
{
    return object_get_property_value_type_string(node, name, QStringLiteral("(missing)"));
}

// Every property of a node, in order, as "name=value".
QStringList properties(object *node)
{
    QStringList all;
    for (const QString &name : ObjectTree::propertyNames(node))
        all << name + QLatin1Char('=') + text(node, name.toUtf8().constData());
    return all;
}

QList<object *> children(object *node)
{
    QList<object *> all;
    for (object *child = object_first_child(node); child != nullptr; child = object_next(child))
        all << child;
    return all;
}

QStringList lines(std::initializer_list<const char *> all)
{
    QStringList result;
    for (const char *line : all)
        result << QString::fromUtf8(line);
    return result;
}

} // namespace

TEST(ProjectTree, HoldsLinksVariablesAndItems)
{
    const Project project = readValid();
    const ProjectTree tree(project);
    QStringList names;
    for (const object *child : children(tree.root()))
        names << ObjectTree::name(child);
    EXPECT_EQ(names, lines({"link", "macroVarList", "item"}));
}

TEST(ProjectTree, CarriesEachLinkInOrder)
{
    const ProjectTree tree(readValid());
    const QList<object *> links = children(object_get_child(tree.root(), "link"));
    ASSERT_EQ(links.size(), 4);
    EXPECT_EQ(properties(links[0]), lines({"linkID=1", "AddressMode=0", "blockNames=3x,4x", "PLCID=7",
                                           "linkName=Press", "driverLib=drivers/Modbus"}));
    EXPECT_EQ(properties(links[1]), lines({"linkID=12", "AddressMode=1", "blockNames=4x", "PLCID=1",
                                           "linkName=Ovens", "driverLib=Modbus"}));
    EXPECT_EQ(properties(links[2]), lines({"linkID=3", "AddressMode=0", "blockNames=Gewicht,Größe", "PLCID=1",
                                           "linkName=Waage", "driverLib=drivers/Scale-2.x_y"}));
    EXPECT_EQ(number(links[3], "linkID"), 4);
    EXPECT_EQ(text(links[3], "blockNames"), QString());
}

TEST(ProjectTree, DeclaresTheScriptVariables)
{
    const ProjectTree tree(readValid());
    EXPECT_EQ(properties(object_get_child(tree.root(), "macroVarList")),
              lines({"number=2", "var0=force,Press,7,3x,100,-2,4,",
                     "var1=result,Internal storage area,-1,LW,60,0,7,"}));
}

TEST(ProjectTree, GivesEachItemItsAddress)
{
    const ProjectTree tree(readValid());
    EXPECT_EQ(properties(tree.item(0)), lines({"Link=Press", "Block=3x", "No=101", "index=100", "station=9",
                                               "length=5", "macroMode=0", "pressmacro=", "releasemacro="}));
    EXPECT_EQ(properties(tree.item(2)), lines({"Link=Press", "Block=4x", "No=1", "index=0", "station=7",
                                               "length=1", "macroMode=0", "pressmacro=", "releasemacro="}));
    EXPECT_EQ(number(tree.item(3), "station"), -1);
}

TEST(ProjectTree, GivesEachItemItsMacros)
{
    const ProjectTree tree(readValid());
    object *label = tree.item(3);
    EXPECT_EQ(number(label, "macroMode"), 3);
    EXPECT_EQ(text(label, "pressmacro"), QStringLiteral("local f = force\n\n\tresult = f / 2;"));
    EXPECT_EQ(text(label, "releasemacro"), QStringLiteral("result = 0"));
    EXPECT_EQ(properties(object_get_child(label, "macroTextVarList")),
              lines({"number=2", "Textvar0=Ovens,22,4x,8,3,heat",
                     "Textvar1=Internal storage area,-1,LW,40,0,label"}));
    EXPECT_EQ(properties(object_get_child(tree.item(0), "macroTextVarList")), lines({"number=0"}));
}

TEST(ProjectTree, FindsItemsByNameAndByTheirPlace)
{
    const Project project = readValid();
    const ProjectTree tree(project);
    object *folder = object_get_child(tree.root(), "item");
    ASSERT_EQ(children(folder).size(), 4);
    for (std::size_t i = 0; i < project.items.size(); ++i) {
        EXPECT_EQ(tree.item(i), children(folder).at(static_cast<int>(i)));
        EXPECT_EQ(tree.item(i), object_get_child(folder, project.items[i].name.toUtf8().constData()));
    }
}

TEST(ProjectTree, OfAnEmptyProjectHasEmptyLists)
{
    const ProjectTree tree{Project()};
    EXPECT_EQ(object_first_child(object_get_child(tree.root(), "link")), nullptr);
    EXPECT_EQ(object_first_child(object_get_child(tree.root(), "item")), nullptr);
    EXPECT_EQ(number(object_get_child(tree.root(), "macroVarList"), "number"), 0);
}

// The three forms of the links agree: what the address checker, the communication interface and the index
// lookup are told of a link is the same.
TEST(ProjectTree, AgreesWithLinkRecordsAndLinksJson)
{
    panelkit::simulator::ProjectError error;
    const auto sample = panelkit::simulator::readProject(panelkit::simulator::sampleProject(), error);
    ASSERT_TRUE(sample) << error.text().toStdString();
    for (const Project &project : {readValid(), *sample}) {
        SCOPED_TRACE(project.name.toStdString());
        const ProjectTree tree(project);
        const QList<object *> nodes = children(object_get_child(tree.root(), "link"));
        const std::vector<LinkRecord> records = panelkit::simulator::linkRecords(project);
        const QJsonArray listed = QJsonDocument::fromJson(panelkit::simulator::linksJson(project))
                                      .object()
                                      .value("links")
                                      .toArray();
        ASSERT_GT(nodes.size(), 0);
        ASSERT_EQ(static_cast<std::size_t>(nodes.size()) + 1, records.size());
        ASSERT_EQ(static_cast<int>(nodes.size()), static_cast<int>(listed.size()));
        for (int i = 0; i < nodes.size(); ++i) {
            SCOPED_TRACE(i);
            object *node = nodes[i];
            const LinkRecord &record = records[static_cast<std::size_t>(i) + 1];
            const QJsonObject entry = listed[i].toObject();
            EXPECT_EQ(number(node, "linkID"), record.value.id);
            EXPECT_EQ(number(node, "AddressMode"), record.value.addmore);
            EXPECT_EQ(text(node, "PLCID"), QString::number(record.value.station));
            EXPECT_EQ(text(node, "linkName"), record.name);
            EXPECT_EQ(entry.value("linkName").toString(), record.name);
            EXPECT_EQ(text(node, "driverLib"), record.value.driverLib);
            EXPECT_TRUE(record.value.driverLib.endsWith(entry.value("linkDriver").toString()));
        }
    }
}

// So many take no time worth mentioning, as long as none is looked for among all of them.
TEST(ProjectTree, HoldsAHundredThousandVariables)
{
    constexpr int count = 100'000;
    Project project = readValid();
    project.variables.assign(count, project.variables.at(0));
    for (int i = 0; i < count; ++i)
        project.variables[static_cast<std::size_t>(i)].name = QStringLiteral("v%1").arg(i);
    const ProjectTree tree(project);
    object *list = object_get_child(tree.root(), "macroVarList");
    EXPECT_EQ(number(list, "number"), count);
    int found = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray name = "var" + QByteArray::number(i);
        found += text(list, name.constData()).startsWith(QStringLiteral("v%1,").arg(i)) ? 1 : 0;
    }
    EXPECT_EQ(found, count);
}
