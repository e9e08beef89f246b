// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_SUBSCRIPTIONFILES_H
#define TIDEL_DESKTOP_SUBSCRIPTIONFILES_H

#include <TidelReader/archive.h>

#include <QStringList>

namespace Tidel {

/// What an import has done.
struct ImportOutcome
{
    QStringList uris; ///< Those of the new channels.
    int known = 0; ///< How many feeds had a channel already.
    int problems = 0; ///< How many feeds of the file were left out.

    /// One line for the user.
    QString toString() const;
};

/// Adds channels for the feeds of the OPML file \a path.
QFuture<Result<ImportOutcome>> importChannels(Archive *archive, const QString &path);

/// Writes the channels to the OPML file \a path, which is replaced, and answers how many there are.
QFuture<Result<int>> exportChannels(Archive *archive, const QString &path);

} // namespace Tidel

#endif
