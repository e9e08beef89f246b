// SPDX-License-Identifier: LGPL-2.1-or-later
#include <webpage.h>

#include <QtTest>

using namespace Tidel;

namespace {

const Outcome last{404, "the server answered 404 Not Found"};

WebPage page(const QByteArray &links, const QString &address = "https://example.org/blog/",
             const QByteArray &header = {})
{
    return WebPage({"<html><head>" + links + "</head></html>", QUrl(address), {}, header, {}});
}

QByteArray link(const QByteArray &address)
{
    return "<link rel=alternate type=application/rss+xml title=Feed href='" + address + "'>";
}

QStringList addresses(const WebPage &page)
{
    QStringList texts;
    for (const FeedLink &feed : page.feeds())
        texts.append(feed.address.toString());
    return texts;
}

int places(WebPage page)
{
    int count = 0;
    while (!page.takePlace().isEmpty())
        ++count;
    return count;
}

} // namespace

class TestWebPage : public QObject
{
    Q_OBJECT

private slots:
    void onlyFeed();
    void severalFeeds();
    void headerAndPage();
    void usualPlaces();
    void localFilesInLocalPagesOnly();
    void otherSchemes();
};

void TestWebPage::onlyFeed()
{
    WebPage one = page(link("feed.xml"));
    QCOMPARE(addresses(one), QStringList("https://example.org/blog/feed.xml"));
    QCOMPARE(one.feeds().first().title, QString("Feed"));
    QCOMPARE(one.takePlace(), QUrl("https://example.org/blog/feed.xml"));
    QCOMPARE(one.takePlace(), QUrl());
    QCOMPARE(one.conclusion(last).error, 404);
    QCOMPARE(one.conclusion(last).reason,
             QString("the feed of the web page, https://example.org/blog/feed.xml, was not read: the server "
                     "answered 404 Not Found"));
}

void TestWebPage::severalFeeds()
{
    WebPage two = page(link("a.xml") + link("b.xml"));
    QCOMPARE(two.feeds().size(), 2);
    QCOMPARE(two.takePlace(), QUrl());
    QCOMPARE(two.conclusion(last).error, int(FeedDownloadNotAFeed));
    QCOMPARE(two.conclusion(last).reason, QString("the document is a web page with 2 feeds"));
}

void TestWebPage::headerAndPage()
{
    const WebPage both =
        page(link("a.xml") + link("b.xml"), "https://example.org/blog/",
             "<a.xml>; rel=\"alternate\"; type=\"application/rss+xml\", "
             "<https://example.org/c.xml>; rel=\"alternate\"; type=\"application/atom+xml\"");
    QCOMPARE(addresses(both),
             QStringList({"https://example.org/blog/a.xml", "https://example.org/c.xml",
                          "https://example.org/blog/b.xml"}));
}

void TestWebPage::usualPlaces()
{
    const WebPage none = page({});
    QVERIFY(none.feeds().isEmpty());
    QCOMPARE(places(none), 7);
    QCOMPARE(none.conclusion(last).error, int(FeedDownloadNotAFeed));
    QCOMPARE(none.conclusion(last).reason, QString("the document is a web page without feeds"));
    QCOMPARE(places(page({}, "file:///home/me/page.html")), 0);
}

void TestWebPage::localFilesInLocalPagesOnly()
{
    const QByteArray local = link("file:///etc/feed.xml");
    QCOMPARE(addresses(page(local)), QStringList());
    QCOMPARE(addresses(page(local, "file:///home/me/page.html")), QStringList("file:///etc/feed.xml"));
}

void TestWebPage::otherSchemes()
{
    QCOMPARE(addresses(page(link("data:text/xml,<rss/>") + link("ftp://example.org/feed.xml"))),
             QStringList());
}

QTEST_APPLESS_MAIN(TestWebPage)
#include "tst_webpage.moc"
