// The driver names of links are read once per process, so every body here runs in a process of its own.

#include "link/addressindex.h"

#include "link/address_check.h"
#include "link/linkinfo.h"
#include "tests/link/driverpanel.h"

#include <QDir>
#include <QFile>
#include <QLibrary>

#include <cstdlib>
#include <functional>
#include <limits>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString text(const char *latin1)
{
    return QString::fromUtf8(latin1);
}

// What `body` finds wrong is printed by the process that it runs in, and fails here by its exit code.
void inOwnProcess(const std::function<void()> &body)
{
    EXPECT_EXIT(
        {
            body();
            std::exit(::testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
        },
        ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace

class AddressIndex : public panelkit::testing::DriverPanel
{
protected:
    void writeProjectList(const char *json) { writeFile(text("/usr/tesk42/project/cache/links.json"), json); }

    void writeIotList(const char *json)
    {
        writeFile(text("/usr/tesk42/iot_work/iotRunTime/LinkConfiguration.json"), json);
    }

    static int lookUp(const char *link, const char *addrText, bool useProjectLinks = true,
                      const char *regName = "D")
    {
        return tools_getAddrIndexFromDriverName(text(link), text(regName), text(addrText), useProjectLinks);
    }

    // As the folder itself yields its files. The toolkit reads it, since a plain readdir stops on a 32-bit
    // panel at the first entry whose number is too long for it.
    QString firstFileNamed(const QString &part) const
    {
        for (const QString &name : QDir(folder).entryList(QDir::Files, QDir::Unsorted))
            if (name.toLower().contains(part))
                return name;
        return QString();
    }

    const QString folder = root.filePath(text("usr/tesk42/project/driver/"));
};

TEST_F(AddressIndex, IsTheNumberWithoutAnyLinkList)
{
    const struct
    {
        const char *addrText;
        int index;
    } rows[] = {
        {"12", 12},
        {"-12", -12},
        {"abc", 0},
        {"", 0},
        {"12a", 0},
        {"0x10", 0},
        {"4294967296", 0},
        {"10.5", 165},
        {"3.x", 48},
        {"x.3", 3},
        {"1.2.3", 18},
        {"1..3", 16},
        {".", 0},
        {".7", 7},
        {"7.", 112},
        {"-1.5", -11},
        {"1.16", 32},
        {"4294967296.3", 3},
        {"134217727.15", 2147483647},
        {"134217728.0", std::numeric_limits<int>::max()},
        {"2147483647.2147483647", std::numeric_limits<int>::max()},
        {"-2147483648.0", std::numeric_limits<int>::min()},
    };
    inOwnProcess([&] {
        for (const auto &row : rows) {
            EXPECT_EQ(lookUp("PLC1", row.addrText, true), row.index) << row.addrText;
            EXPECT_EQ(lookUp("PLC1", row.addrText, false), row.index) << row.addrText;
        }
    });
}

TEST_F(AddressIndex, ComesFromTheDriverOfTheLink)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "ModbusTCP"}]})");
    install(text("libmodbustcp_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "44", true, "4x"), 44);
        EXPECT_EQ(driverLog(), QStringList() << text("load libmodbustcp_1.so") << text("describe 4x 0")
                                             << text("validity 4x 44 -1 mode 1 width 1")
                                             << text("unload libmodbustcp_1.so"));
    });
}

TEST_F(AddressIndex, LoadsAndUnloadsTheDriverForEveryCall)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(lookUp("PLC1", "5"), 5);
        EXPECT_EQ(driverLog().filter(text("load libtest")),
                  QStringList() << text("load libtest_1.so") << text("unload libtest_1.so")
                                << text("load libtest_1.so") << text("unload libtest_1.so")
                                << text("load libtest_1.so") << text("unload libtest_1.so"));
    });
}

TEST_F(AddressIndex, IsMinus1WhenTheDriverLeavesItAlone)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] { EXPECT_EQ(lookUp("PLC1", "keep"), -1); });
}

TEST_F(AddressIndex, IsMinus1WhenTheDriverLacksAnEntryPoint)
{
    writeProjectList(R"({"links": [{"linkName": "A", "linkDriver": "first"},
                                   {"linkName": "B", "linkDriver": "second"},
                                   {"linkName": "C", "linkDriver": "third"}]})");
    install(text("first.so"), "nodescription");
    install(text("second.so"), "novalidity");
    install(text("third.so"), "nocheck");
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("A", "5"), -1);
        EXPECT_EQ(driverLog(), QStringList() << text("load first.so") << text("unload first.so"));
        EXPECT_EQ(lookUp("B", "5"), -1);
        EXPECT_EQ(driverLog(), QStringList() << text("load second.so") << text("unload second.so"));
        EXPECT_EQ(lookUp("C", "5"), 5) << "the checker's entry point is not needed here";
    });
}

