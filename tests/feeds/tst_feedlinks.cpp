// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedlinks.h>

#include <QtTest>

using namespace Tidel;

namespace {

const QUrl page("https://example.org/blog/index.html?a=1");

/// Each feed as "address title".
QStringList described(const QVector<FeedLink> &feeds)
{
    QStringList lines;
    for (const FeedLink &feed : feeds)
        lines.append((feed.address.toString(QUrl::FullyEncoded) + ' ' + feed.title).trimmed());
    return lines;
}

QByteArray feedTag(const char *address) { return QByteArray("<link rel=feed href='") + address + "'>"; }

} // namespace

class TestFeedLinks : public QObject
{
    Q_OBJECT

private slots:
    void ofPage_data();
    void ofPage();
    void pageThatIsAFile();
    void encodings_data();
    void encodings();
    void numberIsLimited();
    void hostilePagesAreRead_data();
    void hostilePagesAreRead();
    void ofHeader_data();
    void ofHeader();
    void commonPlaces_data();
    void commonPlaces();
};

void TestFeedLinks::ofPage_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const char *html, const QStringList &expected = QStringList()) {
        QTest::newRow(name) << QByteArray(html) << expected;
    };
    row("nothing", "");
    row("none", "<html><head><link rel=stylesheet href=a.css><link rel=alternate hreflang=de href=/de>");
    row("one",
        "<!DOCTYPE html><html><head><title>Blog</title>"
        "<link rel=\"alternate\" type=\"application/rss+xml\" title=\"Garden &amp; Notes\" href=\"/feed?a=1&amp;b=2\">"
        "</head><body>text</body></html>",
        {"https://example.org/feed?a=1&b=2 Garden & Notes"});
    row("several, each once",
        "<link rel=alternate type=application/atom+xml href=a.xml><LINK REL='Alternate Home' "
        "TYPE='Application/RDF+XML; charset=utf-8' HREF=//example.com/b />"
        "<link rel=alternate type=application/feed+json href=c.json></link><link rel=feed href=a.xml#x>",
        {"https://example.org/blog/a.xml", "https://example.com/b", "https://example.org/blog/c.json"});
    row("in the body", "<body><div><p><link rel=feed href=a></div>", {"https://example.org/blog/a"});
    row("XML by its name",
        "<link rel=alternate type=text/xml href=a.rss><link rel=alternate type=text/xml href=sitemap.xml>"
        "<link rel=alternate type=text/xml href=feedback.xml><link rel=alternate type=application/xml "
        "title='News feed' href=b>",
        {"https://example.org/blog/a.rss", "https://example.org/blog/b News feed"});
    row("JSON by its name",
        "<link rel=alternate type=application/json href=/wp-json/pages/2 title=JSON>"
        "<link rel=alternate type=application/json href=feed.json>"
        "<link rel=alternate type=application/json+oembed href=feed>",
        {"https://example.org/blog/feed.json"});
    row("not an alternate",
        "<link rel=stylesheet type=application/rss+xml href=a><link type=application/rss+xml href=b>"
        "<link rel=alternates type=application/rss+xml href=c><link rel=alternate href=feed>");
    row("hidden",
        "<!-- <link rel=feed href=a> --><script>'<link rel=feed href=b>'</script>"
        "<title><link rel=feed href=c></title>");
    row("base", "<base href=/other/><base href=/no/><link rel=feed href=a>", {"https://example.org/other/a"});
    row("base after the link", "<link rel=feed href=a><base href=https://example.com/>",
        {"https://example.com/a"});
    row("base that is none", "<base href='javascript:x'><link rel=feed href=a>",
        {"https://example.org/blog/a"});
    row("other schemes",
        "<link rel=feed href='javascript:alert(1)'><link rel=feed href='data:text/xml,a'>"
        "<link rel=feed href='file:///etc/passwd'><link rel=feed href='ftp://example.org/a'>"
        "<link rel=feed href='http:///a'><link rel=feed href=''><link rel=feed>");
    row("wrapped address", "<link rel=feed href=' a\n b '>", {"https://example.org/blog/ab"});
    row("title with markup", "<link rel=feed href=a title='a &lt;b> &#1; c\n d'>",
        {"https://example.org/blog/a a <b> c d"});
}

void TestFeedLinks::ofPage()
{
    QFETCH(QByteArray, html);
    QFETCH(QStringList, expected);
    QCOMPARE(described(feedLinksOfPage(html, page, QByteArray())), expected);
}

void TestFeedLinks::pageThatIsAFile()
{
    QCOMPARE(described(feedLinksOfPage(feedTag("b.xml"), QUrl("file:///home/me/a.html"), QByteArray())),
             QStringList("file:///home/me/b.xml"));
}

void TestFeedLinks::encodings_data()
{
    QTest::addColumn<QByteArray>("beginning");
    QTest::addColumn<QByteArray>("charset");

    QTest::newRow("server") << QByteArray("<meta charset=utf-8>") << QByteArray("windows-1251");
    QTest::newRow("page") << QByteArray("<META charset=\"windows-1251\">") << QByteArray();
    QTest::newRow("page, as a header")
        << QByteArray("<meta http-equiv=Content-Type content=\"text/html; charset=windows-1251\">")
        << QByteArray();
}

