// The drivers of an address checker: what is loaded, asked and unloaded.

#include "link/address_check.h"

#include "link/driverfile.h"
#include "tests/link/driverpanel.h"

#include <QLibrary>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class CheckerDrivers : public panelkit::testing::DriverPanel
{
protected:
    int check(address_check &checker, const char *block, const char *number, int addrType = 0, int length = 1,
              int driverArg = 0)
    {
        return checker.checkAddress(text("Internal storage area"), text(block), text(number), project.item(),
                                    addrType, length, driverArg);
    }

    panelkit::testing::Project project;
    const QString untouched = text("-|-|-|0|0|0");
};

TEST(LinkInfo, IsThatOfNoLinkAtStart)
{
    const linkInfo_t link;
    EXPECT_EQ(link.node, nullptr);
    EXPECT_EQ(link.linkID, -1);
    EXPECT_EQ(link.addressMode, 0);
    EXPECT_EQ(link.plcID, 0);
    EXPECT_EQ(link.library, nullptr);
    EXPECT_EQ(link.checkAddr, nullptr);
}

TEST_F(CheckerDrivers, AreLoadedOncePerLinkAndUnloadedInTheOrderOfNumbers)
{
    for (const char *file : {"libtest_3.so", "libtest_-1.so", "libtest_10.so"})
        install(text(file));
    project.addLink(3, text("PLC3"), text("drivers/test"));
    project.addLink(-1, text("PLC-1"), text("drivers/test"));
    project.addLink(10, text("PLC10"), text("drivers/test"));
    {
        address_check checker(project.root());
        EXPECT_EQ(driverLog(), QStringList() << text("load libtest_3.so") << text("load libtest_-1.so")
                                             << text("load libtest_10.so"));
        EXPECT_EQ(check(checker, "3/D", "1"), 0);
        EXPECT_EQ(check(checker, "10/D", "1"), 0);
        EXPECT_EQ(driverLog(), QStringList()
                                   << text("checkAddr D 1 0 0 1 0") << text("checkAddr D 1 0 0 1 0"));
    }
    EXPECT_EQ(driverLog(), QStringList() << text("unload libtest_-1.so") << text("unload libtest_3.so")
                                         << text("unload libtest_10.so"));
}

TEST_F(CheckerDrivers, AreFoundBehindTheFirstSlashOfTheReference)
{
    install(text("libabc_0.so"));
    install(text("libModbusRTU_2.so"));
    install(text("libb/c_4.so"));
    project.addLink(0, text("PLC0"), text("abc"));
    project.addLink(2, text("PLC2"), text("drivers/ModbusRTU"));
    project.addLink(4, text("PLC4"), text("a/b/c"));
    address_check checker(project.root());
    EXPECT_EQ(driverLog(), QStringList() << text("load libabc_0.so") << text("load libModbusRTU_2.so")
                                         << text("load c_4.so"));
}

TEST_F(CheckerDrivers, GetTheArgumentsAsTheyCame)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    address_check checker(project.root());
    driverLog();
    EXPECT_EQ(check(checker, "1/3#D", "44", -1, 16, -7), 0);
    EXPECT_EQ(driverLog(), QStringList() << text("checkAddr D 44 0 -1 16 -7"));
    EXPECT_EQ(project.written(), text("PLC1|D|44|44|9|16"));
}

TEST_F(CheckerDrivers, MayRewriteTheirOwnCopiesOnly)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    address_check checker(project.root());
    const QString block = text("REWRITE");
    const QString number = text("5");
    EXPECT_EQ(checker.checkAddress(text("PLC1"), block, number, project.item(), 0, 2, 0), 0);
    EXPECT_EQ(project.written(), text("PLC1|REWRITE|5|77|9|2"));
    EXPECT_EQ(block, text("REWRITE"));
    EXPECT_EQ(number, text("5"));
}

TEST_F(CheckerDrivers, ThatLeaveTheIndexAloneGive0)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    address_check checker(project.root());
    EXPECT_EQ(check(checker, "KEEP", "123"), 0);
    EXPECT_EQ(project.written(), text("PLC1|KEEP|123|0|9|1"));
}

TEST_F(CheckerDrivers, RefuseByCodesOfWhichSomePassWithoutBeingWritten)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    address_check checker(project.root());
    const int verdicts[] = {-1, -1, -1, -1, 0, 0, 0, 0, 0, -1, -1, -1, 0, -1, 0, -1, 0, 0, 0, 0};
    for (int code = 1; code <= 20; ++code) {
        SCOPED_TRACE(code);
        const QByteArray number = QByteArray::number(code);
        EXPECT_EQ(check(checker, "CODE", number.constData()), verdicts[code - 1]);
        EXPECT_EQ(project.written(), untouched);
    }
}

TEST_F(CheckerDrivers, AreNotAskedWithoutATarget)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    address_check checker(project.root());
    driverLog();
    EXPECT_EQ(checker.checkAddress(text("PLC1"), text("D"), text("1"), nullptr, 0, 1, 0), -1);
    EXPECT_EQ(driverLog(), QStringList());
}

