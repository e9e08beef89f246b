// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <soon.h>

#include <QtTest>

namespace {

QByteArray link(const QByteArray &address, const QByteArray &title)
{
    return "<link rel='alternate' type='application/rss+xml' title='" + title + "' href='" + address + "'>";
}

const QByteArray item = "<item><link>https://example.org/1</link></item>";

} // namespace

/// Subscribes to web pages.
class TestPageDownloads : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init() { QVERIFY(begin()); }
    void cleanup() { end(); }

    void onlyFeed();
    void onlyFeedOfLocalPage();
    void feedOfHeader();
    void severalFeeds();
    void usualPlace();
    void noFeed();
    void feedIsMissing();
    void feedIsPage();
    void feedIsSubscribed();
    void usualPlaceIsSubscribed();
    void pageInPlaceOfStoredFeed();
    void resultsOfLastOperation();
    void cancelOfSecondTransfer();

private:
    QString writePage(const QString &name, const QByteArray &head) const;
    QStringList foundFeeds() const;
};

/// Writes a web page and returns its address on the server.
QString TestPageDownloads::writePage(const QString &name, const QByteArray &head) const
{
    write(name, "<!DOCTYPE html><html><head>" + head + "</head><body><p>A page</body></html>");
    return m_server->url("/files/" + name);
}

/// The feeds that the last operation has found, each as "title address".
QStringList TestPageDownloads::foundFeeds() const
{
    QStringList feeds;
    const QVariantList found = downloader().property("foundFeeds").toList();
    for (const QVariant &feed : found)
        feeds.append(feed.toMap().value("title").toString() + ' ' + feed.toMap().value("address").toString());
    return feeds;
}

void TestPageDownloads::onlyFeed()
{
    write("news.xml", feed(item));
    VERIFY_ENDING(subscribe(writePage("page.html", link("news.xml", "News"))), "downloadFeedsFinished");
    const QString address = m_server->url("/files/news.xml");
    QCOMPARE(foundFeeds(), QStringList("News " + address));
    QCOMPARE(channelUri(), channelUri(address));
    QCOMPARE(messageLinks(), QStringList("https://example.org/1"));
    QCOMPARE(m_server->takeRequests(), QStringList({"GET /files/page.html 200", "GET /files/news.xml 200"}));

    // The channel has the address of the feed, so that a refresh does not ask for the page.
    VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    QCOMPARE(m_server->takeRequests(), QStringList("GET /files/news.xml 304"));
}

void TestPageDownloads::onlyFeedOfLocalPage()
{
    const QString path = write("local.xml", feed(item));
    writePage("local.html", link("local.xml", "Local"));
    VERIFY_ENDING(subscribe("file://" + m_folder->filePath("local.html")), "downloadFeedsFinished");
    QVERIFY(!channelUri("file://" + path).isEmpty());
}

void TestPageDownloads::feedOfHeader()
{
    const QString header =
        "</feed/Header>; rel=\"alternate\"; type=\"application/rss+xml\"; title=\"Header\"";
    VERIFY_ENDING(subscribe(m_server->url("/linked?" + QUrl::toPercentEncoding(header))),
                  "downloadFeedsFinished");
    QCOMPARE(foundFeeds(), QStringList("Header " + m_server->url("/feed/Header")));
    QCOMPARE(channelUri(), channelUri(m_server->url("/feed/Header")));
}

void TestPageDownloads::severalFeeds()
{
    const Ending several = subscribe(writePage("two.html", link("a.xml", "A") + link("/b.xml", "B")));
    VERIFY_ENDING(several, "downloadFeedsFailed");
    QCOMPARE(several.error, int(FeedDownloadNotAFeed));
    QCOMPARE(several.text, QString("the document is a web page with 2 feeds"));
    QCOMPARE(foundFeeds(),
             QStringList({"A " + m_server->url("/files/a.xml"), "B " + m_server->url("/b.xml")}));
    QCOMPARE(m_server->takeRequests(), QStringList("GET /files/two.html 200"));
    QCOMPARE(m_store->count("?c a mfo:FeedChannel"), 0);
}

// The server has a feed at /feed only.
void TestPageDownloads::usualPlace()
{
    VERIFY_ENDING(subscribe(writePage("plain.html", {})), "downloadFeedsFinished");
    QCOMPARE(foundFeeds(), QStringList(' ' + m_server->url("/feed")));
    QCOMPARE(channelUri(), channelUri(m_server->url("/feed")));
    const QStringList requests = m_server->takeRequests();
    QCOMPARE(requests.first(), QString("GET /files/plain.html 200"));
    QCOMPARE(requests.last(), QString("GET /feed 200"));
    QCOMPARE(requests.filter(" 404").size(), requests.size() - 2);
}

