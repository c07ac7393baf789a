// Tables exported to PDF files, on a disk that fills up.
#pragma once

#include "simulator/soak/road.h"

#include <QTemporaryDir>

namespace panelkit::simulator {

// Every line of a table has to be on a page of the file, or the export has to be reported as not whole.
class PdfRoad final : public Road
{
public:
    PdfRoad() : Road(QStringLiteral("PDF export")) {}

    void beginShift(Session &) override {}
    void endShift() override {}
    void act(Chance &chance) override;

    // Looks at the file, which has to hold so many lines.
    void judgeFile(int lines);

    QString path() const { return m_folder.filePath(QStringLiteral("rows.pdf")); }

private:
    QTemporaryDir m_folder;
};

} // namespace panelkit::simulator
