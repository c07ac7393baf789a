// The bytes of a JSON link list.

#include "link/linklist.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

// Qt 5.15's parser loses an array or object whose key comes again behind it.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QMap<QString, QString> drivers;
    panelkit::readLinkList(json, panelkit::projectLinkList, drivers);
    panelkit::readLinkList(json, panelkit::iotLinkList, drivers);
    for (const QString &driver : static_cast<const QMap<QString, QString> &>(drivers))
        if (driver != driver.toLower())
            __builtin_trap();
    return 0;
}
