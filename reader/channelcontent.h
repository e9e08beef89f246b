// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELCONTENT_H
#define TIDEL_CHANNELCONTENT_H

#include "error.h"
#include "store.h"

#include <QString>
#include <QStringList>

namespace Tidel {

/// What only one channel holds, so that it is deleted together with the channel.
struct TIDELREADER_EXPORT ChannelContent
{
    int messages = 0; ///< The number of messages, with the favorites.
    int favorites = 0; ///< The number of favorites.
    int shared = 0; ///< The number of messages that other channels hold, too. They stay.
    QStringList files; ///< The paths of downloaded files in the DownloadFolder.
    QStringList filesOfFavorites; ///< Those of \a files that favorites refer to.

    /// Reads the content of the channel \a channelUri. The time that this takes depends on the size of the
    /// channel, not on that of the store.
    static Result<ChannelContent> of(const Store &store, const QString &channelUri);
};

} // namespace Tidel

#endif
