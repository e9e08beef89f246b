// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedlimits.h>
#include <feedreader.h>
#include <memorylimit.h>

#include <QtTest>

#include <unistd.h>

using namespace Tidel;

namespace {

// Reading takes less than a second. It would take minutes if its time grew with the square of the size.
constexpr unsigned maximumSeconds = 30;
constexpr rlim_t maximumMemory = 200 * 1024 * 1024;

QByteArray rss(const QByteArray &content)
{
    return "<rss version='2.0' xmlns:dc='http://purl.org/dc/elements/1.1/' "
           "xmlns:media='http://search.yahoo.com/mrss/' "
           "xmlns:itunes='http://www.itunes.com/dtds/podcast-1.0.dtd'><channel><title>T</title>"
        + content + "</channel></rss>";
}

QByteArray item(const QByteArray &content) { return rss("<item>" + content + "</item>"); }

QByteArray json(const QByteArray &items)
{
    return "{\"version\": \"https://jsonfeed.org/version/1.1\", \"items\": [" + items + "]}";
}

/// \a pattern \a count times, with a different number in place of each %1.
QByteArray many(const QByteArray &pattern, int count = 200000)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return text;
}

} // namespace

class TestHostileFeeds : public QObject
{
    Q_OBJECT

private slots:
    void listsAreLimited_data();
    void listsAreLimited();
    void timeIsLimited_data();
    void timeIsLimited();
    void tooManyItems_data();
    void tooManyItems();
};

void TestHostileFeeds::listsAreLimited_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("authors");
    QTest::addColumn<int>("categories");
    QTest::addColumn<int>("files");

    QTest::newRow("authors") << item(many("<dc:creator>a%1</dc:creator>", 2000)) << maximumNames << 0 << 0;
    QTest::newRow("categories") << item(many("<category>c%1</category>", 2000)) << 0 << maximumNames << 0;
    QTest::newRow("keywords") << item("<itunes:keywords>" + many("k%1,") + "</itunes:keywords>") << 0
                              << maximumNames << 0;
    QTest::newRow("enclosures") << item(many("<enclosure url='https://example.org/%1'/>", 2000)) << 0 << 0
                                << maximumFiles;
    QTest::newRow("media") << item(many("<media:content url='https://example.org/%1'/>", 2000)) << 0 << 0
                           << maximumFiles;
    QTest::newRow("groups") << item(
        many("<media:group><media:content url='https://example.org/%1'/></media:group>", 2000))
                            << 0 << 0 << maximumFiles;
    QTest::newRow("JSON") << json("{\"id\": \"1\", \"authors\": [" + many("{\"name\": \"a%1\"},", 2000)
                                  + "{}], \"tags\": [" + many("\"t%1\",", 2000) + "\"\"], \"attachments\": ["
                                  + many("{\"url\": \"https://example.org/%1\"},", 2000) + "{}]}")
                          << maximumNames << maximumNames << maximumFiles;
}

void TestHostileFeeds::listsAreLimited()
{
    QFETCH(QByteArray, document);
    const auto feed = readFeed(document);
    QVERIFY2(feed, feed ? "" : qPrintable(feed.error().reason));
    QCOMPARE(int(feed->items.size()), 1);
    const ItemRecord &item = feed->items.front();
    QTEST(int(item.authors.size()), "authors");
    QTEST(int(item.categories.size()), "categories");
    QTEST(int(item.files.size()), "files");
}

void TestHostileFeeds::timeIsLimited_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("document types") << many("<!DOCTYPE a [>") + item("");
    QTest::newRow("entities") << "<!DOCTYPE a [" + many("<!ENTITY e%1 'x'>") + "]>" + item("");
    QTest::newRow("entities without an end") << "<!DOCTYPE a [" + many("<!ENTITY e%1 \"x>") + "]>" + item("");
    QTest::newRow("references") << item("<title>" + many("&") + "</title>");
    QTest::newRow("tags that are none") << item("<title>" + many("<") + "</title>");
    QTest::newRow("sections without an end") << item(many("<![CDATA["));
    QTest::newRow("comments without an end") << item(many("<!--"));
    QTest::newRow("instructions without an end") << item(many("<?"));
    QTest::newRow("attributes") << rss("<item " + many("a%1='' ") + "/>");
    QTest::newRow("attributes without an end") << item(many("<a b='x>"));
    QTest::newRow("namespaces") << rss(many("<item xmlns:a%1='u'/>", 50000));
    QTest::newRow("end tags") << item(many("</p>"));
    QTest::newRow("items in items") << rss(many("<item>"));
    QTest::newRow("escaped tags") << item("<title>" + many("&lt;b&gt;") + "</title>");
    QTest::newRow("escaped attributes") << item("<title>&lt;b " + many("a%1=x ") + "&gt;</title>");
    QTest::newRow("parts of a duration")
        << item("<enclosure url='a'/><itunes:duration>" + QByteArray(20000000, ':') + "</itunes:duration>");
    QTest::newRow("arrays") << many("[");
    QTest::newRow("objects") << many("{\"items\": [");
}

void TestHostileFeeds::timeIsLimited()
{
    QFETCH(QByteArray, document);
    alarm(maximumSeconds);
    const MemoryLimit limit(maximumMemory);
    QVERIFY(limit.holds());
    readFeed(document);
    alarm(0);
}

void TestHostileFeeds::tooManyItems_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("XML") << rss(many("<item/>", 2 * maximumItems));
    QTest::newRow("JSON") << json(many("{},", 2 * maximumItems) + "{}");
}

void TestHostileFeeds::tooManyItems()
{
    QFETCH(QByteArray, document);
    const auto feed = readFeed(document);
    QVERIFY(!feed);
    QCOMPARE(feed.error().reason,
             QStringLiteral("the document is too complex: it has more than %1 items").arg(maximumItems));
}

QTEST_GUILESS_MAIN(TestHostileFeeds)
#include "tst_hostilefeeds.moc"
