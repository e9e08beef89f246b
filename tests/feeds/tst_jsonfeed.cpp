// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedlimits.h>
#include <jsonfeed.h>

#include <QtTest>

using namespace Tidel;

namespace {

/// The feed with the members \a members besides its version.
FeedRecord feedWith(const QByteArray &members)
{
    const auto feed = readJsonFeed("{\"version\":\"https://jsonfeed.org/version/1.1\"," + members + "}");
    return feed ? *feed : FeedRecord();
}

/// The item with the members \a members.
ItemRecord itemWith(const QByteArray &members)
{
    const FeedRecord feed = feedWith("\"items\":[{" + members + "}]");
    return feed.items.empty() ? ItemRecord() : feed.items.front();
}

} // namespace

class TestJsonFeed : public QObject
{
    Q_OBJECT

private slots:
    void refuse_data();
    void refuse();
    void accept_data();
    void accept();
    void texts_data();
    void texts();
    void ids_data();
    void ids();
    void firstAddressCounts();
    void authors_data();
    void authors();
    void hub_data();
    void hub();
    void numbersOfFiles_data();
    void numbersOfFiles();
    void textsAreClean();
    void hostileDocumentsAreRead();
};

void TestJsonFeed::refuse_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("reason");

    const QString notFeed("the document is JSON but not a feed");
    QTest::newRow("object") << QByteArray("{\"name\":\"a\",\"version\":\"1.2\"}") << notFeed;
    QTest::newRow("array") << QByteArray("[1,2]") << notFeed;
    QTest::newRow("items that are no list") << QByteArray("{\"items\":{}}") << notFeed;
    QTest::newRow("first line") << QByteArray("{") << "the document is not valid JSON (line 1: ";
    QTest::newRow("third line") << QByteArray("{\n\"a\":\nx}\n")
                                << "the document is not valid JSON (line 3: ";
}

void TestJsonFeed::refuse()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, reason);
    const auto feed = readJsonFeed(document);
    QVERIFY(!feed);
    QVERIFY2(feed.error().reason.startsWith(reason), qPrintable(feed.error().reason));
    QVERIFY(!feed.error().isWebPage);
}

void TestJsonFeed::accept_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("notes");

    QTest::newRow("items without a version") << QByteArray("{\"items\":[{}]}") << QStringList();
    QTest::newRow("version without items")
        << QByteArray("{\"version\":\"http://jsonfeed.org/version/1\"}") << QStringList("has no items");
    QTest::newRow("no item is an object")
        << QByteArray("{\"items\":[1,null,\"a\",[]]}") << QStringList("has no items");
}

void TestJsonFeed::accept()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, notes);
    const auto feed = readJsonFeed(document);
    QVERIFY(feed);
    QCOMPARE(feed->format, QString("json"));
    QCOMPARE(feed->notes, notes);
}

void TestJsonFeed::texts_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("summary");

    QTest::newRow("HTML") << QByteArray(R"("title":" a\n<b> ","content_html":"<p>c</p>","content_text":"c")")
                          << "a <b>"
                          << "<p>c</p>"
                          << "";
    QTest::newRow("plain text") << QByteArray(R"("content_text":"a & b\r\n<c>\n4")") << "a & b <c> 4"
                                << "a &amp; b<br/>\n&lt;c&gt;<br/>\n4"
                                << "";
    QTest::newRow("summary") << QByteArray(R"("content_html":"<p>a</p>","summary":"b & c")") << "a"
                             << "<p>a</p>"
                             << "b &amp; c";
    QTest::newRow("summary alone") << QByteArray(R"("content_html":" ","summary":"a & b")") << "a & b"
                                   << "a &amp; b"
                                   << "";
    QTest::newRow("nothing") << QByteArray() << ""
                             << ""
                             << "";
}

void TestJsonFeed::texts()
{
    QFETCH(QByteArray, members);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, summary);
    const ItemRecord item = itemWith(members);
    QCOMPARE(item.title, title);
    QCOMPARE(item.text, text);
    QCOMPARE(item.summary, summary);
}

void TestJsonFeed::ids_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("id");

    QTest::newRow("text") << QByteArray("\" a b \"") << "a b";
    QTest::newRow("number") << QByteArray("1234567890123") << "1234567890123";
    QTest::newRow("fraction") << QByteArray("1.5") << "1.5";
    QTest::newRow("address") << QByteArray("\"https://example.org/1\"") << "https://example.org/1";
    QTest::newRow("list") << QByteArray("[1]") << "";
    QTest::newRow("nothing") << QByteArray("null") << "";
}

void TestJsonFeed::ids()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, id);
    const ItemRecord item = itemWith("\"id\":" + value);
    QCOMPARE(item.id, id);
    QCOMPARE(item.isPermalink, id.startsWith("https:"));
}

