// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PARTIALFILE_H
#define TIDEL_PARTIALFILE_H

#include "resumepoint.h"

#include <QFile>

namespace Tidel {

/// The bytes of a file that is being downloaded, in a hidden file beside its place. They stay there if the
/// download ends early and its server can be asked for the rest. One downloader of all processes has this
/// file. Others that download the same file have private ones, which do not stay.
class PartialFile
{
public:
    PartialFile() = default;
    /// Removes the file, unless the rest can be asked for.
    ~PartialFile();
    PartialFile(const PartialFile &) = delete;
    PartialFile &operator=(const PartialFile &) = delete;

    /// Opens the file of what is downloaded from \a address to \a folder. Returns false on failure.
    bool open(const QString &folder, const QString &address);
    /// What takes the bytes. Its position is the end.
    QFile &device() { return m_file; }

    /// Where the file ends; valid if it can be continued.
    ResumePoint resumePoint() const;
    /// Returns true if no byte is missing; otherwise returns false.
    bool isComplete() const;

    /// Begins again with the first byte of the file that \a point describes.
    void restart(const ResumePoint &point);
    /// Writes the complete file to the disk and gives it the permissions of a usual one.
    bool finish();
    /// Moves the file to \a path, which must not exist.
    bool moveTo(const QString &path);
    /// Removes the file.
    void discard();

private:
    bool openShared(const QString &path);
    bool openPrivate(const QString &folder);
    QString notePath() const;
    void readNote();
    void writeNote() const;

    QFile m_file;
    QString m_path; ///< Empty if there is no file.
    bool m_isShared = false;
    ResumePoint m_origin; ///< The offset is not kept.
};

} // namespace Tidel

#endif
