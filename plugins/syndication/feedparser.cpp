// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedparser.h"

#include "feedlimits.h"
#include "linkclaims.h"
#include "mimetype.h"

#include <QCryptographicHash>
#include <QHash>

#include <TidelReader/usertext.h>

#include <iterator>
#include <limits>

namespace Tidel {

namespace {

unsigned int storableLength(quint64 bytes)
{
    return bytes <= std::numeric_limits<unsigned int>::max() ? unsigned(bytes) : 0;
}

/// \a base, without its query if it is long; empty if it is still too long for all links of a feed.
QUrl usableBase(const QUrl &base)
{
    const auto isShort = [](const QUrl &url) { return url.toEncoded().size() <= maximumBaseLength; };
    const QUrl place = isShort(base) ? base : base.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    return isShort(place) ? place : QUrl();
}

bool isOfOneServer(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.host() == other.host() && one.port() == other.port();
}

} // namespace

ParsedFeed::ParsedFeed(FeedRecord &&record, const QUrl &link, const QUrl &source)
    : m_record(std::move(record)), m_link(Link::encoded(link)), m_itemBase(m_link), m_source(source),
      m_base(usableBase(source.adjusted(QUrl::RemoveUserInfo))), m_website(page(m_record.website))
{
    for (QString &note : m_record.notes)
        note = shownReason(note);
    m_items.reserve(m_record.items.size());
    for (ItemRecord &item : m_record.items)
        m_items.emplace_back(std::move(item));
    m_record.items.clear();
    const QUrl website = usableBase(m_website.toUrl());
    if (!website.isEmpty())
        m_base = website;
}

tl::expected<ParsedFeed, FeedRefusal> ParsedFeed::parse(const FeedDocument &document, const QUrl &link,
                                                        const QSet<QByteArray> &known)
{
    return readFeed(document.bytes, document.charset, known).map([&](FeedRecord &&record) {
        return ParsedFeed(std::move(record), link, document.address);
    });
}

FeedChannel ParsedFeed::channel() const
{
    FeedChannel channel;
    channel.setLink(m_link);
    channel.setTitle(m_record.title.isEmpty() ? QUrl(m_link).fileName() : m_record.title);
    channel.setType(m_record.format);
    channel.setDescription(m_record.description);

    FeedEnclosure icon;
    const Link small = file(m_record.icon);
    icon.setRemoteUrl((small.isNull() ? file(m_record.image) : small).toString());
    channel.setIcon(icon);
    return channel;
}

ChannelDetails ParsedFeed::channelDetails() const
{
    ChannelDetails details;
    details.website = m_website;
    details.description = m_record.description;
    details.language = m_record.language;
    details.copyright = m_record.copyright;
    details.image = file(m_record.image);
    details.minutesToLive = m_record.minutesToLive;
    details.skipHours = QList<int>(m_record.skipHours.begin(), m_record.skipHours.end());
    details.skipDays = m_record.skipDays;
    details.updatePeriod = m_record.updatePeriod;
    details.updateFrequency = m_record.updateFrequency;
    details.updateBase = m_record.updateBase;
    details.hub = page(m_record.hub);
    details.self = page(m_record.self);
    details.notes = m_record.notes;
    return details;
}

QSet<QString> ParsedFeed::uniqueIds() const
{
    QHash<QString, int> counts;
    for (const NamedItem &item : m_items)
        ++counts[item.record.id];
    counts.remove(QString());
    QSet<QString> unique;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (*count == 1)
            unique.insert(count.key());
    }
    return unique;
}

QByteArray ParsedFeed::context() const
{
    const QString server = m_source.scheme() + QLatin1Char(':') + m_source.authority(QUrl::FullyEncoded);
    const QString addresses =
        QStringList{m_link, m_itemBase, Link::encoded(m_base), server}.join(QLatin1Char('\n'));
    constexpr int bytes = 9;
    return QCryptographicHash::hash(addresses.toUtf8(), QCryptographicHash::Sha1).left(bytes).toBase64();
}

