// Exports what the items show, now or since the panel runs.
#pragma once

#include "simulator/host/valuehistory.h"
#include "simulator/window/page.h"
#include "simulator/window/tableexporter.h"

#include <QPointer>
#include <QTimer>

class FileBrowser;
class QLabel;
class QPushButton;

namespace panelkit::simulator {

class CaptionedField;
class ChoiceRow;
class FingerScrollArea;
class SentenceLabel;
class Session;

// Samples the items every few seconds as long as it exists, whatever page is in front. Files get names with
// the time, and none is ever overwritten.
class ExportPage final : public Page
{
    Q_OBJECT
public:
    ExportPage(Session &session, QWidget *parent); // `session` must live longer
    ~ExportPage() override;

    QString title() const override;
    void refresh() override;

    ValueHistory &history() { return m_history; }

protected:
    void retranslate() override;
    void hideEvent(QHideEvent *event) override;

private:
    void buildLayout();
    void retranslateBrowser();
    void sample();
    void chooseFolder();
    void takeFolder();
    void startExport();
    void sayOutcome(bool isWritten);
    void showFolder();

    ValueHistory m_history;
    QTimer m_sampling;
    TableExporter *m_exporter;
    QString m_folder;
    std::size_t m_firstRow = 0;    // of the history, in the file
    std::size_t m_skippedRows = 0; // older ones that the file would be too long with

    ChoiceRow *m_what;
    ChoiceRow *m_format;
    QPushButton *m_chooseFolder;
    QPushButton *m_export;
    CaptionedField *m_whatField;
    CaptionedField *m_formatField;
    CaptionedField *m_folderField;
    SentenceLabel *m_folderText;
    SentenceLabel *m_rowCount;
    SentenceLabel *m_result;
    QPointer<FileBrowser> m_browser;
};

} // namespace panelkit::simulator
