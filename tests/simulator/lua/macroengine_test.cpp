#include "macro/events.h"
#include "macro/helpmacrolua.h"
#include "macro/interfaceall.h"
#include "simulator/lua/macroengine.h"
#include "simulator/platform/eventlibrary.h"
#include "simulator/platform/objecttree.h"
#include "tests/simulator/lua/enginefixture.h"

#include <memory>

using namespace panelkit::simulator;
using panelkit::testing::MemoryRegisters;

class MacroEngineTest : public panelkit::testing::EngineFixture
{
protected:
    quint16 &word(const char *block, int index)
    {
        return registers.words[MemoryRegisters::key(QStringLiteral("L1"), QLatin1String(block), index)];
    }
};

namespace {

qint64 whole(const std::optional<MacroValue> &value)
{
    EXPECT_TRUE(value && std::holds_alternative<qint64>(*value));
    return value && std::holds_alternative<qint64>(*value) ? std::get<qint64>(*value) : -999;
}

} // namespace

TEST_F(MacroEngineTest, ReadsEachDataType)
{
    word("D", 0) = 1;
    word("D", 1) = 0xFFFE;
    word("D", 2) = 0xFFFE;
    word("D", 3) = 0x1234;
    word("D", 4) = 0xFFFE;
    word("D", 5) = 0xFFFF;
    word("D", 6) = 0x5678;
    word("D", 7) = 0x1234;
    word("D", 8) = 0x0000;
    word("D", 9) = 0xC0A8;
    EXPECT_EQ(outputOf("print(getdata('L1', 'D', 0, 1, 0, DATA_TYPE_BIT))\n"
                       "print(getdata('L1', 'D', 1, 1, 0, DATA_TYPE_WUB))\n"
                       "print(getdata('L1', 'D', 2, 1, 0, DATA_TYPE_WB))\n"
                       "print(getdata('L1', 'D', 3, 1, 0, DATA_TYPE_WD))\n"
                       "print(getdata('L1', 'D', 4, 1, 0, DATA_TYPE_DUB))\n"
                       "print(getdata('L1', 'D', 4, 1, 0, DATA_TYPE_DB))\n"
                       "print(getdata('L1', 'D', 6, 1, 0, DATA_TYPE_DD))\n"
                       "print(getdata('L1', 'D', 8, 1, 0, DATA_TYPE_DF))\n"),
              "1|65534|-2|1234|4294967294|-2|12345678|-5.25");
}

TEST_F(MacroEngineTest, WritesEachDataType)
{
    ASSERT_TRUE(run("setdata('L1', 'D', 0, 1, 0, true, DATA_TYPE_BIT)\n"
                    "setdata('L1', 'D', 1, 1, 0, 65534, DATA_TYPE_WUB)\n"
                    "setdata('L1', 'D', 2, 1, 0, -2, DATA_TYPE_WB)\n"
                    "setdata('L1', 'D', 3, 1, 0, 1234, DATA_TYPE_WD)\n"
                    "setdata('L1', 'D', 4, 1, 0, 131073, DATA_TYPE_DUB)\n"
                    "setdata('L1', 'D', 6, 1, 0, -2, DATA_TYPE_DB)\n"
                    "setdata('L1', 'D', 8, 1, 0, 12345678, DATA_TYPE_DD)\n"
                    "setdata('L1', 'D', 10, 1, 0, -5.25, DATA_TYPE_DF)\n")
                    .isDone());
    const quint16 expected[] = {1,      0xFFFE, 0xFFFE, 0x1234, 1,      2,
                                0xFFFE, 0xFFFF, 0x5678, 0x1234, 0x0000, 0xC0A8};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(word("D", i), expected[i]) << i;
}

TEST_F(MacroEngineTest, HandsTheWholeAddressOver)
{
    ASSERT_TRUE(run("local x = getdata('一号线', 'D %1', 7, -1, 3, DATA_TYPE_DUB)\n"
                    "setdata('L2', '', -8, 255, -4, 5, DATA_TYPE_WUB)")
                    .isDone());
    EXPECT_EQ(registers.calls, (QStringList{QStringLiteral("read 一号线/D %1/7 2 station -1 extra 3"),
                                            QStringLiteral("write L2//-8 5 station 255 extra -4")}));
}

