// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <TidelReader/downloadqueue.h>
#include <TidelReader/pluginfinder.h>
#include <commands.h>
#include <feedplugininterface.h>

#include <QEventLoop>
#include <QFile>
#include <QtTest>

using namespace Tidel;

namespace {

int updates()
{
    int count = 0;
    for (QSparqlQuery::StatementType type : StatementGate::types())
        count += type == QSparqlQuery::SelectStatement ? 0 : 1;
    return count;
}

StatementGate::Verdict refuseMessages(const QString &statement)
{
    const bool isUpdate = statement.startsWith("INSERT") && statement.contains("mfo:FeedMessage");
    return isUpdate ? StatementGate::Refuse : StatementGate::Pass;
}

StatementGate::Verdict refuseChannels(const QString &statement)
{
    const bool isUpdate = statement.startsWith("INSERT") && statement.contains("a mfo:FeedChannel");
    return isUpdate ? StatementGate::Refuse : StatementGate::Pass;
}

QByteArray item(int number)
{
    return "<item><title>" + QByteArray::number(number) + "</title><link>https://example.org/"
        + QByteArray::number(number) + "</link></item>";
}

/// Refreshes a channel with the plug-in of the commands, and returns the FeedDownloadError.
int errorOfRefresh(const QString &channelUri)
{
    const Result<FeedPluginInterface *> plugin = findPlugin(pluginFolder());
    if (!plugin)
        return -1;
    int error = -1;
    DownloadQueue queue(**plugin);
    queue.downloadFeed(channelUri, [&error](const DownloadResult &result) { error = result.error(); });
    QEventLoop loop;
    QObject::connect(&queue, &DownloadQueue::finished, &loop, &QEventLoop::quit);
    queue.start();
    loop.exec();
    return error;
}

/// Applies \a verdict to the query number \a number, counted from 1, that starts with \a start.
void failQuery(const QString &start, int number, StatementGate::Verdict verdict)
{
    StatementGate::setJudge([=, seen = 0](const QString &statement) mutable {
        return statement.startsWith(start) && ++seen == number ? verdict : StatementGate::Pass;
    });
}

} // namespace

Q_DECLARE_METATYPE(StatementGate::Verdict)

/// Tests the statements of commands, and their messages when the store fails.
class TestCommands : public CommandTestCase
{
    Q_OBJECT

private slots:
    void storeRefusesChannel();
    void storeRefusesMessages();
    void storeRefusesNewMessages();
    void refreshTellsNewFromChanged();
    void refreshTellsNotesOnce();
    void refreshWithoutNewsAsksLittle();
    void droppedLinksAreNotRead_data();
    void droppedLinksAreNotRead();
    void stateIsNotRead_data();
    void stateIsNotRead();
    void storeDoesNotAnswer();
    void refreshRunsFewStatements();
    void refreshReadsLinksOfFeedOnly();
    void imageBelongsToItsChannel();
    void favoritesInListing();
    void markersInTitles();
    void noFileThatTheStoreDoesNotKnow();

private:
    QString write(const QString &name, const QByteArray &title, const QByteArray &items) const;
    QString sample(const QString &name) const { return QString(TIDEL_TEST_DATA) + "/feeds/" + name; }
};

QString TestCommands::write(const QString &name, const QByteArray &title, const QByteArray &items) const
{
    QFile file(store().dataFolder() + '/' + name);
    const QByteArray document =
        "<rss version='2.0'><channel><title>" + title + "</title>" + items + "</channel></rss>";
    return file.open(QIODevice::WriteOnly) && file.write(document) > 0 ? file.fileName() : QString();
}

void TestCommands::storeRefusesChannel()
{
    StatementGate::setJudge(refuseChannels);
    const CommandResult refused = runCommand(subscribeCommand, {sample("town-news.xml")});
    QVERIFY(!refused.isFine);
    QCOMPARE(refused.out, QString());
    QVERIFY2(refused.err.startsWith("tidel: " + sample("town-news.xml")
                                    + ": could not add the channel to the store: ")
                 && refused.err.count('\n') == 1,
             qPrintable(refused.err));
    QCOMPARE(store().count("?c a mfo:FeedChannel"), 0);
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
}

