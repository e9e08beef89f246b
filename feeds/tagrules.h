// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TAGRULES_H
#define TIDEL_TAGRULES_H

#include <string_view>

namespace Tidel {

/// Returns true if \a name is an element that no element of the same name may be in; otherwise returns false.
bool isItemTag(std::string_view name);

/// Returns true if HTML has no end tag for \a name; otherwise returns false.
bool isEmptyTag(std::string_view name);

/// Returns true if an element \a name ends where the element \a next begins; otherwise returns false.
bool endsBefore(std::string_view name, std::string_view next);

} // namespace Tidel

#endif
