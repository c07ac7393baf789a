#include "link/address_check.h"

#include "register/registervaluechange.h"
#include "tests/link/driverpanel.h"
#include "tests/support/allocationcounter.h"

#include <QLibrary>

#include <memory>
#include <type_traits>

using panelkit::simulator::ObjectTree;

namespace {

const int bitAccess = -1;
const int wordAccess = 0;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

static_assert(!std::is_copy_constructible<address_check>::value, "a checker owns its drivers");
static_assert(!std::is_copy_assignable<address_check>::value, "a checker owns its drivers");

class AddressCheck : public panelkit::testing::DriverPanel
{
protected:
    // Link 1 "PLC1" with a driver, link 2 "PLC2" with one whose addresses carry stations, link 4 "Broken"
    // with none.
    AddressCheck()
    {
        install(text("libtest_1.so"));
        install(text("libtest_2.so"));
        project.addLink(1, text("PLC1"), text("drivers/test"));
        object *second = project.addLink(2, text("PLC2"), text("drivers/test"), text("D,12"));
        ObjectTree::setNumber(second, text("AddressMode"), 1);
        project.addLink(4, text("Broken"), text("drivers/none"));
    }

    int check(const char *link, const char *block, const char *number, int addrType = wordAccess,
              int length = 1)
    {
        if (!checker)
            checker.reset(new address_check(project.root()));
        return checker->checkAddress(text(link), text(block), text(number), project.item(), addrType, length,
                                     0);
    }

    panelkit::testing::Project project;
    std::unique_ptr<address_check> checker;
    const QString untouched = text("-|-|-|0|0|0");
};

TEST_F(AddressCheck, RejectsUnknownLinkNameEvenForAnInternalBlock)
{
    EXPECT_EQ(check("PLC9", "LW", "100"), -1);
    EXPECT_EQ(check("plc1", "LW", "100"), -1);
    EXPECT_EQ(check("", "LW", "100"), -1);
    EXPECT_EQ(project.written(), untouched);
}

TEST_F(AddressCheck, WritesAnInternalAddressOnAnyKnownLink)
{
    EXPECT_EQ(check("PLC1", "LW", "100", wordAccess, 10), 0);
    EXPECT_EQ(project.written(), text("Internal storage area|LW|100|100|-1|10"));
    EXPECT_EQ(check("Internal storage area", "LB", "7", bitAccess), 0);
    EXPECT_EQ(project.written(), text("Internal storage area|LB|7|7|-1|1"));
}

TEST_F(AddressCheck, TakesInternalBlocksWhateverThePrefixes)
{
    for (const char *block : {"LW", "2/LW", "77/LW", "5#LW", "2/5#LW", "2/9/LW", "x#LW", "1/2#3#LW"}) {
        SCOPED_TRACE(block);
        EXPECT_EQ(check("PLC1", block, "8"), 0);
        EXPECT_EQ(project.written(), text("Internal storage area|LW|8|8|-1|1"));
    }
    EXPECT_EQ(check("PLC1", "x/LW", "8"), -1) << "an unreadable link number comes first";
}

TEST_F(AddressCheck, WritesTheNumberAsItWasTyped)
{
    EXPECT_EQ(check("PLC1", "RWI", " 007 "), 0);
    EXPECT_EQ(project.written(), text("Internal storage area|RWI| 007 |7|-1|1"));
}

TEST_F(AddressCheck, RejectsLbForWordAccess)
{
    EXPECT_EQ(check("PLC1", "LB", "1", wordAccess), -1);
    EXPECT_EQ(check("PLC1", "LB", "1", 1), -1);
    EXPECT_EQ(project.written(), untouched);
}

TEST_F(AddressCheck, RejectsLwAndRwiForBitAccess)
{
    EXPECT_EQ(check("PLC1", "LW", "1", bitAccess), -1);
    EXPECT_EQ(check("PLC1", "RWI", "1", bitAccess), -1);
    EXPECT_EQ(project.written(), untouched);
}

TEST_F(AddressCheck, ComparesInternalBlocksWithCase)
{
    EXPECT_EQ(check("PLC1", "lw", "1"), -1);
    EXPECT_EQ(check("PLC1", "LW ", "1"), -1);
}

TEST_F(AddressCheck, KeepsTheLimitsOfInternalStorage)
{
    const struct
    {
        const char *name, *block, *number;
        int addrType, length, code;
    } rows[] = {
        {"LB first", "LB", "0", bitAccess, 1, 0},
        {"LB last", "LB", "65535", bitAccess, 1, 0},
        {"LB beyond the last", "LB", "65536", bitAccess, 1, 2},
        {"LB end with no length", "LB", "65536", bitAccess, 0, 0},
        {"LB end and one with no length", "LB", "65537", bitAccess, 0, 2},
        {"LB negative", "LB", "-1", bitAccess, 1, 2},
        {"LB negative length", "LB", "65540", bitAccess, -4, 0},
        {"LB negative length too far", "LB", "65541", bitAccess, -4, 2},
        {"LW last", "LW", "65535", wordAccess, 1, 0},
        {"LW run to 65537", "LW", "65530", wordAccess, 7, 0},
        {"LW run to 65538", "LW", "65530", wordAccess, 8, 2},
        {"LW last with length 2", "LW", "65535", wordAccess, 2, 0},
        {"LW last with length 3", "LW", "65535", wordAccess, 3, 2},
        {"LW end with no length", "LW", "65536", wordAccess, 0, 2},
        {"LW end with negative length", "LW", "65536", wordAccess, -1, 2},
        {"LW negative", "LW", "-1", wordAccess, 1, 2},
        {"LW negative sum", "LW", "5", wordAccess, -10, 0},
        {"RWI first", "RWI", "0", wordAccess, 1, 0},
        {"RWI run to 65536", "RWI", "65530", wordAccess, 6, 0},
        {"RWI run to 65537", "RWI", "65530", wordAccess, 7, 2},
        {"RWI end with no length", "RWI", "65536", wordAccess, 0, 0},
        {"RWI negative", "RWI", "-5", wordAccess, 1, 2},
        {"sum beyond 32 bits", "LB", "2147483647", bitAccess, 2147483647, 2},
        {"sum beyond 32 bits, word", "LW", "65535", wordAccess, 2147483647, 2},
        {"number of exactly 32 bits", "RWI", "2147483647", wordAccess, 0, 2},
        {"number beyond 32 bits", "RWI", "2147483648", wordAccess, 0, 4},
        {"long number", "LW", "00000000000000000005", wordAccess, 1, 0},
        {"no number", "LW", "12a", wordAccess, 1, 4},
        {"empty number", "LW", "", wordAccess, 1, 4},
        {"hexadecimal", "LW", "0x10", wordAccess, 1, 4},
        {"decimal point", "LW", "1.5", wordAccess, 1, 4},
        {"sign and number", "LW", "+5", wordAccess, 1, 0},
        {"blank within", "LW", "1 2", wordAccess, 1, 4},
        {"wrong access before bad number", "LB", "x", wordAccess, 1, 1},
        {"other block", "LWF", "1", wordAccess, 1, 1},
        {"other block, bit", "D", "1", bitAccess, 1, 1},
    };
    address_check internal(nullptr);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(
            internal.loaclCheckAddress(nullptr, text(row.block), text(row.number), row.addrType, row.length),
            row.code);
    }
}

