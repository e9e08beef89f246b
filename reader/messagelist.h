// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGELIST_H
#define TIDEL_MESSAGELIST_H

#include "error.h"
#include "messagefilter.h"
#include "store.h"
#include "urilist.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace Tidel {

/// What a list of messages shows.
struct TIDELREADER_EXPORT MessageQuery : MessageFilter
{
    Q_GADGET
    Q_PROPERTY(QStringList channelUris MEMBER channelUris)
    Q_PROPERTY(bool onlyUnread MEMBER onlyUnread)
    Q_PROPERTY(bool onlyFavorites MEMBER onlyFavorites)
    Q_PROPERTY(QDateTime since MEMBER since)
    Q_PROPERTY(QDateTime until MEMBER until)
    Q_PROPERTY(QString words MEMBER words)
    Q_PROPERTY(int limit MEMBER limit)
    Q_PROPERTY(Qt::SortOrder order MEMBER order)

public:
    /// Only messages with these words, if there are any, see SearchQuery::words. If thousands have them,
    /// those that were stored last count.
    QString words;
    int limit = 0; ///< The number of messages; all of them if it is 0.
    /// The newest first, or the oldest first. A message without a date is older than all others.
    Qt::SortOrder order = Qt::DescendingOrder;
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
 * A list of messages of any channels.
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
    /// The URIs of the messages that find() returns, in the same order. Takes much less time and memory than
    /// find() if there are many, and does not depend on the limit. The messages \a kept count as unread.
    /// Fails as find() does.
    Result<UriList> uris(const MessageQuery &query, const UriList &kept = {},
                         const Progress &progress = {}) const;
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
