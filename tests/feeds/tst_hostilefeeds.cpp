// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedlimits.h>
#include <feedreader.h>
#include <memorylimit.h>

#include <QtTest>

#include <unistd.h>

using namespace Tidel;

namespace {

// Reading takes less than a second. It would take minutes if its time grew with the square of the size.
constexpr unsigned maximumSeconds = 60;
constexpr rlim_t maximumMemory = 200 * 1024 * 1024;
constexpr int hostileSize = 8 * 1024 * 1024;

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

/// \a pattern again and again until \a size, with a different number in place of each %1.
QByteArray filled(const QByteArray &pattern, int size)
{
    if (!pattern.contains("%1"))
        return pattern.repeated(size / pattern.size());
    QByteArray text;
    for (int i = 0; text.size() < size; ++i)
        text += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return text;
}

/// What a user hears of the reading of \a document.
QString verdict(const QByteArray &document)
{
    const auto feed = readFeed(document);
    return feed ? feed->notes.join("; ") : feed.error().reason;
}

/// Adds a row for each of \a patterns, which stand between \a before and \a after.
struct HostileRow
{
    const char *name;
    QByteArray pattern;
    const char *verdict;
};

void addRows(const QByteArray &before, const QByteArray &after, std::initializer_list<HostileRow> rows)
{
    for (const HostileRow &row : rows)
        QTest::newRow(row.name) << before << row.pattern << after << QString(row.verdict);
}

const char *const noFeed = "the document is not a feed: it is neither XML nor JSON";
const char *const tooDamaged = "the document is too complex: too much of it must be mended";
const char *const tooDeep = "the document is too complex: its elements are nested more than 250 deep";
const char *const tooManyValues = "the document is too complex: it has more than 1000000 values";
const char *const mended = "was not well-formed: line 1, column";
const char *const declaresTooMuch = "was not well-formed: it declares too much";
const char *const cutTexts = "has texts of more than 1 MiB: the rest of them was left out";
const char *const cutFiles = "has messages with more than 100 enclosures";
const char *const tooMuchText = "the document is too complex: its entities stand for too much text";

const QByteArray manyEntities = "<!DOCTYPE a [<!ENTITY e '" + QByteArray(990, 'x') + "'><!ENTITY t '<"
    + QByteArray(980, 'a') + "/>'><!ENTITY i '" + QByteArray("<item/>").repeated(140) + "'>]>";
const QByteArray atomStart = "<feed xmlns='http://www.w3.org/2005/Atom'><title>T</title>";
const QByteArray xhtmlStart =
    atomStart + "<entry><id>1</id><content type='xhtml'><div xmlns='http://www.w3.org/1999/xhtml'>";
const QByteArray xhtmlEnd = "</div></content></entry></feed>";

} // namespace

class TestHostileFeeds : public QObject
{
    Q_OBJECT

private slots:
    void listsAreLimited_data();
    void listsAreLimited();
    void documents_data();
    void documents();
    void basesDoNotLengthenLinks();
    void filesOfTheWholeFeed();
    void longTexts_data();
    void longTexts();
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
    QCOMPARE(feed->notes.join(QString()).startsWith(cutFiles), !item.files.isEmpty());
}

