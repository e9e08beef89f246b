// SPDX-License-Identifier: LGPL-2.1-or-later
#include "article.h"

#include "articlebuilder_p.h"
#include "cleantext.h"
#include "htmltree_p.h"
#include "wellnested_p.h"

namespace Tidel {

Article Article::fromHtml(const QString &html, const QUrl &base)
{
    ArticleBuilder builder(base);
    const QByteArray nested = wellNested(cleanText(html).toUtf8());
    const HtmlTree tree(nested);
    tree.forEachInBody([&builder](const GumboNode &node) { builder.add(node); });
    return builder.finish();
}

} // namespace Tidel
