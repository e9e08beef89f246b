// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADFOLDER_H
#define TIDEL_DOWNLOADFOLDER_H

#include "tidelreaderglobal.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <feedenclosure.h>

namespace Tidel {

/// The folder that enclosures are downloaded to unless the user names another one: `tidel` in the user's
/// downloads.
class TIDELREADER_EXPORT DownloadFolder
{
public:
    /// The absolute path of the folder, which need not exist.
    static QString path();

    /// The path of the file of \a enclosure if it is in the folder; otherwise empty. Of a symbolic link, its
    /// own place counts.
    static QString fileOf(const FeedEnclosure &enclosure);

    /// The name of the file that has the first bytes of what is downloaded from \a address, while it is
    /// downloaded and after an interruption.
    static QString partName(const QString &address);
    /// The path of the file that says what the file \a path, of such a name, is the beginning of.
    static QString noteOfPart(const QString &path);

    /// Removes the files of \a enclosures that are in the folder, and returns their number; their unfinished
    /// files go too. Files elsewhere belong to the user and stay. The paths of files that cannot be removed
    /// are appended to \a failed.
    static int removeFiles(const QList<FeedEnclosure> &enclosures, QStringList *failed);
};

} // namespace Tidel

#endif
