// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORECHANGES_P_H
#define TIDEL_STORECHANGES_P_H

#include <QStringList>

namespace Tidel {

/// What is different in the store: URIs, each once in its list.
struct StoreChanges
{
    QStringList channelsAdded;
    QStringList channelsChanged;
    QStringList channelsRemoved;
    QStringList messagesAdded;
    QStringList messagesChanged;
    QStringList messagesRemoved;
    QStringList messagesRead;
    QStringList messagesUnread;
    QStringList favoritesAdded;
    QStringList favoritesRemoved;
};

} // namespace Tidel

#endif