void TestJsonFeed::firstAddressCounts()
{
    const ItemRecord item = itemWith(R"("external_url":"a","url":"b","banner_image":"c","image":"d")");
    QCOMPARE(item.link.text, QString("b"));
    QCOMPARE(item.thumbnail.text, QString("d"));
    QCOMPARE(itemWith(R"("url":" ","external_url":"a")").link.text, QString("a"));

    QCOMPARE(feedWith(R"("favicon":"a","icon":"b")").image.text, QString("b"));
    QCOMPARE(feedWith(R"("favicon":"a")").image.text, QString("a"));
}

void TestJsonFeed::authors_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QStringList>("authors");

    QTest::newRow("of the feed") << QByteArray() << QStringList("Ada");
    QTest::newRow("one") << QByteArray(R"("author":{"name":"Bo","url":"b"})") << QStringList("Bo");
    QTest::newRow("several") << QByteArray(
        R"("authors":[{"name":"Bo"},{"url":"c"},{},1],"author":{"name":"Di"})")
                             << QStringList{"Bo", "c"};
    QTest::newRow("none that is known") << QByteArray(R"("authors":[{"avatar":"a"}])") << QStringList("Ada");
}

void TestJsonFeed::authors()
{
    QFETCH(QByteArray, members);
    QFETCH(QStringList, authors);
    const FeedRecord feed = feedWith(R"("author":{"name":"Ada"},"items":[{)" + members + "}]");
    QCOMPARE(feed.items.front().authors, authors);
}

void TestJsonFeed::hub_data()
{
    QTest::addColumn<QByteArray>("hubs");
    QTest::addColumn<QString>("expected");

    QTest::newRow("WebSub") << QByteArray(R"([{"type":"rssCloud","url":"a"},{"type":"WebSub","url":"b"}])")
                            << "b";
    QTest::newRow("other") << QByteArray(R"([{"type":"rssCloud","url":"a"},{"type":"x","url":"b"}])") << "a";
    QTest::newRow("none") << QByteArray("[]") << "";
    QTest::newRow("no list") << QByteArray("1") << "";
}

void TestJsonFeed::hub()
{
    QFETCH(QByteArray, hubs);
    QFETCH(QString, expected);
    QCOMPARE(feedWith("\"hubs\":" + hubs).hub.text, expected);
}

void TestJsonFeed::numbersOfFiles_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<quint64>("bytes");
    QTest::addColumn<int>("seconds");

    const auto row = [](const char *members, quint64 bytes, int seconds) {
        QTest::newRow(members) << QByteArray(members) << bytes << seconds;
    };
    row(R"("size_in_bytes":9007199254740992,"duration_in_seconds":61.9)", Q_UINT64_C(9007199254740992), 61);
    row(R"("size_in_bytes":-1,"duration_in_seconds":-1)", 0, 0);
    row(R"("size_in_bytes":1e300,"duration_in_seconds":1e300)", 0, 0);
    row(R"("size_in_bytes":"10","duration_in_seconds":"10")", 0, 0);
}

void TestJsonFeed::numbersOfFiles()
{
    QFETCH(QByteArray, members);
    QFETCH(quint64, bytes);
    QFETCH(int, seconds);
    const ItemRecord item =
        itemWith("\"attachments\":[{\"title\":\"no address\"},{\"url\":\"a\"," + members + "}]");
    QCOMPARE(item.files.size(), 1);
    QCOMPARE(item.files.first().bytes, bytes);
    QCOMPARE(item.files.first().seconds, seconds);
}

void TestJsonFeed::textsAreClean()
{
    const ItemRecord item =
        itemWith(R"("id":"a\u0001","title":"a\ud83d","content_html":"<p>a\u0000\ufffe</p>",)"
                 R"("tags":["a\u0001"," ","b\nc"],"author":{"name":"a\udead"})");
    QCOMPARE(item.id, QString("a"));
    QCOMPARE(item.title, QString("a"));
    QCOMPARE(item.text, QString("<p>a</p>"));
    QCOMPARE(item.categories, QStringList({"a", "b c"}));
    QCOMPARE(item.authors, QStringList("a"));
}

// They may be refused, but take neither the stack nor minutes.
void TestJsonFeed::hostileDocumentsAreRead()
{
    QVERIFY(!readJsonFeed(QByteArray("{\"items\":[").repeated(100000)));
    QVERIFY(!readJsonFeed(QByteArray("[").repeated(1000000)));
    QCOMPARE(feedWith("\"items\":[" + QByteArray("{},").repeated(maximumItems - 1) + "{}]").items.size(),
             size_t(maximumItems));
    const QByteArray author = "{\"name\":\"a\"},";
    QCOMPARE(itemWith("\"authors\":[" + author.repeated(100000) + "{}]").authors.size(), maximumNames);
}

QTEST_GUILESS_MAIN(TestJsonFeed)
#include "tst_jsonfeed.moc"
