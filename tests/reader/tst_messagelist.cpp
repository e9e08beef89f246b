// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/messagelist.h>
#include <TidelReader/readstate.h>

using namespace Tidel;

class TestMessageList : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void headline();
    void filters_data();
    void filters();
    void sameDate();
    void unreadAmongMany_data();
    void unreadAmongMany();
    void largeChannel_data();
    void largeChannel();
    void manyMessages();
    void strangersHaveDatesToo();
    void severalValues();
    void keptUris();
    void uriList();
    void words();
    void headlines();
    void titled_data();
    void titled();
    void titledStatements();

private:
    void fill() const;
    QStringList names(const Result<QList<MessageHeadline>> &list) const;
    QStringList found(const MessageQuery &query) const;
    QStringList namesOf(const Result<UriList> &list) const;
};

Q_DECLARE_METATYPE(MessageQuery)

namespace {

QDateTime noon(int day) { return QDateTime(QDate(2026, 11, day), QTime(12, 0), Qt::UTC); }

MessageQuery limited(int limit)
{
    MessageQuery query;
    query.limit = limit;
    return query;
}

MessageQuery unread(int limit = 0)
{
    MessageQuery query = limited(limit);
    query.onlyUnread = true;
    return query;
}

MessageQuery favorites()
{
    MessageQuery query;
    query.onlyFavorites = true;
    return query;
}

MessageQuery ofChannels(const QStringList &channels, MessageQuery query = {})
{
    for (const QString &channel : channels)
        query.channelUris.append(channelUri(channel));
    return query;
}

MessageQuery oldestFirst(MessageQuery query = {})
{
    query.order = Qt::AscendingOrder;
    return query;
}

MessageQuery within(const QDateTime &since, const QDateTime &until, MessageQuery query = {})
{
    query.since = since;
    query.until = until;
    return query;
}

} // namespace

/// "shared" is in both channels and has the latest date. "u1" and "u2" have no date.
void TestMessageList::fill() const
{
    addChannel("news");
    addChannel("radio");
    addMessages({"n1", "n2", "n3"}, "news", 1);
    addMessages({"u1", "u2"}, "news");
    addMessages({"r4", "r5"}, "radio", 4);
    addMessages({"shared"}, "news", 6);
    share("shared", "radio");
    addFavorite("n2");
    addFavorite("u1");
    addFavorite("shared");
    VERIFY_OK(ReadState(reader()).set(messageUris({"n3", "r5", "u2", "shared"}), true));
}

QStringList TestMessageList::names(const Result<QList<MessageHeadline>> &list) const
{
    if (!list)
        return {list.error().text()};
    QStringList names;
    for (const MessageHeadline &headline : *list)
        names.append(headline.uri.section(':', 2));
    return names;
}

QStringList TestMessageList::namesOf(const Result<UriList> &list) const
{
    if (!list)
        return {list.error().text()};
    QStringList names;
    for (int row = 0; row < list->size(); ++row)
        names.append(list->at(row).section(':', 2));
    return names;
}

/// The names of the messages that both find() and uris() return.
QStringList TestMessageList::found(const MessageQuery &query) const
{
    const QStringList found = names(MessageList(reader()).find(query));
    const QStringList uris = namesOf(MessageList(reader()).uris(query));
    return found == uris ? found : found + QStringList("but") + uris;
}

void TestMessageList::headline()
{
    fill();
    const auto list = MessageList(reader()).find({});
    VERIFY_OK(list);
    const MessageHeadline shared = list->constFirst();
    QCOMPARE(shared.uri, messageUri("shared"));
    QCOMPARE(shared.link, linkOf("shared"));
    QCOMPARE(shared.title, QString("Title of shared"));
    QCOMPARE(shared.channels, QStringList({"news", "radio"}));
    QCOMPARE(shared.published, noon(6));
    QVERIFY(shared.isFavorite);
    QVERIFY(shared.isRead);
    const MessageHeadline undated = list->constLast();
    QCOMPARE(undated.uri, messageUri("u1"));
    QCOMPARE(undated.channels, QStringList("news"));
    QVERIFY(!undated.published.isValid());
    QVERIFY(undated.isFavorite);
    QVERIFY(!undated.isRead);
    QVERIFY(!list->at(1).isFavorite);
}

