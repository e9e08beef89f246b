// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_READSTATE_H
#define TIDEL_READSTATE_H

#include "error.h"
#include "store.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>

namespace Tidel {

/// How many messages there are.
struct MessageCounts
{
    int all = 0;
    int unread = 0;
};

/**
 * Which messages the user has read. A message is unread until it is marked. It stays read when its feed
 * changes it.
 *
 * The store keeps the time of each change, so that two copies of an archive can be merged.
 */
class TIDELREADER_EXPORT ReadState
{
public:
    /// Hears how many of all messages are done, after each group.
    using Progress = std::function<void(int done, int all)>;

    /// Works on \a store.
    explicit ReadState(const Store &store);

    /// Marks those of the messages \a uris that are stored as read or unread, and returns how many it
    /// changed. Takes a WriteTurn for each hundred messages. What was changed before a failure stays.
    Result<int> set(const QStringList &uris, bool isRead, const Progress &progress = {});

    /// The unread messages of the channels \a channelUris, or of all if it is empty, that were published
    /// before \a before, or all if it is invalid. A message without a date counts with the time of its
    /// download.
    Result<QStringList> unread(const QStringList &channelUris, const QDateTime &before = {}) const;

    /// The numbers of messages of each channel by its URI. A channel without messages is left out.
    Result<QHash<QString, MessageCounts>> counts() const;
    /// The numbers of all messages.
    Result<MessageCounts> total() const;
    /// The numbers of favorites.
    Result<MessageCounts> favorites() const;

private:
    Store m_store;
};

} // namespace Tidel

#endif
