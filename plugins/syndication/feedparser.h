// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDPARSER_H
#define TIDEL_FEEDPARSER_H

#include "feeddocument.h"
#include "feedreader.h"
#include "nameditem.h"

#include <QSet>

#include <feedchannel.h>

#include <TidelReader/details.h>
#include <TidelReader/storablemessage.h>

#include <functional>
#include <vector>

namespace Tidel {

/// An item with a link that no other item has.
struct ClaimedItem
{
    const NamedItem *item; ///< Belongs to the feed.
    Link link; ///< The link of the message.
};

/// A parsed feed. Its values can be stored: links are absolute, encoded and different, titles are plain text,
/// times are in UTC.
class ParsedFeed
{
public:
    /// Parses \a document, the feed with the link \a link. Recognizes items by the digests \a known, and has
    /// their identifiers only. The function is reentrant and does not ask the store.
    static tl::expected<ParsedFeed, FeedRefusal> parse(const FeedDocument &document, const QUrl &link,
                                                       const QSet<QByteArray> &known = {});

    /// Names items without a link after \a feedLink instead of the link of the feed.
    void nameItemsAfter(const QString &feedLink) { m_itemBase = feedLink; }

    /// The feed without its messages.
    FeedChannel channel() const;
    /// What the feed says of itself in addition.
    ChannelDetails channelDetails() const;

    /// All items, in the order of the document.
    const std::vector<NamedItem> &items() const { return m_items; }
    /// The identifiers that the document gives to one item each.
    QSet<QString> uniqueIds() const;
    /// A hash of what the messages depend on beside their items: the addresses of the feed and its document.
    QByteArray context() const;

    /// The link under which an item is stored; null if it is not.
    using StoredLink = std::function<Link(const NamedItem &)>;
    /// Returns each item that was not recognized once, the oldest first. Each has a different link: that of
    /// \a storedLink, or one that is not in \a reserved. The items belong to this object.
    std::vector<ClaimedItem> claimedItems(const QSet<QString> &reserved = {},
                                          const StoredLink &storedLink = {}) const;

    /// The message of \a claimed.
    StorableMessage message(const ClaimedItem &claimed) const;
    /// What the feed says of the message of \a item in addition.
    MessageDetails messageDetails(const ItemRecord &item) const;
    /// What the feed says of the enclosure \a file in addition.
    EnclosureDetails enclosureDetails(const FileRecord &file) const;

private:
    /// Creates a feed from \a record, which was read from \a source, with the link \a link.
    ParsedFeed(FeedRecord &&record, const QUrl &link, const QUrl &source);

    /// Returns true if the feed may name \a link; otherwise returns false.
    bool mayUse(const Link &link) const;
    /// The address of a page; null if there is none or the feed must not use it. Pages are shown and passed
    /// on, so a relative one does not get the user and password of the feed.
    Link page(const Address &address) const;
    /// The address of a file; null if there is none or the feed must not use it.
    Link file(const Address &address) const;
    /// What addresses with the `xml:base` \a base are relative to.
    QUrl resolvedBase(const QString &base) const;
    /// What addresses in a text with the `xml:base` \a base are relative to.
    QUrl baseOfText(const QString &base) const;
    /// What addresses of files are relative to: with the user and password of the feed, which its server may
    /// ask for again.
    QUrl baseOfFile(const QString &base) const;
    /// The link of \a item, which other items may have too.
    Link wantedLink(const NamedItem &item) const;

    FeedRecord m_record; // Without its items.
    std::vector<NamedItem> m_items;
    QString m_link;
    QString m_itemBase;
    QUrl m_source;
    QUrl m_base;
    Link m_website;
};

} // namespace Tidel

#endif
