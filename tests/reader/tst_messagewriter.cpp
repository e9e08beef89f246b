// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/linkuse.h>
#include <TidelReader/messagewriter.h>

#include <messagelog.h>
#include <statementgate.h>
#include <storable.h>
#include <teststore.h>

#include <feedtrackersparql.h>

#include <QtTest>

#include <algorithm>
#include <optional>

using namespace Tidel;

Q_DECLARE_METATYPE(FeedMessage)
Q_DECLARE_METATYPE(StatementGate::Verdict)

namespace {

const QString channelUri = "urn:c";

QString linkOf(int number) { return QString("https://example.org/items/%1").arg(number); }

FeedMessage message(int number)
{
    return FeedMessage(QString("Title \"%1\"").arg(number), linkOf(number), "id", "<p>Text\n\\</p>",
                       "Summary", QDateTime(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC).addDays(number), {},
                       QDateTime(), false);
}

FeedEnclosure enclosure(const QString &remoteUrl)
{
    FeedEnclosure result;
    result.setRemoteUrl(remoteUrl);
    result.setMimeType("audio/ogg");
    result.setLength(77);
    result.setDefault(true);
    result.setGroupId(3);
    return result;
}

QString fileOf(int number) { return QString("https://example.org/files/%1.ogg").arg(number); }

FeedMessage episode(int number, const QStringList &remoteUrls)
{
    FeedMessage result = message(number);
    for (const QString &remoteUrl : remoteUrls)
        result.addEnclosure(enclosure(remoteUrl));
    return result;
}

FeedMessage episode(int number) { return episode(number, {fileOf(number)}); }

QList<FeedMessage> numbered(int count, FeedMessage (*make)(int))
{
    QList<FeedMessage> messages;
    for (int i = 0; i < count; ++i)
        messages.append(make(i));
    return messages;
}

FeedMessage linked(const QString &link)
{
    FeedMessage result = episode(1);
    result.setLink(link);
    return result;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

int updates() { return int(StatementGate::types().count(QSparqlQuery::InsertStatement)); }

} // namespace

class TestMessageWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void storesWhatTheLibraryStores_data();
    void storesWhatTheLibraryStores();
    void asksLittle_data();
    void asksLittle();
    void givenMessagesStayAsTheyAre();
    void nothingIsStoredTwice();
    void messageOfTwoChannelsBelongsToBoth();
    void storedMessageGetsItsNewEnclosures();
    void firstOfSeveralWithOneLinkIsStored();
    void sameLinkInTwoGroups();
    void enclosureIsSharedByNewMessages();
    void enclosuresBelongToNothingElse();
    void anotherProgramIsFaster_data();
    void anotherProgramIsFaster();
    void linkOfAChannelIsNoKnownMessage();
    void hostileValues_data();
    void hostileValues();
    void withoutChannel();
    void groupsAreBounded();
    void isStored();
    void lastMessages();
    void refusedLastMessages();

    void refusedMessageHoldsNoOtherUp();
    void messageThatCannotBeStored();
    void failedGroupIsNotTriedAgain();
    void oneFailureLosesNothing_data();
    void oneFailureLosesNothing();
    void brokenStoreLosesNothing_data();
    void brokenStoreLosesNothing();
    void lateResults();

private:
    bool write(const QList<FeedMessage> &messages, const QString &channel = channelUri) const
    {
        const QList<StorableMessage> storables = storable(messages);
        return LinkUse::of(*m_reader, linksOf(storables), channel)
            .and_then(
                [&](const LinkUse &use) { return MessageWriter(*m_reader).write(storables, channel, use); })
            .has_value();
    }
    void openStore();
    void closeStore();
    QStringList contents() const;
    int messagesWithoutTheirFile() const;

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<TestStore> m_store;
    std::optional<Store> m_reader;
};

void TestMessageWriter::init()
{
    m_log = std::make_unique<MessageLog>();
    openStore();
}

