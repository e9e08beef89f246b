// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGES_H
#define TIDEL_MESSAGES_H

#include "details.h"
#include "error.h"
#include "removal.h"
#include "store.h"

#include <QHash>
#include <QList>
#include <QString>

#include <feedmessage.h>

namespace Tidel {

/// The messages of a store.
class TIDELREADER_EXPORT Messages
{
public:
    /// Works on \a store.
    explicit Messages(const Store &store);

    /// The messages of the channel, the newest first, each once, without ids, base URLs and enclosures.
    Result<QList<FeedMessage>> ofChannel(const QString &channelUri) const;
    /// The message \a messageUri, with what ofChannel() gives. Fails with Error::NotFound.
    Result<FeedMessage> get(const QString &messageUri) const;
    /// The titles of the channels that the message belongs to, in alphabetical order.
    Result<QStringList> channelTitles(const QString &messageUri) const;
    /// The URIs of the channels that the message belongs to, in the order of channelTitles().
    Result<QStringList> channelUris(const QString &messageUri) const;
    /// The messages with \a links, the newest first, with titles, links and dates only. Links that no message
    /// has are left out.
    Result<QList<FeedMessage>> headlines(const QStringList &links) const;
    /// What the feeds say in addition of the messages \a uris. Messages without details are left out.
    Result<QHash<QString, MessageDetails>> details(const QStringList &uris) const;
    /// What the message said before its feed changed it, the newest first, at most three.
    Result<QList<EarlierVersion>> earlierVersions(const QString &messageUri) const;
    /// The URI of the message that the user calls \a name, its link or its URI. Fails with Error::NotFound.
    Result<QString> uri(const QString &name) const;

    /// Marks the message as a favorite, or takes the mark away. Retention never drops a favorite. To
    /// mark a message that is not stored fails with Error::NotFound; to take the mark away has no effect
    /// then.
    Result<void> setFavorite(const QString &messageUri, bool isFavorite);
    /// Deletes the messages \a uris, favorites too, from all of their channels, which do not take them for
    /// new messages as long as their feeds show them. Messages that are not stored are left out. Takes a
    /// WriteTurn for each hundred, and calls \a step after each.
    Result<void> remove(const QStringList &uris, const RemovalStep &step);

private:
    Store m_store;
};

} // namespace Tidel

#endif
