// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pageicons.h"

#include "link.h"
#include "pagelinks_p.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Tidel {

namespace {

constexpr int maximumIcons = 3;

struct IconRelation
{
    const char *name;
    int usualSize; // Of icons that do not name theirs, in pixels.
};

const IconRelation relations[] = {
    {"icon", 16}, {"apple-touch-icon", 180}, {"apple-touch-icon-precomposed", 180}};

QStringList wordsOf(const LinkAttributes &link, const char *name)
{
    return link.value(QLatin1String(name)).toLower().simplified().split(QLatin1Char(' '));
}

/// How far the sizes of the icon \a link are from \a size; -1 if it is no icon.
int distanceOf(const LinkAttributes &link, int size)
{
    const QStringList names = wordsOf(link, "rel");
    const auto *relation =
        std::find_if(std::begin(relations), std::end(relations),
                     [&](const IconRelation &known) { return names.contains(QLatin1String(known.name)); });
    if (relation == std::end(relations))
        return -1;
    int distance = -1;
    for (const QString &words : wordsOf(link, "sizes")) {
        const int side = words.section(QLatin1Char('x'), 0, 0).toInt();
        if (side > 0 && (distance < 0 || std::abs(side - size) < distance))
            distance = std::abs(side - size);
    }
    return distance < 0 ? std::abs(relation->usualSize - size) : distance;
}

bool isScalable(const LinkAttributes &link, const QUrl &address)
{
    return link.value(QStringLiteral("type")).contains(QLatin1String("svg"), Qt::CaseInsensitive)
        || address.path().endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
}

} // namespace

QVector<QUrl> iconsOfPage(const QByteArray &html, const QUrl &page, int size)
{
    const PageLinks links = PageLinks::of(html, page);
    QVector<std::pair<int, QUrl>> found;
    for (const LinkAttributes &link : links.links) {
        const int distance = distanceOf(link, size);
        const QUrl address = Link::toFile(link.value(QStringLiteral("href")), links.base).toUrl();
        const bool isOnWeb =
            address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
        if (distance >= 0 && isOnWeb && !isScalable(link, address))
            found.append({distance, address});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    QVector<QUrl> icons;
    for (const auto &icon : qAsConst(found)) {
        if (icons.size() < maximumIcons && !icons.contains(icon.second))
            icons.append(icon.second);
    }
    return icons;
}

} // namespace Tidel
