// A macro engine on registers in memory.
#pragma once

#include "simulator/lua/macroengine.h"
#include "tests/simulator/lua/memoryregisters.h"

#include <gtest/gtest.h>

namespace panelkit::testing {

class EngineFixture : public ::testing::Test
{
protected:
    // A time limit is none of a test's that does not set a clock: the clock stands still.
    simulator::MacroResult run(const QString &text)
    {
        simulator::MacroEngine engine(registers, limits, clock);
        engine.setOutput([this](const QString &line) { printed << line; });
        return engine.run(name, text);
    }

    simulator::MacroResult run(const char *text) { return run(QString::fromUtf8(text)); }

    simulator::MacroOutcome outcomeOf(const char *text) { return run(text).outcome; }

    std::string messageOf(const char *text) { return run(text).message.toStdString(); }

    // What a macro prints that runs to its end, with "|" between the lines.
    std::string outputOf(const char *text)
    {
        printed.clear();
        const simulator::MacroResult result = run(text);
        EXPECT_TRUE(result.isDone()) << result.line << ": " << qPrintable(result.message);
        return printed.join(QLatin1Char('|')).toStdString();
    }

    MemoryRegisters registers;
    simulator::MacroLimits limits;
    simulator::MacroEngine::Clock clock = [] {
        return std::chrono::steady_clock::time_point();
    };
    QString name = QStringLiteral("Fill");
    QStringList printed;
};

} // namespace panelkit::testing
