// A driver that does as it is told by the texts of a call, and writes down, in the file that the environment
// variable PANELKIT_TEST_DRIVER_LOG names, when it is loaded, called and unloaded.

#include "link/driverinterface.h"
#include "link/linkinfo.h"
#include "platform/export.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

namespace {

void note(const QString &line)
{
    const char *path = std::getenv("PANELKIT_TEST_DRIVER_LOG");
    std::FILE *log = path == nullptr ? nullptr : std::fopen(path, "a");
    if (log == nullptr)
        return;
    std::fputs((line + QLatin1Char('\n')).toUtf8().constData(), log);
    std::fclose(log);
}

const char *fileName()
{
    Dl_info info;
    dladdr(reinterpret_cast<void *>(&note), &info);
    return std::strrchr(info.dli_fname, '/') + 1;
}

struct Presence
{
    Presence() { note(QLatin1String("load ") + QLatin1String(fileName())); }
    ~Presence() { note(QLatin1String("unload ") + QLatin1String(fileName())); }
};

const Presence presence;

} // namespace

#ifndef WITHOUT_CHECK
// The block CODE answers with the code that the number text holds, REWRITE changes both texts and gives index
// 77, KEEP leaves the index alone, any other takes the number as the index.
extern "C" PANELKIT_EXPORT int intf_checkAddr(QString &block, QString &number, int &index, int addrType,
                                              int length, int driverArg)
{
    if (block == QLatin1String("SILENT"))
        return 0;
    note(QLatin1String("checkAddr ") + block + QLatin1Char(' ') + number +
         QString::fromLatin1(" %1 %2 %3 %4").arg(index).arg(addrType).arg(length).arg(driverArg));
    if (block == QLatin1String("CODE"))
        return number.toInt();
    if (block == QLatin1String("REWRITE")) {
        block = QLatin1String("changed");
        number.append(QLatin1String(" changed"));
        index = 77;
    } else if (block != QLatin1String("KEEP")) {
        index = number.toInt();
    }
    return 0;
}
#endif

#ifndef WITHOUT_DESCRIPTION
// The block "5:16" has 5 entries, the fourth of which is "16".
extern "C" PANELKIT_EXPORT int intf_getRegDiscription(QString &regName, QStringList &description)
{
    note(QLatin1String("describe ") + regName + QString::fromLatin1(" %1").arg(description.size()));
    const QStringList asked = regName.split(QLatin1Char(':'));
    for (int i = 0; i < asked.at(0).toInt(); ++i)
        description << (i == 3 ? asked.value(1) : QString::fromLatin1("entry %1").arg(i));
    regName = QLatin1String("changed");
    return 1;
}
#endif

#ifndef WITHOUT_VALIDITY
static void waitAt(const char *pipe)
{
    if (std::FILE *gate = std::fopen(pipe, "r")) {
        std::fgetc(gate);
        std::fclose(gate);
    }
}

// The text "keep" leaves the index alone; the path of a pipe waits until its writer has come and gone, and
// gives 77; any other is the index.
extern "C" PANELKIT_EXPORT int intf_checkAddrValidity(QString &regName, QString &addrText, int &index,
                                                      int mode, int width)
{
    note(QLatin1String("validity ") + regName + QLatin1Char(' ') + addrText +
         QString::fromLatin1(" %1 mode %2 width %3").arg(index).arg(mode).arg(width));
    if (addrText.startsWith(QLatin1Char('/'))) {
        waitAt(addrText.toUtf8().constData());
        index = 77;
    } else if (addrText != QLatin1String("keep")) {
        index = addrText.toInt();
    }
    addrText.clear();
    return 0;
}
#endif
