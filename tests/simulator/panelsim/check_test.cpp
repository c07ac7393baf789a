#include "tests/simulator/panelsim/program.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace panelkit::testing;
using ::testing::HasSubstr;

namespace {

ProgramRun check(const QStringList &arguments)
{
    return runPanelsim(QStringList(QStringLiteral("check")) + arguments);
}

ProgramRun checkOne(const char *link, const char *block, const char *number, const QStringList &more = {})
{
    return check(QStringList{QStringLiteral("--link"), QString::fromUtf8(link), QStringLiteral("--block"),
                             QString::fromUtf8(block), QStringLiteral("--number"),
                             QString::fromUtf8(number)} +
                 more);
}

QJsonObject jsonOf(const ProgramRun &run)
{
    return QJsonDocument::fromJson(run.out.toUtf8()).object();
}

} // namespace

TEST(PanelsimCheck, PrintsTheVerdictAndThePropertiesWritten)
{
    const ProgramRun run =
        checkOne("Line PLC", "4x", "40", {QStringLiteral("--length"), QStringLiteral("2")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out.toStdString(), "valid, code 0\n"
                                     "  Link     Line PLC\n"
                                     "  Block    4x\n"
                                     "  No       40\n"
                                     "  index    39\n"
                                     "  station  1\n"
                                     "  length   2\n");
}

TEST(PanelsimCheck, MarksThePlaceOfAFaultAndExplainsIt)
{
    const ProgramRun run = checkOne("Line PLC", "1/5#M", "40");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out.toStdString(),
              "refused, code 3\n"
              "  block  1/5#M\n"
              "             ^\n"
              "Link 1 (\"Line PLC\") has no block \"M\". It has: 0x, 1x, 3x, 4x, 3x_bit, "
              "4x_bit.\n");
}

TEST(PanelsimCheck, MarksThePlaceBehindWideAndControlCharacters)
{
    const ProgramRun run = checkOne("Line PLC", "1/一\n#M", "40");
    EXPECT_THAT(run.out.toStdString(), HasSubstr("  block  1/一\\n#M\n"
                                                 "                ^\n"));
}

TEST(PanelsimCheck, AsksForABitOnRequest)
{
    EXPECT_EQ(checkOne("Line PLC", "0x", "1").exitCode, 1);
    EXPECT_EQ(checkOne("Line PLC", "0x", "1", {QStringLiteral("--word")}).exitCode, 1);
    EXPECT_EQ(checkOne("Line PLC", "0x", "1", {QStringLiteral("--bit")}).exitCode, 0);
}

TEST(PanelsimCheck, LetsAnUnaskedStationPass)
{
    const ProgramRun run = checkOne("Packing PLC", "2/3#4x", "1");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out.toStdString(), HasSubstr("passes unchecked, code 13\n"));
}

TEST(PanelsimCheck, PrintsOneAddressAsJson)
{
    const QJsonObject refused = jsonOf(checkOne("Line PLC", "7/D", "1", {QStringLiteral("--json")}));
    EXPECT_FALSE(refused.value(QStringLiteral("passes")).toBool(true));
    EXPECT_EQ(refused.value(QStringLiteral("code")).toInt(), 10);
    EXPECT_EQ(refused.value(QStringLiteral("field")).toString(), QStringLiteral("block"));
    EXPECT_EQ(refused.value(QStringLiteral("offset")).toInt(-1), 0);
    EXPECT_EQ(refused.value(QStringLiteral("length")).toInt(-1), 1);
    EXPECT_EQ(refused.value(QStringLiteral("reason")).toString(),
              QStringLiteral("There is no link 7. The project has: 1, 2, 3."));
    const QJsonObject valid = jsonOf(checkOne("Line PLC", "LW", "7", {QStringLiteral("--json")}));
    EXPECT_TRUE(valid.value(QStringLiteral("passes")).toBool());
    EXPECT_EQ(valid.value(QStringLiteral("written")).toObject().value(QStringLiteral("Link")).toString(),
              QStringLiteral("Internal storage area"));
}