void TestMessageList::filters_data()
{
    QTest::addColumn<MessageQuery>("query");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all") << MessageQuery() << "shared r5 r4 n3 n2 n1 u2 u1";
    QTest::newRow("limit") << limited(3) << "shared r5 r4";
    QTest::newRow("limit among those without a date") << limited(7) << "shared r5 r4 n3 n2 n1 u2";
    QTest::newRow("high limit") << limited(100) << "shared r5 r4 n3 n2 n1 u2 u1";
    QTest::newRow("unread") << unread() << "r4 n2 n1 u1";
    QTest::newRow("one unread") << unread(1) << "r4";
    QTest::newRow("two unread") << unread(2) << "r4 n2";
    QTest::newRow("four unread") << unread(4) << "r4 n2 n1 u1";
    QTest::newRow("nine unread") << unread(9) << "r4 n2 n1 u1";
    QTest::newRow("favorites") << favorites() << "shared n2 u1";
    QTest::newRow("channel") << ofChannels({"radio"}) << "shared r5 r4";
    QTest::newRow("channels") << ofChannels({"radio", "news"}) << "shared r5 r4 n3 n2 n1 u2 u1";
    QTest::newRow("channels with a limit") << ofChannels({"radio", "news"}, limited(2)) << "shared r5";
    QTest::newRow("unknown channel") << ofChannels({"none"}) << "";
    QTest::newRow("unread of a channel") << ofChannels({"radio"}, unread(5)) << "r4";
    QTest::newRow("favorites of a channel") << ofChannels({"radio"}, favorites()) << "shared";
    QTest::newRow("since") << within(noon(4), {}) << "shared r5 r4";
    QTest::newRow("until") << within({}, noon(4)) << "n3 n2 n1";
    QTest::newRow("between") << within(noon(2), noon(5)) << "r4 n3 n2";
    QTest::newRow("oldest first") << oldestFirst() << "u1 u2 n1 n2 n3 r4 r5 shared";
    QTest::newRow("oldest, limit") << oldestFirst(limited(4)) << "u1 u2 n1 n2";
    QTest::newRow("oldest, limit among those without a date") << oldestFirst(limited(1)) << "u1";
    QTest::newRow("oldest unread") << oldestFirst(unread(2)) << "u1 n1";
    QTest::newRow("oldest between") << oldestFirst(within(noon(2), noon(5))) << "n2 n3 r4";
    QTest::newRow("never") << within(noon(8), noon(9)) << "";
}

void TestMessageList::filters()
{
    QFETCH(MessageQuery, query);
    QFETCH(QString, expected);
    fill();
    QCOMPARE(found(query).join(' '), expected);
}

/// Of messages with the same date the one that was stored last is newer.
void TestMessageList::sameDate()
{
    addChannel("news");
    for (const QString &name : numberedNames("m", 5))
        addMessages({name}, "news", 7);
    QCOMPARE(found({}), QStringList({"m5", "m4", "m3", "m2", "m1"}));
    QCOMPARE(found(limited(2)), QStringList({"m5", "m4"}));
    QCOMPARE(found(oldestFirst(limited(2))), QStringList({"m1", "m2"}));
}

// How a statement begins to look at the newest messages alone.
const QString amongNewest = "WHERE { { SELECT ?m ?date WHERE { ?m nie:contentCreated ?date } ";

void TestMessageList::unreadAmongMany_data()
{
    QTest::addColumn<QStringList>("unreadNames");
    QTest::addColumn<bool>("readsAll");
    QTest::newRow("the newest") << QStringList({"m20", "m19"}) << false;
    QTest::newRow("the oldest") << QStringList({"m2", "m1"}) << true;
    QTest::newRow("one of each") << QStringList({"m20", "m1"}) << true;
    QTest::newRow("none") << QStringList() << false;
}

// The question that reads the state of every message is asked only if it is needed.
void TestMessageList::unreadAmongMany()
{
    QFETCH(QStringList, unreadNames);
    QFETCH(bool, readsAll);
    const QStringList all = numberedNames("m", 20);
    addChannel("news");
    addMessages(all, "news", 1);
    VERIFY_OK(ReadState(reader()).set(messageUris(all), true));
    VERIFY_OK(ReadState(reader()).set(messageUris(unreadNames), false));
    StatementGate::reset();
    QCOMPARE(names(MessageList(reader()).find(unread(3))), unreadNames);
    const QStringList statements = StatementGate::statements();
    bool hasReadAll = false;
    for (const QString &statement : statements)
        hasReadAll = hasReadAll
            || (statement.contains("NOT EXISTS { ?m tidel:readTime") && !statement.contains(amongNewest));
    QCOMPARE(hasReadAll, readsAll);
}

