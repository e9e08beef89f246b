// SPDX-License-Identifier: LGPL-2.1-or-later
#include "parsingcost.h"

namespace Tidel {

namespace {

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c < 0; }

/// The position behind \a text; the size of \a document if it is missing.
size_t behind(std::string_view document, std::string_view text, size_t from)
{
    const size_t start = document.find(text, from);
    return start == std::string_view::npos ? document.size() : start + text.size();
}

bool hasManyEntities(std::string_view document)
{
    constexpr std::string_view declaration = "<!ENTITY";
    size_t count = 0;
    for (size_t at = document.find(declaration); at != std::string_view::npos && count <= maximumEntities;
         at = document.find(declaration, at + declaration.size()))
        ++count;
    return count > maximumEntities;
}

bool hasManyAttributes(std::string_view document)
{
    for (size_t at = behind(document, "<", 0); at < document.size(); at = behind(document, "<", at)) {
        if (document.compare(at, 3, "!--") == 0) {
            at = behind(document, "-->", at);
        } else if (document.compare(at, 8, "![CDATA[") == 0) {
            at = behind(document, "]]>", at);
        } else if (isLetter(document[at])) {
            int attributes = 0;
            at = document.find_first_of("\"'>", at);
            while (at < document.size() && document[at] != '>') {
                if (++attributes > maximumAttributes)
                    return true;
                at = document.find_first_of("\"'>", behind(document, document.substr(at, 1), at + 1));
            }
        }
    }
    return false;
}

} // namespace

bool isCostlyToParse(std::string_view document)
{
    const bool declaresAttributes = document.find("<!ATTLIST") != std::string_view::npos;
    return declaresAttributes || hasManyEntities(document) || hasManyAttributes(document);
}

} // namespace Tidel
