// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TAGSCANNER_H
#define TIDEL_TAGSCANNER_H

#include "xmlguard.h"

#include <vector>

namespace Tidel {

/// Counts the tags of a document without reading what is between them. This is many times faster than
/// parsing.
///
/// The counts are never smaller than those of a tree. They are larger for documents that are not well-formed,
/// such as web pages with tags that are never closed.
class TagScanner
{
public:
    /// Creates a scanner of \a document, which must outlive it.
    explicit TagScanner(const QByteArray &document);

    /// Scans the document. Returns false if it declares entities, whose tags cannot be counted; otherwise
    /// returns true.
    bool scan();
    /// The counts after scan().
    XmlExtent extent() const { return m_extent; }

private:
    /// Returns true if the rest of the document starts with \a text; otherwise returns false.
    bool startsWith(const char *text) const;
    /// Moves behind the next \a text, or to the end.
    void skipPast(const char *text);
    /// Moves to the next \a c, or to the end.
    void skipTo(char c);
    /// Counts the attributes of a start tag.
    void scanStartTag();
    /// Closes the last open element.
    void scanEndTag();
    /// Skips a comment, section or declaration. Returns false if it declares entities; otherwise returns
    /// true.
    bool scanDeclaration();

    const char *m_at;
    const char *const m_end;
    std::vector<int> m_openElements; // The number of attributes of each.
    int m_openAttributes = 0;
    XmlExtent m_extent;
};

} // namespace Tidel

#endif