TEST(PanelsimCheck, PassesTheWholeSample)
{
    const ProgramRun run = check({QStringLiteral("--all")});
    EXPECT_EQ(run.exitCode, 0) << run.out.toStdString();
    EXPECT_THAT(run.out.toStdString(), HasSubstr(" items: "));
    EXPECT_THAT(run.out.toStdString(), HasSubstr(" 0 refused\n"));
}

TEST(PanelsimCheck, FailsOnAnItemWithAWrongAddress)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("wrong.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "X", "screenWidth": 480, "screenHeight": 272, "items": [
        {"name": "Order", "Link": "Internal storage area", "Block": "LW", "No": "65536", "index": 65535,
         "type": "uint16", "digits": 5}]})");
    file.close();
    const ProgramRun run = check({file.fileName(), QStringLiteral("--all")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out.toStdString(), "ITEM   FIELD  CODE  VERDICT  REASON\n"
                                     "Order  No     2     refused  LW takes the numbers 0 to 65535.\n"
                                     "\n"
                                     "1 items: 0 valid, 0 passed unchecked, 1 refused\n");
    const QJsonObject json =
        jsonOf(check({file.fileName(), QStringLiteral("--all"), QStringLiteral("--json")}));
    EXPECT_EQ(json.value(QStringLiteral("refused")).toInt(), 1);
    const QJsonObject finding = json.value(QStringLiteral("findings")).toArray().at(0).toObject();
    EXPECT_EQ(finding.value(QStringLiteral("item")).toString(), QStringLiteral("Order"));
    EXPECT_EQ(finding.value(QStringLiteral("field")).toString(), QStringLiteral("No"));
}

TEST(PanelsimCheck, ShowsTheDriversOfAllLinks)
{
    const ProgramRun run = check({QStringLiteral("--drivers")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out.toStdString(),
              "LINK  NAME         FILE                   LOADS  CHECKS  INDEXES  DESCRIBES\n"
              "1     Line PLC     libModbus_1.so         yes    yes     yes      yes\n"
              "2     Packing PLC  libModbus_2.so         yes    yes     yes      yes\n"
              "3     Steam PLC    libByteAddressed_3.so  yes    yes     yes      yes\n");
    EXPECT_EQ(jsonOf(check({QStringLiteral("--drivers"), QStringLiteral("--json")}))
                  .value(QStringLiteral("drivers"))
                  .toArray()
                  .size(),
              3);
}

TEST(PanelsimCheck, FailsOnALinkWithoutADriver)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("own.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"name": "X", "screenWidth": 480, "screenHeight": 272, "links": [{"number": 5, "name": "Own",
                   "driver": "Own", "port": "COM1"}]})");
    file.close();
    const ProgramRun run = check({file.fileName(), QStringLiteral("--drivers")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out.toStdString(), HasSubstr("libOwn_5.so"));
    EXPECT_THAT(run.out.toStdString(), HasSubstr("There is no such file, or it cannot be read."));
}

TEST(PanelsimCheck, SaysWhatItMisses)
{
    const struct
    {
        QStringList arguments;
        const char *complaint;
    } rows[] = {
        {{}, "there is no --link"},
        {{QStringLiteral("--link"), QStringLiteral("x")}, "there is no --block"},
        {{QStringLiteral("--all"), QStringLiteral("--drivers")}, "give --all or --drivers, not both"},
        {{QStringLiteral("--link=x"), QStringLiteral("--block=x"), QStringLiteral("--number=1"),
          QStringLiteral("--bit"), QStringLiteral("--word")},
         "give --bit or --word, not both"},
        {{QStringLiteral("--link=x"), QStringLiteral("--block=x"), QStringLiteral("--number=1"),
          QStringLiteral("--length=two")},
         "--length 'two' is no whole number"},
    };
    for (const auto &row : rows) {
        const ProgramRun run = check(row.arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_THAT(run.err.toStdString(), HasSubstr(row.complaint));
        EXPECT_TRUE(run.out.isEmpty());
    }
}
