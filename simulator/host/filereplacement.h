// A file that is written anew, whole or not at all.
#pragma once

#include <QString>

namespace panelkit::simulator {

// The new content is written to `workPath()`, which is a file beside the target that takes its place with one
// step and has its permissions. Where that cannot be, as with a device, a pipe, or a file in a folder that
// may not be written, it is a temporary file whose content is copied into the target. Without `finish` the
// target stays as it was; nothing is left behind.
class FileReplacement
{
public:
    explicit FileReplacement(const QString &target);
    ~FileReplacement();
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;

    // Both give false, with one line in `error`, when the target cannot be written.
    bool begin(QString &error);
    bool finish(QString &error);

    QString workPath() const { return m_workPath; }

private:
    bool makeBeside(QString &error);
    bool makeElsewhere(QString &error);
    bool copyIntoTarget(QString &error) const;

    const QString m_target;
    QString m_place; // of the target, behind symbolic links; empty while the work file is not beside it
    QString m_workPath;
};

// Removes what unfinished replacements have written. From any thread, when the process is about to end.
void removeUnfinishedFiles();

} // namespace panelkit::simulator
