// What it costs to check an address as an author types it.

#include "bench/link/flatobjects.h"
#include "bench/link/plainlink.h"
#include "bench/support/comparison.h"
#include "link/address_check.h"
#include "link/driverfile.h"
#include "runtime/systemroot.h"

#include <QDir>
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

// A project of `linkCount` links with 16 blocks each, the checkers of which have loaded their drivers.
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
            copyDriver(tools_driverFilePath(text("Bench"), number));
        }
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

} // namespace

int main(int argc, char **argv)
{
    const Project few(16);
    const Project many(1000);
    compareChecks(few, 16);
    compareChecks(many, 1000);
    return run(argc, argv);
}