void TestMessageWriter::cleanup()
{
    closeStore();
    m_log.reset();
}

void TestMessageWriter::openStore()
{
    m_store = std::make_unique<TestStore>();
    m_store->update("INSERT { <urn:c> a mfo:FeedChannel . <urn:d> a mfo:FeedChannel }");
    const Result<Store> store = Store::open();
    QVERIFY(store);
    m_reader = *store;
    StatementGate::reset();
}

void TestMessageWriter::closeStore()
{
    StatementGate::reset();
    m_reader.reset();
    m_store.reset();
}

/// Everything but the URIs and the times of writing.
QStringList TestMessageWriter::contents() const
{
    return sorted(m_store->texts("SELECT ?c ?t ?d ?s ?l ?p { ?m a mfo:FeedMessage ; nie:isLogicalPartOf ?c ; "
                                 "nie:title ?t ; nie:description ?d ; nie:subject ?s ; "
                                 "mfo:downloadedTime ?now OPTIONAL { ?m nie:links ?l } "
                                 "OPTIONAL { ?m nie:contentCreated ?p } }"))
        + sorted(
               m_store->texts("SELECT ?l ?r ?f ?n ?t ?i ?o ?d ?g { ?e a mfo:Enclosure ; mfo:remoteLink ?r ; "
                              "mfo:localLink ?f ; nie:contentSize ?n ; nie:mimeType ?t ; mfo:image ?i ; "
                              "mfo:optional ?o ; mfo:groupDefault ?d ; nie:identifier ?g ; "
                              "nie:isLogicalPartOf ?m . OPTIONAL { ?m nie:links ?l } }"));
}

int TestMessageWriter::messagesWithoutTheirFile() const
{
    return m_store->count("?m a mfo:FeedMessage OPTIONAL { ?e nie:isLogicalPartOf ?m ; a mfo:Enclosure } "
                          "FILTER(!bound(?e))");
}

void TestMessageWriter::storesWhatTheLibraryStores_data()
{
    QTest::addColumn<QList<FeedMessage>>("messages");
    FeedMessage undated = message(1);
    undated.setPublishedDate(QDateTime());
    QTest::newRow("none") << QList<FeedMessage>();
    QTest::newRow("one") << numbered(1, message);
    QTest::newRow("undated") << QList<FeedMessage>{undated};
    QTest::newRow("more than one group") << numbered(250, message);
    QTest::newRow("episodes of more than one group") << numbered(120, episode);
    QTest::newRow("enclosures of all kinds")
        << QList<FeedMessage>{message(1), episode(2), episode(3, {fileOf(1), fileOf(2)}), message(4),
                              episode(5, {fileOf(2), fileOf(2)})};
    FeedEnclosure essential = enclosure(fileOf(1));
    essential.setType(FeedEnclosure::Essential);
    essential.setTypeIcon("/icons/\u00fc.png");
    essential.setLength(4000000000);
    essential.setGroupId(4000000001);
    essential.setDefault(false);
    FeedMessage full = message(1);
    full.addEnclosure(essential);
    QTest::newRow("all that is known of an enclosure") << QList<FeedMessage>{full};
    QTest::newRow("links of other kinds")
        << QList<FeedMessage>{linked("urn:tidel:item:a1"), linked("mailto:a@example.org"),
                              linked("https://example.org/%C3%BC?a=%22&b=1#c")};
}

void TestMessageWriter::storesWhatTheLibraryStores()
{
    QFETCH(QList<FeedMessage>, messages);
    QVERIFY(write(messages));
    const QStringList written = contents();
    closeStore();
    openStore();
    QVERIFY(FeedTrackerSparql::instance()->addMessages(messages, channelUri));
    QCOMPARE(written, contents());
    QVERIFY(written.size() >= messages.size());
}

