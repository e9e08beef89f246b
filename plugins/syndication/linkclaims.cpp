// SPDX-License-Identifier: LGPL-2.1-or-later
#include "linkclaims.h"

#include "feeditem.h"
#include "links.h"

namespace Tidel {

namespace {

bool areTwins(const FeedItem &a, const FeedItem &b) { return a.id() == b.id() && a.variant() == b.variant(); }

/// What \a item is to be called in its \a attempt to find a link that no other item has.
QString candidate(const FeedItem &item, const QString &wanted, int attempt)
{
    switch (attempt) {
    case 0: return wanted;
    case 1: return linkForItem(wanted, item.id());
    default: return linkForItem(wanted, item.id() + QLatin1Char('\n') + item.variant());
    }
}

} // namespace

LinkClaims::LinkClaims(const QSet<QString> &reserved) : m_reserved(reserved) { }

QString LinkClaims::claim(const FeedItem &item, const QString &wanted)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        const QString link = candidate(item, wanted, attempt);
        if (m_reserved.contains(link))
            continue;
        const FeedItem *owner = m_owners.value(link);
        if (!owner) {
            m_owners.insert(link, &item);
            return link;
        }
        if (areTwins(*owner, item))
            break;
    }
    return QString();
}

} // namespace Tidel