void TestCommands::storeRefusesMessages()
{
    StatementGate::setJudge(refuseMessages);
    const CommandResult refused = runCommand(subscribeCommand, {sample("town-news.xml")});
    QVERIFY(!refused.isFine);
    QCOMPARE(refused.out, QString());
    QVERIFY2(refused.err.contains(": could not add messages to the store: "), qPrintable(refused.err));
    QVERIFY2(refused.err.endsWith("; the channel is subscribed, refresh it\n"), qPrintable(refused.err));
    QCOMPARE(store().count("?c a mfo:FeedChannel"), 1);

    StatementGate::reset();
    const CommandResult refreshed = runCommand(refreshCommand, {});
    QVERIFY2(refreshed.isFine, qPrintable(refreshed.err));
    QVERIFY2(refreshed.out.startsWith("Town News: 2 new\n"), qPrintable(refreshed.out));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 2);
}

void TestCommands::storeRefusesNewMessages()
{
    const QString feed = write("feed.xml", "Feed", "<item><title>One</title></item>");
    const QString other = write("other.xml", "Other", "<item><title>One</title></item>");
    QVERIFY(runCommand(subscribeCommand, {feed, other}).isFine);
    write("feed.xml", "Feed", "<item><title>Two</title></item><item><title>One</title></item>");
    StatementGate::setJudge(refuseMessages);
    const CommandResult refused = runCommand(refreshCommand, {});
    QVERIFY(!refused.isFine);
    QCOMPARE(refused.out, QString("2 channels: 0 new messages, 1 failed\n"));
    QVERIFY2(refused.err.startsWith("tidel: Feed (file://")
                 && refused.err.contains(": could not add messages to the store: The update is refused: ")
                 && refused.err.endsWith("; refresh again\n"),
             qPrintable(refused.err));
    StatementGate::reset();
    QCOMPARE(runCommand(refreshCommand, {}).out,
             QString("Feed: 1 new\n  (no date)  Two\n"
                     "2 channels: 1 new message\n"));
}

void TestCommands::refreshTellsNewFromChanged()
{
    const auto page = [](int number, const QByteArray &title) {
        return "<item><title>" + title + "</title><link>https://example.org/" + QByteArray::number(number)
            + "</link></item>";
    };
    QVERIFY(
        runCommand(subscribeCommand, {write("feed.xml", "Feed", page(1, "One") + page(2, "Two"))}).isFine);
    write("feed.xml", "Feed", page(1, "One, corrected") + page(2, "Two") + page(3, "Three"));
    QCOMPARE(runCommand(refreshCommand, {}).out,
             QString("Feed: 1 new, 1 changed\n  (no date)  Three\n  (no date)  One, corrected (changed)\n"));
    write("feed.xml", "Feed", page(1, "One, finally") + page(2, "Two") + page(3, "Three"));
    QVERIFY(runCommand(subscribeCommand, {write("other.xml", "Other", {})}).isFine);
    QCOMPARE(runCommand(refreshCommand, {}).out,
             QString("Feed: 1 changed\n  (no date)  One, finally (changed)\n"
                     "2 channels: 0 new messages, 1 changed\n"));
}

void TestCommands::refreshTellsNotesOnce()
{
    QVERIFY(runCommand(subscribeCommand, {write("feed.xml", "Feed", item(1))}).isFine);
    write("feed.xml", "Feed", item(1) + "<item><title>2</title>");
    const CommandResult refreshed = runCommand(refreshCommand, {});
    QVERIFY(refreshed.isFine);
    QVERIFY2(refreshed.err.startsWith("tidel: Feed: was not well-formed: line ")
                 && refreshed.err.count('\n') == 1,
             qPrintable(refreshed.err));
    write("feed.xml", "Feed", item(1) + "\n<item><title>2</title>");
    QCOMPARE(runCommand(refreshCommand, {}).err, QString());
}

void TestCommands::refreshWithoutNewsAsksLittle()
{
    QByteArray items;
    for (int number = 1; number <= 50; ++number)
        items += "<item><title>T</title><guid isPermaLink='false'>" + QByteArray::number(number)
            + "</guid><link>https://example.org/" + QByteArray::number(number) + "</link></item>";
    const QString feed = write("feed.xml", "Feed", items);
    QVERIFY(runCommand(subscribeCommand, {feed}).isFine);
    write("feed.xml", "Feed", items + "<!-- later -->");
    StatementGate::reset();
    QCOMPARE(runCommand(refreshCommand, {}).out, QString("Feed: nothing new\n"));
    // The channels, when they are due, the channel and the note of its items before and after the download,
    // what is known of it, and the update.
    QCOMPARE(StatementGate::statements().size(), 8);
}

void TestCommands::droppedLinksAreNotRead_data()
{
    QTest::addColumn<StatementGate::Verdict>("verdict");
    QTest::newRow("refused") << StatementGate::Refuse;
    QTest::newRow("no answer") << StatementGate::NoResult;
}

