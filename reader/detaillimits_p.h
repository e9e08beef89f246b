// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DETAILLIMITS_P_H
#define TIDEL_DETAILLIMITS_P_H

namespace Tidel {

/// How many elements of a list the store keeps.
constexpr int maximumDetailValues = 50;
/// How many characters of a text the store keeps.
constexpr int maximumDetailLength = 4000;

} // namespace Tidel

#endif
