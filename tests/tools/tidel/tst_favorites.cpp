// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QtTest>

using namespace Tidel;

class TestFavorites : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void mark();
    void unmark();
    void twice();
    void byUri();
    void otherTagsStay();
    void inEveryChannel();
    void unknownMessage_data();
    void unknownMessage();
    void failures_data();
    void failures();

private:
    QStringList favorites() const
    {
        return store().texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t ; "
                             "nao:hasTag nao:predefined-tag-favorite }");
    }

    QString m_news;
};

void TestFavorites::init()
{
    CommandTestCase::init();
    m_news = addChannel("News", {message("a"), message("b")});
}

void TestFavorites::mark()
{
    const CommandResult result = runCommand(favoriteCommand, {linkOf("a")});
    QCOMPARE(result.err, QString());
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Favorite: a\n"));
    QCOMPARE(favorites(), QStringList("a"));
    const QList<FeedMessage> messages = tracker()->messagesForChannel(m_news);
    for (const FeedMessage &message : messages)
        QCOMPARE(message.isFavorite(), message.title() == "a");
}

void TestFavorites::unmark()
{
    addFavorite("a");
    addFavorite("b");
    const CommandResult result = runCommand(unfavoriteCommand, {linkOf("a")});
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Not a favorite: a\n"));
    QCOMPARE(favorites(), QStringList("b"));
}

void TestFavorites::twice()
{
    const QStringList plain = everythingIn(store());
    QVERIFY(runCommand(unfavoriteCommand, {linkOf("a")}).isFine);
    QCOMPARE(everythingIn(store()), plain);
    QVERIFY(runCommand(favoriteCommand, {linkOf("a")}).isFine);
    const QStringList marked = everythingIn(store());
    QVERIFY(runCommand(favoriteCommand, {linkOf("a")}).isFine);
    QCOMPARE(everythingIn(store()), marked);
}

void TestFavorites::byUri()
{
    const QString uri = store().texts("SELECT ?m { ?m a mfo:FeedMessage ; nie:title 'b' }").value(0);
    QVERIFY(runCommand(favoriteCommand, {uri}).isFine);
    QCOMPARE(favorites(), QStringList("b"));
    QVERIFY(runCommand(unfavoriteCommand, {uri}).isFine);
    QCOMPARE(favorites(), QStringList());
}

void TestFavorites::otherTagsStay()
{
    store().update("INSERT DATA { <urn:tag> a nao:Tag }");
    store().update("INSERT { ?m nao:hasTag <urn:tag> } WHERE { ?m a mfo:FeedMessage ; nie:title 'a' }");
    const QStringList before = everythingIn(store());
    QVERIFY(runCommand(favoriteCommand, {linkOf("a")}).isFine);
    QCOMPARE(store().count("?m tidel:favoriteTime ?time"), 1);
    QVERIFY(runCommand(unfavoriteCommand, {linkOf("a")}).isFine);
    QCOMPARE(store().count("?m tidel:favoriteTime ?time"), 1);
    store().update("DELETE { ?m tidel:favoriteTime ?time } WHERE { ?m tidel:favoriteTime ?time }");
    QCOMPARE(everythingIn(store()), before);
}

void TestFavorites::inEveryChannel()
{
    const QString radio = addChannel("Radio", {message("a")});
    QVERIFY(runCommand(favoriteCommand, {linkOf("a")}).isFine);
    QVERIFY(tracker()->messagesForChannel(radio).value(0).isFavorite());
}

void TestFavorites::unknownMessage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("link") << linkOf("nothing");
    QTest::newRow("other title") << "c";
    QTest::newRow("channel's link") << linkOf("News");
    QTest::newRow("empty") << "";
    QTest::newRow("statement") << "> } DELETE WHERE { ?s ?p ?o } #";
    QTest::newRow("markers") << "%1 %2";
}

void TestFavorites::unknownMessage()
{
    QFETCH(QString, name);
    const QStringList before = everythingIn(store());
    for (const Command *command : {&favoriteCommand, &unfavoriteCommand}) {
        const CommandResult result = runCommand(*command, {name});
        QVERIFY(!result.isFine);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, "tidel: " + name + ": no such message; \"tidel messages\" lists the messages\n");
    }
    QCOMPARE(everythingIn(store()), before);
}

void TestFavorites::failures_data()
{
    QTest::addColumn<bool>("isFavorite");
    QTest::newRow("favorite") << true;
    QTest::newRow("unfavorite") << false;
}

void TestFavorites::failures()
{
    QFETCH(bool, isFavorite);
    const Command &command = isFavorite ? favoriteCommand : unfavoriteCommand;
    const auto fill = [&] {
        addChannel("News", {message("a"), message("b")});
        if (!isFavorite)
            addFavorite("a");
    };
    const auto check = [&] {
        QCOMPARE(favorites().size(), isFavorite ? 0 : 1);
        QVERIFY(runCommand(command, {linkOf("a")}).isFine);
        QCOMPARE(favorites().size(), isFavorite ? 1 : 0);
    };
    failEverywhere(command, {linkOf("a")}, {}, fill, check);
}

QTEST_GUILESS_MAIN(TestFavorites)
#include "tst_favorites.moc"
