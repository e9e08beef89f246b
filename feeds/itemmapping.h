// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMMAPPING_H
#define TIDEL_ITEMMAPPING_H

#include "element.h"

namespace Tidel {

/// What the item or entry \a item says.
ItemRecord mapItem(const Element &item);

/// The identifier of \a item; empty if it has none.
QString identifierOf(const Element &item);

} // namespace Tidel

#endif
