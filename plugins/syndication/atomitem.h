// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ATOMITEM_H
#define TIDEL_ATOMITEM_H

#include "feeditem.h"

// Entry holds a list of persons and does not say what they are.
#include <syndication/atom/person.h>

#include <syndication/atom/entry.h>

namespace Tidel {

/// An entry of an Atom feed.
class AtomItem : public FeedItem
{
public:
    AtomItem(const Syndication::ItemPtr &item, const Syndication::Atom::Entry &entry);

    Reference link() const override;
    QString permalink() const override;
    QString date() const override;
    QList<FileReference> files() const override;

protected:
    QString ownId() const override;
    QString wording() const override;

private:
    QString child(const char *name) const;

    Syndication::Atom::Entry m_entry;
};

} // namespace Tidel

#endif