TEST_F(AddressIndex, IsMinus1WhenTheFileIsNoDriver)
{
    writeProjectList(
        R"({"links": [{"linkName": "A", "linkDriver": "text"}, {"linkName": "B", "linkDriver": "cut"},
                                   {"linkName": "C", "linkDriver": "foreign"}]})");
    const QString driverFolder = text("/usr/tesk42/project/driver/");
    writeFile(driverFolder + text("text.so"), "a driver this is not\n");
    writeFile(driverFolder + text("cut.so"), driverBytes().left(9000));
    QByteArray foreign = driverBytes();
    foreign[18] = char(0x55); // e_machine
    foreign[19] = char(0x55);
    writeFile(driverFolder + text("foreign.so"), foreign);
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("A", "5"), -1);
        EXPECT_EQ(lookUp("B", "5"), -1);
        EXPECT_EQ(lookUp("C", "5"), -1);
        EXPECT_EQ(driverLog(), QStringList());
    });
}

TEST_F(AddressIndex, OfADriverWithoutAFileIsTheNumber)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libother_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "7"), 7);
        EXPECT_EQ(lookUp("PLC1", "2.1"), 33);
        EXPECT_EQ(driverLog(), QStringList());
    });
}

TEST_F(AddressIndex, OfALinkWithoutADriverIsTheNumber)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "7"), 7);
        EXPECT_EQ(driverLog(), QStringList());
    });
}

TEST_F(AddressIndex, TellsTheDriverTheWidthOfADescriptionOf5Entries)
{
    const struct
    {
        const char *regName, *call;
    } rows[] = {
        {"5:16", "validity 5:16 3 -1 mode 2 width 16"}, {"5:8", "validity 5:8 3 -1 mode 2 width 8"},
        {"5:2", "validity 5:2 3 -1 mode 2 width 2"},    {"5:1", "validity 5:1 3 -1 mode 1 width 1"},
        {"5:0", "validity 5:0 3 -1 mode 1 width 0"},    {"5:-4", "validity 5:-4 3 -1 mode 1 width -4"},
        {"5:x", "validity 5:x 3 -1 mode 1 width 0"},    {"4:16", "validity 4:16 3 -1 mode 1 width 1"},
        {"6:16", "validity 6:16 3 -1 mode 1 width 1"},  {"0:16", "validity 0:16 3 -1 mode 1 width 1"},
    };
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        for (const auto &row : rows) {
            lookUp("PLC1", "3", true, row.regName);
            EXPECT_EQ(driverLog().filter(text("validity")), QStringList() << text(row.call));
        }
    });
}

TEST_F(AddressIndex, ReadsTheProjectsListOnceWhateverIsAskedLater)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    writeIotList(R"({"data": [{"link_name": "PLC2", "link_driver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "keep", true), -1);
        EXPECT_EQ(lookUp("PLC1", "keep", false), -1);
        EXPECT_EQ(lookUp("PLC2", "7", false), 7);
        EXPECT_EQ(lookUp("PLC2", "keep", false), 0) << "known to the other list only";
        writeProjectList(R"({"links": [{"linkName": "PLC2", "linkDriver": "test"}]})");
        EXPECT_EQ(lookUp("PLC2", "keep", true), 0) << "a list once read stays";
        EXPECT_EQ(lookUp("PLC1", "keep", true), -1);
    });
}

TEST_F(AddressIndex, ReadsTheIotRuntimesListWhenAskedForIt)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    writeIotList(R"({"data": [{"link_name": "PLC2", "link_driver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC2", "keep", false), -1);
        EXPECT_EQ(lookUp("PLC1", "keep", true), 0);
    });
}

TEST_F(AddressIndex, ReadsTheIotRuntimesListOnABoxInEveryCase)
{
    writeFile(text("/usr/tesk42/config.ini"), "MODEL=Keld\n");
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    writeIotList(R"({"data": [{"link_name": "PLC2", "link_driver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC2", "keep", true), -1);
        EXPECT_EQ(lookUp("PLC1", "keep", true), 0);
    });
}

TEST_F(AddressIndex, ReadsTheProjectsListOnAPanelThatHasTheIotRuntime)
{
    writeFile(text("/usr/tesk42/config.ini"), "MODEL=W10\n");
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] { EXPECT_EQ(lookUp("PLC1", "keep", true), -1); });
}

