// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rootelement.h"

#include <algorithm>
#include <initializer_list>
#include <string>

namespace Tidel {

namespace {

// Some servers write warnings of a few lines before the feed.
constexpr size_t maximumJunk = 65536;

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return result;
}

bool isOneOf(const std::string &name, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string_view nameAt(std::string_view document, size_t position)
{
    const size_t end = document.find_first_of(" \t\r\n/><=\"'&", position);
    return document.substr(position, end == std::string_view::npos ? end : end - position);
}

/// The position of the next start tag, declaration or processing instruction.
size_t nextMarkup(std::string_view document, size_t from)
{
    for (size_t at = document.find('<', from); at < document.size(); at = document.find('<', at + 1)) {
        const char next = at + 1 < document.size() ? document[at + 1] : '\0';
        if (isLetter(next) || next == '!' || next == '?')
            return at;
    }
    return document.size();
}

/// The end of what begins with <! or <? at \a position.
size_t endOfDeclaration(std::string_view document, size_t position)
{
    const bool isComment = document.compare(position, 4, "<!--") == 0;
    const size_t end = document.find(isComment ? "-->" : ">", position);
    return std::min(end, document.size());
}

size_t firstStartTag(std::string_view document)
{
    size_t at = nextMarkup(document, 0);
    while (at < document.size() && !isLetter(document[at + 1]))
        at = nextMarkup(document, endOfDeclaration(document, at));
    return at;
}

} // namespace

std::string_view rootElementOf(std::string_view document)
{
    const size_t tag = firstStartTag(document);
    return tag < document.size() ? nameAt(document, tag + 1) : std::string_view();
}

bool isRootOfFeed(std::string_view name)
{
    return isOneOf(lowered(name.substr(name.find(':') + 1)), {"rss", "rdf", "feed", "channel"});
}

bool isWebPage(std::string_view document)
{
    const size_t start = nextMarkup(document, 0);
    const bool hasType = lowered(document.substr(start, 14)) == "<!doctype html";
    return hasType || isOneOf(lowered(rootElementOf(document)), {"html", "head", "body"});
}

size_t startOfFeed(std::string_view document)
{
    const size_t start = nextMarkup(document, 0);
    if (isRootOfFeed(rootElementOf(document)))
        return start;
    const std::string_view beginning = document.substr(0, maximumJunk);
    for (size_t at = nextMarkup(beginning, start); at < beginning.size();
         at = nextMarkup(beginning, at + 1)) {
        if (isRootOfFeed(nameAt(beginning, at + 1)))
            return at;
    }
    return start;
}

} // namespace Tidel
