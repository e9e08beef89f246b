// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeditem.h"

#include "atomitem.h"
#include "rdfitem.h"
#include "rssitem.h"

#include <QCryptographicHash>

namespace Tidel {

FeedItem::FeedItem(const Syndication::ItemPtr &item) : m_item(item) { }

FeedItem::~FeedItem() = default;

QString FeedItem::title() const { return m_item->title(); }

QString FeedItem::text() const
{
    const QString content = m_item->content();
    return content.isEmpty() ? m_item->description() : content;
}

QString FeedItem::summary() const { return m_item->content().isEmpty() ? QString() : m_item->description(); }

QString FeedItem::id() const
{
    const QString given = ownId().trimmed();
    if (!given.isEmpty())
        return given;
    const QByteArray hash = QCryptographicHash::hash(completeText().toUtf8(), QCryptographicHash::Sha1);
    return QLatin1String("hash:") + QString::fromLatin1(hash.toHex());
}

QString FeedItem::variant() const
{
    QString text = title();
    for (const FileReference &file : files())
        text += QLatin1Char('\n') + file.url.address;
    return text;
}

std::vector<std::unique_ptr<FeedItem>> feedItems(const FeedTree &tree)
{
    std::vector<std::unique_ptr<FeedItem>> items;
    const QList<Syndication::ItemPtr> parsed = tree.feed->items();
    items.reserve(size_t(parsed.size()));

    const RdfItemElements elements(tree.elements);
    for (const Syndication::ItemPtr &item : parsed) {
        const Syndication::SpecificItemPtr specific = item->specificItem();
        if (auto rss = specific.dynamicCast<Syndication::RSS2::Item>())
            items.push_back(std::make_unique<RssItem>(item, *rss));
        else if (auto entry = specific.dynamicCast<Syndication::Atom::Entry>())
            items.push_back(std::make_unique<AtomItem>(item, *entry));
        else if (auto rdf = specific.dynamicCast<Syndication::RDF::Item>())
            items.push_back(std::make_unique<RdfItem>(item, *rdf, elements));
    }
    return items;
}

} // namespace Tidel
