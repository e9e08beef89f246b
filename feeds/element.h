// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ELEMENT_H
#define TIDEL_ELEMENT_H

#include "feedrecord.h"
#include "vocabulary.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Tidel {

/// The name of an element of a feed. Local names are in lower case.
struct ElementName
{
    Vocabulary vocabulary;
    std::string_view local;
};

/// An attribute of an element.
struct Attribute
{
    std::string name; ///< The local name, in lower case.
    std::string value;
};

/// An element of a feed with what is in it. Texts are in UTF-8.
struct Element
{
    Vocabulary vocabulary = Vocabulary::Core;
    std::string name; ///< The local name, in lower case.
    bool isAtom = false; ///< True if it is in a namespace of Atom, which has its own rules for markup.
    std::vector<Attribute> attributes;
    std::string text; ///< The text in it. If hasMarkup is true, the content as markup.
    bool hasMarkup = false; ///< True if the document has elements within the text.
    QString base; ///< The `xml:base` that applies; empty if there is none.
    QString language; ///< The `xml:lang` of this element; empty if it has none.
    std::vector<Element> children; ///< Only of elements that hold other elements instead of text.

    /// The value of the attribute \a attribute; empty if there is none.
    std::string_view value(std::string_view attribute) const;
    /// Returns true if the element is \a other; otherwise returns false.
    bool is(const ElementName &other) const { return vocabulary == other.vocabulary && name == other.local; }
    /// The first child \a child that has a text or attributes; null if there is none.
    const Element *find(const ElementName &child) const;
};

/// Names in the order in which they are tried.
using ElementNames = std::initializer_list<ElementName>;

/// The text of \a element in one line without markup; empty if it is null.
QString lineOf(const Element *element);
/// \a value in one line.
QString lineOf(std::string_view value);
/// The address in the text of \a element.
Address addressIn(const Element &element);
/// The address in the attribute \a attribute of \a element.
Address addressIn(const Element &element, std::string_view attribute);
/// The number in \a text; 0 if it is none or less than 0.
quint64 numberIn(std::string_view text);

} // namespace Tidel

#endif
