// What the commands of panelsim share: their options, exit codes and the way they complain.
#pragma once

#include "simulator/host/itemdisplay.h"
#include "simulator/host/session.h"

#include <QCommandLineParser>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace panelkit::simulator {

enum class ExitCode
{
    Done = 0,
    Failed = 1,   // a file was refused, a check failed, something could not be written
    WrongUse = 2, // an unknown command, option or value
    NoAnswer = 3, // everything was done, but a PLC did not answer
};

// One line on stderr, "panelsim: ...", made printable.
void complain(const QString &text);

// Prints UTF-8 text on stdout. When that fails, it is complained of once, nothing more is printed, and
// QCoreApplication's loop ends. A reader who has gone from behind a pipe is not worth a complaint.
void print(const QString &text);

// What to exit with: not with Done or NoAnswer when something could not be printed.
ExitCode endOfOutput(ExitCode exitCode);

// Reads `arguments` (the command's name first). Returns nothing when the command is to run; else what it has
// to exit with, after --help has been printed or an unknown option, a surplus argument or an empty text has
// been complained of.
std::optional<ExitCode> readOptions(QCommandLineParser &parser, const QString &summary,
                                    const QStringList &arguments, int positionalCount);

// --root alone, and the options of every command that opens a project: [PROJECT], --plc and --root.
void addRootOption(QCommandLineParser &parser);
void addSessionOptions(QCommandLineParser &parser);

// The session that they ask for, with the rest from `options`, or nothing after a complaint; `exitCode` is
// then what to exit with.
std::unique_ptr<Session> openSession(const QCommandLineParser &parser, ExitCode &exitCode);
std::unique_ptr<Session> openSession(const QCommandLineParser &parser, SessionOptions options,
                                     ExitCode &exitCode);
std::unique_ptr<Session> openSession(const SessionOptions &options, ExitCode &exitCode);

// Done, or NoAnswer when the PLC of a link of the session did not answer, or owes one of the values that were
// displayed.
ExitCode doneIfEveryPlcAnswers(const Session &session, const std::vector<ItemDisplay> &displays);

// Says below which root lies what a command has set, or that it is not kept.
void sayWhatIsKept(const QCommandLineParser &parser);

// The arguments "key=value" of a command, by key, or nothing after a complaint: of an argument without "=",
// of a key that is none of `keys`, of a key that comes twice.
std::optional<QMap<QString, QString>> readAssignments(const QString &command, const QStringList &arguments,
                                                      const QStringList &keys);

} // namespace panelkit::simulator
