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

/// An item with the link that its message has.
struct ClaimedItem
{
    const FeedItem *item;
    Link link;
};

/// A parsed feed whose values are fit for the store: links are absolute, encoded and distinct, titles are
/// plain text, times are in UTC.
class ParsedFeed
{
public:
    /// Parses \a document, the feed of \a link, which was read from \a source if that is another address. On
    /// failure returns nothing, and \a error says why.
    static std::optional<ParsedFeed> parse(const QByteArray &document, const QUrl &link, QString *error,
                                           const QUrl &source = QUrl());

    /// Names the items without a link after \a feedLink instead of the present link of the feed.
    void nameItemsAfter(const QString &feedLink) { m_itemBase = feedLink; }

    /// The feed without its messages.
    FeedChannel channel() const;

    /// Each item once, the oldest first, with a link of its own that is none of \a reserved. The items belong
    /// to this object.
    std::vector<ClaimedItem> claimedItems(const QSet<QString> &reserved = {}) const;

    /// The message of \a claimed.
    StorableMessage message(const ClaimedItem &claimed) const;

private:
    ParsedFeed(const FeedTree &tree, const QUrl &link, const QUrl &source);

    Link resolve(const Reference &reference, Link (*clean)(const QString &, const QUrl &)) const;
    QUrl baseOf(const Syndication::ElementWrapper &element) const;
    Link wantedLink(const FeedItem &item) const;
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