void TestMessageWriter::asksLittle_data()
{
    QTest::addColumn<QList<FeedMessage>>("messages");
    QTest::addColumn<int>("statementCount");
    QTest::addColumn<int>("updateCount");
    QTest::newRow("nothing") << QList<FeedMessage>() << 0 << 0;
    QTest::newRow("messages") << numbered(50, message) << 2 << 1;
    QTest::newRow("episodes") << numbered(50, episode) << 3 << 1;
    QTest::newRow("two groups") << numbered(200, episode) << 6 << 2;
}

void TestMessageWriter::asksLittle()
{
    QFETCH(QList<FeedMessage>, messages);
    QFETCH(int, statementCount);
    QFETCH(int, updateCount);
    QVERIFY(write(messages));
    QCOMPARE(StatementGate::statements().size(), statementCount);
    QCOMPARE(updates(), updateCount);
}

void TestMessageWriter::givenMessagesStayAsTheyAre()
{
    const QList<FeedMessage> messages{episode(1)};
    QVERIFY(write(messages));
    QCOMPARE(messages.first().enclosures().size(), 1);
}

void TestMessageWriter::nothingIsStoredTwice()
{
    const QList<FeedMessage> messages = numbered(120, episode);
    QVERIFY(write(messages));
    const QStringList written = contents();
    QVERIFY(write(messages));
    QCOMPARE(contents(), written);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 120);
    QCOMPARE(m_store->count("?e a mfo:Enclosure"), 120);
}

void TestMessageWriter::messageOfTwoChannelsBelongsToBoth()
{
    QVERIFY(write({message(1), message(2)}));
    QVERIFY(write({message(2), message(3)}, "urn:d"));
    QCOMPARE(sorted(m_store->texts("SELECT ?c ?l { ?m a mfo:FeedMessage ; nie:links ?l ; "
                                   "nie:isLogicalPartOf ?c }")),
             QStringList(
                 {"urn:c " + linkOf(1), "urn:c " + linkOf(2), "urn:d " + linkOf(2), "urn:d " + linkOf(3)}));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 3);
}

void TestMessageWriter::storedMessageGetsItsNewEnclosures()
{
    QVERIFY(write({episode(1)}));
    QVERIFY(write({episode(1, {fileOf(1), fileOf(2)}), episode(3)}));
    QCOMPARE(
        sorted(m_store->texts("SELECT ?l ?r { ?e mfo:remoteLink ?r ; nie:isLogicalPartOf ?m . "
                              "?m nie:links ?l }")),
        QStringList({linkOf(1) + ' ' + fileOf(1), linkOf(1) + ' ' + fileOf(2), linkOf(3) + ' ' + fileOf(3)}));
}

void TestMessageWriter::firstOfSeveralWithOneLinkIsStored()
{
    FeedMessage second = episode(1, {fileOf(1), fileOf(2)});
    second.setTitle("Second");
    QVERIFY(write({episode(1), second}));
    QCOMPARE(m_store->texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t }"), QStringList("Title \"1\""));
    QCOMPARE(m_store->count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m . ?m a mfo:FeedMessage"), 2);
}

// Also if there are more than a hundred messages between the two, or if the store refuses a message.
void TestMessageWriter::sameLinkInTwoGroups()
{
    FeedMessage broken = message(7);
    broken.setTitle(QString("a") + QChar(0) + "b");
    QList<FeedMessage> messages = numbered(150, message);
    messages[7] = broken;
    messages.append(episode(1));
    messages.insert(60, episode(1, {fileOf(2)}));
    QVERIFY(!write(messages));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 149);
    QCOMPARE(m_store->count("?e nie:isLogicalPartOf ?m . ?m nie:links <" + linkOf(1) + ">"), 2);
}