std::vector<ClaimedItem> ParsedFeed::claimedItems(const QSet<QString> &reserved,
                                                  const StoredLink &storedLink) const
{
    std::vector<Link> stored;
    QSet<QString> taken = reserved + QSet<QString>{m_link, m_website.toString()};
    for (const NamedItem &item : m_items) {
        const bool isAsked = storedLink && !item.record.isRecognized;
        stored.push_back(isAsked ? storedLink(item) : Link());
        taken.insert(stored.back().toString());
    }
    // Some feeds have the link of the website in every item. All these items get a fragment. Otherwise the
    // oldest item would get the plain link, and the oldest item changes with time.
    LinkClaims claims(taken);
    std::vector<ClaimedItem> claimed;
    claimed.reserve(m_items.size());
    for (size_t i = m_items.size(); i-- > 0;) {
        const NamedItem &item = m_items[i];
        if (item.record.isRecognized)
            continue;
        const Link link = stored[i].isNull() ? claims.claim(item, wantedLink(item)) : stored[i];
        if (!link.isNull())
            claimed.push_back({&item, link});
    }
    return claimed;
}

Link ParsedFeed::wantedLink(const NamedItem &item) const
{
    const Link link = page(item.record.link);
    if (!link.isNull())
        return link;
    const bool isAddress = item.record.isPermalink && !Link::isRelative(item.id);
    const Link permalink = isAddress ? page({item.id, {}}) : Link();
    return permalink.isNull() ? Link::ofItem(m_itemBase, item.id) : permalink;
}

StorableMessage ParsedFeed::message(const ClaimedItem &claimed) const
{
    const ItemRecord &item = claimed.item->record;
    FeedMessage text;
    text.setId(claimed.item->id);
    text.setTitle(item.title);
    text.setDescription(item.text);
    text.setSummary(item.summary);
    text.setBaseUrl(baseOfText(item.base));
    text.setPublishedDate(item.published.isValid() ? item.published : item.updated);
    StorableMessage message(claimed.link, text);
    message.setDetails(messageDetails(item));
    for (const FileRecord &record : item.files) {
        FeedEnclosure enclosure;
        enclosure.setMimeType(cleanMimeType(record.mimeType));
        enclosure.setLength(storableLength(record.bytes));
        message.addEnclosure(file(record.address), enclosure, enclosureDetails(record));
    }
    return message;
}

MessageDetails ParsedFeed::messageDetails(const ItemRecord &item) const
{
    MessageDetails details;
    details.authors = item.authors;
    details.categories = item.categories;
    details.updatedDate = item.updated;
    details.comments = page(item.comments);
    details.language = item.language;
    details.thumbnail = file(item.thumbnail);
    const bool isBasedOnLink = item.base.isEmpty() && !page(item.link).isNull();
    details.baseUrl = isBasedOnLink ? QUrl() : baseOfText(item.base);
    return details;
}

EnclosureDetails ParsedFeed::enclosureDetails(const FileRecord &record) const
{
    EnclosureDetails details;
    details.duration = record.seconds;
    details.title = record.title;
    details.season = record.season;
    details.episode = record.episode;
    details.chapters = file(record.chapters);
    details.isExplicit = record.isExplicit;
    return details;
}

bool ParsedFeed::mayUse(const Link &link) const
{
    // Only a feed in a local file may name local files.
    const QLatin1String local("file:");
    return !link.toString().startsWith(local) || m_link.startsWith(local);
}

Link ParsedFeed::page(const Address &address) const
{
    const bool needsBase = Link::isRelative(address.text);
    const Link link = Link::fromText(address.text, needsBase ? resolvedBase(address.base) : QUrl());
    return mayUse(link) ? link : Link();
}

Link ParsedFeed::file(const Address &address) const
{
    const bool needsBase = Link::isRelative(address.text);
    const Link link = Link::toFile(address.text, needsBase ? baseOfFile(address.base) : QUrl());
    return mayUse(link) ? link : Link();
}

QUrl ParsedFeed::resolvedBase(const QString &base) const
{
    const Link link = Link::fromText(base, m_base);
    return link.isNull() ? m_base : link.toUrl();
}

QUrl ParsedFeed::baseOfText(const QString &base) const
{
    const Link link = Link::fromText(base, m_base);
    return !link.isNull() && mayUse(link) ? link.toUrl() : m_base;
}

QUrl ParsedFeed::baseOfFile(const QString &base) const
{
    QUrl resolved = resolvedBase(base);
    if (isOfOneServer(resolved, m_source))
        resolved.setUserInfo(m_source.userInfo(QUrl::FullyEncoded), QUrl::StrictMode);
    return resolved;
}

} // namespace Tidel
