// A project with as many displays as a test wants.
#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace panelkit::testing {

// The file of a project whose items show the first holding registers of a PLC; it goes with the program.
inline QString projectOfManyItems(int count)
{
    static const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("%1.json").arg(count));
    QJsonArray items;
    for (int i = 0; i < count; ++i)
        items << QJsonObject{{QStringLiteral("name"), QStringLiteral("Item %1").arg(i + 1)},
                             {QStringLiteral("Link"), QStringLiteral("PLC")},
                             {QStringLiteral("Block"), QStringLiteral("4x")},
                             {QStringLiteral("No"), QString::number(i + 1)},
                             {QStringLiteral("index"), i},
                             {QStringLiteral("type"), QStringLiteral("uint16")},
                             {QStringLiteral("digits"), 5},
                             {QStringLiteral("decimals"), i % 3}};
    const QJsonObject link{{QStringLiteral("number"), 1},
                           {QStringLiteral("name"), QStringLiteral("PLC")},
                           {QStringLiteral("driver"), QStringLiteral("drivers/Modbus")},
                           {QStringLiteral("blocks"), QJsonArray{QStringLiteral("4x")}},
                           {QStringLiteral("port"), QStringLiteral("Ethernet 1")},
                           {QStringLiteral("ip"), QStringLiteral("127.0.0.1")},
                           {QStringLiteral("tcpPort"), 502},
                           {QStringLiteral("interval"), 50},
                           {QStringLiteral("timeout"), 20'000}};
    QFile out(file);
    if (out.open(QIODevice::WriteOnly))
        out.write(QJsonDocument(QJsonObject{{QStringLiteral("name"), QStringLiteral("Many items")},
                                            {QStringLiteral("screenWidth"), 800},
                                            {QStringLiteral("screenHeight"), 480},
                                            {QStringLiteral("links"), QJsonArray{link}},
                                            {QStringLiteral("items"), items}})
                      .toJson());
    return file;
}

} // namespace panelkit::testing
