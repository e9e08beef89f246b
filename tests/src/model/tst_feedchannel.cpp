// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sharedvalue.h"

#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <QtTest>

#include <type_traits>
#include <vector>

static_assert(std::is_base_of_v<FeedNode, FeedChannel>);
static_assert(sizeof(FeedChannel) == 2 * sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedChannel>);
static_assert(std::is_default_constructible_v<FeedChannel>);
static_assert(std::is_copy_constructible_v<FeedChannel>);
static_assert(std::is_copy_assignable_v<FeedChannel>);
static_assert(!std::is_convertible_v<QString, FeedChannel>);

namespace {

using Field = SharedValueField<FeedChannel>;

QDateTime day(int number) { return QDateTime(QDate(2020, 1, number), QTime(12, 0), Qt::UTC); }

FeedEnclosure image(const QString &remoteUrl)
{
    FeedEnclosure result;
    result.setRemoteUrl(remoteUrl);
    return result;
}

FeedMessage message(const QString &title, const QDateTime &publishedDate)
{
    FeedMessage result;
    result.setTitle(title);
    result.setPublishedDate(publishedDate);
    return result;
}

// Returns a message for each word. The word is the title. If it starts with a number, that is the day of the
// published date.
QList<FeedMessage> messages(const QString &words)
{
    QList<FeedMessage> result;
    const QStringList titles = words.split(' ', Qt::SkipEmptyParts);
    for (const QString &title : titles) {
        const int number = title.at(0).digitValue();
        result.append(message(title, number < 0 ? QDateTime() : day(number)));
    }
    return result;
}

QString titles(const FeedChannel &channel)
{
    QStringList words;
    const QList<FeedMessage> held = channel.messages();
    for (const FeedMessage &one : held)
        words.append(one.title());
    return words.join(' ');
}

FeedChannel channelOf(const QString &words)
{
    FeedChannel channel;
    QList<FeedMessage> list = messages(words);
    channel.setMessages(list);
    return channel;
}

void setMessages(FeedChannel &channel, const QString &words)
{
    QList<FeedMessage> list = messages(words);
    channel.setMessages(list);
}

const std::vector<Field> &fields()
{
    using C = FeedChannel;
    using V = QVariant;
    static const std::vector<Field> all{
        {"uri", [](const C &c) { return V(c.uri()); }, [](C &c, const V &v) { c.setUri(v.toString()); }, "",
         "urn:1", " urn:2\n", " urn:2\n"},
        {"link", [](const C &c) { return V(c.link()); }, [](C &c, const V &v) { c.setLink(v.toString()); },
         "", "http://a/1", " http://a/2\n", " http://a/2\n"},
        {"title", [](const C &c) { return V(c.title()); }, [](C &c, const V &v) { c.setTitle(v.toString()); },
         "", " title \t 1\n", "\n two\t   words ", "two words"},
        {"icon", [](const C &c) { return V(c.icon().remoteUrl()); },
         [](C &c, const V &v) { c.setIcon(image(v.toString())); }, "", "http://i/1", "http://i/2",
         "http://i/2"},
        {"description", [](const C &c) { return V(c.description()); },
         [](C &c, const V &v) { c.setDescription(v.toString()); }, "", "description 1", " description  2\n",
         " description  2\n"},
        {"type", [](const C &c) { return V(c.type()); }, [](C &c, const V &v) { c.setType(v.toString()); },
         "", "type 1", " type  2\n", " type  2\n"},
        {"subscribedTime", [](const C &c) { return V(c.subscribedTime()); },
         [](C &c, const V &v) { c.setSubscribedTime(v.toDateTime()); }, QDateTime(), day(1), day(11),
         day(11)},
        {"updatedTime", [](const C &c) { return V(c.updatedTime()); },
         [](C &c, const V &v) { c.setUpdatedTime(v.toDateTime()); }, QDateTime(), day(2), day(12), day(12)},
        {"lastModifiedTime", [](const C &c) { return V(c.lastModifiedTime()); },
         [](C &c, const V &v) { c.setLastModifiedTime(v.toString()); }, "", "last week", " not  a date\n",
         " not  a date\n"},
        {"messages", [](const C &c) { return V(titles(c)); },
         [](C &c, const V &v) { setMessages(c, v.toString()); }, "", "1 3 2", "4 x 6 5", "4 x 6 5"},
    };
    return all;
}

FeedChannel filled()
{
    return FeedChannel("urn:1", "http://a/1", " title \t 1\n", image("http://i/1"), "type 1", "description 1",
                       day(1), day(2), "last week", messages("1 3 2"));
}

void add(FeedChannel &channel, FeedMessage child) { static_cast<FeedNode *>(&channel)->addChild(&child); }

/// A class that a host may derive, with a member of its own.
class MarkedChannel : public FeedChannel
{
public:
    MarkedChannel(const FeedChannel &channel, int ownMark) : FeedChannel(channel), mark(ownMark) { }

