#include "simulator/host/projectchecker.h"

#include "link/driverfile.h"
#include "simulator/host/session.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

std::unique_ptr<Session> openSession(const QByteArray &projectJson = QByteArray())
{
    const QTemporaryDir folder;
    SessionOptions options;
    if (!projectJson.isEmpty()) {
        options.projectFile = folder.filePath(text("project.json"));
        QFile file(options.projectFile);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(projectJson);
    }
    QString error;
    auto session = Session::open(options, error);
    EXPECT_TRUE(session) << error.toStdString();
    return session;
}

// The sample's links with `items`, each "Link", "Block", "No", index and type.
QByteArray project(const char *items)
{
    return QByteArray(R"({"name": "X", "screenWidth": 480, "screenHeight": 272, "links": [
        {"number": 1, "name": "Line PLC", "driver": "drivers/Modbus", "blocks": ["4x", "4x_bit", "5x"],
         "port": "Ethernet", "ip": "10.0.0.1", "tcpPort": 502},
        {"number": 2, "name": "Many", "driver": "Modbus", "blocks": ["4x"], "manyStations": true,
         "port": "Ethernet", "ip": "10.0.0.1", "tcpPort": 502},
        {"number": 3, "name": "Own", "driver": "Own", "blocks": ["D"], "port": "COM1"}
        ], "items": [)") +
           items + "]}";
}

} // namespace

TEST(ProjectChecker, FindsEveryAddressOfTheSampleValidOrLeftToItsStation)
{
    const auto session = openSession();
    const std::vector<ItemFinding> findings = ProjectChecker(*session).checkItems();
    for (const ItemFinding &finding : findings) {
        const ItemDefinition &item = session->project().items[finding.item];
        EXPECT_EQ(item.address.link, text("Packing PLC"))
            << item.name.toStdString() << finding.reason.toStdString();
        EXPECT_EQ(finding.code, 13);
        EXPECT_TRUE(finding.passes);
    }
    EXPECT_EQ(findings.size(), 7U);
}