TEST_F(AddressIndex, ReadsAgainWhileNoListHasAnElement)
{
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "keep"), 0);
        writeProjectList("no list");
        EXPECT_EQ(lookUp("PLC1", "keep"), 0);
        writeProjectList(R"({"links": []})");
        EXPECT_EQ(lookUp("PLC1", "keep"), 0);
        writeIotList(R"({"data": [{"link_name": "PLC2", "link_driver": "test"}]})");
        EXPECT_EQ(lookUp("PLC2", "keep", false), -1);
        writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
        EXPECT_EQ(lookUp("PLC1", "keep"), 0);
    });
}

TEST_F(AddressIndex, TakesTheLastElementOfAName)
{
    writeProjectList(
        R"({"links": [{"linkName": "A", "linkDriver": "none"}, {"linkName": "A", "linkDriver": "TEST"},
                                   {"linkName": "B", "linkDriver": "test"}, {"linkName": "B", "linkDriver": ""}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("A", "keep"), -1);
        EXPECT_EQ(lookUp("B", "keep"), 0);
        EXPECT_EQ(lookUp("a", "keep"), 0) << "names are compared with their case";
    });
}

TEST_F(AddressIndex, EndsTheReadingWithAnElementThatIsNoLink)
{
    writeProjectList(R"({"links": [7]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "keep"), 0);
        writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
        EXPECT_EQ(lookUp("PLC1", "keep"), 0);
    });
}

TEST_F(AddressIndex, FindsTheFileInTheFoldersOwnOrder)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "abc"}]})");
    for (const char *file : {"abcdef.so", "ABC.so", "xAbC.so", "zz-abc.so", "other.so", "0abc.so"})
        install(text(file));
    for (int i = 1; i <= 100 && firstFileNamed(text("abc")) == text("0abc.so"); ++i)
        install(text("%1abc.so").arg(i));
    const QString first = firstFileNamed(text("abc"));
    ASSERT_NE(first, text("0abc.so")) << "the first by name must not be the folder's first";
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "5"), 5);
        EXPECT_EQ(driverLog().value(0), text("load ") + first);
    });
}

TEST_F(AddressIndex, FindsHiddenFilesButNoLinksAndFolders)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "abc"},
                                   {"linkName": "PLC2", "linkDriver": "hid"}]})");
    install(text("real.so"));
    install(text(".hidden.so"));
    ASSERT_TRUE(QFile::link(folder + text("real.so"), folder + text("abc.so")));
    ASSERT_TRUE(QDir().mkpath(folder + text("abc.d")));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "9"), 9);
        EXPECT_EQ(driverLog(), QStringList());
        EXPECT_EQ(lookUp("PLC2", "9"), 9);
        EXPECT_EQ(driverLog().value(0), text("load .hidden.so"));
    });
}

TEST_F(AddressIndex, ComparesTheWholeFileNameAndNothingElseLiterally)
{
    writeProjectList(
        R"({"links": [{"linkName": "star", "linkDriver": "l*"}, {"linkName": "any", "linkDriver": "?"},
                                   {"linkName": "path", "linkDriver": "driver"},
                                   {"linkName": "end", "linkDriver": "_1.so"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("star", "keep"), 0);
        EXPECT_EQ(lookUp("any", "keep"), 0);
        EXPECT_EQ(lookUp("path", "keep"), 0);
        EXPECT_EQ(lookUp("end", "keep"), -1);
    });
}

TEST_F(AddressIndex, TriesNoSecondFile)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "abc"}]})");
    install(text("abc1.so"));
    install(text("abc2.so"));
    writeFile(text("/usr/tesk42/project/driver/") + firstFileNamed(text("abc")), "no driver");
    inOwnProcess([&] {
        EXPECT_EQ(lookUp("PLC1", "5"), -1);
        EXPECT_EQ(driverLog(), QStringList());
    });
}

TEST_F(AddressIndex, LeavesACheckerTheDriverThatItHolds)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    panelkit::testing::Project project;
    project.addLink(1, text("PLC1"), text("test"));
    inOwnProcess([&] {
        {
            address_check checker(project.root());
            driverLog();
            EXPECT_EQ(lookUp("PLC1", "5"), 5);
            EXPECT_EQ(driverLog().filter(text("load")), QStringList());
            EXPECT_EQ(checker.checkAddress(text("PLC1"), text("D"), text("6"), project.item(), 0, 1, 0), 0);
            EXPECT_EQ(lookUp("PLC1", "7"), 7);
            EXPECT_EQ(driverLog().filter(text("load")), QStringList());
        }
        EXPECT_EQ(driverLog(), QStringList() << text("unload libtest_1.so"));
    });
}