void TestPageDownloads::noFeed()
{
    writePage("plain.html", {});
    const Ending failed = subscribe("file://" + m_folder->filePath("plain.html"));
    VERIFY_ENDING(failed, "downloadFeedsFailed");
    QCOMPARE(failed.error, int(FeedDownloadNotAFeed));
    QCOMPARE(failed.text, QString("the document is a web page without feeds"));
    QCOMPARE(foundFeeds(), QStringList());
}

void TestPageDownloads::feedIsMissing()
{
    const Ending failed = subscribe(writePage("page.html", link("missing.xml", "Missing")));
    QCOMPARE(failed.error, 404);
    QCOMPARE(failed.text,
             "the feed of the web page, " + m_server->url("/files/missing.xml")
                 + ", was not read: the server answered 404 Not Found");
}

// A page that leads to itself must not be read again and again.
void TestPageDownloads::feedIsPage()
{
    const QString address = writePage("page.html", link("page.html", "Itself"));
    const Ending failed = subscribe(address);
    QCOMPARE(failed.error, int(FeedDownloadNotAFeed));
    QVERIFY2(failed.text.startsWith("the feed of the web page, " + address
                                    + ", was not read: the document is a web page"),
             qPrintable(failed.text));
    QCOMPARE(m_server->takeRequests().size(), 2);
    QCOMPARE(m_store->count("?c a mfo:FeedChannel"), 0);
}

void TestPageDownloads::feedIsSubscribed()
{
    write("news.xml", feed(item));
    const QString address = m_server->url("/files/news.xml");
    VERIFY_ENDING(subscribe(address), "downloadFeedsFinished");
    QCOMPARE(foundFeeds(), QStringList());
    const Ending again = subscribe(writePage("page.html", link("news.xml", "News")));
    QCOMPARE(again.error, int(FeedDownloadAlreadyStored));
    QCOMPARE(again.text, QString("the feed is already subscribed"));
    QCOMPARE(foundFeeds(), QStringList("News " + address));
    QCOMPARE(m_store->count("?c a mfo:FeedChannel"), 1);
}

void TestPageDownloads::usualPlaceIsSubscribed()
{
    const QString address = m_server->url("/feed");
    VERIFY_ENDING(subscribe(address), "downloadFeedsFinished");
    QCOMPARE(subscribe(writePage("plain.html", {})).error, int(FeedDownloadAlreadyStored));
    QCOMPARE(foundFeeds(), QStringList(' ' + address));
    QCOMPARE(m_store->count("?c a mfo:FeedChannel"), 1);
}

// A channel stays what it is, although its address may lead to a page for a while.
void TestPageDownloads::pageInPlaceOfStoredFeed()
{
    write("turning.html", feed(item));
    VERIFY_ENDING(subscribe(m_server->url("/files/turning.html")), "downloadFeedsFinished");
    writePage("turning.html", link("news.xml", "News"));
    m_server->forgetRequests();
    const Ending failed = refresh();
    VERIFY_ENDING(failed, "downloadFeedsFailed");
    QCOMPARE(failed.error, int(FeedDownloadNotAFeed));
    QVERIFY2(failed.text.startsWith("the document is a web page"), qPrintable(failed.text));
    QCOMPARE(m_server->takeRequests(), QStringList("GET /files/turning.html 200"));
    QCOMPARE(messageLinks(), QStringList("https://example.org/1"));
}

void TestPageDownloads::resultsOfLastOperation()
{
    const QString page = writePage("two.html", link("a.xml", "A") + link("b.xml", "B"));
    VERIFY_ENDING(subscribe(page), "downloadFeedsFailed");
    QCOMPARE(foundFeeds().size(), 2);
    VERIFY_ENDING(subscribe(m_server->url("/feed/Other")), "downloadFeedsFinished");
    QCOMPARE(foundFeeds(), QStringList());
}

void TestPageDownloads::cancelOfSecondTransfer()
{
    const QString page = writePage("silent.html", link("/silent", "Silent"));
    m_server->forgetRequests();
    downloader().subscribe(QUrl(page));
    COMPARE_SOON(m_server->requests(), QStringList({"GET /files/silent.html 200", "GET /silent 0"}));
    downloader().cancel();
    const Ending canceled = ending(downloader());
    VERIFY_ENDING(canceled, "downloadFeedsFailed");
    QCOMPARE(canceled.error, int(FeedDownloadCanceled));
    QCOMPARE(canceled.text, QString("canceled"));
}

QTEST_GUILESS_MAIN(TestPageDownloads)
#include "tst_pagedownloads.moc"
