// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMDIGEST_H
#define TIDEL_ITEMDIGEST_H

#include "element.h"

#include <QByteArray>

namespace Tidel {

/// The number of characters of a digest.
constexpr int itemDigestSize = 12;

/// A hash of everything that mapItem() reads of \a item, letters and digits in the way of Base64.
QByteArray itemDigest(const Element &item);

} // namespace Tidel

#endif