TEST(ProjectChecker, FindsEachFaultOfAProjectWithItsField)
{
    const auto session = openSession(project(R"(
        {"name": "right", "Link": "Line PLC", "Block": "4x", "No": "40", "index": 39, "type": "uint16", "digits": 5},
        {"name": "index", "Link": "Line PLC", "Block": "4x", "No": "40", "index": 40, "type": "uint16", "digits": 5},
        {"name": "number", "Link": "Line PLC", "Block": "4x", "No": "0", "index": 0, "type": "uint16", "digits": 5},
        {"name": "access", "Link": "Line PLC", "Block": "4x", "No": "1", "index": 0, "type": "bit"},
        {"name": "block", "Link": "Line PLC", "Block": "9x", "No": "1", "index": 0, "type": "uint16", "digits": 5},
        {"name": "stations", "Link": "Many", "Block": "4x", "station": 3, "No": "1", "index": 0, "type": "uint16",
         "digits": 5},
        {"name": "driver", "Link": "Own", "Block": "D", "No": "1", "index": 0, "type": "uint16", "digits": 5},
        {"name": "internal", "Link": "Internal storage area", "Block": "LW", "No": "x", "index": 0, "type": "uint16",
         "digits": 5})"));
    ASSERT_TRUE(session);
    QStringList lines;
    for (const ItemFinding &finding : ProjectChecker(*session).checkItems())
        lines << session->project().items[finding.item].name + QLatin1Char(' ') + text(finding.field) +
                     text(" %1 %2").arg(finding.code).arg(finding.passes ? text("passes") : text("refused"));
    EXPECT_EQ(lines.join(QLatin1Char('\n')).toStdString(), "index index 0 refused\n"
                                                           "number No 2 refused\n"
                                                           "access No 1 refused\n"
                                                           "block Block 3 refused\n"
                                                           "stations Block 13 passes\n"
                                                           "driver Link 3 refused\n"
                                                           "internal No 4 refused");
}

TEST(ProjectChecker, WritesAnItemsAddressAsItsAuthorDoes)
{
    const auto session = openSession();
    const ProjectChecker checker(*session);
    QStringList blocks;
    for (std::size_t i = 0; i < session->project().items.size(); ++i) {
        const QString block = checker.typedAddress(i).block;
        if (!blocks.contains(block))
            blocks << block;
    }
    for (const char *block : {"3x", "4x_bit", "2/2#3x", "2/3#0x", "3/MW", "LB"})
        EXPECT_TRUE(blocks.contains(text(block))) << block;
}

TEST(ProjectChecker, TellsWhatAValidAddressWrites)
{
    const auto session = openSession();
    const CheckedAddress checked =
        ProjectChecker(*session).check({text("Steam PLC"), text("3/MX"), text("03.1"), true, 2});
    EXPECT_TRUE(checked.passes);
    EXPECT_EQ(checked.index, 25);
    EXPECT_EQ(checked.explanation, QString());
    QStringList written;
    for (const auto &property : checked.written)
        written << property.first + QLatin1Char('=') + property.second;
    EXPECT_EQ(written.join(QLatin1Char(' ')),
              text("Link=Steam PLC Block=MX No=03.1 index=25 station=4 length=2"));
}

TEST(ProjectChecker, LeavesTheProjectAsItIs)
{
    const auto session = openSession();
    ProjectChecker checker(*session);
    checker.checkItems();
    checker.check({text("Line PLC"), text("4x"), text("77"), false, 1});
    EXPECT_EQ(object_get_property_value_type_string(session->itemNode(0), "No", QString()),
              session->project().items[0].number);
}

TEST(AddressExplanation, SaysWhatIsWrongAndWhatIsAllowed)
{
    const struct
    {
        TypedAddress address;
        const char *sentence;
    } rows[] = {
        {{text("Nobody"), text("LW"), text("1")},
         "No link is called \"Nobody\". The project has: Internal storage area, Line PLC, Many, Own."},
        {{text("Line PLC"), text("x1/4x"), text("1")}, "\"x1\" before the \"/\" is no link number."},
        {{text("Line PLC"), text("9/4x"), text("1")}, "There is no link 9. The project has: 1, 2, 3."},
        {{text("Line PLC"), text("5#LW"), text("1"), true},
         "LW holds words. Bits of the internal storage are in LB."},
        {{text("Line PLC"), text("LB"), text("1")},
         "LB holds bits. Words of the internal storage are in LW and RWI."},
        {{text("Line PLC"), text("LW"), text("12a")}, "\"12a\" is no whole number."},
        {{text("Line PLC"), text("LW"), text("65536")}, "LW takes the numbers 0 to 65535."},
        {{text("Line PLC"), text("RWI"), text("65530"), false, 7},
         "RWI takes the numbers 0 to 65529 for 7 registers in a row."},
        {{text("Line PLC"), text("RWI"), text("0"), false, 70000},
         "RWI does not have 70000 registers in a row."},
        {{text("Many"), text("2/3#4x"), text("1")},
         "Link 2 (\"Many\") is not asked: its addresses name their station, and \"4x\" is none from 0 to "
         "255."},
        {{text("Line PLC"), text("1/5#M"), text("1")},
         "Link 1 (\"Line PLC\") has no block \"M\". It has: 4x, 4x_bit, 5x."},
        {{text("Line PLC"), text("5x"), text("1")}, "The driver does not know the block \"5x\"."},
        {{text("Line PLC"), text("1/4x"), text("70000")}, "4x has no number 70000. 4x takes 1 to 65536."},
        {{text("Line PLC"), text("4x"), text("%1")}, "\"%1\" is no number of 4x. 4x takes 1 to 65536."},
        {{text("Line PLC"), text("4x"), text("1"), true}, "4x holds words, not bits. 4x takes 1 to 65536."},
        {{text("Line PLC"), text("4x_bit"), text("1.3")},
         "4x_bit holds bits, not words. 4x_bit takes 1.0 to 65536.15."},
        {{text("Line PLC"), text("4x_bit"), text("1"), true},
         "\"1\" lacks its bit, or the bit is too high. 4x_bit takes 1.0 to 65536.15."},
        {{text("Line PLC"), text("4x"), text("65536"), false, 2},
         "2 registers from 65536 on reach beyond the end of 4x. 4x takes 1 to 65536."},
        {{text("Line PLC"), text("4x"), text("65536")}, ""},
    };
    const auto session = openSession(project(""));
    ASSERT_TRUE(session);
    ProjectChecker checker(*session);
    for (const auto &row : rows)
        EXPECT_EQ(checker.check(row.address).explanation.toStdString(), row.sentence);
    EXPECT_EQ(checker.check({text("Own"), text("3/D"), text("1")}).explanation,
              text("Link 3 (\"Own\") has no driver that could check the address; it would be ") +
                  tools_driverFilePath(text("Own"), 3) + QLatin1Char('.'));
}

TEST(AddressExplanation, OfOctalAndAlignedNumbers)
{
    const auto session = openSession();
    ProjectChecker checker(*session);
    EXPECT_EQ(checker.check({text("Steam PLC"), text("3/IX"), text("18"), true}).explanation,
              text("The numbers of IX are octal: there is no digit 8 or 9. IX takes 0 to 1777."));
    EXPECT_EQ(checker.check({text("Steam PLC"), text("3/MW"), text("11")}).explanation,
              text("Number 11 lies within another register of MW. MW takes 0 to 4094."));
}