void TestMessageList::largeChannel_data()
{
    QTest::addColumn<QStringList>("channels");
    QTest::addColumn<MessageQuery>("query");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("looks");
    const QStringList large("large");
    QTest::newRow("among the newest") << large << limited(2) << "c b" << 1;
    QTest::newRow("partly among the newest") << large << limited(3) << "c b a" << 2;
    QTest::newRow("with others") << QStringList({"large", "small"}) << limited(2) << "c y" << 1;
    QTest::newRow("since") << large << within(noon(8), {}, limited(1)) << "c" << 1;
    QTest::newRow("until") << large << within({}, noon(2), limited(1)) << "a" << 2;
    QTest::newRow("without a limit") << large << limited(0) << "c b a" << 1;
    QTest::newRow("small") << QStringList("small") << limited(2) << "y x" << 1;
}

// Of a channel with most of the messages, only the newest of all are looked at.
void TestMessageList::largeChannel()
{
    QFETCH(QStringList, channels);
    QFETCH(MessageQuery, query);
    QFETCH(QString, expected);
    QFETCH(int, looks);
    addChannel("large");
    addChannel("small");
    addMessages({"a"}, "large", 1);
    addMessages(numberedNames("w", 8), "small", 2);
    addMessages({"b"}, "large", 10);
    addMessages({"x", "y"}, "small", 11);
    addMessages({"c"}, "large", 13);
    QString parts;
    for (int i = 0; i < 10000; ++i)
        parts += QString("<urn:part:%1> a mfo:Enclosure ; nie:isLogicalPartOf <%2> . ")
                     .arg(QString::number(i), channelUri("large"));
    store().update("INSERT DATA { " + parts + '}');
    StatementGate::reset();
    QCOMPARE(found(ofChannels(channels, query)).join(' '), expected);
    const QStringList statements = StatementGate::statements().filter("SELECT ?m ?link ?title ?date");
    const bool isLarge = channels.contains("large") && query.limit > 0;
    QCOMPARE(int(statements.filter(amongNewest).size()), isLarge ? 1 : 0);
    QCOMPARE(int(statements.filter("{ ?m nie:contentCreated ?date . ").size()
                 + statements.filter(amongNewest).size()),
             looks);
}

// Channels of many messages are asked for at once.
void TestMessageList::manyMessages()
{
    addChannel("news");
    addChannel("radio");
    QString update;
    for (int i = 0; i < 5001; ++i)
        update += QString("<urn:message:%1> a mfo:FeedMessage ; nie:title '%1' ; nie:isLogicalPartOf <%2> . ")
                      .arg(QString::number(i), channelUri(i % 2 == 0 ? "news" : "radio"));
    store().update("INSERT DATA { " + update + '}');
    StatementGate::reset();
    const auto list = MessageList(reader()).find({});
    VERIFY_OK(list);
    QCOMPARE(list->size(), 5001);
    QVERIFY2(StatementGate::statements().size() < 10, qPrintable(StatementGate::statements().join('\n')));
    for (int i = 0; i < 5001; ++i) {
        QCOMPARE(list->at(i).title, QString::number(5000 - i));
        QCOMPARE(list->at(i).channels, QStringList(i % 2 == 0 ? "news" : "radio"));
    }
}

// Other programs give dates to other things.
void TestMessageList::strangersHaveDatesToo()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    store().update("INSERT DATA { <urn:photo> a nie:InformationElement ; "
                   "nie:contentCreated '2025-11-09T12:00:00Z' }");
    QCOMPARE(found({}), QStringList("a"));
}

void TestMessageList::severalValues()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    store().update("INSERT DATA { <urn:message:a> nie:title 'Another' ; nie:links <https://example.org/2> ; "
                   "nie:contentCreated '2026-11-09T12:00:00Z' }");
    QCOMPARE(sorted(names(MessageList(reader()).find({}))), QStringList({"a", "b"}));
    QCOMPARE(sorted(namesOf(MessageList(reader()).uris({}))), QStringList({"a", "b"}));
}

/// What counts as unread stays in a list of unread messages, unless it is gone.
void TestMessageList::keptUris()
{
    fill();
    UriList kept;
    for (const char *name : {"n3", "shared", "r4", "none"})
        kept.append(messageUri(name));
    const MessageList list(reader());
    QCOMPARE(namesOf(list.uris(unread(), kept)).join(' '), QString("shared r4 n3 n2 n1 u1"));
    QCOMPARE(namesOf(list.uris(unread(2), kept)).join(' '), QString("shared r4"));
    QCOMPARE(namesOf(list.uris(ofChannels({"radio"}, unread()), kept)).join(' '), QString("shared r4"));
    QCOMPARE(namesOf(list.uris(limited(2), kept)).join(' '), QString("shared r5"));
    MessageQuery query = unread();
    query.words = "text";
    QCOMPARE(namesOf(list.uris(query, kept)).join(' '), QString("shared r4 n3 n2 n1 u1"));
}

