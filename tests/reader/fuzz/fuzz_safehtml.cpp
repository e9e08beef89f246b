// SPDX-License-Identifier: LGPL-2.1-or-later
// Cleans any bytes as the text of a message, and what comes out once more.
#include <fuzzing.h>

#include <TidelReader/article.h>
#include <TidelReader/safehtml.h>

using namespace Tidel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QUrl base(QStringLiteral("https://example.org/"));
    const QString html = textOf(bytesOf(data, size));
    const QString clean = SafeHtml::fromHtml(html, base, SafeHtml::ShownPictures).html;
    const QString again = SafeHtml::fromHtml(clean, base, SafeHtml::ShownPictures).html;
    require(clean == again, "Safe HTML stays as it is");
    for (const char *part : {"<script", "<style", "<iframe", "<svg", "<form"})
        require(!clean.contains(QLatin1String(part), Qt::CaseInsensitive), part);
    Article::fromHtml(html, base);
    return 0;
}