    int mark;
};

} // namespace

class tst_FeedChannel : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsAnEmptyChannel();
    void constructorPutsEachArgumentInItsField() { shared.constructorPutsEachArgumentInItsField(); }
    void setterChangesItsFieldOnly_data() { shared.addFieldRows(); }
    void setterChangesItsFieldOnly() { shared.setterChangesItsFieldOnly(); }
    void setterOnACopyLeavesTheOriginal_data() { shared.addFieldRows(); }
    void setterOnACopyLeavesTheOriginal() { shared.setterOnACopyLeavesTheOriginal(); }
    void setterOnTheOriginalLeavesTheCopy_data() { shared.addFieldRows(); }
    void setterOnTheOriginalLeavesTheCopy() { shared.setterOnTheOriginalLeavesTheCopy(); }
    void copySharesTheRecord() { shared.copySharesTheRecord(); }
    void assignmentSharesTheRecord() { shared.assignmentSharesTheRecord(); }
    void assignmentWithinOneRecordChangesNothing() { shared.assignmentWithinOneRecordChangesNothing(); }
    void selfAssignmentChangesNothing() { shared.selfAssignmentChangesNothing(); }
    void moveLeavesAUsableObject() { shared.moveLeavesAUsableObject(); }
    void detachMakesACopyOfAllFields();
    void detachKeepsARecordThatIsNotShared();
    void lastOwnerDeletesTheRecord();
    void iconSharesTheRecordOfTheChannelsImage();
    void setMessagesDoesNotChangeTheGivenList();
    void messagesIsACopyOfTheList();
    void insertMessageKeepsNewestFirst_data();
    void insertMessageKeepsNewestFirst();
    void insertMessageComparesInstants();
    void insertMessageAppendsAMessageWithoutADate();
    void insertMessageHoldsTheSameMessageTwice();
    void insertMessageReachesAllSharers();
    void insertMessageTakesACopy();
    void addChildInsertsByDate();
    void addChildInsertsRelativeToAnUnsortedList();
    void addChildOnACopyLeavesTheOriginal();
    void addChildIgnoresOtherNodesWithoutDetaching();
    void castsFromNodeToChannel();
    void derivedClassIsAChannel();
    void copiesMayBeUsedInSeveralThreads();

private:
    const SharedValueTests<FeedChannel> shared{fields(), filled};
};

void tst_FeedChannel::defaultIsAnEmptyChannel()
{
    const FeedChannel channel;
    QVERIFY(channel.subscribedTime().isNull());
    QVERIFY(channel.updatedTime().isNull());
    QCOMPARE(int(channel.icon().type()), int(FeedEnclosure::Optional));
    QCOMPARE(channel.icon().uri(), QString());
    shared.defaultHasTheDefaultValues();
}

void tst_FeedChannel::detachMakesACopyOfAllFields()
{
    FeedChannel original = filled();
    {
        FeedChannel copy = original;
        copy.detach();
        QVERIFY(recordOf(copy) != recordOf(original));
        QCOMPARE(recordOf(copy.icon()), recordOf(original.icon()));
    }
    shared.detachMakesACopyOfAllFields(original);
}

void tst_FeedChannel::detachKeepsARecordThatIsNotShared()
{
    shared.detachKeepsARecordThatIsNotShared([](FeedChannel &channel) { channel.setUri("other"); });
}

void tst_FeedChannel::lastOwnerDeletesTheRecord()
{
    shared.lastOwnerDeletesTheRecord(3, [](FeedChannel &channel, const std::vector<QString> &texts) {
        channel.setUri(texts[0]);
        channel.setIcon(image(texts[1]));
        channel.insertMessage(message(texts[2], day(1)));
    });
}

void tst_FeedChannel::iconSharesTheRecordOfTheChannelsImage()
{
    const FeedEnclosure icon = image("http://i/1");
    FeedChannel channel;
    channel.setIcon(icon);
    QCOMPARE(recordOf(channel.icon()), recordOf(icon));

    FeedEnclosure mine = channel.icon();
    mine.setRemoteUrl("changed");
    QCOMPARE(channel.icon().remoteUrl(), QString("http://i/1"));
}