TEST_F(MacroEngineTest, WritesNumbersBooleansAndTextsThatAreNumbers)
{
    ASSERT_TRUE(run("setdata('L1', 'D', 0, 1, 0, '12', DATA_TYPE_WUB)\n"
                    "setdata('L1', 'D', 1, 1, 0, ' 0x10 ', DATA_TYPE_WUB)\n"
                    "setdata('L1', 'D', 2, 1, 0, 3.0, DATA_TYPE_WUB)\n"
                    "setdata('L1', 'D', 3, 1, 0, true, DATA_TYPE_WUB)\n"
                    "word = 9\n"
                    "setdata('L1', 'D', 3, 1, 0, false, DATA_TYPE_WUB)\n")
                    .isDone());
    EXPECT_EQ(word("D", 0), 12);
    EXPECT_EQ(word("D", 1), 16);
    EXPECT_EQ(word("D", 2), 3);
    EXPECT_EQ(word("D", 3), 0);
}

TEST_F(MacroEngineTest, TellsEachAccessWithItsLineAndItsValues)
{
    word("D", 0) = 41;
    word("D", 5) = 7;
    const MacroResult result = run("local x = getdata('L1', 'D', 0, 1, 0, DATA_TYPE_WUB)\n"
                                   "\n"
                                   "setdata('L1', 'D', 5, 2, 3, x + 1, DATA_TYPE_WUB)\n"
                                   "setdata('L1', 'D', 6, 1, 0, 70000, DATA_TYPE_WUB)\n");
    ASSERT_TRUE(result.isDone());
    ASSERT_EQ(result.accesses.size(), 3U);

    const MacroAccess &read = result.accesses[0];
    EXPECT_FALSE(read.isWrite);
    EXPECT_EQ(read.line, 1);
    EXPECT_EQ(read.address.link, QStringLiteral("L1"));
    EXPECT_EQ(read.address.block, QStringLiteral("D"));
    EXPECT_EQ(read.address.index, 0);
    EXPECT_EQ(read.type, MacroDataType::Word);
    EXPECT_EQ(whole(read.value), 41);
    EXPECT_FALSE(read.before);
    EXPECT_TRUE(read.failure.isEmpty());

    const MacroAccess &write = result.accesses[1];
    EXPECT_TRUE(write.isWrite);
    EXPECT_EQ(write.line, 3);
    EXPECT_EQ(write.address.index, 5);
    EXPECT_EQ(write.address.station, 2);
    EXPECT_EQ(write.address.extra, 3);
    EXPECT_EQ(whole(write.before), 7);
    EXPECT_EQ(whole(write.value), 42);
    EXPECT_TRUE(write.isExact);

    EXPECT_EQ(whole(result.accesses[2].value), 65535);
    EXPECT_FALSE(result.accesses[2].isExact);
}

TEST_F(MacroEngineTest, EndsAtARegisterThatFails)
{
    const MacroResult result = run("\n"
                                   "local x = getdata('away', 'D', 100, 1, 0, DATA_TYPE_WUB)\n"
                                   "setdata('L1', 'D', 0, 1, 0, 1, DATA_TYPE_WUB)\n");
    EXPECT_EQ(result.outcome, MacroOutcome::Failed);
    EXPECT_EQ(result.line, 2);
    EXPECT_EQ(result.message.toStdString(),
              "cannot read D 100 of \"away\", station 1: the PLC does not answer");
    ASSERT_EQ(result.accesses.size(), 1U);
    EXPECT_EQ(result.accesses[0].failure, QStringLiteral("the PLC does not answer"));
    EXPECT_FALSE(result.accesses[0].value);
    EXPECT_FALSE(registers.words.contains(QStringLiteral("L1/D/0")));
}

TEST_F(MacroEngineTest, LetsTheMacroCatchARegisterThatFails)
{
    EXPECT_EQ(outputOf("print(pcall(setdata, 'away', 'D%1', 100, 1, 0, 5, DATA_TYPE_WUB))"),
              "false\tcannot write D%1 100 of \"away\", station 1: the PLC does not answer");
}

TEST_F(MacroEngineTest, RefusesWordsThatAreNoBcdNumberAndValuesThatAreNoNumber)
{
    word("D", 0) = 0x12AB;
    MacroResult result = run("local x = getdata('L1', 'D', 0, 1, 0, DATA_TYPE_WD)");
    EXPECT_EQ(result.outcome, MacroOutcome::Failed);
    EXPECT_EQ(result.message.toStdString(), "cannot read D 0 of \"L1\", station 1: it holds no BCD number");
    ASSERT_EQ(result.accesses.size(), 1U);
    EXPECT_FALSE(result.accesses[0].value);

    result = run("setdata('L1', 'D', 1, 1, 0, 0/0, DATA_TYPE_DF)");
    EXPECT_EQ(result.outcome, MacroOutcome::Failed);
    EXPECT_EQ(result.message.toStdString(),
              "cannot write D 1 of \"L1\", station 1: the value is not a number (NaN)");
    EXPECT_EQ(word("D", 1), 0);
}

