#include "simulator/window/tableexporter.h"

#include "simulator/window/pageparts.h"
#include "widgets/progressbar.h"
#include "widgets/tipsprogressbar.h"

#include <QEvent>
#include <QFileInfo>

#include <algorithm>

namespace panelkit::simulator {

namespace {

// A slice is long enough for its "sync" to be worth it and short enough for the screen to stay alive.
const std::size_t smallestSlice = 200;
const std::size_t mostSlices = 100;

// A notice that nobody can see, since another window covers it, is not waited for any longer.
const int longestWaitForPaint = 1000; // milliseconds

} // namespace

TableExporter::TableExporter(QWidget *owner) : QObject(owner), m_owner(owner)
{
    m_step.setSingleShot(true);
    connect(&m_step, &QTimer::timeout, this, [this] {
        if (m_notice)
            drawPdf();
        else
            writeSlice();
    });
}

TableExporter::~TableExporter()
{
    delete m_progress;
    delete m_notice;
}

void TableExporter::begin(const ExportJob &job)
{
    m_job = job;
    m_written = 0;
    m_isBusy = true;
}

void TableExporter::writeCsv(const ExportJob &job)
{
    begin(job);
    m_progress = new ProgressBar(m_owner->window());
    m_progress->UpdateProgress(0, static_cast<int>(job.rowCount), true, QFileInfo(job.path).fileName(),
                               false);
    m_step.start(0);
}

void TableExporter::writeSlice()
{
    const std::size_t slice = std::max(smallestSlice, m_job.rowCount / mostSlices);
    const std::size_t count = std::min(slice, m_job.rowCount - m_written);
    QString error;
    if (!exportCsv({m_job.header, m_job.rows(m_written, count)}, m_job.path, m_written > 0, error)) {
        end(false);
        return;
    }
    m_written += count;
    if (m_written >= m_job.rowCount) {
        end(true);
        return;
    }
    m_progress->UpdateProgress(static_cast<int>(m_written), static_cast<int>(m_job.rowCount), false,
                               QString(), false);
    m_step.start(0);
}

void TableExporter::writePdf(const ExportJob &job, const QString &notice)
{
    begin(job);
    m_notice = new TipsProgressBar(m_owner->window());
    m_notice->findChild<QWidget *>(QStringLiteral("widget"))->installEventFilter(this);
    m_notice->UpdateProgress(-1, -1, false, notice);
    m_step.start(longestWaitForPaint);
}

bool TableExporter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && m_isBusy)
        m_step.start(0); // what is being painted is on the screen then
    return QObject::eventFilter(watched, event);
}

void TableExporter::drawPdf()
{
    QString error;
    end(exportPdf({m_job.header, m_job.rows(0, m_job.rowCount)}, m_job.path, error));
}

void TableExporter::end(bool isWritten)
{
    m_isBusy = false;
    if (m_progress) {
        const int rowCount = std::max(1, static_cast<int>(m_job.rowCount));
        m_progress->UpdateProgress(rowCount, rowCount, false, QString(), !isWritten);
        m_progress->deleteLater();
        m_progress = nullptr;
    }
    if (m_notice) {
        m_notice->UpdateProgress(-1, -1, true, QString());
        m_notice->deleteLater();
        m_notice = nullptr;
    }
    Q_EMIT finished(isWritten);
}

} // namespace panelkit::simulator
