// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMLIST_H
#define TIDEL_ITEMLIST_H

#include "element.h"
#include "feedrecord.h"

#include <QSet>

namespace Tidel {

/// Collects the items of a feed, without what exceeds the limits of a text and of the files.
class ItemList
{
public:
    /// Creates a list that recognizes items by the digests \a known.
    explicit ItemList(const QSet<QByteArray> &known = {}) : m_known(known) { }

    /// Appends \a item, an item of XML.
    void add(const Element &item);
    /// Appends \a item.
    void add(ItemRecord &&item);
    bool isEmpty() const { return m_items.empty(); }
    /// Returns true if the files of recognized items, which were not read, may exceed the limit of the feed;
    /// otherwise returns false.
    bool mayHaveTooManyFiles() const;
    /// Moves the items to \a feed, and notes there what was left out.
    void moveTo(FeedRecord &feed);

private:
    const QSet<QByteArray> m_known;
    std::vector<ItemRecord> m_items;
    int m_files = 0;
    int m_recognized = 0;
    bool m_hasLongTexts = false;
    bool m_hasManyFiles = false;
};

} // namespace Tidel

#endif
