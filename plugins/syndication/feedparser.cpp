// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedparser.h"

#include "feeddate.h"
#include "linkclaims.h"
#include "mimetype.h"

#include <TidelReader/cleantext.h>

#include <Syndication/Image>

#include <limits>

namespace Tidel {

namespace {

/// The type of the feed by its root element: "rss", "atom" or "rdf".
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
    : m_tree(tree), m_link(Link::encoded(link)), m_itemBase(m_link), m_base(source), m_items(feedItems(tree))
{
    m_website = Link::fromText(m_tree.feed->link(), baseOf(m_tree.elements.documentElement()));
    if (!m_website.isNull())
        m_base = m_website.toUrl();
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
    icon.setRemoteUrl(Link::toFile(m_tree.feed->image()->url(), m_base).toString());
    channel.setIcon(icon);
    return channel;
}

std::vector<ClaimedItem> ParsedFeed::claimedItems(const QSet<QString> &reserved) const
{
    // Some feeds have the link of the website in every item. All these items get a fragment. Otherwise the
    // oldest item would get the plain link, and the oldest item changes with time.
    LinkClaims claims(reserved + QSet<QString>{m_link, m_website.toString()});
    std::vector<ClaimedItem> claimed;
    claimed.reserve(m_items.size());
    for (auto item = m_items.rbegin(); item != m_items.rend(); ++item) {
        const Link link = claims.claim(**item, wantedLink(**item));
        if (!link.isNull())
            claimed.push_back({item->get(), link});
    }
    return claimed;
}

Link ParsedFeed::resolve(const Reference &reference, Link (*clean)(const QString &, const QUrl &)) const
{
    const bool needsBase = Link::isRelative(reference.address);
    return clean(reference.address, needsBase ? baseOf(reference.where) : m_base);
}

QUrl ParsedFeed::baseOf(const Syndication::ElementWrapper &element) const
{
    const QString base = element.isNull() ? QString() : element.xmlBase();
    return base.isEmpty() ? m_base : m_base.resolved(QUrl(base));
}

Link ParsedFeed::wantedLink(const FeedItem &item) const
{
    const Link link = resolve(item.link(), Link::fromText);
    if (!link.isNull())
        return link;
    const QString permalink = item.permalink();
    const Link address = Link::isRelative(permalink) ? Link() : Link::fromText(permalink, m_base);
    return address.isNull() ? Link::ofItem(m_itemBase, item.id()) : address;
}

StorableMessage ParsedFeed::message(const ClaimedItem &claimed) const
{
    const FeedItem &item = *claimed.item;
    FeedMessage text;
    text.setId(cleanText(item.id()));
    text.setTitle(plainText(item.title()));
    text.setDescription(cleanText(item.text()));
    text.setSummary(cleanText(item.summary()));
    text.setBaseUrl(baseOf(item.link().where));
    text.setPublishedDate(parseFeedDate(item.date()));
    StorableMessage message(claimed.link, text);
    for (const FileReference &file : item.files()) {
        FeedEnclosure enclosure;
        enclosure.setMimeType(cleanMimeType(file.mimeType));
        enclosure.setLength(cleanLength(file.length));
        message.addEnclosure(fileLink(file), enclosure);
    }
    return message;
}

Link ParsedFeed::fileLink(const FileReference &file) const
{
    const Link link = resolve(file.url, Link::toFile);
    // Only a feed in a local file may name local files.
    const bool isAllowed = !link.toUrl().isLocalFile() || QUrl(m_link).isLocalFile();
    return isAllowed ? link : Link();
}

} // namespace Tidel