void TestMessageList::uriList()
{
    UriList list;
    QVERIFY(list.isEmpty());
    for (const char *uri : {"a", "bb", "\u00fc", "d"})
        list.append(QString::fromUtf8(uri));
    QCOMPARE(list.size(), 4);
    QCOMPARE(list.at(2), QString::fromUtf8("\u00fc"));
    QCOMPARE(list.indexOf("d"), 3);
    QCOMPARE(list.indexOf("b"), -1);
    UriList copy = list;
    copy.remove(1, 2);
    QCOMPARE(copy.size(), 2);
    QCOMPARE(copy.at(1), QString("d"));
    QCOMPARE(list.size(), 4);
    copy.restore(1, 2, list);
    QCOMPARE(copy.at(1), QString("bb"));
    QCOMPARE(copy.indexOf(QString::fromUtf8("\u00fc")), 2);
    QCOMPARE(copy.at(3), QString("d"));
}

void TestMessageList::words()
{
    fill();
    MessageQuery query;
    query.words = "text";
    QCOMPARE(found(query).join(' '), QString("shared r5 r4 n3 n2 n1 u2 u1"));
    query.words = "n*";
    QCOMPARE(found(query).join(' '), QString("n3 n2 n1"));
    query.onlyUnread = true;
    query.limit = 1;
    QCOMPARE(found(query).join(' '), QString("n2"));
    query = ofChannels({"radio"}, favorites());
    query.words = "text";
    QCOMPARE(found(query).join(' '), QString("shared"));
    query.order = Qt::AscendingOrder;
    query.onlyFavorites = false;
    QCOMPARE(found(query).join(' '), QString("r4 r5 shared"));
    query.words = "?";
    QVERIFY(!MessageList(reader()).find(query));
    QVERIFY(!MessageList(reader()).uris(query));
}

void TestMessageList::headlines()
{
    fill();
    const QStringList uris = messageUris({"u1", "none", "r4", "n1"}) + QStringList{channelUri("news"), "> }"};
    const auto list = MessageList(reader()).headlines(uris);
    QCOMPARE(names(list).join(' '), QString("u1 r4 n1"));
    QCOMPARE(list->at(1).published, noon(4));
    QCOMPARE(list->at(1).channels, QStringList("radio"));
    const QStringList many = numberedNames("m", 120);
    addMessages(many, "news");
    QCOMPARE(names(MessageList(reader()).headlines(messageUris(many))), many);
}

void TestMessageList::titled_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("part") << "frost on"
                          << "x";
    QTest::newRow("case") << "FROST ON"
                          << "x";
    QTest::newRow("several") << "frost"
                             << "z y x";
    QTest::newRow("the title itself") << "first frost"
                                      << "y";
    QTest::newRow("blanks") << "  first   frost "
                            << "y";
    QTest::newRow("other letters") << QString::fromUtf8("ÄPFEL") << "w";
    QTest::newRow("nothing") << "peas"
                             << "";
    QTest::newRow("empty") << " "
                           << "";
    QTest::newRow("channel's title") << "news"
                                     << "";
    QTest::newRow("signs") << "' \" \\ %1 .*"
                           << "";
    QTest::newRow("percent") << "50%"
                             << "w";
}

void TestMessageList::titled()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    addChannel("news");
    addMessages({"w", "x", "y", "z"}, "news", 1);
    store().update("DELETE { ?m nie:title ?t } WHERE { ?m a mfo:FeedMessage ; nie:title ?t } "
                   "INSERT { <urn:message:w> nie:title '50% of all \u00e4pfel' . "
                   "<urn:message:x> nie:title 'The frost on my beans' . "
                   "<urn:message:y> nie:title 'First frost' . "
                   "<urn:message:z> nie:title 'First frosty night' }");
    QCOMPARE(names(MessageList(reader()).titled(name, 9)).join(' '), expected);
}

void TestMessageList::titledStatements()
{
    addChannel("news");
    addMessages(numberedNames("m", 30), "news");
    addMessages({"of"}, "news");
    store().update("DELETE { <urn:message:m1> nie:title ?t } WHERE { <urn:message:m1> nie:title ?t } "
                   "INSERT { <urn:message:m1> nie:title 'Title' }");
    // The first of all has the title, and is found although there are too many others.
    QCOMPARE(names(MessageList(reader()).titled("title", 4)), QStringList("m1"));
    QCOMPARE(MessageList(reader()).titled("title of", 4)->size(), 4);
}

QTEST_GUILESS_MAIN(TestMessageList)
#include "tst_messagelist.moc"
