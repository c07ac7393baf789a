// Two nodes of one link number: the later replaces the earlier, whose loader is dropped as it is, by
// contract. A program of its own, so that the leak checker is told of this loss and of no other.

#include "link/address_check.h"

#include "tests/link/driverpanel.h"

extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions()
{
    return "leak:address_check::address_check\n";
}

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

class ReplacedDriver : public panelkit::testing::DriverPanel
{
protected:
    int check(address_check &checker, const char *linkName, const char *block, const char *number)
    {
        return checker.checkAddress(text(linkName), text(block), text(number), project.item(), 0, 1, 0);
    }

    panelkit::testing::Project project;
};

TEST_F(ReplacedDriver, StaysLoadedBehindTheChecker)
{
    install(text("libold_1.so"));
    install(text("libnew_1.so"));
    project.addLink(1, text("PLC1"), text("old"));
    project.addLink(1, text("PLC1"), text("new"));
    {
        address_check checker(project.root());
        EXPECT_EQ(driverLog(), QStringList() << text("load libold_1.so") << text("load libnew_1.so"));
    }
    EXPECT_EQ(driverLog(), QStringList() << text("unload libnew_1.so"));
}

TEST_F(ReplacedDriver, OfTheSameFileStaysLoadedToo)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("first"), text("x/test"), text("A"));
    project.addLink(1, text("second"), text("y/test"), text("B"));
    {
        address_check checker(project.root());
        EXPECT_EQ(driverLog(), QStringList() << text("load libtest_1.so"));
    }
    EXPECT_EQ(driverLog(), QStringList());
}

TEST_F(ReplacedDriver, LeavesNothingButItsLinkName)
{
    install(text("libtest_1.so"));
    project.addLink(1, text("first"), text("x/test"), text("A"));
    project.addLink(1, text("second"), text("y/test"), text("B"));
    address_check checker(project.root());
    EXPECT_EQ(check(checker, "second", "A", "1"), -1);
    EXPECT_EQ(check(checker, "second", "B", "1"), 0);
    EXPECT_EQ(check(checker, "first", "B", "2"), 0);
    EXPECT_EQ(project.written(), text("second|B|2|2|9|1"));
}
