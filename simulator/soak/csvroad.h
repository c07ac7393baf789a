// Rows appended to a CSV file in slices, on a disk that fills up.
#pragma once

#include "simulator/soak/road.h"

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

namespace panelkit::simulator {

// Every row has to be in the file, byte by byte, or to have been reported as not written; and a slice that
// fails must leave alone what the file held.
class CsvRoad final : public Road
{
public:
    CsvRoad() : Road(QStringLiteral("CSV export")) {}

    void beginShift(Session &) override {}
    void endShift() override;
    void act(Chance &chance) override;

    // Exports the rows and looks at the file. `room` is the size that the file may reach; -1 for any.
    void exportSlice(const QList<QStringList> &rows, qint64 room = -1);

    // Reads the whole file back and compares it.
    void judgeFile();

    QString path() const { return m_folder.filePath(QStringLiteral("rows.csv")); }

    quint64 rowsExported() const { return m_rowsExported; }
    quint64 rowsInFiles() const { return m_rowsInFiles; }
    quint64 rowsReported() const { return m_rowsReported; }

private:
    QList<QStringList> drawRows(Chance &chance);
    void exportToNowhere(Chance &chance);
    void judgeRefusal(const QByteArray &slice);
    void beginNewFile();

    QTemporaryDir m_folder;
    QByteArray m_expected;             // of the file
    QList<QStringList> m_expectedRows; // the same
    quint64 m_rowsExported = 0;
    quint64 m_rowsInFiles = 0;
    quint64 m_rowsReported = 0;
};

} // namespace panelkit::simulator
