// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ORPHANS_H
#define TIDEL_ORPHANS_H

namespace Tidel {

class FeedStore;

// What belongs to nothing, as FeedTrackerSparql::deleteOrphans() sees it. None where the store fails.

/// How many messages belong to no channel.
int orphanMessages(const FeedStore &store);

/// How many enclosures belong to neither a message nor a channel.
int orphanEnclosures(const FeedStore &store);

} // namespace Tidel

#endif
