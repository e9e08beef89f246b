// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLMENDER_H
#define TIDEL_XMLMENDER_H

#include "documenttype.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tidel {

/// The processing instruction that stands where a document was cut.
constexpr std::string_view cutInstruction = "tidel-cut";

/**
 * Makes a well-formed document of one that is not.
 *
 * - Text before and after the feed is left out, and so are comments.
 * - Entities of HTML become characters. An ampersand or < that begins nothing becomes text.
 * - Characters that XML forbids are left out.
 * - Elements that have no end tag end with the element around them, or before the next item. An end tag
 *   without an element is left out. At the end of a cut document stands cutInstruction.
 * - Attributes get quotes, and occur once.
 *
 * Line numbers stay the same.
 */
class XmlMender
{
public:
    /// Returns \a document, in UTF-8, as well-formed XML; nothing if that is more than twice as large.
    static std::optional<std::string> mended(std::string_view document);

private:
    explicit XmlMender(std::string_view document) : m_text(document) { }

    /// \name What stands at the current position
    /// Each function mends it and moves the position behind it.
    /// @{
    void mendDocument();
    void mendMarkup();
    void mendDeclaration();
    void mendDocumentType();
    void mendLiteral();
    void mendStartTag();
    void mendAttribute(std::vector<std::string_view> &known);
    void mendValue();
    void mendEndTag();
    void mendReference();
    void mendNumber();
    /// The text up to \a end.
    void mendText(size_t end);
    /// Leaves out what stands before \a end, except line breaks.
    void skipTo(size_t end);
    void skipBlanks();
    /// @}

    void open(std::string_view name);
    /// Returns true if the result is too large; otherwise returns false.
    bool isTooLarge() const { return m_mended.size() > 2 * m_capacity; }
    /// Ends the elements inside of the outermost \a depth elements.
    void closeDownTo(size_t depth);
    /// The number of elements around the innermost open element \a name; noElement if none is open.
    size_t depthOf(std::string_view name) const;
    bool startsWith(std::string_view text) const { return m_text.compare(m_at, text.size(), text) == 0; }
    char current() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    /// The position of \a text after the current one; the end of the document if there is none.
    size_t find(std::string_view text) const;
    /// The position behind \a text, as find().
    size_t findEnd(std::string_view text) const;

    const std::string_view m_text;
    const size_t m_capacity = m_text.size() + 512 * 1024;
    size_t m_at = 0;
    std::string m_mended;
    std::vector<std::string_view> m_open; ///< The names of the open elements.
    std::map<std::string_view, std::string_view> m_entities; ///< Those that the document declares.
    bool m_hasType = false; ///< True after the document type. Later ones are left out.
    bool m_isOver = false; ///< True after the end of the root element.
};

} // namespace Tidel

#endif
