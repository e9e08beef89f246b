// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/messages.h>

using namespace Tidel;

class TestMessages : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void allFields();
    void order();
    void onlyOfTheChannel();
    void severalTags_data();
    void severalTags();
    void channels();
    void headlines();
    void manyHeadlines();
    void uri_data();
    void uri();
    void setFavorite();
    void setFavoriteOfUnknownMessage();
    void setFavoriteKeepsOtherTags();

private:
    Messages messages() const { return Messages(reader()); }
    static QStringList titlesOf(const Result<QList<FeedMessage>> &messages);
};

QStringList TestMessages::titlesOf(const Result<QList<FeedMessage>> &messages)
{
    QStringList titles;
    const QList<FeedMessage> list = messages.value();
    for (const FeedMessage &message : list)
        titles.append(message.title().section(' ', 2));
    return titles;
}

void TestMessages::allFields()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    addFavorite("a");
    addEnclosure("a.ogg", messageUri("a"));
    const auto found = messages().ofChannel(channelUri("news"));
    VERIFY_OK(found);
    QCOMPARE(found->size(), 1);
    const FeedMessage message = found->constFirst();
    QCOMPARE(message.title(), QString("Title of a"));
    QCOMPARE(message.description(), QString("Text of a"));
    QCOMPARE(message.summary(), QString("Summary of a"));
    QCOMPARE(message.link(), linkOf("a"));
    QCOMPARE(message.publishedDate(), QDateTime(QDate(2026, 11, 1), QTime(12, 0), Qt::UTC));
    QCOMPARE(message.downloadedTime(), QDateTime(QDate(2026, 11, 20), QTime(10, 0), Qt::UTC));
    QVERIFY(message.isFavorite());
    QCOMPARE(message.id(), QString());
    QVERIFY(message.baseUrl().isEmpty());
    QCOMPARE(message.enclosures().size(), 0);
}

void TestMessages::order()
{
    addChannel("news");
    addMessages({"b", "c"}, "news", 2);
    addMessages({"undated"}, "news");
    addMessages({"a"}, "news", 1);
    QCOMPARE(titlesOf(messages().ofChannel(channelUri("news"))), QStringList({"c", "b", "a", "undated"}));
}

void TestMessages::onlyOfTheChannel()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b"}, "news", 1);
    addMessages({"c"}, "radio", 3);
    share("a", "radio");
    QCOMPARE(titlesOf(messages().ofChannel(channelUri("radio"))), QStringList({"c", "a"}));
    for (const QString &uri : {QString("urn:unknown"), QString(), QString("> } #"), linkOf("news")}) {
        const auto none = messages().ofChannel(uri);
        VERIFY_OK(none);
        QCOMPARE(none->size(), 0);
    }
}

void TestMessages::severalTags_data()
{
    QTest::addColumn<QString>("tags");
    QTest::addColumn<bool>("isFavorite");
    QTest::newRow("none") << QString() << false;
    // Retention protects messages with the favorite tag and no others.
    QTest::newRow("others") << "<urn:tag:1> , <urn:tag:2>" << false;
    QTest::newRow("favorite first") << "nao:predefined-tag-favorite , <urn:tag:1> , <urn:tag:2>" << true;
    QTest::newRow("favorite last") << "<urn:tag:1> , <urn:tag:2> , nao:predefined-tag-favorite" << true;
}

void TestMessages::severalTags()
{
    QFETCH(QString, tags);
    QFETCH(bool, isFavorite);
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    store().update("INSERT DATA { <urn:tag:1> a nao:Tag . <urn:tag:2> a nao:Tag }");
    if (!tags.isEmpty())
        store().update("INSERT { <urn:message:b> nao:hasTag " + tags + " }");
    const auto found = messages().ofChannel(channelUri("news"));
    QCOMPARE(titlesOf(found), QStringList({"b", "a"}));
    QCOMPARE(found->at(0).isFavorite(), isFavorite);
    QVERIFY(!found->at(1).isFavorite());
}

void TestMessages::channels()
{
    for (const QString name : {"radio", "news", "music"})
        addChannel(name);
    addMessages({"a"}, "radio");
    share("a", "news");
    addMessages({"b"}, "music");
    QCOMPARE(messages().channelTitles(messageUri("a")).value(), QStringList({"news", "radio"}));
    QCOMPARE(messages().channelUris(messageUri("a")).value(),
             QStringList({channelUri("news"), channelUri("radio")}));
    QCOMPARE(messages().channelUris(messageUri("c")).value(), QStringList());
}

