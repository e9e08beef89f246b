// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HTMLNODE_P_H
#define TIDEL_HTMLNODE_P_H

#include "cleantext.h"

#include <QString>

#include <gumbo.h>

namespace Tidel {

/// Returns true if \a node is text; otherwise returns false.
inline bool isText(const GumboNode &node)
{
    return node.type == GUMBO_NODE_TEXT || node.type == GUMBO_NODE_WHITESPACE
        || node.type == GUMBO_NODE_CDATA;
}

/// Calls \a use with each node in the element \a node.
template <typename Use> void forEachChild(const GumboNode &node, Use use)
{
    const GumboVector &children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        use(*static_cast<const GumboNode *>(children.data[i]));
}

/// Returns the value of the attribute \a name of the element \a node; empty if there is none.
inline QString attribute(const GumboNode &node, const char *name)
{
    const GumboAttribute *found = gumbo_get_attribute(&node.v.element.attributes, name);
    return found ? cleanText(QString::fromUtf8(found->value)).trimmed() : QString();
}

/// Returns true if the picture \a node is one pixel wide or high, as those that count readers are; otherwise
/// returns false.
inline bool isPixel(const GumboNode &node)
{
    const auto isSmall = [](QString size) {
        size.remove(QLatin1String("px"), Qt::CaseInsensitive);
        bool isNumber = false;
        return size.toDouble(&isNumber) <= 1 && isNumber;
    };
    return isSmall(attribute(node, "width")) || isSmall(attribute(node, "height"));
}

/// Returns the address of the medium \a node, such as a video or a frame; empty if there is none.
inline QString addressOfMedium(const GumboNode &node)
{
    QString address = attribute(node, node.v.element.tag == GUMBO_TAG_OBJECT ? "data" : "src");
    forEachChild(node, [&address](const GumboNode &child) {
        if (address.isEmpty() && child.type == GUMBO_NODE_ELEMENT && child.v.element.tag == GUMBO_TAG_SOURCE)
            address = attribute(child, "src");
    });
    return address;
}

} // namespace Tidel

#endif