TEST_F(AddressCheck, ChecksInternalAddressesWithoutATarget)
{
    address_check internal(nullptr);
    EXPECT_EQ(internal.checkAddress(text("Internal storage area"), text("LW"), text("1"), nullptr, 0, 1, 0),
              0);
    EXPECT_EQ(internal.checkAddress(text("Internal storage area"), text("LW"), text("x"), nullptr, 0, 1, 0),
              -1);
}

TEST_F(AddressCheck, WritesOnlyThePropertiesThatTheTargetHas)
{
    object *bare = ObjectTree::appendChild(project.root(), text("bare"));
    ObjectTree::setText(bare, text("No"), text("-"));
    ObjectTree::setNumber(bare, text("length"), 0);
    address_check internal(nullptr);
    EXPECT_EQ(internal.loaclCheckAddress(bare, text("LW"), text("31"), wordAccess, 2), 0);
    EXPECT_EQ(ObjectTree::propertyNames(bare), QStringList() << text("No") << text("length"));
    EXPECT_EQ(object_get_property_value_type_string(bare, "No", QString()), text("31"));
    EXPECT_EQ(object_get_property_value_type_int32(bare, "length", 0), 2);
}

TEST_F(AddressCheck, MakesVerdictsOfCodes)
{
    address_check internal(nullptr);
    for (const int code : {1, 2, 3, 4, 10, 11, 12, 14, 16})
        EXPECT_EQ(internal.checkRetPrompt(code), -1) << code;
    for (const int code : {-2147483647, -5, -1, 0, 5, 6, 7, 8, 9, 13, 15, 17, 18, 19, 20, 100, 2147483647})
        EXPECT_EQ(internal.checkRetPrompt(code), 0) << code;
}

