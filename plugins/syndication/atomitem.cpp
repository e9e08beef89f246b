// SPDX-License-Identifier: LGPL-2.1-or-later
#include "atomitem.h"

#include <QStringList>

#include <syndication/atom/link.h>

namespace Tidel {

AtomItem::AtomItem(const Syndication::ItemPtr &item, const Syndication::Atom::Entry &entry)
    : FeedItem(item), m_entry(entry)
{
}

QString AtomItem::child(const char *name) const
{
    return m_entry.extractElementTextNS(QStringLiteral("http://www.w3.org/2005/Atom"), QLatin1String(name));
}

Reference AtomItem::link() const
{
    const auto links = m_entry.links();
    for (const Syndication::Atom::Link &link : links) {
        const QString relation = link.attribute(QStringLiteral("rel"));
        if (relation.isEmpty() || relation == QLatin1String("alternate"))
            return {link.attribute(QStringLiteral("href")), link};
    }
    return {};
}

// Atom does not require that an identifier is an address, but identifiers that look like web addresses are.
QString AtomItem::permalink() const { return ownId(); }

QString AtomItem::date() const
{
    const QString published = child("published");
    return published.isEmpty() ? child("updated") : published;
}

QList<FileReference> AtomItem::files() const
{
    QList<FileReference> files;
    const auto links = m_entry.links();
    for (const Syndication::Atom::Link &link : links) {
        if (link.attribute(QStringLiteral("rel")) != QLatin1String("enclosure"))
            continue;
        files.append({{link.attribute(QStringLiteral("href")), link},
                      link.attribute(QStringLiteral("type")),
                      link.attribute(QStringLiteral("length"))});
    }
    return files;
}

QString AtomItem::ownId() const { return child("id"); }

QString AtomItem::completeText() const
{
    QStringList texts{child("title"), link().address, child("summary"), child("content"), date()};
    for (const FileReference &file : files())
        texts += file.url.address;
    return texts.join(QLatin1Char('\n'));
}

} // namespace Tidel
