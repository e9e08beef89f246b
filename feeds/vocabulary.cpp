// SPDX-License-Identifier: LGPL-2.1-or-later
#include "vocabulary.h"

#include <algorithm>
#include <iterator>

namespace Tidel {

namespace {

struct Name
{
    std::string_view text;
    Vocabulary vocabulary;
};

// Without their scheme and the slash at their end, with which feeds are careless.
constexpr Name namespaces[] = {
    {"www.w3.org/2005/atom", Vocabulary::Core},
    {"purl.org/atom/ns#", Vocabulary::Core},
    {"purl.org/rss/1.0", Vocabulary::Core},
    {"my.netscape.com/rdf/simple/0.9", Vocabulary::Core},
    {"channel.netscape.com/rdf/simple/0.9", Vocabulary::Core},
    {"my.netscape.com/publish/formats/rss-0.91.dtd", Vocabulary::Core},
    {"backend.userland.com/rss2", Vocabulary::Core},
    {"backend.userland.com/rss", Vocabulary::Core},
    {"blogs.law.harvard.edu/tech/rss", Vocabulary::Core},
    {"cyber.law.harvard.edu/rss/rss.html", Vocabulary::Core},
    {"purl.org/rss/1.0/modules/content", Vocabulary::Content},
    {"purl.org/dc/elements/1.1", Vocabulary::DublinCore},
    {"purl.org/dc/elements/1.0", Vocabulary::DublinCore},
    {"purl.org/dc/terms", Vocabulary::DublinCoreTerms},
    {"purl.oclc.org/net/rss_2.0/enc#", Vocabulary::Enclosure},
    {"purl.oclc.org/net/rss_2.0/enc", Vocabulary::Enclosure},
    {"www.itunes.com/dtds/podcast-1.0.dtd", Vocabulary::Itunes},
    {"example.com/dtds/podcast-1.0.dtd", Vocabulary::Itunes},
    {"search.yahoo.com/mrss", Vocabulary::Media},
    {"video.search.yahoo.com/mrss", Vocabulary::Media},
    {"tools.search.yahoo.com/mrss", Vocabulary::Media},
    {"podcastindex.org/namespace/1.0", Vocabulary::Podcast},
    {"github.com/podcastindex-org/podcast-namespace/blob/main/docs/1.0.md", Vocabulary::Podcast},
    {"www.w3.org/1999/02/22-rdf-syntax-ns#", Vocabulary::Rdf},
    {"purl.org/rss/1.0/modules/syndication", Vocabulary::Syndication},
    {"www.w3.org/1999/xhtml", Vocabulary::Xhtml},
};

constexpr Name prefixes[] = {
    {"atom", Vocabulary::Core},
    {"rss", Vocabulary::Core},
    {"content", Vocabulary::Content},
    {"dc", Vocabulary::DublinCore},
    {"dcterms", Vocabulary::DublinCoreTerms},
    {"enc", Vocabulary::Enclosure},
    {"itunes", Vocabulary::Itunes},
    {"media", Vocabulary::Media},
    {"podcast", Vocabulary::Podcast},
    {"rdf", Vocabulary::Rdf},
    {"sy", Vocabulary::Syndication},
    {"xhtml", Vocabulary::Xhtml},
};

char lower(char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; }

bool isSame(std::string_view text, std::string_view lowerCase)
{
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char a, char b) { return lower(a) == b; });
}

std::string_view simplified(std::string_view uri)
{
    const size_t scheme = uri.find("://");
    if (scheme != std::string_view::npos)
        uri.remove_prefix(scheme + 3);
    if (!uri.empty() && uri.back() == '/')
        uri.remove_suffix(1);
    return uri;
}

template <size_t Size> const Name *find(const Name (&names)[Size], std::string_view text)
{
    const auto found = std::find_if(std::begin(names), std::end(names),
                                    [&](const Name &name) { return isSame(text, name.text); });
    return found == std::end(names) ? nullptr : found;
}

} // namespace

Vocabulary vocabularyOf(std::string_view uri, std::string_view prefix)
{
    if (const Name *known = find(namespaces, simplified(uri)))
        return known->vocabulary;
    if (prefix.empty())
        return Vocabulary::Core;
    const Name *known = find(prefixes, prefix);
    return known ? known->vocabulary : Vocabulary::Other;
}

bool isAtomNamespace(std::string_view uri)
{
    const std::string_view name = simplified(uri);
    return isSame(name, "www.w3.org/2005/atom") || isSame(name, "purl.org/atom/ns#");
}

} // namespace Tidel
