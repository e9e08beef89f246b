// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDLIMITS_H
#define TIDEL_FEEDLIMITS_H

#include <QString>

namespace Tidel {

/// A feed with more items is refused.
constexpr int maximumItems = 100 * 1000;
/// Of more names or files of one item, the first count.
constexpr int maximumNames = 100;
constexpr int maximumFiles = 500;

/// Why a feed with more than maximumItems is refused.
inline QString tooManyItems()
{
    return QStringLiteral("the document is too complex: it has more than %1 items").arg(maximumItems);
}

} // namespace Tidel

#endif
