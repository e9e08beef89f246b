// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tagrules.h"

#include <algorithm>
#include <initializer_list>

namespace Tidel {

namespace {

std::string_view localName(std::string_view name)
{
    return name.substr(name.find(':') + 1); // npos + 1 is 0.
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), localName(name)) != names.end();
}

/// Returns true if \a name is an element with text but without elements of feeds in it; otherwise returns
/// false.
bool isPlainField(std::string_view name)
{
    return isOneOf(name,
                   {"title", "link", "guid", "id", "pubDate", "published", "updated", "category", "comments",
                    "language", "date", "creator", "subject"});
}

bool isField(std::string_view name)
{
    return isPlainField(name)
        || isOneOf(name,
                   {"description", "summary", "content", "encoded", "enclosure", "author", "item", "entry"});
}

} // namespace

bool isItemTag(std::string_view name) { return isOneOf(name, {"item", "entry"}); }

bool isEmptyTag(std::string_view name) { return isOneOf(name, {"br", "hr", "img", "input", "wbr"}); }

bool endsBefore(std::string_view name, std::string_view next)
{
    return (isPlainField(name) && isField(next)) || (name == next && isOneOf(name, {"p", "li"}));
}

} // namespace Tidel
