// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LINKCLAIMS_H
#define TIDEL_LINKCLAIMS_H

#include <QHash>
#include <QSet>
#include <QString>

#include <TidelReader/link.h>

namespace Tidel {

class FeedItem;

/// Gives each item of one feed a link of its own, since the store identifies messages by their links.
///
/// The items come oldest first. The oldest keeps a link that several items share, so that links stay the same
/// when new items arrive.
class LinkClaims
{
public:
    /// No item gets one of \a reserved, the links of channels.
    explicit LinkClaims(const QSet<QString> &reserved);

    /// The link of \a item, whose own link is \a wanted. Null if the same item was there before. The item
    /// must outlive this object.
    Link claim(const FeedItem &item, const Link &wanted);

private:
    QSet<QString> m_reserved;
    QHash<QString, const FeedItem *> m_owners;
};

} // namespace Tidel

#endif
