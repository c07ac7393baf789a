#include "simulator/window/exportpage.h"

#include "runtime/systemroot.h"
#include "simulator/host/panelfiles.h"
#include "simulator/host/session.h"
#include "simulator/window/fingerscrollarea.h"
#include "simulator/window/pageparts.h"
#include "simulator/window/twocolumns.h"
#include "widgets/filebrowser.h"
#include "widgets/touch.h"

#include <QComboBox>
#include <QFileInfo>
#include <QHideEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace panelkit::simulator {

namespace {

const int samplingInterval = 5000; // milliseconds

// A hundred pages; a longer file is nothing to look at, and the screen would stand still too long.
const std::size_t mostRowsInPdf = 8000;

enum What
{
    ValuesNow,
    History
};

enum Format
{
    Csv,
    Pdf
};

QString onThisMachine(const char *panelPath)
{
    return tools_systemRoot() + QLatin1String(panelPath);
}

} // namespace

ExportPage::ExportPage(Session &session, QWidget *parent)
    : Page(parent),
      m_history(session),
      m_exporter(new TableExporter(this)),
      m_folder(onThisMachine(exportFolder))
{
    buildLayout();
    connect(m_chooseFolder, &QPushButton::clicked, this, &ExportPage::chooseFolder);
    connect(m_export, &QPushButton::clicked, this, &ExportPage::startExport);
    connect(m_exporter, &TableExporter::finished, this, &ExportPage::sayOutcome);
    connect(&m_sampling, &QTimer::timeout, this, &ExportPage::sample);
    m_sampling.start(samplingInterval);
    retranslate();
}

ExportPage::~ExportPage()
{
    delete m_browser;
}

void ExportPage::buildLayout()
{
    auto *const columns = new TwoColumns(1, 1, nullptr);
    m_what = new ChoiceRow({"valuesNow", "history"}, columns);
    m_whatField = new CaptionedField(m_what, columns);
    m_format = new ChoiceRow({"csv", "pdf"}, columns);
    m_formatField = new CaptionedField(m_format, columns);
    columns->first()->addWidget(m_whatField);
    columns->first()->addWidget(m_formatField);

    m_chooseFolder = new QPushButton(columns);
    m_chooseFolder->setObjectName(QStringLiteral("chooseFolder"));
    m_chooseFolder->setMinimumHeight(fingerHeight);
    m_folderField = new CaptionedField(m_chooseFolder, columns);
    m_folderText = new SentenceLabel("folder", Part::Hint, columns);
    m_rowCount = new SentenceLabel("rowCount", Part::Hint, columns);
    columns->second()->addWidget(m_folderField);
    columns->second()->addWidget(m_folderText);
    columns->second()->addWidget(m_rowCount);

    auto *const bottom = new TwoColumns(2, 1, this);
    m_result = new SentenceLabel("result", Part::Hint, bottom);
    m_export = new QPushButton(bottom);
    m_export->setObjectName(QStringLiteral("export"));
    m_export->setMinimumHeight(fingerHeight);
    setPart(m_export, Part::Primary);
    bottom->first()->addWidget(m_result);
    bottom->second()->addWidget(m_export);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(6);
    layout->addWidget(new FingerScrollArea(columns, this), 1);
    layout->addWidget(bottom);
}

QString ExportPage::title() const
{
    return tr("Export");
}

void ExportPage::retranslate()
{
    m_whatField->setCaption(tr("Rows"));
    m_what->setTexts({tr("Now"), tr("History")});
    m_formatField->setCaption(tr("Format"));
    m_format->setTexts({tr("CSV"), tr("PDF")});
    m_folderField->setCaption(tr("Folder"));
    m_chooseFolder->setText(tr("Choose..."));
    m_chooseFolder->setAccessibleName(tr("Choose the folder"));
    m_export->setText(tr("Export"));
    m_result->say(Part::Hint, QString());
    showFolder();
    refresh();
    if (m_browser)
        retranslateBrowser();
}

// Starting anew in the language of the moment takes the browser to its first root: it is led back.
void ExportPage::retranslateBrowser()
{
    const QString shown = m_browser->getSelectFile().value(0);
    m_browser->setTitle(tr("Folder for the export"));
    m_browser->setFileBrowserInfo(
        {{tr("Internal storage"), onThisMachine(exportFolder)}, {tr("USB disk"), onThisMachine(usbFolder)}});
    m_browser->reTranslateUI();
    auto *const roots = m_browser->findChild<QComboBox *>(QStringLiteral("cb_root_name"));
    roots->setCurrentIndex(shown.startsWith(onThisMachine(usbFolder)) ? 1 : 0);
    if (QFileInfo(shown).isDir())
        m_browser->showDir(shown);
}

