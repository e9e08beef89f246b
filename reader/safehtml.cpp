// SPDX-License-Identifier: LGPL-2.1-or-later
#include "safehtml.h"

#include "cleantext.h"
#include "htmltree_p.h"
#include "safehtmlwriter_p.h"
#include "wellnested_p.h"

namespace Tidel {

SafeHtml SafeHtml::fromHtml(const QString &html, const QUrl &base, Pictures pictures)
{
    SafeHtmlWriter writer(base, pictures);
    const QByteArray nested = wellNested(cleanText(html).toUtf8());
    const HtmlTree tree(nested);
    tree.forEachInBody([&writer](const GumboNode &node) { writer.add(node); });
    return writer.finish();
}

QUrl SafeHtml::picturesAddress() { return QUrl(QStringLiteral("tidel-pictures:")); }

} // namespace Tidel