void tst_FeedChannel::setMessagesDoesNotChangeTheGivenList()
{
    QList<FeedMessage> list = messages("1 3 2");
    FeedChannel channel;
    channel.setMessages(list);
    channel.insertMessage(message("4", day(4)));
    QCOMPARE(list.size(), decltype(list.size())(3));
    QCOMPARE(list.constFirst().title(), QString("1"));

    list.clear();
    QCOMPARE(titles(channel), QString("4 1 3 2"));
    channel.setMessages(list);
    QCOMPARE(titles(channel), QString());
}

void tst_FeedChannel::messagesIsACopyOfTheList()
{
    FeedChannel channel = filled();
    QList<FeedMessage> list = channel.messages();
    list.first().setTitle("changed");
    list.removeLast();
    QCOMPARE(titles(channel), QString("1 3 2"));

    const QList<FeedMessage> held = channel.messages();
    channel.insertMessage(message("4", day(4)));
    QCOMPARE(held.size(), decltype(held.size())(3));
}

void tst_FeedChannel::insertMessageKeepsNewestFirst_data()
{
    QTest::addColumn<QString>("held");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("expected");

    QTest::newRow("into an empty list") << ""
                                        << "1"
                                        << "1";
    QTest::newRow("without a date into an empty list") << ""
                                                       << "x"
                                                       << "x";
    QTest::newRow("one after the other") << ""
                                         << "2 1 3"
                                         << "3 2 1";
    QTest::newRow("oldest") << "5 3"
                            << "2"
                            << "5 3 2";
    QTest::newRow("newest") << "5 3"
                            << "6"
                            << "6 5 3";
    QTest::newRow("between") << "7 5 3 1"
                             << "4"
                             << "7 5 4 3 1";
    QTest::newRow("as old as the last goes after it") << "5 3"
                                                      << "3a 3b"
                                                      << "5 3 3a 3b";
    QTest::newRow("as old as the only one goes after it") << "3"
                                                          << "3a 3b"
                                                          << "3 3a 3b";
    QTest::newRow("as old as the first goes before it") << "5 3"
                                                        << "5a 5b"
                                                        << "5b 5a 5 3";
    QTest::newRow("as old as one in the middle goes before it") << "5 4 3"
                                                                << "4a 4b"
                                                                << "5 4b 4a 4 3";
    QTest::newRow("as old as several goes before the first") << "5 4a 4b 3"
                                                             << "4"
                                                             << "5 4 4a 4b 3";
    QTest::newRow("without a date goes to the end") << "5 3"
                                                    << "x y"
                                                    << "5 3 x y";
    QTest::newRow("dated goes before those without a date") << "5 3 x y"
                                                            << "1 4 6"
                                                            << "6 5 4 3 1 x y";
    QTest::newRow("dated goes before the only one without") << "x"
                                                            << "1"
                                                            << "1 x";
    QTest::newRow("dated goes before the first without") << "x 5 3"
                                                         << "4"
                                                         << "4 x 5 3";
    QTest::newRow("unsorted, as old as the last") << "1 5 3"
                                                  << "3a"
                                                  << "1 5 3 3a";
    QTest::newRow("unsorted, older than the last") << "1 5 3"
                                                   << "2"
                                                   << "1 5 3 2";
    QTest::newRow("unsorted, newer than the last") << "1 5 3"
                                                   << "4"
                                                   << "4 1 5 3";
    QTest::newRow("unsorted, first that is not newer") << "5 7 4 1"
                                                       << "6"
                                                       << "6 5 7 4 1";
    QTest::newRow("unsorted, passes what is newer") << "7 6 4 8 3"
                                                    << "5"
                                                    << "7 6 5 4 8 3";
}

void tst_FeedChannel::insertMessageKeepsNewestFirst()
{
    QFETCH(QString, held);
    QFETCH(QString, inserted);
    QFETCH(QString, expected);
    FeedChannel channel = channelOf(held);
    const QList<FeedMessage> list = messages(inserted);
    for (const FeedMessage &one : list)
        channel.insertMessage(one);
    QCOMPARE(titles(channel), expected);
}

void tst_FeedChannel::insertMessageComparesInstants()
{
    const QDate date(2020, 1, 1);
    FeedChannel channel;
    channel.insertMessage(message("eleven", QDateTime(date, QTime(11, 0), Qt::UTC)));
    channel.insertMessage(message("ten", QDateTime(date, QTime(12, 0), Qt::OffsetFromUTC, 2 * 3600)));
    channel.insertMessage(message("twelve", QDateTime(date, QTime(10, 0), Qt::OffsetFromUTC, -2 * 3600)));
    QCOMPARE(titles(channel), QString("twelve eleven ten"));
}