TEST_F(MacroEngineTest, RefusesArgumentsThatNameNoRegister)
{
    const struct
    {
        const char *text, *message;
    } rows[] = {
        {"getdata()", "bad argument #1 to 'getdata' (string expected, got no value)"},
        {"getdata('L1', nil, 0, 1, 0, 0)", "bad argument #2 to 'getdata' (string expected, got nil)"},
        {"getdata('L1', 'D', 1.5, 1, 0, 0)",
         "bad argument #3 to 'getdata' (number has no integer representation)"},
        {"getdata('L1', 'D', 2147483648, 1, 0, 0)",
         "bad argument #3 to 'getdata' (a number of 32 bits is expected)"},
        {"getdata('L1', 'D', 0, -2147483649, 0, 0)",
         "bad argument #4 to 'getdata' (a number of 32 bits is expected)"},
        {"getdata('L1', 'D', 0, 1, 0, 8)", "bad argument #6 to 'getdata' (a DATA_TYPE_ is expected)"},
        {"getdata('L1', 'D', 0, 1, 0, -1)", "bad argument #6 to 'getdata' (a DATA_TYPE_ is expected)"},
        {"getdata('L1', 'D', 0, 1, 0)", "bad argument #6 to 'getdata' (number expected, got no value)"},
        {"setdata('L1', 'D', 0, 1, 0, 5, nil)", "bad argument #7 to 'setdata' (number expected, got nil)"},
        {"setdata('L1', 'D', 0, 1, 0, nil, 0)", "bad argument #6 to 'setdata' (number expected, got nil)"},
        {"setdata('L1', 'D', 0, 1, 0, 'high', 0)",
         "bad argument #6 to 'setdata' (number expected, got string)"},
        {"setdata('L1', 'D', 0, 1, 0, {}, 0)", "bad argument #6 to 'setdata' (number expected, got table)"},
    };
    for (const auto &row : rows) {
        const MacroResult result = run(row.text);
        EXPECT_EQ(result.outcome, MacroOutcome::Failed) << row.text;
        EXPECT_EQ(result.message.toStdString(), row.message);
    }
    EXPECT_TRUE(registers.calls.isEmpty());
}

TEST_F(MacroEngineTest, TellsTheAuthorsLineOfASyntaxError)
{
    const MacroResult result = run("local x = 1\nlocal y =\nend\n");
    EXPECT_EQ(result.outcome, MacroOutcome::BadSyntax);
    EXPECT_EQ(result.line, 3);
    EXPECT_EQ(result.message.toStdString(), "unexpected symbol near 'end'");
}

TEST_F(MacroEngineTest, TellsTheAuthorsLineOfAnError)
{
    const struct
    {
        const char *text;
        int line;
        const char *message;
    } rows[] = {
        {"local x = 1\nx = x .. nil\n", 2, "attempt to concatenate a nil value"},
        {"\n\nerror('boom')", 3, "boom"},
        {"local function f()\n  error('boom')\nend\nf()", 2, "boom"},
        {"local function f()\n  error('boom', 2)\nend\n\nf()", 5, "boom"},
        {"\nerror('boom', 0)", 2, "boom"},
        {"\nerror({})", 2, "an error that is no text but a table"},
        {"\nerror()", 2, "an error that is no text but a nil"},
        {"\nerror(42)", 2, "an error that is no text but a number"},
        {"\nerror('')", 2, "an error without a text"},
        {"\nerror('', 0)", 2, "an error without a text"},
        {"\nlocal ok, e = pcall(function()\n  error('boom')\nend)\nerror(e)", 3, "boom"},
        {"\nlocal t = {1, 'x'}\n\ntable.sort(t)", 4, "attempt to compare string with number"},
        {"local f = coroutine.wrap(function()\n  error('inside')\nend)\nf()", 2, "inside"},
        {"\n\n(nil)()", 3, "attempt to call a nil value"},
        {"\ncoroutine.yield(1)", 2, "attempt to yield from outside a coroutine"},
        {"\nlocal x = #5", 2, "attempt to get length of a number value"},
    };
    for (const auto &row : rows) {
        const MacroResult result = run(row.text);
        EXPECT_EQ(result.outcome, MacroOutcome::Failed) << row.text;
        EXPECT_EQ(result.line, row.line) << row.text;
        EXPECT_EQ(result.message.toStdString(), row.message) << row.text;
    }
}

TEST_F(MacroEngineTest, LooksForTheLineOfAnAccessInAHundredCalls)
{
    const auto lineAtDepth = [this](int depth) {
        const MacroResult result =
            run(QStringLiteral("local f = load([[local g, n = ...\n"
                               "if n == 0 then return getdata('L1', 'D', 0, 1, 0, DATA_TYPE_WUB) end\n"
                               "return 1 + g(g, n - 1)]], '=part')\n\nf(f, %1)")
                    .arg(depth));
        EXPECT_EQ(result.accesses.size(), 1U) << qPrintable(result.message);
        return result.accesses.empty() ? -1 : result.accesses[0].line;
    };
    EXPECT_EQ(lineAtDepth(0), 5);
    EXPECT_EQ(lineAtDepth(97), 5); // below 98 calls of the loaded text, and that of getdata
    EXPECT_EQ(lineAtDepth(98), 0);
    EXPECT_EQ(lineAtDepth(5000), 0);
}

