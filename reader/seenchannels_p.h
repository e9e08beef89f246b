// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEENCHANNELS_P_H
#define TIDEL_SEENCHANNELS_P_H

#include "store_p.h"

#include <QHash>

namespace Tidel {

/// What the store said of a channel.
struct SeenChannel
{
    qlonglong number = 0;
    qlonglong mark = 0;
    QStringList shown; ///< What a list of channels shows, in a fixed order.
};

/// The channels by their URIs.
using SeenChannels = QHash<QString, SeenChannel>;

/// Reads all channels from the store.
Result<SeenChannels> readSeenChannels(StorePrivate &store);

} // namespace Tidel

#endif
