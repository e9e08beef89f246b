// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LINKCLAIMS_H
#define TIDEL_LINKCLAIMS_H

#include <QHash>
#include <QSet>
#include <QString>

namespace Tidel {

class FeedItem;

/// Gives each item of one feed a link of its own, since the store knows messages by their links.
///
/// Items are to come oldest first: the oldest keeps a link that several share, so that links stay the same
/// when new items arrive.
class LinkClaims
{
public:
    /// No item is given one of \a reserved, the links of channels.
    explicit LinkClaims(const QSet<QString> &reserved);

    /// The link of \a item, which wants \a wanted; empty when the item was there before. The item must stay
    /// as long as this object.
    QString claim(const FeedItem &item, const QString &wanted);

private:
    QSet<QString> m_reserved;
    QHash<QString, const FeedItem *> m_owners;
};

} // namespace Tidel

#endif
