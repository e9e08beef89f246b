// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMLIST_H
#define TIDEL_ITEMLIST_H

#include "feedrecord.h"

namespace Tidel {

/// Collects the items of a feed, without what exceeds the limits of a text and of the files.
class ItemList
{
public:
    /// Appends \a item.
    void add(ItemRecord &&item);
    bool isEmpty() const { return m_items.empty(); }
    /// Moves the items to \a feed, and notes there what was left out.
    void moveTo(FeedRecord &feed);

private:
    std::vector<ItemRecord> m_items;
    int m_files = 0;
    bool m_hasLongTexts = false;
    bool m_hasManyFiles = false;
};

} // namespace Tidel

#endif
