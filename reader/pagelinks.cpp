// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pagelinks_p.h"

#include "htmltags_p.h"
#include "htmltree_p.h"
#include "link.h"

namespace Tidel {

namespace {

/// The tags `<link>` and `<base>` of \a html and nothing else, so that no tree of the page is needed.
QByteArray linkTags(const QByteArray &html)
{
    const int longest = 4096;
    const int enough = 1000 * 1000;
    QByteArray tags;
    for (int at = 0; at < html.size() && tags.size() < enough;) {
        const HtmlTag tag = nextTag(html, at);
        if ((tag.name == "link" || tag.name == "base") && tag.to - tag.from <= longest)
            tags += html.mid(tag.from, tag.to - tag.from);
        at = tag.to;
    }
    return tags;
}

LinkAttributes attributesOf(const GumboElement &element)
{
    LinkAttributes attributes;
    for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto *const attribute = static_cast<const GumboAttribute *>(element.attributes.data[i]);
        attributes.insert(QString::fromUtf8(attribute->name), QString::fromUtf8(attribute->value));
    }
    return attributes;
}

} // namespace

PageLinks PageLinks::of(const QByteArray &html, const QUrl &page)
{
    PageLinks found;
    const QByteArray tags = linkTags(html);
    HtmlTree(tags).forEachInHead([&](const GumboNode &node) {
        if (node.type != GUMBO_NODE_ELEMENT)
            return;
        const LinkAttributes attributes = attributesOf(node.v.element);
        if (node.v.element.tag == GUMBO_TAG_LINK)
            found.links.append(attributes);
        else if (found.base.isEmpty())
            found.base = Link::toFile(attributes.value(QStringLiteral("href")), page).toUrl();
    });
    if (found.base.isEmpty())
        found.base = page;
    return found;
}

} // namespace Tidel
