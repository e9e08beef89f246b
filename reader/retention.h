// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RETENTION_H
#define TIDEL_RETENTION_H

#include "error.h"
#include "removal.h"
#include "retentionrule.h"
#include "store.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <feedmessage.h>

namespace Tidel {

/**
 * Drops the oldest messages of channels as a RetentionRule says. The links of dropped messages stay with
 * the channel for as long as its feed shows them, so that a refresh does not take them for new messages.
 */
class TIDELREADER_EXPORT Retention
{
public:
    /// Works on \a store.
    explicit Retention(const Store &store);

    /// The URIs of the messages of the channel that \a rule drops: the oldest first, and before them those
    /// without a date. Favorites do not count among the newest, but unread messages do.
    Result<QStringList> excess(const QString &channelUri, const RetentionRule &rule) const;
    /// The messages \a uris in their order, with titles, links and dates only.
    Result<QList<FeedMessage>> headlines(const QStringList &uris) const;
    /// Drops the messages \a uris from the channel: deletes those that no other channel holds. Leaves those
    /// that have become favorites, and those that have become unread if \a rule keeps them. Takes a WriteTurn
    /// for each hundred, and calls \a step after each.
    Result<void> drop(const QString &channelUri, const QStringList &uris, const RetentionRule &rule,
                      const RemovalStep &step);

private:
    Store m_store;
};

} // namespace Tidel

#endif
