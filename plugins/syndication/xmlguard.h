// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLGUARD_H
#define TIDEL_XMLGUARD_H

#include <QByteArray>
#include <QString>

namespace Tidel {

/// The maximum size of the tree of a document.
struct XmlExtent
{
    int depth = 0; ///< The depth of nested elements.
    qint64 nodes = 0; ///< The number of elements, attributes and texts.
    int attributes = 0; ///< The largest number of attributes of an element and its ancestors.
    qint64 attributeSteps = 0; ///< The sum of these numbers over all elements that have attributes.
};

/// The limits for building a tree. Depth takes stack and nodes take memory. Attributes take time: each one is
/// compared with the others of its element, and each namespace is added to those of the ancestors.
constexpr XmlExtent maximumXmlExtent{500, 1000000, 300, 8000000};

/// Returns the reason why no tree should be built from \a document, the result of readableXml(): the tree
/// would be too large, or the document has an error and its size is unknown. Returns an empty text if a tree
/// may be built, and sets \a extent to its size. The document may still not be well-formed.
QString xmlObstacle(const QByteArray &document, XmlExtent *extent);

/// Returns the first error in \a document and its position; empty if the document is well-formed.
QString xmlError(const QByteArray &document);

} // namespace Tidel

#endif
