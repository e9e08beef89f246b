// SPDX-License-Identifier: LGPL-2.1-or-later
#include "article.h"

#include "articlebuilder_p.h"
#include "cleantext.h"
#include "htmltags_p.h"
#include "htmltree_p.h"

#include <QSet>

namespace Tidel {

namespace {

constexpr int maximumDepth = 100;

/// Returns true if elements of this name are not nested in each other: they are empty, or the next one ends
/// the one before.
bool isFlat(const QByteArray &name)
{
    static const QSet<QByteArray> names{"area",  "base",  "br",    "col", "dd",     "dt",    "embed",
                                        "hr",    "img",   "input", "li",  "link",   "meta",  "option",
                                        "p",     "param", "rp",    "rt",  "source", "tbody", "td",
                                        "tfoot", "th",    "thead", "tr",  "track",  "wbr"};
    return names.contains(name);
}

/// Returns \a html without the tags of elements that are nested too deep. The time of building a tree grows
/// with the square of its depth.
QByteArray withBoundedDepth(const QByteArray &html)
{
    QByteArray bounded;
    int depth = 0;
    int at = 0;
    for (HtmlTag tag = nextTag(html, 0); tag.from < html.size(); tag = nextTag(html, tag.to)) {
        if (tag.name.isEmpty() || isFlat(tag.name))
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
