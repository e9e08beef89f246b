// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDPARSER_H
#define TIDEL_FEEDPARSER_H

#include "feeditem.h"

#include <QSet>
#include <QUrl>

#include <feedchannel.h>

#include <functional>
#include <optional>

namespace Tidel {

/// A parsed feed that hands out values fit for the store: links are absolute, encoded and unlike each other,
/// titles are plain text, times are in UTC.
class ParsedFeed
{
public:
    /// Parses \a document, the feed of \a link, which was read from \a source where that is not the same; on
    /// failure nothing, and \a error says why.
    static std::optional<ParsedFeed> parse(const QByteArray &document, const QUrl &link, QString *error,
                                           const QUrl &source = QUrl());

    /// Names the items that have no link after \a feedLink instead of the feed's present one.
    void nameItemsAfter(const QString &feedLink) { m_itemBase = feedLink; }

    /// The feed without its messages.
    FeedChannel channel() const;

    /// The messages, newest first. None gets a link of \a channelLinks; those whose link is one of
    /// \a knownLinks are left out.
    QList<FeedMessage> messages(const QSet<QString> &channelLinks = {},
                                const QSet<QString> &knownLinks = {}) const;

    /// The links of all messages that messages(\a channelLinks) gives.
    QSet<QString> links(const QSet<QString> &channelLinks) const;

private:
    ParsedFeed(const FeedTree &tree, const QUrl &link, const QUrl &source);

    void eachItem(const QSet<QString> &channelLinks,
                  const std::function<void(const FeedItem &, const QString &link)> &visit) const;
    QString resolve(const Reference &reference, QString (*clean)(const QString &, const QUrl &)) const;
    QUrl baseOf(const Syndication::ElementWrapper &element) const;
    QString wantedLink(const FeedItem &item) const;
    FeedMessage message(const FeedItem &item, const QString &link) const;
    FeedEnclosure enclosure(const FileReference &file) const;

    FeedTree m_tree;
    QString m_link;
    QString m_itemBase;
    QString m_website;
    QUrl m_base;
    std::vector<std::unique_ptr<FeedItem>> m_items;
};

} // namespace Tidel

#endif