TEST_F(AddressIndex, LeavesAHostsOwnLibraryLoaded)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    inOwnProcess([&] {
        QLibrary host(folder + text("libtest_1.so"));
        ASSERT_TRUE(host.load());
        EXPECT_EQ(lookUp("PLC1", "5"), 5);
        EXPECT_EQ(lookUp("PLC1", "6"), 6);
        EXPECT_EQ(driverLog().filter(text("load")), QStringList() << text("load libtest_1.so"));
        ASSERT_TRUE(host.isLoaded());
        EXPECT_EQ(indexOfD31(host), 31);
    });
}

TEST_F(AddressIndex, LeavesAnotherThreadTheDriverThatItAsks)
{
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    install(text("libtest_1.so"));
    const QByteArray gate = QFile::encodeName(root.filePath(text("gate")));
    ASSERT_EQ(mkfifo(gate.constData(), 0600), 0);
    inOwnProcess([&] {
        ASSERT_EQ(lookUp("PLC1", "5"), 5); // reads the list, which later calls only look into
        driverLog();
        int index = 0;
        std::thread other([&] { index = lookUp("PLC1", gate.constData()); });
        const int gateKeeper = open(gate.constData(), O_WRONLY | O_CLOEXEC); // when the driver is at the gate
        EXPECT_EQ(lookUp("PLC1", "7"), 7);
        EXPECT_EQ(driverLog().filter(text("load")), QStringList() << text("load libtest_1.so"));
        close(gateKeeper);
        other.join();
        EXPECT_EQ(index, 77);
        EXPECT_EQ(driverLog(), QStringList() << text("unload libtest_1.so"));
    });
}

TEST_F(AddressIndex, IsExplained)
{
    writeProjectList(
        R"({"links": [{"linkName": "good", "linkDriver": "First"}, {"linkName": "half", "linkDriver": "second"},
                                   {"linkName": "text", "linkDriver": "third"}, {"linkName": "gone", "linkDriver": "fourth"},
                                   {"linkName": "refused", "linkDriver": "fifth"}]})");
    install(text("first.so"));
    install(text("second.so"), "novalidity");
    install(text("fifth.so"), "needsabsent");
    writeFile(text("/usr/tesk42/project/driver/third.so"), "a driver this is not\n");
    const auto describe = [](const AddressIndexOrigin &origin) {
        return text("%1 %2 %3 %4 %5 ")
                   .arg(origin.index)
                   .arg(origin.source)
                   .arg(static_cast<int>(origin.fileState))
                   .arg(origin.mode)
                   .arg(origin.width) +
               origin.driver + QLatin1Char(' ') + origin.file;
    };
    const struct
    {
        const char *linkName, *addrText, *expected; // index, source, state, mode, width, driver
        QString file;
    } rows[] = {
        {"good", "7", "7 0 0 2 16 first ", folder + text("first.so")},
        {"good", "keep", "-1 0 0 2 16 first ", folder + text("first.so")},
        {"half", "7", "-1 2 0 0 0 second ", folder + text("second.so")},
        {"text", "7", "-1 1 2 0 0 third ", folder + text("third.so")},
        {"refused", "7", "-1 1 0 0 0 fifth ", folder + text("fifth.so")},
        {"gone", "1.1", "17 4 1 0 0 fourth ", QString()},
        {"other", "1.1", "17 3 1 0 0  ", QString()},
    };
    inOwnProcess([&] {
        for (const auto &row : rows) {
            SCOPED_TRACE(row.linkName);
            EXPECT_EQ(
                describe(tools_explainAddrIndex(text(row.linkName), text("5:16"), text(row.addrText), true)),
                text(row.expected) + row.file);
        }
    });
}

TEST_F(AddressIndex, IsExplainedWithTheListThatWasRead)
{
    writeIotList(R"({"data": [{"link_name": "PLC2", "link_driver": "test"}]})");
    const auto listOf = [](bool useProjectLinks) {
        return tools_explainAddrIndex(text("PLC1"), text("D"), text("1"), useProjectLinks).list;
    };
    inOwnProcess([&] {
        EXPECT_EQ(listOf(true), AddressIndexOrigin::NoList);
        EXPECT_EQ(listOf(false), AddressIndexOrigin::IotList);
        EXPECT_EQ(listOf(true), AddressIndexOrigin::IotList);
    });
    writeProjectList(R"({"links": [{"linkName": "PLC1", "linkDriver": "test"}]})");
    inOwnProcess([&] {
        EXPECT_EQ(listOf(true), AddressIndexOrigin::ProjectList);
        EXPECT_EQ(listOf(false), AddressIndexOrigin::ProjectList);
    });
}
