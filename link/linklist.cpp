#include "link/linklist.h"

#include "platform/qtcompat.h"
#include "runtime/systempath.h"

#include <QByteArray>
#include <QFile>
#include <QVariant>

namespace panelkit {

const LinkListFormat projectLinkList = {"/usr/tesk42/project/cache/links.json", "links", "linkName",
                                        "linkDriver"};
const LinkListFormat iotLinkList = {"/usr/tesk42/iot_work/iotRunTime/LinkConfiguration.json", "data",
                                    "link_name", "link_driver"};

void readLinkList(const QByteArray &json, const LinkListFormat &format, QMap<QString, QString> &drivers)
{
    bool isJson = false;
    const QVariant root = variantFromJson(json, isJson);
    if (!isJson)
        return;
    const QVariant list = root.toMap().value(QLatin1String(format.list));
    if (list.userType() != QMetaType::QVariantList) // a text would be a list of its letters to Qt 6
        return;
    const QVariantList elements = list.toList();
    for (const QVariant &element : elements) {
        const QVariantMap link = element.toMap();
        drivers.insert(link.value(QLatin1String(format.name)).toString(),
                       link.value(QLatin1String(format.driver)).toString().toLower());
    }
}

void readLinkListFile(const LinkListFormat &format, QMap<QString, QString> &drivers)
{
    QFile file(systemPath(format.path));
    if (file.open(QIODevice::ReadOnly))
        readLinkList(file.readAll(), format, drivers);
}

} // namespace panelkit
