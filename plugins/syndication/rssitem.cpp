// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rssitem.h"

#include <QStringList>

#include <syndication/rss2/enclosure.h>

namespace Tidel {

RssItem::RssItem(const Syndication::ItemPtr &item, const Syndication::RSS2::Item &rss)
    : FeedItem(item), m_rss(rss)
{
}

QString RssItem::child(const char *name) const
{
    return m_rss.extractElementTextNS(QString(), QLatin1String(name));
}

// The link() of Syndication appends relative links to the address of the website as text.
Reference RssItem::link() const { return {child("link"), m_rss}; }

QString RssItem::permalink() const { return m_rss.guidIsPermaLink() ? m_rss.guid() : QString(); }

QString RssItem::date() const
{
    const QString published = child("pubDate");
    return published.isEmpty() ? m_rss.extractElementTextNS(
               QStringLiteral("http://purl.org/dc/elements/1.1/"), QStringLiteral("date"))
                               : published;
}

QList<FileReference> RssItem::files() const
{
    QList<FileReference> files;
    const auto enclosures = m_rss.enclosures();
    for (const Syndication::RSS2::Enclosure &enclosure : enclosures) {
        // Enclosure::length() is an int, which is too small for long recordings.
        files.append({{enclosure.attribute(QStringLiteral("url")), enclosure},
                      enclosure.attribute(QStringLiteral("type")),
                      enclosure.attribute(QStringLiteral("length"))});
    }
    return files;
}

QString RssItem::ownId() const { return m_rss.guid(); }

QString RssItem::completeText() const
{
    QStringList texts{child("title"), child("link"), child("description"), m_rss.content(), date()};
    for (const FileReference &file : files())
        texts += file.url.address;
    return texts.join(QLatin1Char('\n'));
}

} // namespace Tidel