TEST_F(MacroEngineTest, KeepsAZeroInAnErrorsText)
{
    EXPECT_EQ(messageOf("error('\\0boom')"), std::string("\0boom", 5));
}

TEST_F(MacroEngineTest, PutsTheMacrosNameInFrontOfLuasOwnMessages)
{
    EXPECT_EQ(outputOf("\nprint(select(2, pcall(error, 'boom')))\nprint(select(2, pcall(function() "
                       "error('boom') end)))"),
              "boom|Fill:3: boom");
    name = QStringLiteral("灌装").repeated(30);
    EXPECT_EQ(outputOf("print(select(2, pcall(function() error('boom') end)))"),
              "灌装灌装灌装灌装灌装灌装灌装灌装:1: boom");
    EXPECT_EQ(messageOf("error('boom')"), "boom");
}

TEST_F(MacroEngineTest, PrintsALineACall)
{
    EXPECT_EQ(
        outputOf("print()\nprint(1, 2.5, nil, true, '温度')\nprint(setmetatable({}, {__tostring = function() "
                 "return 'named' end}))"),
        "|1\t2.5\tnil\ttrue\t温度|named");
}

TEST_F(MacroEngineTest, LeavesNothingBehindForTheNextMacro)
{
    ASSERT_TRUE(
        run("x = 1\nstring.upper = nil\ngetmetatable('').__index = nil\nDATA_TYPE_WD = nil").isDone());
    EXPECT_EQ(outputOf("print(x, DATA_TYPE_WD, ('a'):upper())"), "nil\t3\tA");
}

TEST_F(MacroEngineTest, RunsARewrittenMacroThatAnEventCarries)
{
    ObjectTree project;
    object *list = ObjectTree::appendChild(project.root(), QStringLiteral("macroVarList"));
    ObjectTree::setNumber(list, QStringLiteral("number"), 2);
    ObjectTree::setText(list, QStringLiteral("var0"), QStringLiteral("level,L1,1,D,100,0,1,"));
    ObjectTree::setText(list, QStringLiteral("var1"), QStringLiteral("fill level,L1,1,D,200,0,5,"));
    helpMacroLua::initMacroVarTable(project.root());
    ObjectTree item;
    ObjectTree::setNumber(item.root(), QStringLiteral("macroMode"), 1);
    ObjectTree::setText(item.root(), QStringLiteral("pressmacro"),
                        QStringLiteral("  local l = level;\r\n  fill level = l * -2;\r\nprint(l)"));
    itemMacro macro;
    helpMacroLua::loadItemMacro(item.root(), macro);
    const std::unique_ptr<InterfaceAll> argument(macro.pressArg);
    helpMacroLua::runLua(macro, ITEM_MACRO_PRESS);
    const auto entry = takeEventLibraryEntry();
    ASSERT_TRUE(entry);
    const auto *event =
        dynamic_cast<const UExternalFuncCallEvent *>(std::get<PostedEvent>(*entry).event.get());
    ASSERT_NE(event, nullptr);

    word("D", 100) = 21;
    const auto result = MacroEngine(registers).run(name, *event);
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->isDone()) << qPrintable(result->message);
    EXPECT_EQ(word("D", 200), 0xFFD6);
    EXPECT_EQ(word("D", 201), 0xFFFF);
    EXPECT_EQ(result->accesses.size(), 2U);
}

TEST_F(MacroEngineTest, DoesNotRunWhatIsNoMacro)
{
    MacroEngine engine(registers);
    InterfaceAll argument;
    EXPECT_FALSE(engine.run(name, UExternalFuncCallEvent(QStringLiteral("runLua"), nullptr)));
    EXPECT_FALSE(engine.run(name, UExternalFuncCallEvent(QStringLiteral("runLua"), &argument)));
    argument.args.append(nullptr);
    EXPECT_FALSE(engine.run(name, UExternalFuncCallEvent(QStringLiteral("runLua"), &argument)));
    QString text = QStringLiteral("x = 1");
    argument.args[0] = &text;
    EXPECT_FALSE(engine.run(name, UExternalFuncCallEvent(QStringLiteral("other"), &argument)));
    EXPECT_TRUE(engine.run(name, UExternalFuncCallEvent(QStringLiteral("runLua"), &argument)));
}
