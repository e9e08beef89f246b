// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PARSINGCOST_H
#define TIDEL_PARSINGCOST_H

#include <cstddef>
#include <string_view>

namespace Tidel {

/// The time to parse a document grows with the square of these numbers.
/// @{
constexpr int maximumAttributes = 500; ///< Of one element.
constexpr size_t maximumEntities = 1000; ///< That a document declares.
/// @}

/// Returns true if \a document exceeds one of the maximums, or declares attributes that every element gets;
/// otherwise returns false.
bool isCostlyToParse(std::string_view document);

} // namespace Tidel

#endif
