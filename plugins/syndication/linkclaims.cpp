// SPDX-License-Identifier: LGPL-2.1-or-later
#include "linkclaims.h"

#include "nameditem.h"

namespace Tidel {

namespace {

/// The link that \a item tries to get in \a attempt.
Link candidate(const NamedItem &item, const Link &wanted, int attempt)
{
    switch (attempt) {
    case 0: return wanted;
    case 1: return wanted.forItem(item.id);
    default: return wanted.forItem(item.id + QLatin1Char('\n') + item.variant());
    }
}

} // namespace

LinkClaims::LinkClaims(const QSet<QString> &reserved) : m_reserved(reserved) { }

Link LinkClaims::claim(const NamedItem &item, const Link &wanted)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        const Link link = candidate(item, wanted, attempt);
        if (m_reserved.contains(link.toString()))
            continue;
        const NamedItem *owner = m_owners.value(link.toString());
        if (!owner) {
            m_owners.insert(link.toString(), &item);
            return link;
        }
        if (owner->isSameAs(item))
            break;
    }
    return Link();
}

} // namespace Tidel
