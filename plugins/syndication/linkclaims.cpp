// SPDX-License-Identifier: LGPL-2.1-or-later
#include "linkclaims.h"

#include "feeditem.h"

namespace Tidel {

namespace {

/// Returns true if \a a and \a b are the same item; otherwise returns false.
bool areSameItem(const FeedItem &a, const FeedItem &b)
{
    return a.id() == b.id() && a.variant() == b.variant();
}

/// The link that \a item tries to get in \a attempt.
Link candidate(const FeedItem &item, const Link &wanted, int attempt)
{
    switch (attempt) {
    case 0: return wanted;
    case 1: return wanted.forItem(item.id());
    default: return wanted.forItem(item.id() + QLatin1Char('\n') + item.variant());
    }
}

} // namespace

LinkClaims::LinkClaims(const QSet<QString> &reserved) : m_reserved(reserved) { }

Link LinkClaims::claim(const FeedItem &item, const Link &wanted)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        const Link link = candidate(item, wanted, attempt);
        if (m_reserved.contains(link.toString()))
            continue;
        const FeedItem *owner = m_owners.value(link.toString());
        if (!owner) {
            m_owners.insert(link.toString(), &item);
            return link;
        }
        if (areSameItem(*owner, item))
            break;
    }
    return Link();
}

} // namespace Tidel
