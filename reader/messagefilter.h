// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEFILTER_H
#define TIDEL_MESSAGEFILTER_H

#include <QDateTime>
#include <QStringList>

namespace Tidel {

/// Which messages a list or a search is about; all if nothing is set.
struct MessageFilter
{
    QStringList channelUris; ///< Only messages of these channels, if there are any.
    bool onlyUnread = false; ///< Only unread messages.
    bool onlyFavorites = false; ///< Only favorites.
    QDateTime since; ///< Only messages that were published then or later, if it is valid.
    QDateTime until; ///< Only messages that were published before, if it is valid.
};

} // namespace Tidel

#endif