void ExportPage::refresh()
{
    m_rowCount->setText(tr("The history has %1 rows.").arg(m_history.rowCount()));
}

void ExportPage::hideEvent(QHideEvent *event)
{
    // Not deleted here: when the window hides, the toolkit is going through its children, and this is one.
    if (m_browser && !event->spontaneous()) {
        m_browser->hide();
        m_browser->deleteLater();
    }
    Page::hideEvent(event);
}

void ExportPage::sample()
{
    // The rows that are being exported keep their places.
    if (!m_exporter->isBusy())
        m_history.sample(QDateTime::currentDateTime());
}

void ExportPage::showFolder()
{
    const QString root = tools_systemRoot();
    const bool isOfPanel = m_folder.startsWith(root);
    m_folderText->say(Part::Hint, breakablePath(isOfPanel ? m_folder.mid(root.size()) : m_folder));
}

void ExportPage::chooseFolder()
{
    delete m_browser;
    m_browser = new FileBrowser(window());
    m_browser->setBroType(FileBro_Folder);
    m_browser->showDir(m_folder);
    retranslateBrowser();
    connect(m_browser, &FileBrowser::fileBro_OK, this, &ExportPage::takeFolder);
    connect(m_browser, &FileBrowser::fileBro_Cancel, m_browser, &QObject::deleteLater);
    m_browser->show();
    m_browser->raise();
}

void ExportPage::takeFolder()
{
    const QString chosen = m_browser->getSelectFile().value(0);
    if (!chosen.isEmpty())
        m_folder = chosen;
    m_browser->deleteLater();
    showFolder();
}

void ExportPage::startExport()
{
    sample();
    const QDateTime now = QDateTime::currentDateTime();
    const bool isCsv = m_format->chosen() == Csv;
    std::size_t rowCount = m_history.rowCount();
    m_skippedRows = 0;
    if (m_what->chosen() == ValuesNow) {
        rowCount = m_history.rowsPerSample();
    } else if (!isCsv && rowCount > mostRowsInPdf) {
        m_skippedRows = rowCount - mostRowsInPdf;
        rowCount = mostRowsInPdf;
    }
    m_firstRow = m_history.rowCount() - rowCount;

    ExportJob job;
    const QStringList titles{tr("Time"), tr("Item"), tr("Address"), tr("Value")};
    job.header << titles.join(QLatin1Char(','));
    job.rows = [this](std::size_t first, std::size_t count) {
        return m_history.rows(m_firstRow + first, count);
    };
    job.rowCount = rowCount;
    const QString name =
        m_what->chosen() == ValuesNow ? QStringLiteral("values-") : QStringLiteral("history-");
    job.path = freeFile(m_folder, name + now.toString(QStringLiteral("yyyyMMdd-HHmmss")),
                        isCsv ? QStringLiteral("csv") : QStringLiteral("pdf"));

    m_export->setEnabled(false);
    m_chooseFolder->setEnabled(false);
    m_result->say(Part::Hint, tr("Writing..."));
    if (isCsv)
        m_exporter->writeCsv(job);
    else
        m_exporter->writePdf(job, tr("Writing %1...").arg(QFileInfo(job.path).fileName()));
}

void ExportPage::sayOutcome(bool isWritten)
{
    m_export->setEnabled(true);
    m_chooseFolder->setEnabled(true);
    const QFileInfo file(m_exporter->job().path);
    const QString rowCount = QString::number(m_exporter->job().rowCount);
    const QString size = QString::number(file.size());
    if (isWritten && m_skippedRows > 0)
        m_result->say(Part::Notice,
                      tr("%1: the last %2 rows of %3, %4 bytes")
                          .arg(file.fileName(), rowCount, QString::number(m_history.rowCount()), size));
    else if (isWritten)
        m_result->say(Part::Notice, tr("%1: %2 rows, %3 bytes").arg(file.fileName(), rowCount, size));
    else if (file.exists())
        m_result->say(Part::Refusal,
                      tr("%1 is not whole: there is too little room in the folder.").arg(file.fileName()));
    else
        m_result->say(Part::Refusal, tr("Nothing can be written to this folder. Choose another one."));
}

} // namespace panelkit::simulator