TEST_F(AddressCheck, RejectsALinkNumberThatNoLinkHas)
{
    EXPECT_EQ(check("PLC1", "3/D", "1"), -1);
    EXPECT_EQ(check("PLC1", "-1/D", "1"), -1);
    EXPECT_EQ(check("PLC1", "0/D", "1"), -1);
    EXPECT_EQ(project.written(), untouched);
}

TEST_F(AddressCheck, RejectsAnUnreadableLinkNumber)
{
    for (const char *block : {"x/D", "/D", "1x/D", "5#1/D", "1.0/D", "4294967297/D"}) {
        SCOPED_TRACE(block);
        EXPECT_EQ(check("PLC1", block, "1"), -1);
    }
    EXPECT_EQ(project.written(), untouched);
}

TEST_F(AddressCheck, TakesTheLinkFromTheBlockTextAndNeverFromItsName)
{
    EXPECT_EQ(check("Broken", "D", "5"), 0);
    EXPECT_EQ(project.written(), text("PLC1|D|5|5|9|1"));
    EXPECT_EQ(check("PLC1", "4/D", "5"), -1) << "link 4 has no driver";
}

TEST_F(AddressCheck, ReadsTheFirstNumberAndTheLastNameOfARowOfPrefixes)
{
    EXPECT_EQ(check("PLC1", "1/4/D", "5"), 0);
    EXPECT_EQ(project.written(), text("PLC1|D|5|5|9|1"));
    EXPECT_EQ(check("PLC1", "1/3#4#D", "6"), 0);
    EXPECT_EQ(project.written(), text("PLC1|D|6|6|9|1"));
    EXPECT_EQ(check("PLC1", "1/D#2/D", "7"), 0);
    EXPECT_EQ(project.written(), text("PLC1|D|7|7|9|1"));
}

TEST_F(AddressCheck, TakesTheFixedStationOfTheLinkWhateverThePrefixSays)
{
    EXPECT_EQ(check("PLC1", "5#D", "1"), 0);
    EXPECT_EQ(project.written(), text("PLC1|D|1|1|9|1"));
}

TEST_F(AddressCheck, RejectsABlockThatTheLinkDoesNotName)
{
    EXPECT_EQ(check("PLC1", "M", "1"), -1);
    EXPECT_EQ(check("PLC1", "d", "1"), -1);
    EXPECT_EQ(check("PLC1", "", "1"), -1);
    EXPECT_EQ(check("PLC1", "D,CODE", "1"), -1);
    EXPECT_EQ(check("PLC1", "COD", "1"), -1);
    EXPECT_EQ(driverLog().filter(text("checkAddr")), QStringList());
}

TEST_F(AddressCheck, TakesAnEmptyBlockListAsOneEmptyName)
{
    project.addLink(7, text("PLC7"), text("test"), QString());
    install(text("libtest_7.so"));
    EXPECT_EQ(check("PLC7", "7/", "3"), 0);
    EXPECT_EQ(project.written(), text("PLC7||3|3|9|1"));
    EXPECT_EQ(check("PLC7", "7/D", "3"), -1);
}

TEST_F(AddressCheck, PassesAnUnusableStationWithoutAskingTheDriver)
{
    for (const char *block : {"2/5#D", "2/D", "2/7#300", "2/256", "2/-1", "2/", "2/9999999999"}) {
        SCOPED_TRACE(block);
        EXPECT_EQ(check("PLC2", block, "1"), 0);
    }
    EXPECT_EQ(project.written(), untouched);
    EXPECT_EQ(driverLog().filter(text("checkAddr")), QStringList());
}

TEST_F(AddressCheck, ReadsTheBlockAsStationOnALinkWithStationsInAddresses)
{
    EXPECT_EQ(check("PLC2", "2/7#12", "4"), 0);
    EXPECT_EQ(project.written(), text("PLC2|12|4|4|12|1"));
    EXPECT_EQ(check("PLC2", "2/200", "4"), -1) << "a station, but no block of the link";
}

TEST_F(AddressCheck, TakesStationsFrom0To255)
{
    object *node = project.addLink(9, text("PLC9"), text("test"), text("0,255,256"));
    ObjectTree::setNumber(node, text("AddressMode"), 1);
    install(text("libtest_9.so"));
    EXPECT_EQ(check("PLC9", "9/0", "4"), 0);
    EXPECT_EQ(project.written(), text("PLC9|0|4|4|0|1"));
    EXPECT_EQ(check("PLC9", "9/255", "5"), 0);
    EXPECT_EQ(project.written(), text("PLC9|255|5|5|255|1"));
    EXPECT_EQ(check("PLC9", "9/256", "6"), 0) << "passes, but is not written";
    EXPECT_EQ(project.written(), text("PLC9|255|5|5|255|1"));
}

