// Programs of the system that read what we write.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

namespace panelkit::testing {

// What `program` prints when it is given `input`; a failure of the test when it does not run or complains.
inline QByteArray outputOf(const char *program, const QStringList &arguments,
                           const QByteArray &input = QByteArray())
{
    const int deadline = 120000; // milliseconds; a busy machine, not a slow program
    QProcess process;
    process.start(QString::fromLatin1(program), arguments);
    if (!process.waitForStarted(deadline)) {
        ADD_FAILURE() << program << " is not installed";
        return QByteArray();
    }
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(deadline) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        ADD_FAILURE() << program << " failed: " << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

} // namespace panelkit::testing
