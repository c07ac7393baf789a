// A table written to a CSV file in any encoding.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QTextCodec;

namespace panelkit {

// What tools_exportToCsv does with the codec "GBK". A null codec is one that the toolkit lacks.
void exportToCsv(const QStringList &header, const QList<QStringList> &rows, const QString &path, int append,
                 QTextCodec *codec);

} // namespace panelkit