void TestMessageWriter::enclosureIsSharedByNewMessages()
{
    m_store->update("INSERT { <urn:e> a mfo:Enclosure ; mfo:remoteLink <" + fileOf(1)
                    + "> ; nie:isLogicalPartOf <urn:other> }");
    QVERIFY(write({episode(1, {fileOf(1), fileOf(2)}), episode(2, {fileOf(2), fileOf(1)})}));
    QCOMPARE(m_store->count("?e a mfo:Enclosure"), 2);
    QCOMPARE(m_store->count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m . ?m a mfo:FeedMessage"), 4);
    QCOMPARE(m_store->count("<urn:e> nie:isLogicalPartOf <urn:other>"), 1);
}

void TestMessageWriter::enclosuresBelongToNothingElse()
{
    QVERIFY(write(numbered(3, episode)));
    QCOMPARE(m_store->count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m"), 3);
}

void TestMessageWriter::anotherProgramIsFaster_data()
{
    QTest::addColumn<QString>("update");
    QTest::addColumn<int>("added");
    QTest::newRow("message of another channel") << "INSERT { <urn:other> a mfo:FeedMessage ; nie:links <"
            + linkOf(1) + "> ; nie:isLogicalPartOf <urn:d> }"
                                                << 2;
    QTest::newRow("message of the same channel")
        << "INSERT { <urn:other> a mfo:FeedMessage ; nie:links <" + linkOf(1)
            + "> ; nie:isLogicalPartOf <urn:c> ; nie:title 't' ; nie:description 'd' ; nie:subject 's' }"
        << 1;
    QTest::newRow("enclosure") << "INSERT { <urn:other> a mfo:Enclosure ; mfo:remoteLink <" + fileOf(1)
            + "> }" << 2;
}

/// Between the questions and the update another program adds what the update would add.
void TestMessageWriter::anotherProgramIsFaster()
{
    QFETCH(QString, update);
    QFETCH(int, added);
    const QList<StorableMessage> messages = storable({episode(1), episode(2)});
    const auto use = LinkUse::of(*m_reader, linksOf(messages), channelUri);
    QVERIFY(use);
    StatementGate::setJudge([&, isFirst = true](const QString &statement) mutable {
        if (isFirst && statement.startsWith("INSERT")) {
            isFirst = false;
            m_store->update(update);
        }
        return StatementGate::Pass;
    });
    WrittenMessages written;
    QVERIFY(MessageWriter(*m_reader).write(messages, channelUri, *use, {}, &written));
    StatementGate::reset();
    QCOMPARE(written.added.size(), added);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c>"), 2);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 2);
    QCOMPARE(m_store->count("?e a mfo:Enclosure"), 2);
    QCOMPARE(messagesWithoutTheirFile(), 0);
}

void TestMessageWriter::linkOfAChannelIsNoKnownMessage()
{
    m_store->update("INSERT { <urn:d> nie:links <" + linkOf(1) + "> }");
    QVERIFY(write({episode(1)}));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 1);
    QCOMPARE(m_store->count("?e nie:isLogicalPartOf <urn:d>"), 0);
}

void TestMessageWriter::hostileValues_data()
{
    QTest::addColumn<FeedMessage>("hostile");
    const QString attack = "> } INSERT { <urn:x> a mfo:FeedMessage } "
                           "DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel } #";
    FeedMessage texts = message(1);
    texts.setTitle("\"" + attack);
    texts.setDescription("\\\" ; <urn:p" + attack);
    texts.setSummary("'" + attack);
    QTest::newRow("texts") << texts;
    FeedEnclosure file = enclosure(fileOf(1));
    file.setMimeType("\"" + attack);
    FeedMessage type = message(1);
    type.addEnclosure(file);
    QTest::newRow("MIME type") << type;
    file = enclosure(fileOf(1));
    file.setTypeIcon("\\\" ; <urn:p" + attack);
    FeedMessage icon = message(1);
    icon.addEnclosure(file);
    QTest::newRow("icon") << icon;
}

void TestMessageWriter::hostileValues()
{
    QFETCH(FeedMessage, hostile);
    write({episode(2), hostile, episode(3)});
    QCOMPARE(m_store->count("?c a mfo:FeedChannel"), 2);
    QCOMPARE(m_store->count("<urn:x> a ?type"), 0);
    for (int number : {2, 3}) {
        QCOMPARE(m_store->count(QString("?m a mfo:FeedMessage ; nie:links <%1> . ?e nie:isLogicalPartOf ?m ; "
                                        "mfo:remoteLink <%2>")
                                    .arg(linkOf(number), fileOf(number))),
                 1);
    }
}

void TestMessageWriter::withoutChannel()
{
    QVERIFY(!write({episode(1)}, QString()));
    QVERIFY(!write({episode(1)}, "urn:c> } DELETE { <urn:c"));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(m_store->count("?c a mfo:FeedChannel"), 2);
}

void TestMessageWriter::refusedMessageHoldsNoOtherUp()
{
    StatementGate::setJudge([](const QString &statement) {
        const bool isSeventh = statement.startsWith("INSERT") && statement.contains("items/7>");
        return isSeventh ? StatementGate::Refuse : StatementGate::Pass;
    });
    QVERIFY(!write(numbered(150, message)));
    StatementGate::reset();
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 149);
    QVERIFY(write(numbered(150, message)));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 150);
}