void tst_FeedChannel::insertMessageAppendsAMessageWithoutADate()
{
    // QDateTime compares an invalid date like the start of 1970.
    FeedChannel channel;
    channel.insertMessage(message("1960", QDateTime(QDate(1960, 1, 1), QTime(12, 0), Qt::UTC)));
    channel.insertMessage(message("undated", QDateTime()));
    QCOMPARE(titles(channel), QString("1960 undated"));
}

void tst_FeedChannel::insertMessageHoldsTheSameMessageTwice()
{
    FeedMessage one = message("1", day(1));
    one.setId("id");
    one.setLink("http://a/1");
    FeedChannel channel;
    channel.insertMessage(one);
    channel.insertMessage(one);
    add(channel, one);
    QCOMPARE(titles(channel), QString("1 1 1"));
}

void tst_FeedChannel::insertMessageReachesAllSharers()
{
    FeedChannel original = channelOf("3 1");
    const FeedChannel copy = original;
    original.insertMessage(message("2", day(2)));
    original.insertMessage(message("0", QDateTime()));
    QCOMPARE(titles(original), QString("3 2 1 0"));
    QCOMPARE(titles(copy), QString("3 2 1 0"));
}

void tst_FeedChannel::insertMessageTakesACopy()
{
    FeedMessage one = message("1", day(1));
    FeedChannel channel;
    channel.insertMessage(one);
    one.setTitle("changed");
    QCOMPARE(titles(channel), QString("1"));
}

void tst_FeedChannel::addChildInsertsByDate()
{
    FeedChannel channel;
    const QList<FeedMessage> list = messages("2 1 3 x 2a");
    for (const FeedMessage &one : list)
        add(channel, one);
    QCOMPARE(titles(channel), QString("3 2a 2 1 x"));
}

void tst_FeedChannel::addChildInsertsRelativeToAnUnsortedList()
{
    FeedChannel channel = channelOf("2 7 4");
    QCOMPARE(titles(channel), QString("2 7 4"));
    add(channel, message("5", day(5)));
    add(channel, message("3", day(3)));
    QCOMPARE(titles(channel), QString("5 2 7 4 3"));
}

void tst_FeedChannel::addChildOnACopyLeavesTheOriginal()
{
    const FeedChannel original = channelOf("3 1");
    FeedChannel copy = original;
    add(copy, message("2", day(2)));
    QCOMPARE(titles(original), QString("3 1"));
    QCOMPARE(titles(copy), QString("3 2 1"));
}

void tst_FeedChannel::addChildIgnoresOtherNodesWithoutDetaching()
{
    FeedChannel channel = filled();
    const FeedChannel copy = channel;
    FeedEnclosure childEnclosure;
    FeedChannel childChannel;

    FeedNode *children[] = {nullptr, &childEnclosure, &childChannel, &channel};
    for (FeedNode *child : children)
        static_cast<FeedNode *>(&channel)->addChild(child);
    QCOMPARE(recordOf(channel), recordOf(copy));
    QCOMPARE(shared.valuesOf(channel), shared.valuesOf(filled()));
}

void tst_FeedChannel::castsFromNodeToChannel()
{
    FeedChannel channel;
    FeedMessage child;
    FeedNode *node = &channel;
    QCOMPARE(dynamic_cast<FeedChannel *>(node), &channel);
    QVERIFY(!dynamic_cast<FeedMessage *>(node));
    node = &child;
    QVERIFY(!dynamic_cast<FeedChannel *>(node));
}

void tst_FeedChannel::derivedClassIsAChannel()
{
    MarkedChannel marked(filled(), 7);
    const MarkedChannel copy = marked;
    MarkedChannel assigned(FeedChannel(), 0);
    assigned = copy;
    QCOMPARE(assigned.mark, 7);
    QCOMPARE(recordOf(static_cast<const FeedChannel &>(assigned)),
             recordOf(static_cast<const FeedChannel &>(marked)));

    marked.setTitle("other");
    QCOMPARE(marked.title(), QString("other"));
    QCOMPARE(shared.valuesOf(copy), shared.valuesOf(filled()));
    const FeedChannel channel = copy;
    QCOMPARE(shared.valuesOf(channel), shared.valuesOf(filled()));

    FeedMessage message;
    MarkedChannel parent(FeedChannel(), 1);
    static_cast<FeedNode &>(parent).addChild(&message);
    static_cast<FeedNode &>(parent).addChild(&marked);
    QCOMPARE(parent.messages().size(), 1);
}

void tst_FeedChannel::copiesMayBeUsedInSeveralThreads()
{
    shared.copiesMayBeUsedInSeveralThreads(
        [child = message("4", day(4))](FeedChannel &channel, const FeedChannel &, int) mutable {
            channel.addChild(&child);
        });
}

QTEST_APPLESS_MAIN(tst_FeedChannel)
#include "tst_feedchannel.moc"
