// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELMAPPING_H
#define TIDEL_CHANNELMAPPING_H

#include "element.h"

namespace Tidel {

/// Sets what the feed with the root element \a root says of itself. The items of \a feed get what they do not
/// say themselves.
void mapChannel(const Element &root, FeedRecord &feed);

} // namespace Tidel

#endif
