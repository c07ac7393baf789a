#include "tests/simulator/lua/enginefixture.h"

using namespace panelkit::simulator;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

// What ends a run is counted, or told by a clock of the test's own: no verdict depends on the machine.
class MacroLimit : public panelkit::testing::EngineFixture
{
protected:
    MacroLimit()
    {
        limits.instructions = 200'000;
        limits.memory = 1024 * 1024;
    }

    // Each look at the clock finds it a millisecond later.
    void letTimePass()
    {
        clock = [now = steady_clock::time_point()]() mutable {
            return now += milliseconds(1);
        };
        limits.instructions = 1'000'000'000'000;
        limits.time = milliseconds(100);
    }

    // Runs each text with instructions that run out, and again with time that does.
    void expectStopped(std::initializer_list<const char *> texts)
    {
        for (const char *text : texts)
            EXPECT_EQ(outcomeOf(text), MacroOutcome::TooManyInstructions) << text;
        letTimePass();
        for (const char *text : texts)
            EXPECT_EQ(outcomeOf(text), MacroOutcome::TooMuchTime) << text;
    }
};

TEST_F(MacroLimit, StopsAnEndlessLoopByItsInstructions)
{
    const MacroResult result = run("local x = 1\nwhile true do\nend\n");
    EXPECT_EQ(result.outcome, MacroOutcome::TooManyInstructions);
    EXPECT_EQ(result.line, 2);
    EXPECT_EQ(result.message.toStdString(), "stopped after 200000 instructions");
}

TEST_F(MacroLimit, StopsAnEndlessLoopByItsTime)
{
    letTimePass();
    const MacroResult result = run("local x = 1\nwhile true do\nend\n");
    EXPECT_EQ(result.outcome, MacroOutcome::TooMuchTime);
    EXPECT_EQ(result.line, 2);
    EXPECT_EQ(result.message.toStdString(), "stopped after 100 ms");
}

TEST_F(MacroLimit, CountsEachInstruction)
{
    // A turn of an empty numeric loop is one instruction; a few more begin and end the macro.
    limits.instructions = 10'050;
    EXPECT_EQ(outcomeOf("for i = 1, 9000 do end"), MacroOutcome::Done);
    EXPECT_EQ(outcomeOf("for i = 1, 10100 do end"), MacroOutcome::TooManyInstructions);
}

TEST_F(MacroLimit, CannotBeCaught)
{
    expectStopped({
        "while true do pcall(function() while true do end end) end",
        "pcall(pcall, pcall, function() while true do end end)",
        "xpcall(function() while true do end end, function() while true do end end)",
        "local function forever() while true do end end\nxpcall(error, forever)",
        "local function again() return xpcall(again, again) end\nwhile true do again() end",
        "local co = coroutine.wrap(function() while true do end end)\nwhile true do pcall(co) end",
        "while true do coroutine.resume(coroutine.create(function() while true do end end)) end",
        "local co = coroutine.create(function() while true do coroutine.yield() end end)\n"
        "while true do coroutine.resume(co) end",
        "local function f() coroutine.wrap(f)() end\nwhile true do pcall(f) end",
        "setmetatable(_G, {__index = function(t, k) while true do end end})\nprint(undefined)",
        "local t <close> = setmetatable({}, {__close = function() while true do end end})",
        "local function closing()\n"
        "  local t <close> = setmetatable({}, {__close = function() while true do end end})\n"
        "  while true do end\n"
        "end\n"
        "pcall(closing)\nwhile true do end",
        "local co = coroutine.create(function()\n"
        "  local t <close> = setmetatable({}, {__close = function() while true do end end})\n"
        "  coroutine.yield()\n"
        "end)\n"
        "coroutine.resume(co)\ncoroutine.close(co)",
        "coroutine.wrap(function()\n"
        "  local t <close> = setmetatable({}, {__close = function() while true do end end})\n"
        "  table.sort({3, 2, 1}, function() while true do end end)\n"
        "end)()",
        "table.sort({3, 2, 1}, function() while true do end end)",
        "('abc'):gsub('.', function() while true do end end)",
        "tostring(setmetatable({}, {__tostring = function() while true do end end}))",
        "print(setmetatable({}, {__tostring = function() while true do end end}))",
        "load('while true do end')()",
        "for _ in pairs(setmetatable({}, {__pairs = function() while true do end end})) do end",
        "goto again ::again:: goto again",
        "repeat until false",
        "local function f() return f() end f()",
    });
}

