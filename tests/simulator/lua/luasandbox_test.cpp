#include "simulator/lua/luasandbox.h"
#include "tests/simulator/lua/enginefixture.h"

#include <cstring>

using namespace panelkit::simulator;

class LuaSandbox : public panelkit::testing::EngineFixture
{
protected:
    // The names in a table of the macro's world, sorted.
    std::string namesIn(const std::string &table)
    {
        const std::string text = "local names = {}\nfor name in pairs(" + table +
                                 ") do names[#names + 1] = name end\ntable.sort(names)\n"
                                 "print(table.concat(names, ' '))";
        return outputOf(text.c_str());
    }
};

TEST_F(LuaSandbox, HoldsExactlyTheseGlobals)
{
    EXPECT_EQ(namesIn("_G"),
              "DATA_TYPE_BIT DATA_TYPE_DB DATA_TYPE_DD DATA_TYPE_DF DATA_TYPE_DUB DATA_TYPE_WB DATA_TYPE_WD "
              "DATA_TYPE_WUB _G _VERSION assert coroutine error getdata getmetatable ipairs load math next "
              "pairs pcall "
              "print rawequal rawget rawlen rawset select setdata setmetatable string table tonumber "
              "tostring type utf8 "
              "xpcall");
}

TEST_F(LuaSandbox, HoldsExactlyTheseLibraries)
{
    EXPECT_EQ(namesIn("string"),
              "byte char find format gmatch gsub len lower match pack packsize rep reverse sub unpack upper");
    EXPECT_EQ(namesIn("table"), "concat insert move pack remove sort unpack");
    EXPECT_EQ(namesIn("coroutine"), "close create isyieldable resume running status wrap yield");
    EXPECT_EQ(namesIn("utf8"), "char charpattern codepoint codes len offset");
    EXPECT_EQ(namesIn("math"),
              "abs acos asin atan ceil cos deg exp floor fmod huge log max maxinteger min mininteger "
              "modf pi rad random randomseed sin sqrt tan tointeger type ult");
}

TEST_F(LuaSandbox, NumbersTheDataTypesAsDeclarationsDo)
{
    EXPECT_EQ(
        outputOf(
            "print(DATA_TYPE_BIT, DATA_TYPE_WUB, DATA_TYPE_WB, DATA_TYPE_WD, DATA_TYPE_DUB, DATA_TYPE_DB, "
            "DATA_TYPE_DD, DATA_TYPE_DF)"),
        "0\t1\t2\t3\t4\t5\t6\t7");
}

TEST_F(LuaSandbox, LoadsTextButNoBinaryChunks)
{
    EXPECT_EQ(outputOf("print(load('return 1 + 2')())"), "3");
    EXPECT_EQ(outputOf("print(load('\\27Lua'))"), "nil\tattempt to load a binary chunk (mode is 't')");
    EXPECT_EQ(outputOf("print(load('\\27Lua', 'c', 'b'))"),
              "nil\tattempt to load a binary chunk (mode is 't')");
    EXPECT_EQ(outputOf("print(load('return x', 'c', 'bt', {x = 7})())"), "7");
    EXPECT_EQ(outputOf("print(pcall(load('return x', '=c', 't', nil)))"),
              "false\tc:1: attempt to index a nil value (upvalue '_ENV')");
    EXPECT_EQ(outputOf("print(load('end', '=part'))"), "nil\tpart:1: <eof> expected near 'end'");
    EXPECT_EQ(messageOf("load(function() return nil end)"),
              "bad argument #1 to 'load' (string expected, got function)");
}

TEST_F(LuaSandbox, RunsNoBinaryMacro)
{
    EXPECT_EQ(outcomeOf("\033Lua"), MacroOutcome::BadSyntax);
}

TEST_F(LuaSandbox, HasNoFinalizers)
{
    const MacroResult result = run("\nsetmetatable({}, {__gc = function() while true do end end})");
    EXPECT_EQ(result.outcome, MacroOutcome::Failed);
    EXPECT_EQ(result.line, 2);
    EXPECT_EQ(result.message.toStdString(),
              "bad argument #2 to 'setmetatable' (finalizers (__gc) are not available)");
    // A finalizer that comes into the metatable later is none.
    EXPECT_EQ(
        outputOf("local m = {}\nlocal t = setmetatable({}, m)\nm.__gc = function() print('finalized') end\n"
                 "t = nil\nfor i = 1, 20000 do local garbage = {i} end\nprint('end')"),
        "end");
}

TEST_F(LuaSandbox, BoundedFunctionsDoWhatTheirsDo)
{
    EXPECT_EQ(outputOf("print(('hello'):find('l'))"), "3\t3");
    EXPECT_EQ(outputOf("print(('hello'):find('l', 4))"), "4\t4");
    EXPECT_EQ(outputOf("print(('a.b'):find('.', 2, true))"), "2\t2");
    EXPECT_EQ(outputOf("print(('key = 12'):match('^(%w+)%s*=%s*(%d+)$'))"), "key\t12");
    EXPECT_EQ(outputOf("for a, b in ('a1b2'):gmatch('(%a)(%d)') do print(a, b) end"), "a\t1|b\t2");
    EXPECT_EQ(outputOf("print(('hello'):gsub('l', {l = 'L'}))"), "heLLo\t2");
    EXPECT_EQ(outputOf("print(('abc'):gsub('%w', '%0%0', 2))"), "aabbc\t2");
    EXPECT_EQ(outputOf("print(('ab'):rep(3, '-'), (''):rep(5), (''):rep(3, ','), ('a'):rep(0))"),
              "ab-ab-ab\t\t,,\t");
    EXPECT_EQ(outputOf("local t = {5, 2, 8}\ntable.sort(t)\nprint(table.concat(t, ' '))\n"
                       "table.sort(t, function(a, b) return a > b end)\nprint(table.concat(t, ' ', 1, 2))"),
              "2 5 8|8 5");
    EXPECT_EQ(
        outputOf("local t = {5}\ntable.insert(t, 1)\ntable.insert(t, 1, 9)\nprint(table.concat(t, ' '))\n"
                 "print(table.remove(t), table.remove(t, 1), #t)"),
        "9 5 1|1\t9\t1");
    EXPECT_EQ(outputOf("print(table.concat(table.move({1, 2, 3}, 2, 3, 1), ' '))"), "2 3 3");
    EXPECT_EQ(outputOf("print(getmetatable(setmetatable({}, {__metatable = 'locked'})))"), "locked");
    EXPECT_EQ(outputOf("local list = setmetatable({}, {__index = {add = table.insert}})\n"
                       "list:add(1)\nlist:add(2)\nprint(#list)"),
              "2");
}