TEST_F(AddressCheck, TreatsOtherAddressModesAsAFixedStation)
{
    object *odd = project.addLink(5, text("PLC5"), text("test"));
    ObjectTree::setNumber(odd, text("AddressMode"), 2);
    install(text("libtest_5.so"));
    EXPECT_EQ(check("PLC5", "5/33#D", "1"), 0);
    EXPECT_EQ(project.written(), text("PLC5|D|1|1|9|1"));
}

TEST_F(AddressCheck, TakesLinkNumber0AsAPlcLink)
{
    object *node = ObjectTree::appendChild(object_get_child(project.root(), "link"), text("link"));
    ObjectTree::setText(node, text("blockNames"), text("D"));
    ObjectTree::setText(node, text("driverLib"), text("abc"));
    install(text("libabc_0.so"));
    EXPECT_EQ(check("", "0/D", "5"), 0) << "a node without a name makes the empty name a known one";
    EXPECT_EQ(project.written(), text("|D|5|5|0|1"));
}

TEST_F(AddressCheck, WritesNamesInUtf8)
{
    const QString name = QString::fromUtf8("一号车间 é");
    install(text("libtest_6.so"));
    project.addLink(6, name, text("test"), QString::fromUtf8("数据"));
    address_check chinese(project.root());
    EXPECT_EQ(chinese.checkAddress(name, QString::fromUtf8("6/数据"), text("3"), project.item(), 0, 1, 0), 0);
    EXPECT_EQ(project.written(), name + QString::fromUtf8("|数据|3|3|9|1"));
}

TEST_F(AddressCheck, AsksTheDriverOfALinkThatIsPassedIn)
{
    linkInfo_t link;
    link.linkName = text("Elsewhere");
    address_check empty(nullptr);
    const auto ask = [&](object *target) {
        return empty.externalCheckAddress(link, target, text("4x"), text("7"), 0, 2, 30, 5);
    };
    EXPECT_EQ(ask(project.item()), 3) << "no driver";
    link.checkAddr = [](QString &block, QString &number, int &index, int addrType, int length,
                        int driverArg) {
        index = number.toInt() + driverArg;
        number += block;
        return addrType + length == 2 ? 0 : 20;
    };
    EXPECT_EQ(ask(nullptr), 3) << "no target";
    EXPECT_EQ(project.written(), untouched);
    EXPECT_EQ(ask(project.item()), 0);
    EXPECT_EQ(project.written(), text("Elsewhere|4x|7|37|5|2"));
    EXPECT_EQ(empty.externalCheckAddress(link, project.item(), text("4x"), text("8"), 0, 1, 30, 5), 20);
    EXPECT_EQ(project.written(), text("Elsewhere|4x|7|37|5|2"));
}

TEST_F(AddressCheck, CompletesTheStationOfARecord)
{
    const struct
    {
        const char *name;
        int linkId;
        bool result;
        int station;
    } rows[] = {
        {"internal", 0, true, 0},    {"fixed station", 1, true, 9},    {"stations in addresses", 2, true, 77},
        {"other mode", 5, true, 77}, {"without a driver", 4, true, 9}, {"unknown", 3, false, 77},
        {"negative", -1, false, 77},
    };
    ObjectTree::setNumber(project.addLink(5, text("PLC5"), text("none")), text("AddressMode"), 2);
    project.addLink(0, text("PLC0"), text("none"));
    address_check completing(project.root());
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        RegisterValueChange address = {row.linkId, 77, 3, 4, "D", 5};
        EXPECT_EQ(completing.rebuildStatioin(address), row.result);
        EXPECT_EQ(address.station, row.station);
        EXPECT_EQ(address.linkId, row.linkId);
        EXPECT_EQ(address.index, 3);
    }
}

TEST_F(AddressCheck, ReadsAFixedStationToBase10)
{
    ObjectTree::setText(project.addLink(8, text("PLC8"), text("none")), text("PLCID"), text("120"));
    address_check completing(project.root());
    RegisterValueChange address = {8, 77, 0, 0, "", 0};
    EXPECT_TRUE(completing.rebuildStatioin(address));
    EXPECT_EQ(address.station, 120);
}

