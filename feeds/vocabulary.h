// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_VOCABULARY_H
#define TIDEL_VOCABULARY_H

#include <string_view>

namespace Tidel {

/// A set of element names that feeds use.
enum class Vocabulary {
    Core, ///< RSS, RDF and Atom, whose names do not clash.
    Content,
    DublinCore,
    DublinCoreTerms,
    Enclosure, ///< Enclosures in RSS 1.0.
    Itunes,
    Media,
    Podcast,
    Rdf,
    Syndication,
    Xhtml,
    Other
};

/// The vocabulary of the elements with the namespace \a uri and the prefix \a prefix. Both may be empty. The
/// prefix decides if the namespace is missing or unknown; an element without a prefix is of Vocabulary::Core.
Vocabulary vocabularyOf(std::string_view uri, std::string_view prefix);

/// Returns true if \a uri is the namespace of Atom 0.3 or 1.0; otherwise returns false.
bool isAtomNamespace(std::string_view uri);

} // namespace Tidel

#endif
