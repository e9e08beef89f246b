// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LINKCLAIMS_H
#define TIDEL_LINKCLAIMS_H

#include <QHash>
#include <QSet>
#include <QString>

#include <TidelReader/link.h>

namespace Tidel {

struct NamedItem;

/// Gives each item of a feed a different link, because the store identifies messages by their links.
///
/// The caller passes the oldest item first. Of several items with the same link, the oldest keeps it. So
/// links stay the same when new items arrive.
class LinkClaims
{
public:
    /// Creates an object that gives no item a link in \a reserved, the links of channels.
    explicit LinkClaims(const QSet<QString> &reserved);

    /// Returns the link of \a item, whose link in the document is \a wanted; null if the same item already
    /// has a link. The item must outlive this object.
    Link claim(const NamedItem &item, const Link &wanted);

private:
    QSet<QString> m_reserved;
    QHash<QString, const NamedItem *> m_owners;
};

} // namespace Tidel

#endif
