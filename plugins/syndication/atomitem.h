// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ATOMITEM_H
#define TIDEL_ATOMITEM_H

#include "feeditem.h"

// entry.h holds a list of persons but does not include their class.
#include <syndication/atom/person.h>

#include <syndication/atom/entry.h>

namespace Tidel {

/// An entry of an Atom feed.
class AtomItem : public FeedItem
{
public:
    /// Creates the item of \a entry, which \a item wraps.
    AtomItem(const Syndication::ItemPtr &item, const Syndication::Atom::Entry &entry);

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

    Syndication::Atom::Entry m_entry;
};

} // namespace Tidel

#endif