void TestHostileFeeds::documents_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("expected");

    addRows("", "",
            {{"blanks", " ", "the document is empty"},
             {"zeros", QByteArray(1, '\0'), noFeed},
             {"ampersands alone", "&", noFeed},
             {"less-than signs alone", "<", noFeed},
             {"bytes that are no text", "\xff\xfe\xfa", noFeed},
             {"byte order marks", "\xef\xbb\xbf", "the document is empty"},
             {"elements without an end", "<b>", tooDeep},
             {"tags of a page", "<html><p>", "the document is a web page, not a feed"},
             {"declarations of XML", "<?xml version='1.0'?>", noFeed},
             {"arrays", "[", tooManyValues},
             {"objects", "{\"items\": [", tooManyValues},
             {"quotes", "{\"", tooManyValues}});
    addRows("", item(""),
            {{"document types", "<!DOCTYPE a [>", mended}, {"comments before", "<!-- -->", ""}});
    addRows("<!DOCTYPE a [", "]>" + item(""),
            {{"entities", "<!ENTITY e%1 'x'>", declaresTooMuch},
             {"entities without an end", "<!ENTITY e%1 \"x>", declaresTooMuch},
             {"entities of entities", "<!ENTITY e%1 '&e%1;&e%1;'>", declaresTooMuch},
             {"parameter entities", "<!ENTITY % e%1 'x'> %e%1;", declaresTooMuch},
             {"declared attributes", "<!ATTLIST item a%1 CDATA 'x'>", declaresTooMuch},
             {"declared elements", "<!ELEMENT e%1 ANY>", ""}});
    addRows(rss("<item><title>").chopped(16), "</title></item></channel></rss>",
            {{"ampersands", "&", tooDamaged},
             {"tags that are none", "<", tooDamaged},
             {"tags that have no end", "<b ", tooDeep},
             {"greater-than signs", ">", cutTexts},
             {"quotation marks", "\"", cutTexts},
             {"line breaks", "\n", ""},
             {"letters", "x", cutTexts},
             {"characters of three bytes", "\xe2\x82\xac", cutTexts},
             {"escaped tags", "&lt;b&gt;", ""},
             {"escaped end tags", "&lt;/b&gt;", ""},
             {"escaped entities", "&amp;nbsp;", ""},
             {"entities of HTML", "&nbsp;", mended},
             {"numbers", "&#1;", mended},
             {"end tags", "</p>", mended},
             {"sections", "<![CDATA[<b>x</b>]]>", ""},
             {"sections without an end", "<![CDATA[", mended},
             {"comments without an end", "<!--", mended},
             {"instructions", "<?x?>", ""},
             {"instructions without an end", "<?", mended}});
    addRows(rss("<item>").chopped(16), "</item></channel></rss>",
            {{"elements", "<title>x</title>", ""},
             {"empty elements", "<a/>", "the document is too complex: it has more than 2000000 elements"},
             {"enclosures", "<enclosure url='https://example.org/%1'/>", cutFiles},
             {"enclosures without addresses", "<enclosure/>", ""},
             {"media", "<media:content url='https://example.org/%1'/>", cutFiles},
             {"pictures", "<media:content url='https://example.org/a.png?%1' width='%1'/>", ""},
             {"media in media", "<media:group>", tooDeep},
             {"categories", "<category>c%1</category>", ""},
             {"authors", "<dc:creator>a%1</dc:creator>", ""},
             {"attributes without an end", "<a b='x>", tooDeep},
             {"links", "<link>https://example.org/%1</link>", ""}});
    addRows(
        rss("").chopped(16), "</channel></rss>",
        {{"items", "<item><guid>%1</guid></item>",
          "the document is too complex: it has more than 50000 items"},
         {"items in items", "<item>", tooDamaged},
         {"namespaces", "<item xmlns:a%1='u'/>", "the document is too complex: it has more than 50000 items"},
         {"elements of the feed", "<link/>", "has no items"}});
    addRows(rss("").chopped(16) + "<item ", "/></channel></rss>",
            {{"attributes", "a%1='' ", declaresTooMuch}});
    addRows(rss("").chopped(16) + "<item a='", "'/></channel></rss>", {{"one attribute", "x", ""}});
    addRows(rss("").chopped(16) + "<", "/></channel></rss>", {{"one name", "x", mended}});
    addRows("<", "/>", {{"name of the root", "x", noFeed}});
    addRows(xhtmlStart, xhtmlEnd,
            {{"XHTML", "<b>x</b>", cutTexts},
             {"XHTML in XHTML", "<b>", tooDeep},
             {"XHTML quotes", "<b/>\"", cutTexts}});
    addRows(
        json("{\"id\": \"1\", \"content_text\": \"").chopped(2), "\"}]}",
        {{"JSON text", "x", cutTexts}, {"JSON line breaks", "\\n", ""}, {"JSON ampersands", "&", cutTexts}});
    addRows(manyEntities + rss("<item><description>").chopped(16), "</description></item></channel></rss>",
            {{"entities of text", "&e;", tooMuchText},
             {"entities of names of tags", "&t;", tooMuchText},
             {"entities in attributes", "<b a='&e;'/>", tooMuchText}});
    addRows(manyEntities + rss("").chopped(16), "</channel></rss>",
            {{"entities of items", "&i;", tooDamaged}});
    addRows(json("").chopped(2), "{}]}",
            {{"JSON items", "{\"id\": \"%1\"},", tooManyValues},
             {"JSON numbers", "0,", tooManyValues},
             {"JSON arrays", "[],", tooManyValues},
             {"JSON objects", "{\"%1\": {}},", tooManyValues}});
}

