// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEREMOVAL_P_H
#define TIDEL_MESSAGEREMOVAL_P_H

#include "removal.h"
#include "store_p.h"

#include <QStringList>

namespace Tidel {

/**
 * Removes \a messages, at most chunkSize of them, from the channel by the update \a removal, which decides
 * what it leaves: other programs may have changed the messages since somebody asked for them. Deletes the
 * enclosures that belong to nothing else. The time that this takes depends on how much is removed, not on the
 * size of the store.
 */
Result<void> removeMessages(StorePrivate &store, const QString &channelUri, const QStringList &messages,
                            const QString &removal, const RemovalStep &step);

/// Deletes those of \a enclosures that belong to nothing, and appends them to \a deleted.
Result<void> deleteReleased(StorePrivate &store, const QStringList &enclosures,
                            QList<FeedEnclosure> *deleted);

} // namespace Tidel

#endif
