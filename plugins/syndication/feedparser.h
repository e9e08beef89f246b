// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDPARSER_H
#define TIDEL_FEEDPARSER_H

#include "feeditem.h"

#include <QSet>
#include <QUrl>

#include <feedchannel.h>

#include <TidelReader/storablemessage.h>

#include <optional>
#include <vector>

namespace Tidel {

/// An item with a link that no other item has.
struct ClaimedItem
{
    const FeedItem *item; ///< Belongs to the feed.
    Link link; ///< The link of the message.
};

/// A parsed feed. Its values can be stored: links are absolute, encoded and different, titles are plain text,
/// times are in UTC.
class ParsedFeed
{
public:
    /// Parses \a document, the feed with the link \a link. \a source is the address that the document was
    /// read from, if it is different. Returns nothing on failure, and sets \a error to the reason.
    static std::optional<ParsedFeed> parse(const QByteArray &document, const QUrl &link, QString *error,
                                           const QUrl &source = QUrl());

    /// Names items without a link after \a feedLink instead of the link of the feed.
    void nameItemsAfter(const QString &feedLink) { m_itemBase = feedLink; }

    /// The feed without its messages.
    FeedChannel channel() const;

    /// Returns each item once, the oldest first. Each has a different link, which is not in \a reserved. The
    /// items belong to this object.
    std::vector<ClaimedItem> claimedItems(const QSet<QString> &reserved = {}) const;

    /// The message of \a claimed.
    StorableMessage message(const ClaimedItem &claimed) const;

private:
    /// Creates a feed from \a tree, with the addresses of parse().
    ParsedFeed(const FeedTree &tree, const QUrl &link, const QUrl &source);

    /// Makes \a reference absolute and passes it to \a clean.
    Link resolve(const Reference &reference, Link (*clean)(const QString &, const QUrl &)) const;
    /// The base address of \a element.
    QUrl baseOf(const Syndication::ElementWrapper &element) const;
    /// The link of \a item, which other items may have too.
    Link wantedLink(const FeedItem &item) const;
    /// The address of \a file; null if the feed must not use it.
    Link fileLink(const FileReference &file) const;

    FeedTree m_tree;
    QString m_link;
    QString m_itemBase;
    Link m_website;
    QUrl m_base;
    std::vector<std::unique_ptr<FeedItem>> m_items;
};

} // namespace Tidel

#endif
