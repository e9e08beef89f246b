// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RSSITEM_H
#define TIDEL_RSSITEM_H

#include "feeditem.h"

#include <syndication/rss2/item.h>

namespace Tidel {

/// An item of RSS 0.91 to 2.0.
class RssItem : public FeedItem
{
public:
    /// Creates the item of \a rss, which \a item wraps.
    RssItem(const Syndication::ItemPtr &item, const Syndication::RSS2::Item &rss);

    Reference link() const override;
    QString permalink() const override;
    QString date() const override;
    QList<FileReference> files() const override;

protected:
    QString ownId() const override;
    QString completeText() const override;

private:
    /// The text of the child element \a name; empty if there is none.
    QString child(const char *name) const;

    Syndication::RSS2::Item m_rss;
};

} // namespace Tidel

#endif
