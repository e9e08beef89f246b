// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FILECHECK_P_H
#define TIDEL_FILECHECK_P_H

#include "store_p.h"

#include <QStringList>

namespace Tidel {

/// The paths of downloaded files that are not there any more. A file whose folder is missing too does not
/// count: the folder may be on a disk that is not there now.
Result<QStringList> findMissingFiles(StorePrivate &store);

/// Deletes from the store where these files were.
Result<void> forgetMissingFiles(StorePrivate &store);

/// The paths of parts of files in the download folder that no download is going to continue: those that were
/// not touched for a week, or for a day if the rest cannot be asked for. Parts of files that wait to be
/// downloaded do not count.
Result<QStringList> findUnfinishedFiles(StorePrivate &store);

/// The paths of the other files in the download folder that belong to no enclosure.
Result<QStringList> findUnknownFiles(StorePrivate &store);

/// Removes the parts \a paths and their notes. Fails with the first one that cannot be removed.
Result<void> removeUnfinishedFiles(const QStringList &paths);

} // namespace Tidel

#endif
