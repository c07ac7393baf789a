// Tables on their way into files: what a project's items show, or what a CSV file holds.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace panelkit::simulator {

class Session;
struct ItemDisplay;

struct Table
{
    QStringList header; // lines, each a list of titles separated by commas
    QList<QStringList> rows;
};

// A row for each item of the session's project, of which `displays` are: time, name, address and the text on
// the screen. The text is empty where the value is not current, so that nobody takes it for a measured zero.
Table itemTable(const Session &session, const std::vector<ItemDisplay> &displays, const QDateTime &time);

inline constexpr qint64 largestTableFile = 64LL * 1024 * 1024; // bytes

// The table of a CSV file in any encoding that is recognised, its first line being the header; a pipe is read
// to its end. Nothing, with one line in `error`, when the file cannot be read, or is larger than that.
std::optional<Table> readTable(const QString &path, QString &error);

// The path of a file in `folder` that does not exist yet: "NAME.SUFFIX", or with "-2", "-3" ... behind the
// name.
QString freeFile(const QString &folder, const QString &name, const QString &suffix);

// Export a table with the library, which reports nothing, and look at the file. False, with one line in
// `error`, when it cannot be written, or not whole; the file is then as it was before, but for the beginning
// of the rows that were to be appended.
bool exportCsv(const Table &table, const QString &path, bool append, QString &error);
bool exportPdf(const Table &table, const QString &path, QString &error); // takes a QGuiApplication

} // namespace panelkit::simulator