// A message that was pruned must not be new again because the store fails.
void TestCommands::droppedLinksAreNotRead()
{
    QFETCH(StatementGate::Verdict, verdict);
    const QString query = "SELECT ?website ";
    QVERIFY(runCommand(subscribeCommand, {write("feed.xml", "Feed", item(2) + item(1))}).isFine);
    QVERIFY(runCommand(pruneCommand, {}, {{"keep", "0"}, {"include-unread", ""}}).isFine);
    const QString uri = store().texts("SELECT ?c { ?c a mfo:FeedChannel }").value(0);
    QCOMPARE(dropped(uri).size(), 2);
    write("feed.xml", "Feed", item(3) + item(2) + item(1));

    failQuery(query, 1, verdict);
    const CommandResult failed = runCommand(refreshCommand, {});
    QVERIFY(!failed.isFine);
    QVERIFY2(failed.err.contains("): could not read what is known of the feed from the store: ")
                 && failed.err.endsWith("; refresh again\n") && failed.err.count('\n') == 1,
             qPrintable(failed.err));
    failQuery(query, 1, verdict);
    QCOMPARE(errorOfRefresh(uri), int(FeedDownloadStoreFailed));
    StatementGate::reset();
    QCOMPARE(titles(uri), QStringList());
    QCOMPARE(dropped(uri).size(), 2);

    QCOMPARE(errorOfRefresh(uri), int(FeedDownloadNoError));
    QCOMPARE(titles(uri), QStringList("3"));
}

void TestCommands::stateIsNotRead_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<StatementGate::Verdict>("verdict");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("error");
    const QString failure = "could not read the channel from the store: ";
    // The state is read before the download, and again when the document is there.
    for (int number : {1, 2}) {
        QTest::addRow("refused %d", number)
            << number << StatementGate::Refuse << failure << int(FeedDownloadStoreFailed);
        QTest::addRow("no answer %d", number)
            << number << StatementGate::NoResult << failure << int(FeedDownloadStoreFailed);
    }
    QTest::newRow("unknown") << 1 << StatementGate::NoRows << "no such channel" << int(FeedDownloadNotFound);
    QTest::newRow("deleted") << 2 << StatementGate::NoRows << "the channel was deleted during the download"
                             << int(FeedDownloadNotFound);
}

// A query that fails does not say that there is no channel.
void TestCommands::stateIsNotRead()
{
    QFETCH(int, number);
    QFETCH(StatementGate::Verdict, verdict);
    QFETCH(QString, reason);
    const QString query = "SELECT ?link ?first ?tag ?modified ";
    QVERIFY(runCommand(subscribeCommand, {write("feed.xml", "Feed", item(1))}).isFine);
    const QString uri = store().texts("SELECT ?c { ?c a mfo:FeedChannel }").value(0);
    write("feed.xml", "Feed", item(2) + item(1));

    failQuery(query, number, verdict);
    const CommandResult failed = runCommand(refreshCommand, {});
    QVERIFY(!failed.isFine);
    QVERIFY2(failed.err.contains("): " + reason) && failed.err.count('\n') == 1, qPrintable(failed.err));
    failQuery(query, number, verdict);
    QTEST(errorOfRefresh(uri), "error");
    StatementGate::reset();
    QCOMPARE(titles(uri), QStringList("1"));
    QCOMPARE(errorOfRefresh(uri), int(FeedDownloadNoError));
    QCOMPARE(titles(uri), QStringList({"1", "2"}));
}

void TestCommands::storeDoesNotAnswer()
{
    StatementGate::setJudge([](const QString &) { return StatementGate::NoResult; });
    QVERIFY(!runCommand(subscribeCommand, {sample("town-news.xml")}).isFine);
    QVERIFY(!runCommand(messagesCommand, {"Town News"}).isFine);
    QVERIFY(!runCommand(enclosuresCommand, {"https://press.example.net/bridge"}).isFine);
    QCOMPARE(runCommand(channelsCommand, {}).out, QString());
    QCOMPARE(runCommand(refreshCommand, {}).out, QString());
}

void TestCommands::refreshRunsFewStatements()
{
    QVERIFY(runCommand(subscribeCommand, {sample("town-news.xml"), sample("hillside-radio.xml")}).isFine);
    StatementGate::reset();
    QVERIFY(runCommand(refreshCommand, {}).isFine);
    QCOMPARE(updates(), 0);
    // One query for the channels, one for when they are due, and one for the state of each feed.
    QCOMPARE(StatementGate::statements().size(), 4);
}