TEST_F(MacroLimit, LetsNothingOfTheMacroRunAfterTheStop)
{
    const char *const texts[] = {
        "local function write() setdata('L1', 'D', 0, 1, 0, 1, DATA_TYPE_WUB) print('after') end\n"
        "pcall(function() while true do end end)\nwrite()",
        "local function write() setdata('L1', 'D', 0, 1, 0, 1, DATA_TYPE_WUB) print('after') end\n"
        "xpcall(function() while true do end end, write)",
        "local function write() setdata('L1', 'D', 0, 1, 0, 1, DATA_TYPE_WUB) print('after') end\n"
        "local t <close> = setmetatable({}, {__close = write})\nwhile true do end",
        "local function write() setdata('L1', 'D', 0, 1, 0, 1, DATA_TYPE_WUB) print('after') end\n"
        "coroutine.resume(coroutine.create(function() while true do end end))\nwrite()",
        "local function write() setdata('L1', 'D', 0, 1, 0, 1, DATA_TYPE_WUB) print('after') end\n"
        "local co = coroutine.create(function()\n"
        "  local t <close> = setmetatable({}, {__close = write})\n  while true do end\nend)\n"
        "coroutine.resume(co)\ncoroutine.close(co)\nwrite()",
    };
    for (const char *text : texts) {
        EXPECT_EQ(outcomeOf(text), MacroOutcome::TooManyInstructions) << text;
        EXPECT_TRUE(registers.calls.isEmpty()) << text;
        EXPECT_TRUE(printed.isEmpty()) << text;
    }
}

TEST_F(MacroLimit, TellsWhatWasDoneBeforeTheStop)
{
    const MacroResult result = run("setdata('L1', 'D', 0, 1, 0, 7, DATA_TYPE_WUB)\nwhile true do end");
    EXPECT_EQ(result.outcome, MacroOutcome::TooManyInstructions);
    ASSERT_EQ(result.accesses.size(), 1U);
    EXPECT_EQ(std::get<qint64>(*result.accesses[0].value), 7);
}