TEST_F(LuaSandbox, BoundedFunctionsNameThemselvesInTheirErrors)
{
    const struct
    {
        const char *text, *message;
    } rows[] = {
        {"string.find()", "bad argument #1 to 'find' (string expected, got no value)"},
        {"string.match('a', {})", "bad argument #2 to 'match' (string expected, got table)"},
        {"string.rep('a', 'x')", "bad argument #2 to 'rep' (number expected, got string)"},
        {"('a'):match('[')", "malformed pattern (missing ']')"},
        {"('a'):match('%')", "malformed pattern (ends with '%')"},
        {"table.concat(1)", "bad argument #1 to 'concat' (table expected, got number)"},
        {"table.insert({}, 5, 1)", "bad argument #2 to 'insert' (position out of bounds)"},
        {"setmetatable(1, {})", "bad argument #1 to 'setmetatable' (table expected, got number)"},
        {"load({})", "bad argument #1 to 'load' (string expected, got table)"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(messageOf(row.text), row.message) << row.text;
}

TEST(PatternSteps, CountsWhatASearchCanChoose)
{
    const auto steps = [](std::size_t subject, const char *pattern, bool isAnchored = true) {
        return patternSteps(subject, pattern, std::strlen(pattern), isAnchored);
    };
    EXPECT_EQ(steps(10, "abc"), 11 * 4);         // where it begins
    EXPECT_EQ(steps(10, "^abc"), 5);             // nothing
    EXPECT_EQ(steps(10, "^abc", false), 11 * 5); // "^" is a character
    EXPECT_EQ(steps(10, "a*"), 66 * 3);          // 12 * 11 / 2
    EXPECT_EQ(steps(10, "^a*"), 11 * 4);
    EXPECT_EQ(steps(10, ".-b+"), 286 * 5); // 13 * 12 * 11 / 6
    EXPECT_EQ(steps(10, "%*%+"), 11 * 5);  // escaped: no repetitions
    EXPECT_EQ(steps(10, "[*+]"), 11 * 5);  // in a set: none
    EXPECT_EQ(steps(10, "[]*]"), 11 * 5);  // "]" at the begin of a set belongs to it
    EXPECT_EQ(steps(10, "[^]*]"), 11 * 6);
    EXPECT_EQ(steps(10, "[%]*]"), 11 * 6);
    EXPECT_EQ(steps(10, "[a-z]*"), 66 * 7);
    EXPECT_EQ(steps(10, "[a"), 11 * 3);
    EXPECT_EQ(steps(10, "%"), 11 * 2);
    EXPECT_EQ(steps(10, ""), 11);
    EXPECT_EQ(steps(10, "[]]*"), 66 * 5);
    EXPECT_EQ(steps(10, "[^]]*"), 66 * 6);
    EXPECT_EQ(steps(10, "[%]]*"), 66 * 6);
    EXPECT_EQ(steps(10, "[[]*"), 66 * 5);
    EXPECT_EQ(steps(10, "[%"), 11 * 3);
    EXPECT_EQ(steps(10, "[^"), 11 * 3);
    EXPECT_EQ(steps(10, "%[a*"), 66 * 5);
    EXPECT_EQ(steps(10, "%%[*]"), 11 * 6);
    EXPECT_EQ(steps(10, "%f[%w]a*"), 66 * 9);
    EXPECT_EQ(steps(10, "%f[]*]a*"), 66 * 9);
    EXPECT_EQ(steps(10, "%b()"), 11 * 5 * 11);
    EXPECT_EQ(steps(10, "%b[]a*"), 66 * 7 * 11); // what stands behind "%b" begins no set
    EXPECT_EQ(steps(10, "%b1[a*"), 66 * 7 * 11);
    EXPECT_EQ(steps(10, "%b[[a*"), 66 * 7 * 11);
    EXPECT_EQ(steps(10, "%b%[a*"), 66 * 7 * 11);
    EXPECT_EQ(steps(10, "%b%%[a]*"), 66 * 9 * 11);
    EXPECT_EQ(steps(10, "%b+*"), 11 * 5 * 11); // delimiters: no repetitions
    EXPECT_EQ(steps(10, "%b"), 11 * 3 * 11);
    EXPECT_EQ(steps(10, "%b["), 11 * 4 * 11);
    EXPECT_EQ(steps(10, "(a)%1[*]"), 11 * 9 * 11);
    EXPECT_EQ(steps(10, "(a)%1"), 11 * 6 * 11);
    EXPECT_GT(steps(100000, ".-.-.-b"), 1e18);
}
