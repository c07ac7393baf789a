// What it costs to look up the index of an address. A program of its own: in a process that holds many
// libraries the system's loader is slower.

#include "bench/link/plainlink.h"
#include "bench/support/comparison.h"
#include "link/addressindex.h"
#include "link/driverfile.h"
#include "runtime/systemroot.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

using namespace panelkit::bench;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

void copyDriver(const QString &path)
{
    if (!QFile::copy(text(PANELKIT_BENCH_DRIVER), path))
        std::fprintf(stderr, "%s cannot be written\n", qPrintable(path));
}

// A driver folder of `fileCount` files; the driver of the link "wanted" is the one in their middle.
class DriverFolder
{
public:
    explicit DriverFolder(int fileCount)
    {
        tools_setSystemRoot(m_root.path());
        QDir().mkpath(tools_driverFolder());
        for (int i = 0; i < fileCount; ++i)
            copyDriver(tools_driverFolder() +
                       text("/libFamily%1X_%2.so").arg(i, 3, 10, QLatin1Char('0')).arg(i));
        QDirIterator files(tools_driverFolder(), QDir::Files);
        for (int i = 0; i <= fileCount / 2; ++i)
            files.next();
        m_wanted = files.fileName();
    }

    QString root() const { return m_root.path(); }
    QString wanted() const { return m_wanted.mid(3, 10); }

private:
    QTemporaryDir m_root;
    QString m_wanted;
};

using LookupFunction = int (*)(QString, QString, QString);

int ourAddressIndex(QString linkName, QString regName, QString addrText)
{
    return tools_getAddrIndexFromDriverName(linkName, regName, addrText, true);
}

class Lookup
{
public:
    Lookup(LookupFunction function, const DriverFolder &folder)
        : m_function(function),
          m_root(folder.root()),
          m_linkName(folder.wanted())
    {
    }

    void operator()(int &index)
    {
        tools_setSystemRoot(m_root);
        index = m_function(m_linkName, m_block, m_address);
    }

private:
    LookupFunction m_function;
    QString m_root;
    QString m_linkName;
    QString m_block = text("D");
    QString m_address = text("1200");
};

// Either way reads the list of links once, from the folder that it is first asked in.
void writeLinkList(const DriverFolder &folder, const QStringList &drivers)
{
    QDir(folder.root()).mkpath(text("usr/tesk42/project/cache"));
    QFile file(folder.root() + text("/usr/tesk42/project/cache/links.json"));
    if (!file.open(QIODevice::WriteOnly))
        return;
    QStringList links;
    for (const QString &driver : drivers)
        links << text("{\"linkName\": \"%1\", \"linkDriver\": \"%1\"}").arg(driver);
    file.write("{\"links\": [" + links.join(text(", ")).toUtf8() + "]}");
}

} // namespace

int main(int argc, char **argv)
{
    const DriverFolder folder16(16);
    const DriverFolder folder200(200);
    writeLinkList(folder16, {folder16.wanted(), folder200.wanted()});
    compare<int>({"driver lookup, 16 files", 1.8}, Lookup(plainAddressIndex, folder16),
                 Lookup(ourAddressIndex, folder16));
    compare<int>({"driver lookup, 200 files", 3.5}, Lookup(plainAddressIndex, folder200),
                 Lookup(ourAddressIndex, folder200));
    return run(argc, argv);
}