TEST_F(AddressCheck, ReadsAStationThatIsNoNumberAs0)
{
    ObjectTree::setText(project.addLink(8, text("PLC8"), text("none")), text("PLCID"), text("x1"));
    address_check completing(project.root());
    RegisterValueChange address = {8, 77, 0, 0, "", 0};
    EXPECT_TRUE(completing.rebuildStatioin(address));
    EXPECT_EQ(address.station, 0);
}

TEST_F(AddressCheck, HasTheInternalStorageAloneWithoutLinks)
{
    ObjectTree empty;
    ObjectTree emptyFolder;
    ObjectTree::appendChild(emptyFolder.root(), text("link"));
    for (object *tree : {static_cast<object *>(nullptr), empty.root(), emptyFolder.root()}) {
        address_check internal(tree);
        EXPECT_EQ(
            internal.checkAddress(text("Internal storage area"), text("LW"), text("1"), nullptr, 0, 1, 0), 0);
        EXPECT_EQ(
            internal.checkAddress(text("Internal storage area"), text("D"), text("1"), nullptr, 0, 1, 0), -1);
        RegisterValueChange address = {1, 77, 0, 0, "", 0};
        EXPECT_FALSE(internal.rebuildStatioin(address));
    }
}

TEST_F(AddressCheck, KeepsItsThreeRecordsInFrontAndInOrder)
{
    const address_check plain(project.root());
    const auto *linkMap = reinterpret_cast<const QMap<qint32, linkInfo_t> *>(&plain);
    const auto *localBlocks = reinterpret_cast<const QStringList *>(linkMap + 1);
    const QStringList *linkNames = localBlocks + 1;
    EXPECT_EQ(linkMap->keys(), QList<qint32>() << 1 << 2 << 4);
    EXPECT_EQ(*localBlocks, QStringList() << text("LB") << text("LW") << text("RWI"));
    EXPECT_EQ(*linkNames, QStringList() << text("Internal storage area") << text("PLC1") << text("PLC2")
                                        << text("Broken"));
    const linkInfo_t link = linkMap->value(2);
    EXPECT_EQ(link.node, object_next(object_first_child(object_get_child(project.root(), "link"))));
    EXPECT_EQ(link.linkID, 2);
    EXPECT_EQ(link.addressMode, 1);
    EXPECT_EQ(link.plcID, 9);
    EXPECT_EQ(link.linkName, text("PLC2"));
    EXPECT_EQ(link.blockNames, text("D,12"));
    EXPECT_EQ(link.spare, QString());
    ASSERT_NE(link.library, nullptr);
    EXPECT_EQ(link.library->isLoaded(), QT_VERSION < 0x060000) << "Qt 6 would take it from others";
    EXPECT_NE(link.checkAddr, nullptr);
    EXPECT_NE(linkMap->value(4).library, nullptr);
    EXPECT_EQ(linkMap->value(4).checkAddr, nullptr);
}

class AddressCheckAllocations : public AddressCheck
{
protected:
    // Of a target, the texts of which the object library itself would keep on the heap.
    AddressCheckAllocations()
    {
        target = ObjectTree::appendChild(project.root(), text("target"));
        for (const char *name : {"index", "station", "length"})
            ObjectTree::setNumber(target, text(name), 0);
        checker.reset(new address_check(project.root()));
    }

    long count(const char *block, const char *number)
    {
        const QString linkName = text("PLC1");
        const QString blockText = text(block);
        const QString numberText = text(number);
        const panelkit::testing::AllocationCounter counter;
        result = checker->checkAddress(linkName, blockText, numberText, target, wordAccess, 1, 0);
        return counter.count();
    }

    object *target = nullptr;
    int result = 0;
};

TEST_F(AddressCheckAllocations, AreNoneForInternalAddresses)
{
    EXPECT_EQ(count("LW", "100"), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(count("2/5#LW", "100"), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(count("LW", "70000"), 0);
    EXPECT_EQ(result, -1);
}

TEST_F(AddressCheckAllocations, AreTheBlocksNameAtMostForPlcAddresses)
{
    EXPECT_EQ(count("SILENT", "100"), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(count("1/5#SILENT", "100"), 1);
    EXPECT_EQ(result, 0);
}

TEST_F(AddressCheckAllocations, AreNoneForRefusedAddresses)
{
    for (const char *block : {"3/D", "1/5#UNKNOWN", "4/5#D"}) {
        EXPECT_EQ(count(block, "100"), 0) << block;
        EXPECT_EQ(result, -1) << block;
    }
}