void TestHostileFeeds::documents()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, pattern);
    QFETCH(QByteArray, after);
    QFETCH(QString, expected);
    const QByteArray document = before + filled(pattern, hostileSize) + after;
    alarm(maximumSeconds);
    const MemoryLimit limit(maximumMemory);
    QVERIFY(limit.holds());
    const QString heard = verdict(document);
    alarm(0);
    QVERIFY2(expected.isEmpty() ? heard.isEmpty() : heard.startsWith(expected), qPrintable(heard));
    QVERIFY(heard.size() < 1000);
}

void TestHostileFeeds::basesDoNotLengthenLinks()
{
    const QByteArray base = "https://example.org/" + QByteArray(1000000, 'a') + "/";
    const QByteArray document = "<feed xmlns='http://www.w3.org/2005/Atom' xml:base='" + base
        + "'><entry><id>1</id>" + many("<link xml:base='%1' href='%1'/>", 20000) + "</entry></feed>";
    const MemoryLimit limit(maximumMemory);
    QVERIFY(limit.holds());
    const auto feed = readFeed(document);
    QVERIFY(feed);
    QCOMPARE(feed->items.front().link.text, QString("0"));
    QVERIFY(feed->items.front().link.base.size() <= maximumBaseLength);
}

void TestHostileFeeds::filesOfTheWholeFeed()
{
    const QByteArray files = many("<enclosure url='https://example.org/%1'/>", maximumFiles);
    const auto feed =
        readFeed(rss(("<item>" + files + "</item>").repeated(2 * maximumFilesOfFeed / maximumFiles)));
    QVERIFY(feed);
    QCOMPARE(feed->notes.size(), 1);
    QVERIFY2(feed->notes.first().startsWith(cutFiles), qPrintable(feed->notes.first()));
    QCOMPARE(int(feed->items.front().files.size()), maximumFiles);
    QVERIFY(feed->items.back().files.isEmpty());
}

void TestHostileFeeds::longTexts_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("end");

    const int size = maximumTextSize;
    const QByteArray words = QByteArray("word ").repeated(size / 5);
    QTest::newRow("whole") << item("<description>" + words + "</description>") << "word";
    QTest::newRow("plain") << item("<description>" + words + words + "</description>") << "d";
    QTest::newRow("HTML") << item("<description>&lt;b>" + words + words + "&lt;/b></description>") << "</b>";
    QTest::newRow("XHTML") << xhtmlStart + "<i>" + words.repeated(5) + "</i>" + xhtmlEnd << "</i>";
    QTest::newRow("summary") << item("<summary>" + words + words + "</summary><description>x</description>")
                             << "d";
    QTest::newRow("title") << item("<title>" + words + words + "</title>") << "d";
    QTest::newRow("JSON") << json("{\"content_html\": \"<b>" + words + words + "</b>\"}") << "</b>";
    QTest::newRow("long JSON") << json("{\"content_html\": \"<b>" + words.repeated(5) + "</b>\"}") << "</b>";
}

void TestHostileFeeds::longTexts()
{
    QFETCH(QByteArray, document);
    const auto feed = readFeed(document);
    QVERIFY2(feed, feed ? "" : qPrintable(feed.error().reason));
    const bool isWhole = QTest::currentDataTag() == QByteArray("whole");
    QCOMPARE(feed->notes, isWhole ? QStringList() : QStringList(cutTexts));
    const ItemRecord &item = feed->items.front();
    for (const QString &text : {item.text, item.summary, item.title})
        QVERIFY(text.toUtf8().size() <= maximumTextSize);
    QString longest = item.text.size() > item.title.size() ? item.text : item.title;
    longest = item.summary.size() > longest.size() ? item.summary : longest;
    QVERIFY(longest.toUtf8().size() > maximumTextSize - 10);
    QFETCH(QString, end);
    QVERIFY2(longest.trimmed().endsWith(end) || end == "d", qPrintable(longest.right(20)));
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
