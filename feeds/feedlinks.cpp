// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedlinks.h"

#include "encoding.h"
#include "mimetype.h"

#include <TidelReader/cleantext.h>
#include <TidelReader/link.h>
#include <TidelReader/pagelinks_p.h>

#include <QRegularExpression>

#include <algorithm>

namespace Tidel {

namespace {

constexpr int maximumLinks = 50;

bool isOnWeb(const QUrl &url)
{
    return url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
}

/// Returns true if \a link, whose type says no more than that it leads to data, seems to be a feed.
bool isCalledFeed(const LinkAttributes &link)
{
    static const QRegularExpression word(QStringLiteral("(?<![a-z])(rss|atom|rdf|(json)?feeds?)(?![a-z])"),
                                         QRegularExpression::CaseInsensitiveOption);
    return word.match(link.value(QStringLiteral("title"))).hasMatch()
        || word.match(link.value(QStringLiteral("href"))).hasMatch();
}

bool isFeed(const LinkAttributes &link)
{
    static const QStringList feedTypes{
        QStringLiteral("application/rss+xml"), QStringLiteral("application/atom+xml"),
        QStringLiteral("application/rdf+xml"), QStringLiteral("application/feed+json")};
    static const QStringList dataTypes{QStringLiteral("application/json"), QStringLiteral("application/xml"),
                                       QStringLiteral("text/xml")};
    const QStringList relations =
        link.value(QStringLiteral("rel")).toLower().simplified().split(QLatin1Char(' '));
    if (relations.contains(QLatin1String("feed")))
        return true;
    const QString type = cleanMimeType(link.value(QStringLiteral("type")));
    return relations.contains(QLatin1String("alternate"))
        && (feedTypes.contains(type) || (dataTypes.contains(type) && isCalledFeed(link)));
}

/// The feeds among \a links, whose addresses are relative to \a base, for somebody who reads \a page.
QVector<FeedLink> feedsOf(const QVector<LinkAttributes> &links, const QUrl &base, const QUrl &page)
{
    QVector<FeedLink> feeds;
    for (const LinkAttributes &link : links) {
        if (feeds.size() == maximumLinks)
            break;
        if (!isFeed(link))
            continue;
        const QUrl address =
            Link::toFile(link.value(QStringLiteral("href")), base).toUrl().adjusted(QUrl::RemoveFragment);
        const bool isKnown = std::any_of(feeds.cbegin(), feeds.cend(),
                                         [&](const FeedLink &feed) { return feed.address == address; });
        const bool isReadable = isOnWeb(address) || (address.isLocalFile() && page.isLocalFile());
        if (isReadable && !isKnown)
            feeds.append({cleanText(link.value(QStringLiteral("title"))).simplified(), address});
    }
    return feeds;
}

/// What the page itself says about its encoding; empty if it says nothing.
QByteArray metaCharset(const QByteArray &html)
{
    static const QRegularExpression pattern(
        QStringLiteral("<meta\\s[^>]*?charset\\s*=\\s*[\"']?\\s*([A-Za-z0-9._:+-]+)"),
        QRegularExpression::CaseInsensitiveOption);
    return pattern.match(QString::fromLatin1(html.left(4096))).captured(1).toLatin1();
}

} // namespace

QVector<FeedLink> feedLinksOfPage(const QByteArray &html, const QUrl &page, const QByteArray &charset)
{
    const DecodedText text = toUtf8(html, charset.isEmpty() ? metaCharset(html) : charset);
    const PageLinks links = PageLinks::of(text.utf8, page);
    return feedsOf(links.links, links.base, page);
}

QVector<FeedLink> feedLinksOfHeader(const QByteArray &header, const QUrl &page)
{
    static const QString parameter =
        QStringLiteral("\\s*;\\s*([a-z*]+)\\s*=\\s*(?:\"((?:[^\"\\\\]|\\\\.)*+)\"|([^\\s;,\"]*))");
    static const QRegularExpression linkPattern(QStringLiteral("<([^>]*)>((?:%1)*+)").arg(parameter),
                                                QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression parameterPattern(parameter, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression escape(QStringLiteral("\\\\(.)"));

    QVector<LinkAttributes> links;
    auto values = linkPattern.globalMatch(QString::fromUtf8(header.left(64 * 1024)));
    while (values.hasNext()) {
        const QRegularExpressionMatch value = values.next();
        LinkAttributes link{{QStringLiteral("href"), value.captured(1)}};
        auto parameters = parameterPattern.globalMatch(value.captured(2));
        while (parameters.hasNext()) {
            const QRegularExpressionMatch match = parameters.next();
            const QString quoted = match.captured(2).replace(escape, QStringLiteral("\\1"));
            link.insert(match.captured(1).toLower(), quoted + match.captured(3));
        }
        links.append(link);
    }
    return feedsOf(links, page, page);
}

QVector<QUrl> commonFeedPlaces(const QUrl &page)
{
    // Those beside the page come first, because several websites may share a host.
    static const char *const places[] = {"feed",     "feed.xml",  "index.xml",  "/feed", "/feed.xml",
                                         "/rss.xml", "/atom.xml", "/index.xml", "/rss",  "/feed.json"};
    QVector<QUrl> addresses;
    for (const char *place : places) {
        const QUrl address = page.resolved(QUrl(QLatin1String(place)));
        if (isOnWeb(address) && !addresses.contains(address) && addresses.size() < 8)
            addresses.append(address);
    }
    return addresses;
}

} // namespace Tidel
