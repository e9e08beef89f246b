// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedparser.h"

#include "feeddate.h"
#include "linkclaims.h"
#include "links.h"
#include "messageorder.h"
#include "mimetype.h"
#include "text.h"

#include <Syndication/Image>

#include <algorithm>
#include <limits>

namespace Tidel {

namespace {

/// "rss", "atom" or "rdf", after the outermost element.
QString channelType(const FeedTree &tree)
{
    const QString root = tree.elements.documentElement().localName().toLower();
    return root == QLatin1String("feed") ? QStringLiteral("atom") : root;
}

unsigned int cleanLength(const QString &text)
{
    bool isNumber = false;
    const quint64 length = text.trimmed().toULongLong(&isNumber);
    return isNumber && length <= std::numeric_limits<unsigned int>::max() ? unsigned(length) : 0;
}

} // namespace

ParsedFeed::ParsedFeed(const FeedTree &tree, const QUrl &link, const QUrl &source)
    : m_tree(tree), m_link(encodedUrl(link)), m_itemBase(m_link), m_base(source), m_items(feedItems(tree))
{
    m_website = cleanLink(m_tree.feed->link(), baseOf(m_tree.elements.documentElement()));
    if (!m_website.isEmpty())
        m_base = QUrl(m_website);
}

std::optional<ParsedFeed> ParsedFeed::parse(const QByteArray &document, const QUrl &link, QString *error,
                                            const QUrl &source)
{
    const std::optional<FeedTree> tree = parseFeedTree(document, error);
    if (!tree)
        return std::nullopt;
    return ParsedFeed(*tree, link, source.isEmpty() ? link : source);
}

FeedChannel ParsedFeed::channel() const
{
    FeedChannel channel;
    channel.setLink(m_link);
    channel.setTitle(plainText(m_tree.feed->title()));
    if (channel.title().isEmpty())
        channel.setTitle(QUrl(m_link).fileName());
    channel.setType(channelType(m_tree));
    channel.setDescription(cleanText(m_tree.feed->description()));

    FeedEnclosure icon;
    icon.setRemoteUrl(cleanFileLink(m_tree.feed->image()->url(), m_base));
    channel.setIcon(icon);
    return channel;
}

QList<FeedMessage> ParsedFeed::messages(const QSet<QString> &channelLinks,
                                        const QSet<QString> &knownLinks) const
{
    QList<FeedMessage> messages;
    eachItem(channelLinks, [&](const FeedItem &item, const QString &link) {
        if (!knownLinks.contains(link))
            messages.append(message(item, link));
    });
    sortNewestFirst(messages);
    return messages;
}

QSet<QString> ParsedFeed::links(const QSet<QString> &channelLinks) const
{
    QSet<QString> links;
    eachItem(channelLinks, [&](const FeedItem &, const QString &link) { links.insert(link); });
    return links;
}

/// Visits each item once, the oldest first, with the link that its message has.
void ParsedFeed::eachItem(const QSet<QString> &channelLinks,
                          const std::function<void(const FeedItem &, const QString &link)> &visit) const
{
    // Feeds about one page name it in every item: a fragment for all of them, since the page itself would be
    // the link of whichever is the oldest at the time.
    LinkClaims claims(channelLinks + QSet<QString>{m_link, m_website});
    for (auto item = m_items.rbegin(); item != m_items.rend(); ++item) {
        const QString link = claims.claim(**item, wantedLink(**item));
        if (!link.isEmpty())
            visit(**item, link);
    }
}

QString ParsedFeed::resolve(const Reference &reference, QString (*clean)(const QString &, const QUrl &)) const
{
    const bool needsBase = isRelativeLink(reference.address);
    return clean(reference.address, needsBase ? baseOf(reference.where) : m_base);
}

QUrl ParsedFeed::baseOf(const Syndication::ElementWrapper &element) const
{
    const QString base = element.isNull() ? QString() : element.xmlBase();
    return base.isEmpty() ? m_base : m_base.resolved(QUrl(base));
}

QString ParsedFeed::wantedLink(const FeedItem &item) const
{
    const QString link = resolve(item.link(), cleanLink);
    if (!link.isEmpty())
        return link;
    const QString permalink = item.permalink();
    const QString address = isRelativeLink(permalink) ? QString() : cleanLink(permalink, m_base);
    return address.isEmpty() ? itemUrn(m_itemBase, item.id()) : address;
}

FeedMessage ParsedFeed::message(const FeedItem &item, const QString &link) const
{
    FeedMessage message;
    message.setLink(link);
    message.setId(cleanText(item.id()));
    message.setTitle(plainText(item.title()));
    message.setDescription(cleanText(item.text()));
    message.setSummary(cleanText(item.summary()));
    message.setBaseUrl(baseOf(item.link().where));
    message.setPublishedDate(parseFeedDate(item.date()));
    for (const FileReference &file : item.files()) {
        FeedEnclosure found = enclosure(file);
        if (!found.remoteUrl().isEmpty())
            message.addChild(&found);
    }
    return message;
}

FeedEnclosure ParsedFeed::enclosure(const FileReference &file) const
{
    FeedEnclosure enclosure;
    const QString link = resolve(file.url, cleanFileLink);
    // A feed from elsewhere has no say in which files of this machine are copied.
    if (!QUrl(link).isLocalFile() || QUrl(m_link).isLocalFile())
        enclosure.setRemoteUrl(link);
    enclosure.setMimeType(cleanMimeType(file.mimeType));
    enclosure.setLength(cleanLength(file.length));
    return enclosure;
}

} // namespace Tidel
