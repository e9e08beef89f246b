// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_NAMEDITEM_H
#define TIDEL_NAMEDITEM_H

#include "feedrecord.h"

namespace Tidel {

/// An item of a feed with a name.
struct NamedItem
{
    /// Names \a item by its identifier, or by a hash of the item if it has none.
    explicit NamedItem(ItemRecord &&item);

    /// Returns true if this item is \a other once more; otherwise returns false. Some feeds give different
    /// items the same identifier by mistake.
    bool isSameAs(const NamedItem &other) const;
    /// Distinguishes this item from others with the same identifier.
    QString variant() const;

    ItemRecord record;
    QString id;
};

} // namespace Tidel

#endif