// A channel may have many more messages than its feed.
void TestCommands::refreshReadsLinksOfFeedOnly()
{
    const QByteArray first = "<item><link>https://example.org/1</link></item>";
    const QByteArray second = "<item><link>https://example.org/2</link></item>";
    QVERIFY(runCommand(subscribeCommand, {write("feed.xml", "Feed", first)}).isFine);
    write("feed.xml", "Feed", second + first);
    StatementGate::reset();
    QVERIFY(runCommand(refreshCommand, {}).out.startsWith("Feed: 1 new\n"));
    const QStringList queries =
        StatementGate::statements().filter(QRegularExpression("^SELECT.*FeedMessage"));
    QVERIFY(!queries.isEmpty());
    // The index for searches asks for what is new.
    QCOMPARE(queries.filter(QRegularExpression("VALUES \\?link \\{|tracker:id\\(\\?m\\) > \\d")), queries);
}

void TestCommands::imageBelongsToItsChannel()
{
    QVERIFY(runCommand(subscribeCommand, {sample("hillside-radio.xml")}).isFine);
    QCOMPARE(store().texts("SELECT ?l { ?c a mfo:FeedChannel . ?e a mfo:Enclosure ; "
                           "nie:isLogicalPartOf ?c ; mfo:remoteLink ?l }"),
             QStringList("https://radio.example.org/cover.png"));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 7);
    QCOMPARE(store().count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?o . ?o a mfo:FeedMessage"), 6);
}

void TestCommands::favoritesInListing()
{
    QVERIFY(runCommand(subscribeCommand, {sample("town-news.xml")}).isFine);
    store().update("INSERT DATA { <urn:tag:1> a nao:Tag . <urn:tag:2> a nao:Tag }");
    store().update("INSERT { ?m nao:hasTag <urn:tag:1> } WHERE { ?m a mfo:FeedMessage }");
    store().update("INSERT { ?m nao:hasTag <urn:tag:2> , nao:predefined-tag-favorite } "
                   "WHERE { ?m a mfo:FeedMessage ; nie:links <https://town.example.net/pool> }");
    const QStringList lines = runCommand(messagesCommand, {"Town News"}).out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    QVERIFY2(!lines.at(0).contains('*'), qPrintable(lines.at(0)));
    QVERIFY2(lines.at(1).contains("*  2026-11-02 "), qPrintable(lines.at(1)));
}

void TestCommands::markersInTitles()
{
    const QString feed = write("%2.xml", "100%1 %2 %3", "");
    const CommandResult subscribed = runCommand(subscribeCommand, {feed});
    QCOMPARE(subscribed.out, QString("Subscribed: 100%1 %2 %3 (0 messages)\n"));
    QCOMPARE(subscribed.err, QString("tidel: %1: has no items\n").arg(feed));
    write("%2.xml", "100%1 %2 %3", "<item><title>%1 %2</title></item>");
    QCOMPARE(runCommand(refreshCommand, {}).out, QString("100%1 %2 %3: 1 new\n  (no date)  %1 %2\n"));
    QVERIFY(QFile::remove(feed));
    const CommandResult gone = runCommand(refreshCommand, {});
    QVERIFY2(gone.err.startsWith("tidel: 100%1 %2 %3 (file://"), qPrintable(gone.err));
}

/// A download that is interrupted when it is recorded leaves no file behind.
void TestCommands::noFileThatTheStoreDoesNotKnow()
{
    const QString link = QUrl::fromLocalFile(write("song.ogg", "", "")).toString();
    const QString path = home() + "/Downloads/tidel/song.ogg";
    addChannel("News", {message("a", day(1), {"song.ogg"})});
    store().update(QString("DELETE { ?e mfo:remoteLink ?l } INSERT { ?e mfo:remoteLink <%1> } "
                           "WHERE { ?e mfo:remoteLink ?l }")
                       .arg(link));
    int updates = 0;
    StatementGate::setJudge([&](const QString &statement) {
        if (!statement.contains("INSERT") || !statement.contains("mfo:localLink"))
            return StatementGate::Pass;
        if (QFile::exists(path))
            QTest::qFail("the file is there before the store knows it", __FILE__, __LINE__);
        return ++updates == 1 ? StatementGate::NoResult : StatementGate::Pass;
    });
    QVERIFY(!runCommand(downloadCommand, {linkOf("a")}).isFine);
    QVERIFY(!QFile::exists(path));
    const CommandResult downloaded = runCommand(downloadCommand, {linkOf("a")});
    QVERIFY2(downloaded.isFine, qPrintable(downloaded.err));
    QCOMPARE(updates, 2);
    QVERIFY(QFile::exists(path));
}

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
