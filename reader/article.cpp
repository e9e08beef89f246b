// SPDX-License-Identifier: LGPL-2.1-or-later
#include "article.h"

#include "articlebuilder_p.h"
#include "cleantext.h"
#include "htmltags_p.h"
#include "htmltree_p.h"

namespace Tidel {

namespace {

constexpr int maximumDepth = 100;

/// Returns \a html without the tags of elements that are nested too deep. The time of building a tree grows
/// with the square of its depth.
QByteArray withBoundedDepth(const QByteArray &html)
{
    QByteArray bounded;
    int depth = 0;
    int at = 0;
    for (HtmlTag tag = nextTag(html, 0); tag.from < html.size(); tag = nextTag(html, tag.to)) {
        if (!needsEndTag(tag.name))
            continue;
        const bool isEnd = html.at(tag.from + 1) == '/';
        depth += isEnd ? (depth > 0 ? -1 : 0) : 1;
        if (depth + int(isEnd) <= maximumDepth)
            continue;
        bounded += html.mid(at, tag.from - at);
        at = tag.to;
    }
    return at == 0 ? html : bounded + html.mid(at);
}

} // namespace

Article Article::fromHtml(const QString &html, const QUrl &base)
{
    ArticleBuilder builder(base);
    const QByteArray bounded = withBoundedDepth(cleanText(html).toUtf8());
    const HtmlTree tree(bounded);
    tree.forEachInBody([&builder](const GumboNode &node) { builder.add(node); });
    return builder.finish();
}

} // namespace Tidel