void TestFeedLinks::encodings()
{
    QFETCH(QByteArray, beginning);
    QFETCH(QByteArray, charset);
    const auto feeds = feedLinksOfPage(beginning + "<link rel=feed href=a title='\xcf\xf0'>", page, charset);
    QCOMPARE(feeds.size(), 1);
    QCOMPARE(feeds.first().title, QString::fromUtf8("\u041f\u0440"));
}

void TestFeedLinks::numberIsLimited()
{
    QByteArray html;
    QByteArray header;
    for (int i = 0; i < 60; ++i) {
        html += feedTag(QByteArray::number(i).constData());
        header += "<" + QByteArray::number(i) + ">;rel=feed,";
    }
    QCOMPARE(feedLinksOfPage(html, page, QByteArray()).size(), 50);
    QCOMPARE(feedLinksOfHeader(header, page).size(), 50);
}

void TestFeedLinks::hostilePagesAreRead_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArray>("before");

    const auto row = [](const char *name, const char *part, const char *before = "") {
        QTest::newRow(name) << QByteArray(part) << QByteArray(before);
    };
    row("nested blocks", "<div>");
    row("nested formatting", "<b x=1><p>");
    row("other links", "<link rel=icon href=a>");
    row("attributes", " x=1", "<p");
    row("text", "text & more ");
}

// The time would be minutes if it grew with the square of the length.
void TestFeedLinks::hostilePagesAreRead()
{
    QFETCH(QByteArray, part);
    QFETCH(QByteArray, before);
    const auto feeds =
        feedLinksOfPage(feedTag("a") + before + part.repeated(500000) + ">" + feedTag("a"), page, "");
    QCOMPARE(described(feeds), QStringList("https://example.org/blog/a"));

    QVERIFY(feedLinksOfPage("<link rel=feed href=a" + QByteArray(" x").repeated(500000) + ">", page, "")
                .isEmpty());
}

void TestFeedLinks::ofHeader_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const char *header, const QStringList &expected = QStringList()) {
        QTest::newRow(name) << QByteArray(header) << expected;
    };
    row("nothing", "");
    row("one", "</feed>; rel=\"alternate\"; type=\"application/rss+xml\"; title=\"Garden\"",
        {"https://example.org/feed Garden"});
    row("several",
        "<style.css>;rel=preload, <a?b=1,2;3> ;type=application/atom+xml ;REL=Alternate,"
        "<b>; rel=\"home alternate\"; type=\"application/feed+json\"",
        {"https://example.org/blog/a?b=1,2;3", "https://example.org/blog/b"});
    row("quotes", R"(<a>; title="a \"b\", <c>; \\"; rel=feed, <d>; rel=feed)",
        {R"(https://example.org/blog/a a "b", <c>; \)", "https://example.org/blog/d"});
    row("UTF-8", "<a>; rel=feed; title=\"caf\xc3\xa9\"",
        {QString::fromUtf8("https://example.org/blog/a caf\u00e9")});
    row("entities are no entities", "<a>; rel=feed; title=\"a &amp; b\"",
        {"https://example.org/blog/a a &amp; b"});
    row("other schemes", "<javascript:a>; rel=feed, <file:///a>; rel=feed");
    row("broken", "<a; rel=feed");
    row("unclosed quote", "<a>; rel=feed; title=\"b", {"https://example.org/blog/a"});
}

void TestFeedLinks::ofHeader()
{
    QFETCH(QByteArray, header);
    QFETCH(QStringList, expected);
    QCOMPARE(described(feedLinksOfHeader(header, page)), expected);
    for (const char *part : {"<", "<a>;", "<a>;x=\"", "<a>;x=\\"})
        feedLinksOfHeader(header + QByteArray(part).repeated(200000), page);
}

void TestFeedLinks::commonPlaces_data()
{
    QTest::addColumn<QUrl>("address");
    QTest::addColumn<QStringList>("expected");

    const QStringList root{"https://example.org/feed",      "https://example.org/feed.xml",
                           "https://example.org/index.xml", "https://example.org/rss.xml",
                           "https://example.org/atom.xml",  "https://example.org/rss",
                           "https://example.org/feed.json"};
    QTest::newRow("root") << QUrl("https://example.org") << root;
    QTest::newRow("query") << QUrl("https://example.org/?a=1#b") << root;
    QTest::newRow("folder") << page
                            << QStringList{
                                   "https://example.org/blog/feed",      "https://example.org/blog/feed.xml",
                                   "https://example.org/blog/index.xml", "https://example.org/feed",
                                   "https://example.org/feed.xml",       "https://example.org/rss.xml",
                                   "https://example.org/atom.xml",       "https://example.org/index.xml"};
    QTest::newRow("file") << QUrl("file:///home/me/a.html") << QStringList();
}

void TestFeedLinks::commonPlaces()
{
    QFETCH(QUrl, address);
    QFETCH(QStringList, expected);
    QStringList places;
    for (const QUrl &place : commonFeedPlaces(address))
        places.append(place.toString());
    QCOMPARE(places, expected);
}

QTEST_GUILESS_MAIN(TestFeedLinks)
#include "tst_feedlinks.moc"