TEST_F(MacroLimit, BoundsTheNumberOfAccesses)
{
    const MacroResult result = run("while true do getdata('L1', 'D', 0, 1, 0, DATA_TYPE_WUB) end");
    EXPECT_EQ(result.outcome, MacroOutcome::TooManyInstructions);
    EXPECT_LE(result.accesses.size(), 200'000U / 50);
    EXPECT_GT(result.accesses.size(), 200'000U / 100);
}

TEST_F(MacroLimit, BoundsTheNamesThatAnAccessMayCarry)
{
    const std::string link = "('x'):rep(193)"; // 64 characters of three bytes
    const std::string block = "('x'):rep(65)"; // 32 of two
    EXPECT_EQ(messageOf(("getdata(" + link + ", 'D', 0, 1, 0, DATA_TYPE_WUB)").c_str()),
              "bad argument #1 to 'getdata' (the name of the link is too long)");
    EXPECT_EQ(messageOf(("setdata('L1', " + block + ", 0, 1, 0, 7, DATA_TYPE_WUB)").c_str()),
              "bad argument #2 to 'setdata' (the name of the block is too long)");
    EXPECT_EQ(messageOf("getdata({}, ('x'):rep(65), 0, 1, 0, DATA_TYPE_WUB)"),
              "bad argument #1 to 'getdata' (string expected, got table)");
    const MacroResult result = run("local s = ('x'):rep(400000)\n"
                                   "for i = 1, 100 do pcall(getdata, s, 'D', 0, 1, 0, DATA_TYPE_WUB) end");
    EXPECT_EQ(result.outcome, MacroOutcome::Done);
    EXPECT_TRUE(result.accesses.empty());
    EXPECT_TRUE(registers.calls.isEmpty());
    EXPECT_EQ(outcomeOf("assert(getdata(('水'):rep(64), ('ü'):rep(32), 0, 1, 0, DATA_TYPE_WUB) == 0)"),
              MacroOutcome::Done);
}

TEST_F(MacroLimit, BoundsTheRecordOfTheAccesses)
{
    limits.record = 100 * 1024;
    for (const char *text :
         {"while true do getdata('L1', 'D', 0, 1, 0, DATA_TYPE_WUB) end",
          "while true do setdata('L1', 'D', 0, 1, 0, 7, DATA_TYPE_WUB) end",
          "while true do pcall(getdata, 'away', ('x'):rep(64), 0, 1, 0, DATA_TYPE_WUB) end"}) {
        const MacroResult result = run(text);
        EXPECT_EQ(result.outcome, MacroOutcome::TooMuchMemory) << text;
        EXPECT_EQ(result.line, 1) << text;
        EXPECT_EQ(result.message.toStdString(), "stopped: the record of its accesses needs more than 100 KiB")
            << text;
        EXPECT_LE(result.accesses.size(), 100 * 1024 / (sizeof(MacroAccess) + 96)) << text;
        EXPECT_GE(result.accesses.size(), 100 * 1024 / (sizeof(MacroAccess) + 400)) << text;
    }
    EXPECT_EQ(messageOf("local s = ('x'):rep(1e9)"), "stopped: it needs more than 1024 KiB of memory");
}

TEST_F(MacroLimit, OfTheRecordLetsAMacroFillABlockOfTheInternalStorage)
{
    limits = MacroLimits();
    const MacroResult result =
        run("for i = 0, 65535 do setdata('Internal storage area', 'LW', i, -1, 0, 7, DATA_TYPE_WUB) end");
    EXPECT_EQ(result.message.toStdString(), "");
    EXPECT_EQ(result.accesses.size(), 65536U);
}

TEST_F(MacroLimit, OfTimeIsLookedAtEvery16Instructions)
{
    int looks = 0;
    clock = [&looks] {
        ++looks;
        return steady_clock::time_point();
    };
    EXPECT_EQ(outcomeOf("for i = 1, 16000 do end"), MacroOutcome::Done);
    EXPECT_GE(looks, 1000);
    EXPECT_LE(looks, 1010);
}

TEST_F(MacroLimit, OfTimeCountsWhatRegistersTake)
{
    struct SlowRegisters final : MacroRegisters
    {
        QString read(const MacroAddress &, RegisterWords &) override
        {
            now += milliseconds(40);
            return QString();
        }
        QString write(const MacroAddress &, const RegisterWords &, std::optional<RegisterWords> &) override
        {
            return QString();
        }
        steady_clock::time_point now;
    } slow;
    limits.time = milliseconds(100);
    MacroEngine engine(slow, limits, [&slow] { return slow.now; });
    const MacroResult result = engine.run(
        name, QStringLiteral("for i = 1, 9 do\n  getdata('L1', 'D', i, 1, 0, DATA_TYPE_WUB)\nend"));
    EXPECT_EQ(result.outcome, MacroOutcome::TooMuchTime);
    EXPECT_EQ(result.accesses.size(), 3U);
}

TEST_F(MacroLimit, OfMemoryStopsWhatGrows)
{
    limits.instructions = 100'000'000;
    const char *const texts[] = {
        "local s = ('x'):rep(1e9)",
        "local s = string.rep('xyz', 1e8, ', ')",
        "local t = {}\nfor i = 1, 1e9 do t[i] = i end",
        "local s = 'x'\nwhile true do s = s .. s end",
        "local function f() return 1 + f() end\nf()",
        "local t = {}\nwhile true do t = {t} end",
        "local t = {}\nwhile true do t[#t + 1] = function() return t end end",
        "local t = {}\nwhile true do t[#t + 1] = coroutine.create(print) end",
        "local t = {}\nfor i = 1, 200 do t[i] = ('x'):rep(10000) end\ntable.concat(t)",
        "('%d'):rep(100000):format(table.unpack({}, 1, 100000))",
        "('x'):rep(300000):gsub('x', 'xxxxxxxxxx')",
        "string.pack('c100000000', 'x')",
        "select('#', table.unpack({}, 1, 500000))",
    };
    for (const char *text : texts)
        EXPECT_EQ(outcomeOf(text), MacroOutcome::TooMuchMemory) << text;
}

TEST_F(MacroLimit, OfMemoryTellsTheLine)
{
    const MacroResult result = run("local a = 1\nlocal s = ('x'):rep(1e9)\n");
    EXPECT_EQ(result.outcome, MacroOutcome::TooMuchMemory);
    EXPECT_EQ(result.line, 2);
    EXPECT_EQ(result.message.toStdString(), "stopped: it needs more than 1024 KiB of memory");
}

TEST_F(MacroLimit, OfMemoryCannotBeCaught)
{
    for (const char *text : {"pcall(string.rep, 'x', 1e9)\nprint('after')",
                             "xpcall(string.rep, print, 'x', 1e9)\nprint('after')",
                             "coroutine.resume(coroutine.create(string.rep), 'x', 1e9)\nprint('after')",
                             "local t <close> = setmetatable({}, {__close = function() print('after') end})\n"
                             "local s = ('x'):rep(1e9)",
                             "while true do pcall(string.rep, 'x', 1e9) end"}) {
        EXPECT_EQ(outcomeOf(text), MacroOutcome::TooMuchMemory) << text;
        EXPECT_TRUE(printed.isEmpty()) << text;
    }
}

TEST_F(MacroLimit, OfMemoryCountsWhatIsHeldNotWhatWasGivenBack)
{
    limits.instructions = 100'000'000;
    EXPECT_EQ(outcomeOf("for i = 1, 200 do local s = ('x'):rep(100000) .. i end"), MacroOutcome::Done);
}

TEST_F(MacroLimit, OfMemoryMayBeTooSmallForLuaItself)
{
    int done = 0;
    for (limits.memory = 0; limits.memory < 60'000; limits.memory += 499) {
        const MacroOutcome outcome = outcomeOf("local x = 1");
        done += outcome == MacroOutcome::Done ? 1 : 0;
        EXPECT_EQ(outcome, done > 0 ? MacroOutcome::Done : MacroOutcome::TooMuchMemory) << limits.memory;
    }
    EXPECT_GT(done, 0);
    EXPECT_LT(done, 100);
}

TEST_F(MacroLimit, CountsTheMemoryThatIsAskedForAsWork)
{
    EXPECT_EQ(outcomeOf("local s = ('x'):rep(200000)\nwhile true do s:upper() end"),
              MacroOutcome::TooManyInstructions);
    limits.instructions = 300;
    EXPECT_EQ(outcomeOf("local s = ('x'):rep(100)"), MacroOutcome::Done);
    EXPECT_EQ(outcomeOf("local s = ('x'):rep(100000)\nlocal x = 1"), MacroOutcome::TooManyInstructions);
}

TEST_F(MacroLimit, OfPatternsRefusesWhatCouldTakeForever)
{
    for (const char *text :
         {"('a'):rep(1e5):find('.-.-.-b')", "('a'):rep(1e5):match('.-.-.-b')",
          "('a'):rep(1e5):gsub('.-.-.-b', '')", "('a'):rep(1e5):gmatch('.-.-.-b')",
          "('a'):rep(1e5):gmatch('^a*b')", "string.find(('a'):rep(1e5), 'a*a*a*b')",
          "('a'):rep(300000):find(('a'):rep(150000) .. 'b', 1, true)", "('('):rep(1e5):match('%b()')",
          "('[]' .. ('a'):rep(300)):find('%b[].-.-.-.-.-X')",
          "('1[' .. ('a'):rep(300)):find('%b1[.-.-.-.-.-X')", "('a'):rep(300):find('.-.-.-.-.-%b[')",
          "('a'):rep(300):find('%f[]a].-.-.-.-X')", "('a'):rep(300):find('[]a].-.-.-.-X')",
          "('a'):rep(300):find('[^]].-.-.-.-X')", "('a'):rep(300):find('[%]a].-.-.-.-X')",
          "('a'):rep(300):find('.-.-.-.-.-%')", "('a'):rep(300):find('.-.-.-.-.-[a')"}) {
        const MacroResult result = run(text);
        EXPECT_EQ(result.outcome, MacroOutcome::Failed) << text;
        EXPECT_EQ(result.message.toStdString(), "the pattern is too costly for a text of this length")
            << text;
    }
}

TEST_F(MacroLimit, OfPatternsLeavesEverydayOnesAlone)
{
    EXPECT_EQ(outcomeOf("local line = ('Tank 12: level = 47.5 %; '):rep(5)\n" // 120 characters
                        "assert(line:match('^%s*(.-)%s*$'))\n"
                        "assert(line:match('(%d+)%.(%d+)'))\n"
                        "assert(line:find('(%a+) = ([%d.]+)'))\n"
                        "assert(('2024-06-07'):match('^(%d+)-(%d+)-(%d+)$'))\n"
                        "for key, value in line:gmatch('(%w+) = ([^;]+)') do assert(key == 'level') end\n"
                        "assert(('x'):rep(1e5):find('y', 1, true) == nil)\n"),
              MacroOutcome::Done);
}

TEST_F(MacroLimit, CountsTheStepsOfLoopsThatLuaRunsByItself)
{
    for (const char *text : {
             "table.move({}, 1, 1e15, 2)",
             "table.move({}, math.mininteger, math.maxinteger - 1, 2)",
             "table.concat(setmetatable({}, {__index = table.concat}), '', 1, 1e15)",
             "local base = {}\nfor i = 1, 5000 do base[i] = '' end\n"
             "local t = setmetatable({}, {__index = base})\nfor i = 1, 100 do table.concat(t, '', 1, 5000) "
             "end",
             "local a, b = ('x'):rep(1e5) .. 'a', ('x'):rep(1e5) .. 'b'\n"
             "local t = {}\nfor i = 1, 1000 do t[i] = i % 2 == 0 and a or b end\ntable.sort(t)",
             "local t = {}\nfor i = 1, 2000 do table.insert(t, 1, i) end",
             "local t = {}\nfor i = 1, 2000 do t[i] = i end\nfor i = 1, 2000 do table.remove(t, 1) end",
             "local t = {}\nfor i = 1, 2e4 do t[i] = -i end\ntable.sort(t)",
         })
        EXPECT_EQ(outcomeOf(text), MacroOutcome::TooManyInstructions) << text;
    EXPECT_EQ(outcomeOf("assert((''):rep(1e15) == '')"), MacroOutcome::Done);
}

TEST_F(MacroLimit, RefusesWhatWouldHideTheLengthOfALoop)
{
    for (const char *text : {"table.insert(setmetatable({}, {__len = function() return 1 << 60 end}), 1, 1)",
                             "table.remove(setmetatable({}, {__len = function() return 1 << 60 end}), 1)",
                             "table.concat(setmetatable({}, {__len = function() return 1 << 60 end}))",
                             "table.sort(setmetatable({}, {__len = function() return 1 << 30 end}))"})
        EXPECT_TRUE(run(text).message.endsWith(QStringLiteral("(a table without __len is expected)")))
            << text;
    EXPECT_TRUE(run("table.sort({1, 2}, rawequal)")
                    .message.endsWith(QStringLiteral("(a function of the macro's own is expected)")));
}

TEST_F(MacroLimit, OfTheTextRefusesALongerOne)
{
    limits.text = 20;
    EXPECT_EQ(outcomeOf("local x = 1 -- 67890"), MacroOutcome::Done);
    const MacroResult result = run("local x = 1 -- 678901");
    EXPECT_EQ(result.outcome, MacroOutcome::BadSyntax);
    EXPECT_EQ(result.message.toStdString(), "the text is longer than 20 bytes");
    limits.text = 100;
    EXPECT_TRUE(run("load((' '):rep(101))").message.endsWith(QStringLiteral("(the text is too long)")));
}

TEST_F(MacroLimit, OfTheOutputLeavesTheRestOut)
{
    limits.output = 20;
    ASSERT_TRUE(run("for i = 1, 100 do print('line', i) end").isDone());
    EXPECT_EQ(printed, (QStringList{QStringLiteral("line\t1"), QStringLiteral("line\t2"),
                                    QStringLiteral("(what else it prints is left out)")}));
}

TEST_F(MacroLimit, LeavesAnOrdinaryMacroAlone)
{
    limits = MacroLimits();
    EXPECT_EQ(outputOf("local sum = 0\nfor i = 1, 100000 do sum = sum + i % 7 end\nprint(sum)"), "300000");
}
