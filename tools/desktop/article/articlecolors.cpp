// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articlecolors.h"

#include <QPalette>

namespace Tidel {

namespace {

QColor mixed(const QColor &first, const QColor &second, double share)
{
    const auto mix = [share](double a, double b) { return a * (1 - share) + b * share; };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

/// Many dark palettes leave links dark blue.
QColor readable(const QColor &link, const QColor &base)
{
    constexpr int leastDifference = 100;
    if (qAbs(qGray(link.rgb()) - qGray(base.rgb())) >= leastDifference)
        return link;
    return qGray(base.rgb()) < 128 ? QColor(0x7f, 0xb9, 0xff) : QColor(0x0b, 0x57, 0xb0);
}

} // namespace

ArticleColors::ArticleColors(const QPalette &palette)
    : text(palette.color(QPalette::Text)), faint(mixed(text, palette.color(QPalette::Base), 0.35)),
      line(mixed(text, palette.color(QPalette::Base), 0.75)),
      shade(mixed(text, palette.color(QPalette::Base), 0.93)),
      link(readable(palette.color(QPalette::Link), palette.color(QPalette::Base)))
{
}

QString articleStyle(const ArticleColors &colors)
{
    return QStringLiteral("body { color: %1; line-height: 140% }"
                          "a { color: %5; text-decoration: none }"
                          "a.title { color: %1 }"
                          "h1 { font-size: x-large; margin-top: 0; margin-bottom: 4px }"
                          "h2 { font-size: large } h3, h4, h5, h6 { font-size: medium }"
                          "p, li, dd { line-height: 140% }"
                          "p.facts { color: %2; line-height: 120%; margin-top: 0; margin-bottom: 2px }"
                          "p.file { margin-bottom: 2px }"
                          "span.faint { color: %2 }"
                          "blockquote { color: %2 }"
                          "pre, code, kbd, samp, tt { font-family: monospace; background-color: %4 }"
                          "pre, table { margin-top: 8px; margin-bottom: 8px }"
                          "table { border-collapse: collapse }"
                          "td, th { border: 1px solid %3; padding: 4px 8px }"
                          "th { background-color: %4 }")
        .arg(colors.text.name(), colors.faint.name(), colors.line.name(), colors.shade.name(),
             colors.link.name());
}

} // namespace Tidel
