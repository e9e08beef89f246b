// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGELIST_H
#define TIDEL_MESSAGELIST_H

#include "error.h"
#include "store.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace Tidel {

/// What a list of messages shows.
struct MessageQuery
{
    QStringList channelUris; ///< Only messages of these channels, if there are any.
    bool onlyUnread = false; ///< Only unread messages.
    bool onlyFavorites = false; ///< Only favorites.
    QDateTime since; ///< Only messages that were published then or later, if it is valid.
    QDateTime until; ///< Only messages that were published before, if it is valid.
    /// Only messages with these words, if there are any, see SearchQuery::words. If thousands have them,
    /// those that were stored last count.
    QString words;
    int limit = 0; ///< The number of messages; all of them if it is 0.
};

/// What a list shows of a message.
struct MessageHeadline
{
    QString uri;
    QString link;
    QString title;
    QStringList channels; ///< The titles of its channels, in alphabetical order.
    QDateTime published; ///< Invalid if it has no date.
    bool isFavorite = false;
    bool isRead = false;
};

/**
 * A list of messages of any channels, the newest first. Messages without a date come last.
 *
 * \code
 * MessageQuery query;
 * query.onlyUnread = true;
 * query.limit = 50;
 * const Result<QList<MessageHeadline>> newest = MessageList(store).find(query);
 * \endcode
 *
 * With a limit the time depends on what is shown, except for one pass through the dates of all messages.
 */
class TIDELREADER_EXPORT MessageList
{
public:
    /// As Search::Progress.
    using Progress = std::function<void(int done, int all)>;

    /// Works on \a store.
    explicit MessageList(const Store &store);

    /// The messages that \a query asks for, each once. Fails as Search::find() does if there are words.
    Result<QList<MessageHeadline>> find(const MessageQuery &query, const Progress &progress = {}) const;
    /// The messages \a uris in this order. Those that are not stored are left out.
    Result<QList<MessageHeadline>> headlines(const QStringList &uris) const;
    /// At most \a limit messages that a user may call \a name: those with this title in any case, or those
    /// whose titles contain it if no title is it.
    Result<QList<MessageHeadline>> titled(const QString &name, int limit) const;

private:
    Store m_store;
};

} // namespace Tidel

#endif
