// What it costs to check an address as an author types it, and to look up its index.

#include "bench/link/flatobjects.h"
#include "bench/link/plainlink.h"
#include "bench/support/comparison.h"
#include "link/address_check.h"
#include "link/addressindex.h"
#include "link/driverfile.h"
#include "runtime/systemroot.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

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

constexpr int askedLink = 9;

// A project of `linkCount` links with 16 blocks each, and its checkers. Only the link that is asked has a
// driver: in a process that holds a thousand libraries the system's loader is slower, and lookups are
// measured too.
class Project
{
public:
    explicit Project(std::size_t linkCount) : m_links(linkCount)
    {
        tools_setSystemRoot(m_root.path());
        QDir().mkpath(tools_driverFolder());
        for (std::size_t i = 0; i < linkCount; ++i) {
            const int number = static_cast<int>(i) + 1;
            m_links[i].fields = {QString::number(number),
                                 text("0"),
                                 text("X,Y,M,S,T,C,D,R,TN,CN,SM,SD,W,B,ZR,F"),
                                 text("3"),
                                 text("Line %1").arg(number),
                                 text("drivers/Bench")};
            m_links[i].next = i + 1 < linkCount ? &m_links[i + 1] : nullptr;
        }
        copyDriver(tools_driverFilePath(text("Bench"), askedLink));
        m_tree.firstChild = &m_links.front();
        checker = std::make_unique<address_check>(&m_tree);
        plainChecker = std::make_unique<PlainChecker>(&m_tree);
    }

    std::unique_ptr<address_check> checker;
    std::unique_ptr<PlainChecker> plainChecker;

private:
    QTemporaryDir m_root;
    object m_tree;
    std::vector<object> m_links;
};

// What a check answers, and the item that it writes to.
struct Outcome
{
    int verdict = 1;
    object item;

    bool operator==(const Outcome &other) const
    {
        return verdict == other.verdict &&
               std::memcmp(&item.address, &other.item.address, sizeof(item.address)) == 0;
    }
};

template <typename Checker>
class Check
{
public:
    Check(const std::unique_ptr<Checker> &checker, const QString &linkName, const QString &block)
        : m_checker(checker.get()),
          m_linkName(linkName),
          m_block(block)
    {
    }

    void operator()(Outcome &outcome)
    {
        outcome.verdict = m_checker->checkAddress(m_linkName, m_block, m_number, &outcome.item, 0, 1, 0);
    }

private:
    Checker *m_checker;
    QString m_linkName;
    QString m_block;
    QString m_number = text("1200");
};

void compareChecks(const Project &project, int linkCount)
{
    const struct
    {
        const char *name, *block;
        double ratio, allocations;
    } jobs[] = {
        {"internal address", "LW", 3, 0},
        {"PLC address", "9/3#D", 4.5, 1},
        {"rejected address", "9/3#Q", 4.5, 0},
    };
    const QString linkName = text("Line %1").arg(linkCount / 2);
    for (const auto &job : jobs) {
        const std::string name = std::string(job.name) + ", " + std::to_string(linkCount) + " links";
        compare<Outcome>({name, job.ratio, job.allocations},
                         Check<PlainChecker>(project.plainChecker, linkName, text(job.block)),
                         Check<address_check>(project.checker, linkName, text(job.block)));
    }
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
    const Project few(16);
    const Project many(1000);
    compareChecks(few, 16);
    compareChecks(many, 1000);

    const DriverFolder folder16(16);
    const DriverFolder folder200(200);
    writeLinkList(folder16, {folder16.wanted(), folder200.wanted()});
    compare<int>({"driver lookup, 16 files", 1.8}, Lookup(plainAddressIndex, folder16),
                 Lookup(ourAddressIndex, folder16));
    compare<int>({"driver lookup, 200 files", 3.5}, Lookup(plainAddressIndex, folder200),
                 Lookup(ourAddressIndex, folder200));
    return run(argc, argv);
}
