// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSURENAME_H
#define TIDEL_ENCLOSURENAME_H

#include <QString>
#include <QUrl>

namespace Tidel {

/// The file name of an enclosure, made from its address. The file is not hidden and stays in its folder. The
/// name is short enough for every file system and has no control or formatting characters.
class EnclosureName
{
public:
    /// Creates the name of the file at \a address.
    explicit EnclosureName(const QUrl &address);

    /// "episode.mp3" if \a number is 1, "episode-2.mp3" if it is 2.
    QString attempt(int number) const;

private:
    QString m_stem;
    QString m_suffix; // Includes the dot; may be empty.
};

} // namespace Tidel

#endif
