// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLGUARD_H
#define TIDEL_XMLGUARD_H

#include <QByteArray>
#include <QString>

namespace Tidel {

/// What a tree of a document would hold at most.
struct XmlExtent
{
    int depth = 0; ///< of nested elements
    qint64 nodes = 0; ///< elements, attributes and texts
    int attributes = 0; ///< of an element and those around it
    qint64 attributeSteps = 0; ///< the sum of these for all elements that have attributes
};

/// Building a tree takes stack for its depth and memory for its nodes. Attributes take time: each is compared
/// with the others of its element, and each namespace is noted beside those that hold around it.
constexpr XmlExtent maximumXmlExtent{500, 1000000, 300, 8000000};

/// Why no tree should be built of \a document, which is to come from readableXml(): it would be too large, or
/// an error shows before it can be known. Empty when one may be built, which does not say that the document
/// is well-formed; \a extent then tells its size.
QString xmlObstacle(const QByteArray &document, XmlExtent *extent);

/// The first error that keeps \a document from being well-formed, with its place; empty when there is none.
QString xmlError(const QByteArray &document);

} // namespace Tidel

#endif
