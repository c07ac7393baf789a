// A project with as many links as a test wants.
#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace panelkit::testing {

// The file of a project without items whose links are numbered from 1 on; it goes with the program.
inline QString projectOfManyLinks(int count)
{
    static const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("%1.json").arg(count));
    QJsonArray links;
    for (int number = 1; number <= count; ++number)
        links << QJsonObject{{QStringLiteral("number"), number},
                             {QStringLiteral("name"), QStringLiteral("PLC %1").arg(number)},
                             {QStringLiteral("driver"), QStringLiteral("drivers/Modbus")},
                             {QStringLiteral("blocks"), QJsonArray{QStringLiteral("4x")}},
                             {QStringLiteral("port"), QStringLiteral("Ethernet 1")},
                             {QStringLiteral("ip"), QStringLiteral("127.0.0.1")},
                             {QStringLiteral("tcpPort"), 502},
                             {QStringLiteral("station"), 1},
                             {QStringLiteral("manyStations"), true},
                             {QStringLiteral("interval"), 50},
                             {QStringLiteral("timeout"), 200}};
    QFile out(file);
    if (out.open(QIODevice::WriteOnly))
        out.write(QJsonDocument(QJsonObject{{QStringLiteral("name"), QStringLiteral("Bottling line")},
                                            {QStringLiteral("screenWidth"), 800},
                                            {QStringLiteral("screenHeight"), 480},
                                            {QStringLiteral("links"), links},
                                            {QStringLiteral("items"), QJsonArray()}})
                      .toJson());
    return file;
}

} // namespace panelkit::testing
