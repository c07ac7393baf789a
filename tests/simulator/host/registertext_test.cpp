#include "simulator/host/registertext.h"
#include "simulator/project/projectfile.h"
#include "simulator/sample/sample.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace panelkit::simulator;

namespace {

Project sample()
{
    ProjectError fault;
    auto project = readProject(sampleProject(), fault);
    EXPECT_TRUE(project) << fault.text().toStdString();
    return project.value_or(Project());
}

// "link station block index type", or the error.
std::string parsed(const char *text)
{
    QString error;
    const auto found = parseRegister(sample(), QString::fromUtf8(text), error);
    EXPECT_EQ(found.has_value(), error.isEmpty());
    if (!found)
        return error.toStdString();
    return found->address.link.toStdString() + ' ' + std::to_string(found->address.station) + ' ' +
           found->address.block.toStdString() + ' ' + std::to_string(found->address.index) + ' ' +
           std::to_string(static_cast<int>(found->type));
}

} // namespace

TEST(RegisterText, IsTheNameOfAScriptVariable)
{
    EXPECT_EQ(parsed("speedSetPoint"), "Line PLC 1 4x 0 1");
    EXPECT_EQ(parsed("remaining"), "Line PLC 1 4x 8 5");
    EXPECT_EQ(parsed("casesPacked"), "Packing PLC 2 3x 0 4");
    EXPECT_EQ(parsed("percent"), "Internal storage area -1 LW 110 1");
    EXPECT_EQ(parsed("acknowledge"), "Line PLC 1 0x 1 0");
}

TEST(RegisterText, IsAnAddressAsItIsShown)
{
    EXPECT_EQ(parsed("4x5"), "Line PLC 1 4x 4 1");
    EXPECT_EQ(parsed("1/4x5"), "Line PLC 1 4x 4 1");
    EXPECT_EQ(parsed("2/3#4x1"), "Packing PLC 3 4x 0 1");
    EXPECT_EQ(parsed("2/4x1"), "Packing PLC 2 4x 0 1");
    EXPECT_EQ(parsed("0x2"), "Line PLC 1 0x 1 0");
    EXPECT_EQ(parsed("4x_bit19.0"), "Line PLC 1 4x_bit 288 0");
    EXPECT_EQ(parsed("LW110"), "Internal storage area -1 LW 110 1");
    EXPECT_EQ(parsed("LB0"), "Internal storage area -1 LB 0 0");
    EXPECT_EQ(parsed("RWI65535"), "Internal storage area -1 RWI 65535 1");
}

TEST(RegisterText, TakesATypeBehindAColon)
{
    EXPECT_EQ(parsed("4x3:float32"), "Line PLC 1 4x 2 7");
    EXPECT_EQ(parsed("LW5:int32"), "Internal storage area -1 LW 5 5");
    EXPECT_EQ(parsed("speedSetPoint:bcd16"), "Line PLC 1 4x 0 3");
}

TEST(RegisterText, SaysWhatIsWrongWithOtherTexts)
{
    EXPECT_EQ(parsed("speed"),
              "'speed' is no script variable, and no register of link 1, whose blocks are 0x, 1x, 3x, "
              "4x, 3x_bit, 4x_bit");
    EXPECT_EQ(parsed("9/4x1"), "'9/4x1' is no script variable, and there is no link 9");
    EXPECT_EQ(parsed("3/MW10"),
              "'3/MW10' is no script variable, and no register of link 3, whose blocks are MB, MW, MD, "
              "MX, IX, QX");
    EXPECT_EQ(parsed("4x0"), "'4x0': 4x registers are numbered from 1 to 65536");
    EXPECT_EQ(parsed("4x"), "'4x': 4x registers are numbered from 1 to 65536");
    EXPECT_EQ(parsed("4x_bit7"), "'4x_bit7': 4x_bit registers are numbered WORD.BIT, from 1.0 to 65536.15");
    EXPECT_EQ(parsed("LWx"), "'LWx': LW registers are numbered from 0 to 65535");
    EXPECT_EQ(parsed("LW-1"), "'LW-1': LW registers are numbered from 0 to 65535");
    EXPECT_EQ(parsed("LW65536"), "'LW65536': LW registers are numbered from 0 to 65535");
    EXPECT_EQ(parsed("LB2147483647"), "'LB2147483647': LB registers are numbered from 0 to 65535");
    EXPECT_EQ(parsed("LW2147483647:uint32"),
              "'LW2147483647:uint32': LW registers are numbered from 0 to 65535");
    EXPECT_EQ(parsed("LW65535:uint32"),
              "'LW65535:uint32': its second word would be behind LW65535, the last of its block");
    EXPECT_EQ(parsed("LW65534:uint32"), "Internal storage area -1 LW 65534 4");
    EXPECT_EQ(parsed("LW65535:int16"), "Internal storage area -1 LW 65535 2");
    EXPECT_EQ(parsed("x/4x1"), "'x/4x1': a number is expected before \"/\" and \"#\"");
    EXPECT_EQ(parsed("4x1:string"), "'4x1:string': there is no type 'string'");
    EXPECT_EQ(parsed("%1:%2"), "'%1:%2': there is no type '%2'");
}

TEST(NumberText, IsReadAsLuaReadsIt)
{
    const auto whole = [](const char *text) {
        const auto value = parseNumber(QString::fromUtf8(text));
        EXPECT_TRUE(value && std::holds_alternative<qint64>(*value)) << text;
        return value ? std::get<qint64>(*value) : -999;
    };
    EXPECT_EQ(whole("12"), 12);
    EXPECT_EQ(whole("-3"), -3);
    EXPECT_EQ(whole("0x1F"), 31);
    EXPECT_EQ(whole("010"), 10);
    EXPECT_EQ(whole("true"), 1);
    EXPECT_EQ(whole("false"), 0);
    EXPECT_EQ(std::get<double>(*parseNumber(QStringLiteral("2.5e3"))), 2500);
    for (const char *text : {"", "x", "1,5", "0x", "--1", "True"})
        EXPECT_FALSE(parseNumber(QString::fromUtf8(text))) << text;
}

TEST(NumberText, IsWrittenInAsFewDigitsAsTellIt)
{
    EXPECT_EQ(numberText(qint64(-7)), QStringLiteral("-7"));
    EXPECT_EQ(numberText(static_cast<double>(0.1F)), QStringLiteral("0.1"));
    EXPECT_EQ(numberText(static_cast<double>(16777216.0F)), QStringLiteral("16777216"));
    EXPECT_EQ(numberText(-5.25), QStringLiteral("-5.25"));
    EXPECT_EQ(numberText(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(numberText(1.0 / 3.0), QStringLiteral("0.3333333333333333"));
    EXPECT_EQ(numberText(std::nan("")), QStringLiteral("nan"));
}
