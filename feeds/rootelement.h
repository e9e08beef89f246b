// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ROOTELEMENT_H
#define TIDEL_ROOTELEMENT_H

#include <string_view>

namespace Tidel {

/// The name of the root element of \a document, as its start tag has it; empty if there is no start tag.
std::string_view rootElementOf(std::string_view document);

/// Returns true if \a name is the name of the root element of a feed, with any prefix and in any case;
/// otherwise returns false.
bool isRootOfFeed(std::string_view name);

/// Returns true if \a document is a web page; otherwise returns false.
bool isWebPage(std::string_view document);

/// The position at which the feed in \a document begins, after what does not belong to it. If there is no
/// feed, the position of the first markup, or the size of the document.
size_t startOfFeed(std::string_view document);

} // namespace Tidel

#endif
