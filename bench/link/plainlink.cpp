#include "bench/link/plainlink.h"

#include "link/driverinterface.h"
#include "platform/device_struct.h"
#include "runtime/systemroot.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QLibrary>
#include <QVariant>

namespace panelkit::bench {

namespace {

int prompt(int code)
{
    switch (code) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 10:
    case 11:
    case 12:
    case 14:
    case 16:
        return -1;
    default:
        return 0;
    }
}

void write(object *target, const char *name, const QString &value)
{
    if (property *field = object_get_property(target, name))
        property_set_value_ustring(field, value.toUtf8().constData());
}

void write(object *target, const char *name, int value)
{
    if (property *field = object_get_property(target, name))
        property_set_value_number(field, value);
}

} // namespace

PlainChecker::PlainChecker(object *root)
{
    m_localBlocks << "LB"
                  << "LW"
                  << "RWI";
    m_linkNames << "Internal storage area";
    object *folder = object_get_child(root, "link");
    for (object *node = object_first_child(folder); node != nullptr; node = object_next(node)) {
        linkInfo_t link;
        link.node = node;
        link.linkID = object_get_property_value_type_int32(node, "linkID", 0);
        link.addressMode = object_get_property_value_type_int32(node, "AddressMode", 0);
        link.blockNames = object_get_property_value_type_string(node, "blockNames", "");
        link.plcID = object_get_property_value_type_string(node, "PLCID", "").toInt();
        link.linkName = object_get_property_value_type_string(node, "linkName", "");
        m_linkNames << link.linkName;
        QString driver = object_get_property_value_type_string(node, "driverLib", "");
        driver = driver.mid(driver.indexOf("/") + 1);
        link.library = new QLibrary(tools_systemRoot() + QString("/usr/tesk42/project/driver/lib") + driver +
                                    "_" + QString::number(link.linkID) + ".so");
        link.library->load();
        if (link.library->isLoaded())
            link.checkAddr = reinterpret_cast<CheckAddrFunction>(link.library->resolve("intf_checkAddr"));
        m_links[link.linkID] = link;
    }
}

PlainChecker::~PlainChecker()
{
    for (const linkInfo_t &link : m_links) {
        link.library->unload();
        delete link.library;
    }
}

int PlainChecker::checkAddress(const QString &linkName, QString block, const QString &number, object *target,
                               int addrType, int length, int driverArg)
{
    if (!m_linkNames.contains(linkName))
        return prompt(10);
    int linkNumber = 1;
    if (block.contains("/")) {
        const QStringList parts = block.split("/");
        bool ok = false;
        linkNumber = parts.first().toInt(&ok, 10);
        if (!ok)
            return prompt(10);
        block = parts.last();
    }
    if (block.contains("#"))
        block = block.split("#").last();
    for (const QString &localBlock : m_localBlocks)
        if (block == localBlock)
            return prompt(checkInternal(target, localBlock, number, addrType, length));

    if (!m_links.contains(linkNumber))
        return prompt(10);
    const linkInfo_t link = m_links.value(linkNumber);
    const QStringList blockNames = link.blockNames.split(",");
    int station = link.plcID;
    if (link.addressMode == 1) {
        bool ok = false;
        station = block.split("#").first().toInt(&ok, 10);
        if (!ok || static_cast<unsigned>(station) > 255)
            return prompt(13);
    }
    for (const QString &name : blockNames)
        if (block == name)
            return prompt(checkExternal(link, target, name, number, addrType, length, driverArg, station));
    return prompt(3);
}

int PlainChecker::checkInternal(object *target, const QString &block, const QString &number, int addrType,
                                int length)
{
    if (addrType == -1 ? block != "LB" : block != "LW" && block != "RWI")
        return 1;
    bool ok = false;
    const int index = number.toInt(&ok, 10);
    if (!ok)
        return 4;
    const qint64 end = qint64(index) + length;
    if (block == "LW" ? static_cast<unsigned>(index) >= 65536 || end > 65537 : index < 0 || end > 65536)
        return 2;
    if (target != nullptr) {
        write(target, "Link", QString("Internal storage area"));
        write(target, "Block", block);
        write(target, "No", number);
        write(target, "index", index);
        write(target, "station", -1);
        write(target, "length", length);
    }
    return 0;
}

int PlainChecker::checkExternal(const linkInfo_t &link, object *target, QString block, QString number,
                                int addrType, int length, int driverArg, int station)
{
    if (target == nullptr || link.checkAddr == nullptr)
        return 3;
    QString driverBlock = block;
    QString driverNumber = number;
    int index = 0;
    const int code = link.checkAddr(driverBlock, driverNumber, index, addrType, length, driverArg);
    if (code != 0)
        return code;
    write(target, "Link", link.linkName);
    write(target, "Block", block);
    write(target, "No", number);
    write(target, "index", index);
    write(target, "station", station);
    write(target, "length", length);
    return 0;
}

int plainAddressIndex(QString linkName, QString regName, QString addrText)
{
    static QMap<QString, QString> drivers;
    if (drivers.isEmpty()) {
        QFile file(tools_systemRoot() + "/usr/tesk42/project/cache/links.json");
        file.open(QIODevice::ReadOnly);
        const QVariantMap root = QJsonDocument::fromJson(file.readAll()).toVariant().toMap();
        for (const QVariant &element : root.value("links").toList()) {
            const QVariantMap link = element.toMap();
            drivers[link.value("linkName").toString()] = link.value("linkDriver").toString().toLower();
        }
    }
    const QString driver = drivers.value(linkName);
    const QDir folder(tools_systemRoot() + "/usr/tesk42/project/driver");
    const QFileInfoList files =
        folder.entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden, QDir::NoSort);
    for (const QFileInfo &file : files) {
        if (!file.fileName().contains(driver, Qt::CaseInsensitive))
            continue;
        int index = -1;
        QLibrary library(file.absoluteFilePath());
        if (library.load()) {
            const auto check =
                reinterpret_cast<CheckAddrValidityFunction>(library.resolve("intf_checkAddrValidity"));
            const auto describe =
                reinterpret_cast<GetRegDiscriptionFunction>(library.resolve("intf_getRegDiscription"));
            if (check != nullptr && describe != nullptr) {
                QString name = regName;
                QStringList description;
                describe(name, description);
                const int width = description.size() == 5 ? description.at(3).toInt() : 1;
                check(regName, addrText, index, width > 1 ? 2 : 1, width);
            }
        }
        library.unload();
        return index;
    }
    return addrText.toInt();
}

} // namespace panelkit::bench