void TestMessageWriter::messageThatCannotBeStored()
{
    FeedMessage broken = message(7);
    broken.setTitle(QString("a") + QChar(0) + "b");
    QVERIFY(!write({message(6), broken, linked(QString()), message(8)}));
    QCOMPARE(sorted(m_store->texts("SELECT ?l { ?m a mfo:FeedMessage ; nie:links ?l }")),
             QStringList({linkOf(6), linkOf(8)}));
}

// Nothing is tried again when the store itself fails: each try could wait for long.
void TestMessageWriter::failedGroupIsNotTriedAgain()
{
    StatementGate::failAt(3, StatementGate::NoResult);
    QVERIFY(!write(numbered(250, message)));
    // Three questions and one update.
    QCOMPARE(StatementGate::statements().size(), 4);
}

void TestMessageWriter::oneFailureLosesNothing_data()
{
    QTest::addColumn<int>("statement");
    QTest::addColumn<StatementGate::Verdict>("verdict");
    // The question about the links, the question about the enclosures, and the update.
    for (int i = 0; i < 3; ++i) {
        QTest::addRow("refused %d", i) << i << StatementGate::Refuse;
        QTest::addRow("without result %d", i) << i << StatementGate::NoResult;
    }
}

void TestMessageWriter::oneFailureLosesNothing()
{
    QFETCH(int, statement);
    QFETCH(StatementGate::Verdict, verdict);
    StatementGate::failAt(statement, verdict);
    const bool isWritten = write(numbered(2, episode));
    StatementGate::reset();
    // A group that the store refuses is tried again in halves.
    QCOMPARE(isWritten, statement > 0 && verdict == StatementGate::Refuse);
    QVERIFY(write(numbered(2, episode)));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c>"), 2);
    QCOMPARE(m_store->count("?e a mfo:Enclosure"), 2);
    QCOMPARE(messagesWithoutTheirFile(), 0);
}

void TestMessageWriter::brokenStoreLosesNothing_data()
{
    QTest::addColumn<int>("first");
    for (int i = 0; i < 3; ++i)
        QTest::addRow("from %d on", i) << i;
}

void TestMessageWriter::brokenStoreLosesNothing()
{
    QFETCH(int, first);
    StatementGate::setJudge([first, seen = 0](const QString &) mutable {
        return seen++ < first ? StatementGate::Pass : StatementGate::Refuse;
    });
    QVERIFY(!write(numbered(2, episode)));
    StatementGate::reset();
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 0);

    QVERIFY(write(numbered(2, episode)));
    QCOMPARE(m_store->count("?m a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c>"), 2);
    QCOMPARE(m_store->count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m"), 2);
    QCOMPARE(messagesWithoutTheirFile(), 0);
}

