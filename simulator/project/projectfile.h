// Reading a project file.
#pragma once

#include "simulator/project/project.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace panelkit::simulator {

// Why a project file was refused: the first fault in it.
struct ProjectError
{
    QString
        where; // path of the value, "items[3].digits", or "line 7, column 12" of a syntax error, or the file
    QString found;    // what stood there, long texts cut
    QString expected; // what may stand there

    // One line: "items[3].digits: found 99, expected a whole number from 1 to 32".
    QString text() const;
};

// The project of a file's bytes, with every default filled in and every value checked. Nothing if the file is
// refused: `error` then says why, and nothing of the file counts. On success `error` is left alone.
std::optional<Project> readProject(const QByteArray &json, ProjectError &error);

// The bytes of a file by its path, of 16 MiB at most, as they are.
std::optional<QByteArray> readProjectBytes(const QString &path, ProjectError &error);

// The project of such a file.
std::optional<Project> readProjectFile(const QString &path, ProjectError &error);

} // namespace panelkit::simulator
