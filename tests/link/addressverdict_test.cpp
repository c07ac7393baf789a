#include "link/address_check.h"

#include "tests/link/driverpanel.h"

using panelkit::simulator::ObjectTree;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

// "code, reason" and, where a text caused it, "at" with the part of that text.
QString describe(const AddressVerdict &verdict, const QString &linkName, const QString &block,
                 const QString &number)
{
    const QString texts[] = {QString(), linkName, block, number};
    const char *const names[] = {"", "link", "block", "number"};
    QString line = QString::fromLatin1("%1 %2").arg(verdict.code).arg(verdict.reason);
    if (verdict.text != AddressVerdict::NoText)
        line += QString::fromLatin1(" %1 %2 '").arg(text(names[verdict.text])).arg(verdict.offset) +
                texts[verdict.text].mid(verdict.offset, verdict.length) + QLatin1Char('\'');
    return line;
}

} // namespace

class AddressVerdicts : public panelkit::testing::DriverPanel
{
protected:
    AddressVerdicts()
    {
        install(text("libtest_1.so"));
        install(text("libtest_2.so"));
        project.addLink(1, text("PLC1"), text("test"));
        object *second = project.addLink(2, text("PLC2"), text("test"), text("12"));
        ObjectTree::setNumber(second, text("AddressMode"), 1);
        project.addLink(4, text("Broken"), text("none"));
    }

    panelkit::testing::Project project;
};

TEST_F(AddressVerdicts, NameTheReasonAndThePlace)
{
    const struct
    {
        const char *name, *linkName, *block, *number;
        int addrType;
        const char *expected; // the code, the reason's number, the text and the place in it
    } rows[] = {
        {"valid", "PLC1", "1/5#D", "3", 0, "0 0"},
        {"valid internal", "PLC1", "LW", "3", 0, "0 0"},
        {"unknown link name", "PLC7", "D", "3", 0, "10 1 link 0 'PLC7'"},
        {"unreadable link number", "PLC1", "x1/5#D", "3", 0, "10 2 block 0 'x1'"},
        {"empty link number", "PLC1", "/D", "3", 0, "10 2 block 0 ''"},
        {"no such link", "PLC1", "33/D", "3", 0, "10 3 block 0 '33'"},
        {"word block for bit access", "PLC1", "2/LW", "3", -1, "1 4 block 2 'LW'"},
        {"bit block for word access", "PLC1", "LB", "3", 0, "1 4 block 0 'LB'"},
        {"unreadable number", "PLC1", "LW", "12a", 0, "4 5 number 0 '12a'"},
        {"out of range", "PLC1", "LW", "65536", 0, "2 6 number 0 '65536'"},
        {"unreadable station", "PLC1", "2/7#300", "3", 0, "13 7 block 4 '300'"},
        {"unknown block", "PLC1", "1/5#M", "3", 0, "3 8 block 4 'M'"},
        {"no driver", "PLC1", "4/D", "3", 0, "3 10"},
        {"refused by the driver", "PLC1", "CODE", "7", 0, "7 11 number 0 '7'"},
    };
    const address_check checker(project.root());
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const AddressVerdict verdict = checker.explainAddress(
            text(row.linkName), text(row.block), text(row.number), project.item(), row.addrType, 1, 0);
        EXPECT_EQ(describe(verdict, text(row.linkName), text(row.block), text(row.number)),
                  text(row.expected));
    }
    const AddressVerdict verdict =
        checker.explainAddress(text("PLC1"), text("D"), text("3"), nullptr, 0, 1, 0);
    EXPECT_EQ(describe(verdict, text("PLC1"), text("D"), text("3")), text("3 9")) << "no target";
}

TEST_F(AddressVerdicts, PointNowhereAndLimitNothingUnlessTheyMust)
{
    const address_check checker(project.root());
    for (const char *linkName : {"PLC1", "PLC7"}) {
        SCOPED_TRACE(linkName);
        const AddressVerdict verdict =
            checker.explainAddress(text(linkName), text("D"), text("3"), project.item(), 0, 1, 0);
        EXPECT_EQ(verdict.offset, 0);
        EXPECT_EQ(verdict.length, linkName == text("PLC1") ? 0 : 4);
        EXPECT_EQ(verdict.blockOffset, 0);
        EXPECT_EQ(verdict.linkNumber, 1);
        EXPECT_EQ(verdict.lowest, 0);
        EXPECT_EQ(verdict.highest, -1);
    }
}

TEST_F(AddressVerdicts, GiveTheRangeThatTheLengthLeaves)
{
    const struct
    {
        const char *block;
        int addrType, length;
        qint64 highest;
    } rows[] = {
        {"LB", -1, 1, 65535}, {"LB", -1, 0, 65536},     {"LB", -1, -4, 65540}, {"LW", 0, 1, 65535},
        {"LW", 0, 7, 65530},  {"LW", 0, 0, 65535},      {"LW", 0, -9, 65535},  {"RWI", 0, 7, 65529},
        {"RWI", 0, 65536, 0}, {"RWI", 0, 70000, -4464},
    };
    const address_check checker(nullptr);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.block);
        const AddressVerdict verdict =
            checker.explainAddress(text("Internal storage area"), text(row.block), text("99999"), nullptr,
                                   row.addrType, row.length, 0);
        EXPECT_EQ(verdict.reason, AddressVerdict::IndexOutOfRange);
        EXPECT_EQ(verdict.lowest, 0);
        EXPECT_EQ(verdict.highest, row.highest);
    }
}

TEST_F(AddressVerdicts, GiveTheLinkThatTheBlockTextAsksFor)
{
    const address_check checker(project.root());
    const AddressVerdict unknown =
        checker.explainAddress(text("PLC2"), text("M"), text("3"), project.item(), 0, 1, 0);
    EXPECT_EQ(unknown.linkNumber, 1);
    EXPECT_EQ(unknown.blockOffset, 0);
    ASSERT_NE(unknown.link, nullptr);
    EXPECT_EQ(unknown.link->linkName, text("PLC1"));
    EXPECT_EQ(unknown.link->blockNames, text("D,CODE,REWRITE,KEEP,SILENT"));

    const AddressVerdict station =
        checker.explainAddress(text("PLC1"), text("2/D"), text("3"), project.item(), 0, 1, 0);
    EXPECT_EQ(station.linkNumber, 2);
    EXPECT_EQ(station.blockOffset, 2);
    EXPECT_EQ(station.lowest, 0);
    EXPECT_EQ(station.highest, 255);

    const AddressVerdict missing =
        checker.explainAddress(text("PLC1"), text("33/D"), text("3"), project.item(), 0, 1, 0);
    EXPECT_EQ(missing.linkNumber, 33);
    EXPECT_EQ(missing.link, nullptr);
}

TEST_F(AddressVerdicts, ComeFromTheSameCheckAndWriteTheSame)
{
    const address_check checker(project.root());
    EXPECT_EQ(checker.explainAddress(text("PLC1"), text("5#D"), text("8"), project.item(), 0, 2, 0).code, 0);
    EXPECT_EQ(project.written(), text("PLC1|D|8|8|9|2"));
}