void TestMessages::headlines()
{
    addChannel("news");
    addMessages({"a", "b", "c"}, "news", 1);
    addMessages({"undated"}, "news");
    QCOMPARE(messages().headlines({})->size(), 0);
    QCOMPARE(StatementGate::statements().filter("SELECT").size(), 0);
    const auto found = messages().headlines(linksOf({"undated", "a", "unknown", "c", "news"}));
    VERIFY_OK(found);
    QCOMPARE(titlesOf(found), QStringList({"c", "a", "undated"}));
    const FeedMessage message = found->constFirst();
    QCOMPARE(message.link(), linkOf("c"));
    QCOMPARE(message.publishedDate(), QDateTime(QDate(2026, 11, 3), QTime(12, 0), Qt::UTC));
    QCOMPARE(message.description(), QString());
    QCOMPARE(message.summary(), QString());
}

void TestMessages::manyHeadlines()
{
    addChannel("news");
    const QStringList names = numberedNames("m", 250);
    addMessages(names, "news");
    StatementGate::reset();
    const auto found = messages().headlines(linksOf(names));
    VERIFY_OK(found);
    QCOMPARE(StatementGate::statements().size(), 3);
    // Of messages without a date, the later one is the newer one.
    QCOMPARE(found->size(), 250);
    QCOMPARE(found->constFirst().link(), linkOf("m250"));
    QCOMPARE(found->constLast().link(), linkOf("m1"));
}

void TestMessages::uri_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("uri");
    QTest::newRow("link") << linkOf("a") << messageUri("a");
    QTest::newRow("link without scheme") << "secure.example.org/1"
                                         << "urn:message:plain";
    QTest::newRow("link that is not encoded") << linkOf("\u00fc b") << "urn:message:encoded";
    QTest::newRow("URI") << messageUri("a") << messageUri("a");
    QTest::newRow("link of a channel") << linkOf("news") << QString();
    QTest::newRow("URI of a channel") << channelUri("news") << QString();
    QTest::newRow("URI of an enclosure") << enclosureUri("a.ogg") << QString();
    QTest::newRow("title") << "Title of a" << QString();
    QTest::newRow("unknown") << linkOf("unknown") << QString();
    QTest::newRow("unknown URI") << "urn:message:unknown" << QString();
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("hostile") << "> } INSERT { <urn:x> a mfo:FeedMessage" << QString();
}

void TestMessages::uri()
{
    QFETCH(QString, name);
    QFETCH(QString, uri);
    addChannel("news");
    addMessages({"a", "plain", "encoded"}, "news");
    addEnclosure("a.ogg", messageUri("a"));
    store().update("INSERT { <urn:message:plain> nie:links <http://secure.example.org/1> . "
                   "<urn:message:encoded> nie:links <https://example.org/%C3%BC%20b> }");
    const Result<QString> found = messages().uri(name);
    if (uri.isEmpty())
        VERIFY_ERROR(found, Error::NotFound, "no such message");
    else
        QCOMPARE(found.value(), uri);
}

void TestMessages::setFavorite()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    const QStringList before = contents();
    for (int i = 0; i < 2; ++i) {
        VERIFY_OK(messages().setFavorite(messageUri("a"), true));
        QCOMPARE(store().texts("SELECT ?m { ?m nao:hasTag nao:predefined-tag-favorite }"),
                 QStringList(messageUri("a")));
    }
    QVERIFY(messages().ofChannel(channelUri("news"))->constLast().isFavorite());
    for (int i = 0; i < 2; ++i) {
        VERIFY_OK(messages().setFavorite(messageUri("a"), false));
        QCOMPARE(contents(), before);
    }
}

void TestMessages::setFavoriteOfUnknownMessage()
{
    addChannel("news");
    const QStringList before = everythingIn(store());
    QCOMPARE(messages().setFavorite("urn:message:unknown", true).error().kind(), Error::NotFound);
    VERIFY_OK(messages().setFavorite("urn:message:unknown", false));
    QCOMPARE(everythingIn(store()), before);
}

void TestMessages::setFavoriteKeepsOtherTags()
{
    addChannel("news");
    addMessages({"a"}, "news");
    store().update("INSERT { <urn:tag> a nao:Tag . <urn:message:a> nao:hasTag <urn:tag> }");
    const QStringList before = contents();
    VERIFY_OK(messages().setFavorite(messageUri("a"), true));
    VERIFY_OK(messages().setFavorite(messageUri("a"), false));
    QCOMPARE(contents(), before);
}

QTEST_GUILESS_MAIN(TestMessages)
#include "tst_messages.moc"
