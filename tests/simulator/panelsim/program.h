// panelsim as a user runs it: with arguments, an exit code and two streams.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace panelkit::testing {

// Generous: a verdict never hangs on the machine's speed.
constexpr int programDeadline = 240'000; // milliseconds

// A leak check that panelsim is built with looks past what libraries below the toolkit keep.
inline const bool toolkitMayKeepMemory =
    qputenv("LSAN_OPTIONS", "print_suppressions=0:suppressions=" PANELKIT_TEST_LEAKS);

struct ProgramRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

// The first line of the output that begins with `start`, with runs of blanks as one.
inline QString lineOf(const ProgramRun &run, const char *start)
{
    for (const QString &line : run.out.split(QLatin1Char('\n')))
        if (line.startsWith(QLatin1String(start)))
            return line.simplified();
    return QString();
}

inline ProgramRun runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.closeWriteChannel();
    if (!process.waitForFinished(programDeadline) || process.exitStatus() != QProcess::NormalExit) {
        ADD_FAILURE() << "panelsim " << arguments.join(QLatin1Char(' ')).toStdString()
                      << " did not end by itself";
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

inline ProgramRun runPanelsim(const QStringList &arguments)
{
    return runProgram(QStringLiteral(PANELSIM), arguments);
}

// A line for the shell, in which "$0" is panelsim and "$@" are the arguments.
inline ProgramRun runInShell(const char *line, const QStringList &arguments)
{
    return runProgram(QStringLiteral("sh"),
                      QStringList{QStringLiteral("-c"), QLatin1String(line), QStringLiteral(PANELSIM)} +
                          arguments);
}

// `panelsim serve` from construction to destruction.
class ServingPanelsim
{
public:
    explicit ServingPanelsim(const QStringList &arguments = {})
    {
        m_process.start(QStringLiteral(PANELSIM), QStringList(QStringLiteral("serve")) + arguments);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(programDeadline)) {
        }
        greeting = QString::fromUtf8(m_process.readLine());
    }

    ~ServingPanelsim()
    {
        m_process.terminate();
        m_process.waitForFinished(programDeadline);
    }

    // Ends it as Ctrl-C does, and gives its exit code.
    int end()
    {
        m_process.terminate();
        EXPECT_TRUE(m_process.waitForFinished(programDeadline));
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
        return m_process.exitCode();
    }

    QString address() const { return greeting.section(QLatin1Char(' '), 5, 5).remove(QLatin1Char(';')); }

    QString greeting;

private:
    QProcess m_process;
};

} // namespace panelkit::testing