void TestMessageWriter::lateResults()
{
    QVERIFY(write({episode(1)}));
    StatementGate::setJudge([](const QString &) { return StatementGate::Late; });
    QVERIFY(write(numbered(3, episode), "urn:d"));
    StatementGate::reset();
    QCOMPARE(m_store->count("?m a mfo:FeedMessage ; nie:isLogicalPartOf <urn:d>"), 3);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 3);
}

void TestMessageWriter::groupsAreBounded()
{
    QCOMPARE(MessageWriter::groupSize(storable(numbered(250, message)), 0), 100);
    QCOMPARE(MessageWriter::groupSize(storable(numbered(250, message)), 200), 50);
    FeedMessage large = message(0);
    large.setDescription(QString(1000 * 1000, 'x'));
    QCOMPARE(MessageWriter::groupSize(storable({large, message(1)}), 0), 1);
    QCOMPARE(MessageWriter::groupSize(storable({message(1), large}), 0), 1);
    QStringList files;
    for (int i = 0; i < 100; ++i)
        files.append(fileOf(i));
    QList<FeedMessage> episodes;
    for (int i = 0; i < 100; ++i)
        episodes.append(episode(i, files));
    QVERIFY(MessageWriter::groupSize(storable(episodes), 0) < 10);
}

void TestMessageWriter::isStored()
{
    const Store store = *Store::open();
    const auto isStored = [&](const FeedMessage &text) {
        const StorableMessage message = storable(text);
        return MessageWriter::isStored(message, channelUri, *LinkUse::of(store, {message.link()}, channelUri),
                                       KnownItems());
    };
    QVERIFY(!isStored(episode(1)));
    const QList<StorableMessage> messages = storable(QList<FeedMessage>{episode(1)});
    QVERIFY(
        MessageWriter(store).write(messages, channelUri, *LinkUse::of(store, linksOf(messages), channelUri)));
    QVERIFY(isStored(episode(1)));
    FeedMessage changed = episode(1);
    changed.setDescription("Another text");
    QVERIFY(!isStored(changed));
}

void TestMessageWriter::lastMessages()
{
    const QList<StorableMessage> messages = storable(numbered(3, episode));
    const auto use = LinkUse::of(*m_reader, linksOf(messages), channelUri);
    QVERIFY(use);
    StatementGate::reset();
    Reading reading;
    reading.entityTag = "tag";
    WrittenMessages written;
    QVERIFY(MessageWriter(*m_reader).writeLast(messages, channelUri, reading, *use, {}, &written));
    QCOMPARE(updates(), 1);
    QCOMPARE(written.added, QStringList({linkOf(0), linkOf(1), linkOf(2)}));
    QCOMPARE(m_store->count("?e nie:isLogicalPartOf ?m . ?m a mfo:FeedMessage"), 3);
    QCOMPARE(m_store->count("<urn:c> tidel:entityTag 'tag'"), 1);
    QVERIFY(!MessageWriter(*m_reader).writeLast(messages, QString(), reading, *use, {}, &written));
}

void TestMessageWriter::refusedLastMessages()
{
    FeedMessage broken = message(7);
    broken.setTitle(QString("a") + QChar(0) + "b");
    Reading reading;
    reading.entityTag = "tag";
    const LinkUse use = *LinkUse::of(*m_reader, {}, channelUri);
    for (const FeedMessage &refused : {broken, linked(QString())}) {
        const QList<StorableMessage> messages = storable({message(6), refused});
        WrittenMessages written;
        const auto done =
            MessageWriter(*m_reader).writeLast(messages, channelUri, reading, use, {}, &written);
        QVERIFY(!done);
        QCOMPARE(done.error().kind(), Error::StoreRefused);
        QCOMPARE(written.added, QStringList());
    }
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(m_store->count("<urn:c> tidel:entityTag ?tag"), 0);
}

QTEST_GUILESS_MAIN(TestMessageWriter)
#include "tst_messagewriter.moc"
