// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDLIMITS_H
#define TIDEL_FEEDLIMITS_H

#include <QString>

namespace Tidel {

/// A feed with more items is refused.
constexpr int maximumItems = 50 * 1000;
/// A JSON document with more values is refused.
constexpr int maximumValues = 1000 * 1000;
/// Of more names or files of one item, the first count.
constexpr int maximumNames = 100;
constexpr int maximumFiles = 100;
/// Of more files of a whole feed, the first count.
constexpr int maximumFilesOfFeed = 50 * 1000;
/// Of a longer text, the beginning counts. In bytes of UTF-8.
constexpr int maximumTextSize = 1024 * 1024;
/// What is read of a text, which becomes shorter when it is decoded.
constexpr int maximumSourceSize = 4 * maximumTextSize;
/// A longer `xml:base` or website does not count for relative addresses, which would all become as long.
constexpr int maximumBaseLength = 1000;

/// Why a feed with more than maximumItems is refused.
inline QString tooManyItems()
{
    return QStringLiteral("the document is too complex: it has more than %1 items").arg(maximumItems);
}

} // namespace Tidel

#endif
