// SPDX-License-Identifier: LGPL-2.1-or-later
#include "webpage.h"

#include "transfer.h"

#include <QSet>

#include <TidelReader/link.h>

namespace Tidel {

namespace {

// With the page itself, a subscription asks for eight documents at most.
constexpr int maximumGuesses = 7;

QVector<FeedLink> namedFeeds(const FeedDocument &page)
{
    const QVector<FeedLink> named = feedLinksOfHeader(page.linkHeader, page.address)
        + feedLinksOfPage(page.bytes, page.address, page.charset);
    QVector<FeedLink> feeds;
    QSet<QString> addresses;
    for (const FeedLink &feed : named) {
        const QString address = Link::encoded(feed.address);
        const bool isAllowed =
            canTransfer(feed.address) && (!feed.address.isLocalFile() || page.address.isLocalFile());
        if (!isAllowed || addresses.contains(address))
            continue;
        addresses.insert(address);
        feeds.append(feed);
    }
    return feeds;
}

} // namespace

WebPage::WebPage(const FeedDocument &page) : m_feeds(namedFeeds(page))
{
    if (m_feeds.size() == 1)
        m_places = {m_feeds.first().address};
    else if (m_feeds.isEmpty() && !page.address.isLocalFile())
        m_places = commonFeedPlaces(page.address).mid(0, maximumGuesses);
}

QUrl WebPage::takePlace() { return m_places.isEmpty() ? QUrl() : m_places.takeFirst(); }

Outcome WebPage::conclusion(const Outcome &outcome) const
{
    if (m_feeds.isEmpty())
        return {FeedDownloadNotAFeed, QStringLiteral("the document is a web page without feeds")};
    if (m_feeds.size() > 1)
        return {FeedDownloadNotAFeed,
                QStringLiteral("the document is a web page with %1 feeds").arg(m_feeds.size())};
    return {outcome.error,
            QStringLiteral("the feed of the web page, %1, was not read: %2")
                .arg(m_feeds.first().address.toDisplayString(), outcome.reason)};
}

} // namespace Tidel
