// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TAGSCANNER_H
#define TIDEL_TAGSCANNER_H

#include "xmlguard.h"

#include <vector>

namespace Tidel {

/// Follows the tags of a document without reading what is between them, many times faster than a parser.
///
/// It never counts less than a tree would hold. It counts more in documents that are not well-formed, such as
/// web pages with tags that are never closed.
class TagScanner
{
public:
    explicit TagScanner(const QByteArray &document);

    /// False when the document declares entities, which may hold tags that cannot be counted here.
    bool scan();
    XmlExtent extent() const { return m_extent; }

private:
    bool startsWith(const char *text) const;
    void skipPast(const char *text);
    void skipTo(char c);
    void scanStartTag();
    void scanEndTag();
    bool scanDeclaration();

    const char *m_at;
    const char *const m_end;
    std::vector<int> m_openElements; // the attributes of each
    int m_openAttributes = 0;
    XmlExtent m_extent;
};

} // namespace Tidel

#endif
