// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TAGSIZE_H
#define TIDEL_TAGSIZE_H

#include <string_view>

namespace Tidel {

/// Returns true if a tag in \a document has so many attributes that parsing it takes long, because the time
/// grows with the square of their number; otherwise returns false.
bool hasHugeTag(std::string_view document);

} // namespace Tidel

#endif
