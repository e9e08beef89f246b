// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARCHIVEDOWNLOAD_H
#define TIDEL_ARCHIVEDOWNLOAD_H

#include <TidelReader/downloadresult.h>

#include <QString>

namespace Tidel {

/// The end of a download that an Archive was asked for.
struct ArchiveDownload
{
    /// The URI of the channel or enclosure, or the address of the subscription.
    QString subject;
    DownloadResult result; ///< How it ended.
};

} // namespace Tidel

#endif
