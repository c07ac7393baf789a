// The export of many rows, with its progress on the screen.
#pragma once

#include "simulator/host/tablefile.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

class ProgressBar;
class TipsProgressBar;

namespace panelkit::simulator {

// What is to be exported, and where to.
struct ExportJob
{
    QStringList header;
    // Rows by their place; they must stay until the export has finished.
    std::function<QList<QStringList>(std::size_t first, std::size_t count)> rows;
    std::size_t rowCount = 0;
    QString path;
};

// One export at a time, by the library. The displays stand on the window of `owner` and go at the end of each
// export, at the latest with the exporter.
class TableExporter : public QObject
{
    Q_OBJECT
public:
    explicit TableExporter(QWidget *owner);
    ~TableExporter() override;

    bool isBusy() const { return m_isBusy; }
    const ExportJob &job() const { return m_job; }

    // Writes a slice of rows behind the other; between two slices events are handled.
    void writeCsv(const ExportJob &job);

    // Writes the whole file in one go, as soon as `notice` is to be seen.
    void writePdf(const ExportJob &job, const QString &notice);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void finished(bool isWritten);

private:
    void begin(const ExportJob &job);
    void writeSlice();
    void drawPdf();
    void end(bool isWritten);

    QWidget *m_owner;
    ExportJob m_job;
    std::size_t m_written = 0; // rows
    bool m_isBusy = false;
    QTimer m_step;
    QPointer<ProgressBar> m_progress;
    QPointer<TipsProgressBar> m_notice;
};

} // namespace panelkit::simulator
