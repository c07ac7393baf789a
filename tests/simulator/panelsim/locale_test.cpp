#include "tests/simulator/panelsim/program.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <clocale>
#include <initializer_list>
#include <utility>
#include <vector>

using panelkit::testing::ProgramRun;
using panelkit::testing::runPanelsim;

namespace {

// A user whose locale writes numbers with a comma. The machine need not have one: the C library takes a
// locale from any folder that LOCPATH names, and of this one the numbers alone are given.
class CommaLocale : public ::testing::Test
{
protected:
    CommaLocale()
    {
        EXPECT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("comma")));
        QFile file(folder.filePath(QStringLiteral("comma/LC_NUMERIC")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        // As localedef writes it: what it is, the number of values, the place of each; then the values.
        for (const quint32 number : {0x20031114U, 6U, 0x20U, 0x22U, 0x24U, 0x28U, 0x2cU, 0x30U})
            file.write(reinterpret_cast<const char *>(&number), sizeof(number));
        file.write(",\0.\0\3\3\0\0", 8); // decimal point, separator of thousands, digits between these
        for (const quint32 character : {quint32(','), quint32('.')})
            file.write(reinterpret_cast<const char *>(&character), sizeof(character));
        file.write("UTF-8", 6);
        file.close();
        set("LC_ALL", QByteArray());
        set("LOCPATH", QFile::encodeName(folder.path()) + ":/usr/lib/locale");
        set("LC_CTYPE", "C.UTF-8");
        set("LC_NUMERIC", "comma");
    }

    ~CommaLocale() override
    {
        for (const auto &[name, value] : m_before)
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

    // What the toolkit does in a program that it is used by.
    static std::string decimalPointOfTheUser()
    {
        const bool isKnown = std::setlocale(LC_ALL, "") != nullptr;
        std::string point = isKnown ? std::localeconv()->decimal_point : "no such locale";
        std::setlocale(LC_ALL, "C");
        return point;
    }

    QTemporaryDir folder;

private:
    // An empty value is one that does not count.
    void set(const char *name, const QByteArray &value)
    {
        m_before.push_back({name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray()});
        qputenv(name, value);
    }

    std::vector<std::pair<const char *, QByteArray>> m_before;
};

} // namespace

TEST_F(CommaLocale, LeavesThePointToAMacro)
{
    ASSERT_EQ(decimalPointOfTheUser(), ",");
    const QString path = folder.filePath(QStringLiteral("project.json"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"json({"name": "X", "screenWidth": 480, "screenHeight": 272, "items": [{"name": "Button",
        "Link": "Internal storage area", "Block": "LW", "No": "1", "index": 0, "type": "uint16", "digits": 5,
        "macroMode": 1, "pressmacro": ["print(1.5, tonumber('2.25'), ('%.3f'):format(0.125))"]}]})json");
    file.close();
    const ProgramRun run = runPanelsim({"macro", path, "--item", "Button", "--run", "press"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("1.5\t2.25\t0.125"))) << run.out.toStdString();
}

TEST_F(CommaLocale, LetsTheSoakJudgeTextsWithAPoint)
{
    ASSERT_EQ(decimalPointOfTheUser(), ",");
    qputenv("ASAN_OPTIONS", "quarantine_size_mb=1:thread_local_quarantine_size_kb=64");
    const ProgramRun run = runPanelsim({"soak", "--seconds", "2", "--seed", "11"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, QString());
}
