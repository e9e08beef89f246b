// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEREMOVAL_P_H
#define TIDEL_MESSAGEREMOVAL_P_H

#include "removal.h"
#include "statements_p.h"
#include "store_p.h"

#include <QStringList>

namespace Tidel {

/// The enclosures in the rows of \a question: URI, remote link, local link.
Result<QList<FeedEnclosure>> readFiles(StorePrivate &store, const QSparqlQuery &question,
                                       const char *attempt);

/// The pieces of an update that delete those of \a enclosures that belong to nothing.
QString deletionOfReleased(const QStringList &enclosures);

/// Changes the store by the pieces \a change, and in the same update deletes those of \a enclosures that then
/// belong to nothing. Returns these.
Result<QList<FeedEnclosure>> updateAndRelease(StorePrivate &store, const QString &change,
                                              const QList<FeedEnclosure> &enclosures, const char *attempt);

/**
 * Removes \a messages, at most chunkSize of them, from the channel, or from all channels if \a channelUri is
 * empty, by the update \a removal, which decides what it leaves: other programs may have changed the messages
 * since somebody asked for them. The same update deletes the enclosures that belong to nothing else. The time
 * that this takes depends on how much is removed, not on the size of the store.
 */
Result<void> removeMessages(StorePrivate &store, const QString &channelUri, const QStringList &messages,
                            const QString &removal, const RemovalStep &step);

/**
 * Drops \a messages, at most chunkSize of them, except \a spared: as removeMessages(), and each channel
 * remembers by what it knows them. Takes them from all channels if \a channelUri is empty. One update
 * remembers and deletes, so that both agree on which messages stay. The caller has the WriteTurn.
 */
Result<void> dropMessages(StorePrivate &store, const QString &channelUri, const QStringList &messages,
                          Statements::Spared spared, const RemovalStep &step);

} // namespace Tidel

#endif
