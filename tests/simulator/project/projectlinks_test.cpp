#include "simulator/project/projectlinks.h"

#include "tests/simulator/project/validproject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using panelkit::simulator::LinkRecord;
using panelkit::simulator::linkRecords;
using panelkit::simulator::linksJson;
using panelkit::simulator::Project;
using panelkit::testing::readValid;

TEST(ProjectLinks, BeginWithTheInternalStorage)
{
    const std::vector<LinkRecord> records = linkRecords(Project());
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].name, QStringLiteral("Internal storage area"));
    EXPECT_EQ(records[0].value.id, 0);
    EXPECT_EQ(records[0].value.station, -1);
    EXPECT_EQ(records[0].value.addmore, 0);
    EXPECT_TRUE(records[0].value.portName.isEmpty());
}

TEST(ProjectLinks, CarryAnEthernetLink)
{
    const std::vector<LinkRecord> records = linkRecords(readValid());
    ASSERT_EQ(records.size(), 5u);
    EXPECT_EQ(records[1].name, QStringLiteral("Press"));
    const LinkValue &value = records[1].value;
    EXPECT_EQ(value.id, 1);
    EXPECT_EQ(value.portName, QStringLiteral("Ethernet 2"));
    EXPECT_EQ(value.driverLib, QStringLiteral("drivers/Modbus"));
    EXPECT_EQ(value.ip1, 192);
    EXPECT_EQ(value.ip2, 168);
    EXPECT_EQ(value.ip3, 1);
    EXPECT_EQ(value.ip4, 10);
    EXPECT_EQ(value.port, 1502);
    EXPECT_EQ(value.baud, 0);
    EXPECT_EQ(value.dataBits, 0);
    EXPECT_EQ(value.check, 0);
    EXPECT_EQ(value.stopBits, 0);
    EXPECT_EQ(value.station, 7);
    EXPECT_EQ(value.interval, 100);
    EXPECT_EQ(value.timeout, 900);
    EXPECT_EQ(value.retry, 4);
    EXPECT_EQ(value.addmore, 0);
    EXPECT_EQ(value.addrInterval, 16);
}

TEST(ProjectLinks, CarryASerialLink)
{
    const LinkRecord record = linkRecords(readValid()).at(3);
    EXPECT_EQ(record.name, QStringLiteral("Waage"));
    EXPECT_EQ(record.value.id, 3);
    EXPECT_EQ(record.value.portName, QStringLiteral("COM2"));
    EXPECT_EQ(record.value.ip1, 0);
    EXPECT_EQ(record.value.port, 0);
    EXPECT_EQ(record.value.baud, 38400);
    EXPECT_EQ(record.value.dataBits, 7);
    EXPECT_EQ(record.value.check, 1);
    EXPECT_EQ(record.value.stopBits, 2);
}

TEST(ProjectLinks, MarkALinkOfManyStations)
{
    EXPECT_EQ(linkRecords(readValid()).at(2).value.addmore, 1);
}

TEST(ProjectLinks, WriteTheLinkListAsTheLookupReadsIt)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(linksJson(readValid()), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError);
    const QByteArray expected = R"({"links": [
        {"linkName": "Press", "linkDriver": "Modbus"},
        {"linkName": "Ovens", "linkDriver": "Modbus"},
        {"linkName": "Waage", "linkDriver": "Scale-2.x_y"},
        {"linkName": "Spare", "linkDriver": "Scale"}]})";
    EXPECT_EQ(document.toJson(), QJsonDocument::fromJson(expected).toJson());
}

TEST(ProjectLinks, WriteTheLinkListOfTheIotRuntimeUnderItsOwnKeys)
{
    const QByteArray expected = R"({"data": [
        {"link_name": "Press", "link_driver": "Modbus"},
        {"link_name": "Ovens", "link_driver": "Modbus"},
        {"link_name": "Waage", "link_driver": "Scale-2.x_y"},
        {"link_name": "Spare", "link_driver": "Scale"}]})";
    EXPECT_EQ(QJsonDocument::fromJson(iotLinksJson(readValid())).toJson(),
              QJsonDocument::fromJson(expected).toJson());
}

TEST(ProjectLinks, WriteAnEmptyListForAProjectWithoutLinks)
{
    const QJsonObject root = QJsonDocument::fromJson(linksJson(Project())).object();
    EXPECT_TRUE(root.value(QStringLiteral("links")).isArray());
    EXPECT_TRUE(root.value(QStringLiteral("links")).toArray().isEmpty());
}
