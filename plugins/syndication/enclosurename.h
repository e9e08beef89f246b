// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSURENAME_H
#define TIDEL_ENCLOSURENAME_H

#include <QString>
#include <QUrl>

namespace Tidel {

/// What the file of an enclosure is to be called, after its address: a name for one file of a folder, which
/// is not hidden, short enough for every file system, and without characters that turn or end a line.
class EnclosureName
{
public:
    explicit EnclosureName(const QUrl &address);

    /// "episode.mp3" for the \a number 1, "episode-2.mp3" for 2.
    QString attempt(int number) const;

private:
    QString m_stem;
    QString m_suffix; // with its dot, or empty
};

} // namespace Tidel

#endif