TEST_F(CheckerDrivers, ThatCannotCheckRejectEveryBlock)
{
    install(text("libnocheck_1.so"), "nocheck");
    writeFile(text("/usr/tesk42/project/driver/libtext_2.so"), "a driver this is not\n");
    writeFile(text("/usr/tesk42/project/driver/libempty_3.so"), QByteArray());
    project.addLink(1, text("no entry point"), text("nocheck"));
    project.addLink(2, text("no library"), text("text"));
    project.addLink(3, text("empty"), text("empty"));
    project.addLink(4, text("missing"), text("missing"));
    install(text("libneeds_6.so"), "needsabsent");
    project.addLink(5, text("no reference"), QString());
    project.addLink(6, text("needs a library"), text("needs"));
    address_check checker(project.root());
    EXPECT_EQ(driverLog(), QStringList() << text("load libnocheck_1.so"));
    for (const char *block : {"1/D", "1/CODE", "2/D", "2/KEEP", "3/D", "4/D", "5/D", "6/D"})
        EXPECT_EQ(check(checker, block, "1"), -1) << block;
    EXPECT_EQ(project.written(), untouched);
}

TEST_F(CheckerDrivers, CutOffAtAnyLengthAreNotLoaded)
{
    const QByteArray whole = driverBytes();
    const QString path = text("/usr/tesk42/project/driver/libtest_1.so");
    project.addLink(1, text("PLC1"), text("test"));
    int shortestLoaded = static_cast<int>(whole.size());
    for (int length = shortestLoaded; length >= 0; length -= length > 4096 ? 499 : 37) {
        SCOPED_TRACE(length);
        writeFile(path, whole.left(length));
        address_check checker(project.root());
        const bool wasLoaded = driverLog().contains(text("load libtest_1.so"));
        EXPECT_EQ(check(checker, "D", "1"), wasLoaded ? 0 : -1);
        if (wasLoaded) {
            EXPECT_LE(shortestLoaded - length, 499) << "a shorter file was loaded than one that was not";
            shortestLoaded = length;
        }
    }
    EXPECT_LT(shortestLoaded, whole.size()) << "the section table at the end is not needed";
    EXPECT_GT(shortestLoaded, whole.size() / 4);
}

TEST_F(CheckerDrivers, ForAnotherProcessorAreNotLoaded)
{
    QByteArray foreign = driverBytes();
    foreign[18] = char(0x55); // e_machine
    foreign[19] = char(0x55);
    writeFile(text("/usr/tesk42/project/driver/libtest_1.so"), foreign);
    project.addLink(1, text("PLC1"), text("test"));
    address_check checker(project.root());
    EXPECT_EQ(driverLog(), QStringList());
    EXPECT_EQ(check(checker, "D", "1"), -1);
}

TEST_F(CheckerDrivers, ServeSeveralCheckersAtOnce)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    address_check first(project.root());
    {
        address_check second(project.root());
        EXPECT_EQ(check(second, "D", "1"), 0);
    }
    EXPECT_EQ(driverLog().filter(text("load")), QStringList() << text("load libtest_1.so"));
    EXPECT_EQ(check(first, "D", "2"), 0);
    EXPECT_EQ(project.written(), text("PLC1|D|2|2|9|1"));
}

TEST_F(CheckerDrivers, LeaveAHostsOwnLibraryLoaded)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    for (const bool hostIsFirst : {true, false}) {
        SCOPED_TRACE(hostIsFirst ? "loaded before the checker's" : "loaded after the checker's");
        QLibrary host(tools_driverFilePath(text("test"), 1));
        if (hostIsFirst)
            host.load();
        {
            address_check checker(project.root());
            host.load();
            EXPECT_EQ(check(checker, "D", "1"), 0);
        }
        EXPECT_EQ(driverLog().filter(text("load")), QStringList() << text("load libtest_1.so"));
        ASSERT_TRUE(host.isLoaded());
        EXPECT_EQ(indexOfD31(host), 31);
        driverLog();
        EXPECT_TRUE(host.unload());
        EXPECT_EQ(driverLog(), QStringList() << text("unload libtest_1.so"));
    }
}

TEST_F(CheckerDrivers, StayWhenAHostUnloadsItsOwnLibrary)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("PLC1"), text("test"));
    QLibrary host(tools_driverFilePath(text("test"), 1));
    host.load();
    {
        address_check checker(project.root());
        host.unload();
        EXPECT_EQ(driverLog(), QStringList() << text("load libtest_1.so"));
        EXPECT_EQ(check(checker, "D", "7"), 0);
        EXPECT_EQ(project.written(), text("PLC1|D|7|7|9|1"));
        driverLog();
    }
    EXPECT_EQ(driverLog(), QStringList() << text("unload libtest_1.so"));
}
