// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RETENTION_H
#define TIDEL_RETENTION_H

#include "error.h"
#include "removal.h"
#include "store.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <feedmessage.h>

namespace Tidel {

/**
 * Drops the oldest messages of channels. Favorites are never dropped. The links of dropped messages stay with
 * the channel for as long as its feed shows them, so that a refresh does not take them for new messages.
 */
class TIDELREADER_EXPORT Retention
{
public:
    /// Works on \a store.
    explicit Retention(const Store &store);

    /// The URIs of the messages of the channel that are to be dropped if the newest \a keep messages stay
    /// besides the favorites: the oldest first, and before them those without a date.
    Result<QStringList> excess(const QString &channelUri, int keep) const;
    /// The messages \a uris in their order, with titles, links and dates only.
    Result<QList<FeedMessage>> headlines(const QStringList &uris) const;
    /// Drops the messages \a uris from the channel: deletes those that no other channel holds. Takes a
    /// WriteTurn for each hundred, and calls \a step after each.
    Result<void> drop(const QString &channelUri, const QStringList &uris, const RemovalStep &step);

private:
    Store m_store;
};

} // namespace Tidel

#endif
