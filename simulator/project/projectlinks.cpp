#include "simulator/project/projectlinks.h"

#include "simulator/project/project.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace panelkit::simulator {

namespace {

LinkRecord internalStorage()
{
    LinkRecord record;
    record.name = QLatin1String(internalStorageName);
    record.value.station = -1;
    return record;
}

LinkRecord linkRecord(const LinkDefinition &link)
{
    LinkRecord record;
    record.name = link.name;
    LinkValue &value = record.value;
    value.id = link.number;
    value.portName = link.port;
    value.driverLib = link.driver;
    value.ip1 = link.ip[0];
    value.ip2 = link.ip[1];
    value.ip3 = link.ip[2];
    value.ip4 = link.ip[3];
    value.port = link.tcpPort;
    value.baud = link.baud;
    value.dataBits = link.dataBits;
    value.check = static_cast<int>(link.parity);
    value.stopBits = link.stopBits;
    value.station = link.station;
    value.interval = link.interval;
    value.timeout = link.timeout;
    value.retry = link.retry;
    value.addmore = link.manyStations ? 1 : 0;
    value.addrInterval = link.addressGap;
    return record;
}

QByteArray linkList(const Project &project, const char *list, const char *name, const char *driver)
{
    QJsonArray links;
    for (const LinkDefinition &link : project.links)
        links.append(
            QJsonObject{{QLatin1String(name), link.name}, {QLatin1String(driver), link.driverBaseName()}});
    return QJsonDocument(QJsonObject{{QLatin1String(list), links}}).toJson();
}

} // namespace

std::vector<LinkRecord> linkRecords(const Project &project)
{
    std::vector<LinkRecord> records = {internalStorage()};
    for (const LinkDefinition &link : project.links)
        records.push_back(linkRecord(link));
    return records;
}

QByteArray linksJson(const Project &project)
{
    return linkList(project, "links", "linkName", "linkDriver");
}

QByteArray iotLinksJson(const Project &project)
{
    return linkList(project, "data", "link_name", "link_driver");
}

} // namespace panelkit::simulator
