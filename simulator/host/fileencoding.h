// Which encoding a text file has, and why.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace panelkit::simulator {

struct FileEncoding
{
    int code;             // as FileCharacterEncoding gives it
    QString name;         // for people
    QByteArray codecName; // for QTextCodec
    QString reason;
};

// Nothing, with one line in `error`, when the file cannot be read.
std::optional<FileEncoding> fileEncoding(const QString &path, QString &error);

} // namespace panelkit::simulator
