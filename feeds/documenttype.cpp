// SPDX-License-Identifier: LGPL-2.1-or-later
#include "documenttype.h"

#include "parsingcost.h"
#include "xmlnames.h"

#include <algorithm>

namespace Tidel {

namespace {

/// The quoted text at the beginning of \a text, with its quotes; an empty one if there is none.
std::string_view quotedValue(std::string_view text)
{
    const size_t open = text.find_first_not_of(" \t\r\n");
    if (open == std::string_view::npos || (text[open] != '"' && text[open] != '\''))
        return "''";
    const size_t close = text.find(text[open], open + 1);
    return close == std::string_view::npos ? "''" : text.substr(open, close + 1 - open);
}

/// The size of the document type at the beginning of \a text; the size of its first tag if it has no end.
size_t sizeOfDocumentType(std::string_view text)
{
    size_t depth = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '"' || c == '\'')
            at = text.find(c, at + 1);
        else if (text.compare(at, 4, "<!--") == 0)
            at = text.find("-->", at);
        else if (c == '[')
            ++depth;
        else if (c == ']' && depth > 0)
            --depth;
        else if (c == '>' && depth == 0)
            return at + 1;
        if (at == std::string_view::npos)
            break;
    }
    return std::min(text.find('>'), text.size() - 1) + 1;
}

} // namespace

DocumentType readDocumentType(std::string_view text)
{
    constexpr std::string_view declaration = "<!ENTITY ";
    DocumentType type;
    type.size = sizeOfDocumentType(text);
    const std::string_view content = text.substr(0, type.size);
    for (size_t at = content.find(declaration);
         at != std::string_view::npos && type.entities.size() < maximumEntities;
         at = content.find(declaration, at + 1)) {
        const std::string_view rest = content.substr(at + declaration.size());
        const std::string_view name = leading(rest, continuesName);
        if (!name.empty())
            type.entities.emplace(name, quotedValue(rest.substr(name.size())));
    }
    return type;
}

} // namespace Tidel
