// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sharedvalue.h"

#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <QtTest>

#include <type_traits>
#include <vector>

static_assert(std::is_base_of_v<FeedNode, FeedMessage>);
static_assert(sizeof(FeedMessage) == 2 * sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedMessage>);
static_assert(std::is_default_constructible_v<FeedMessage>);
static_assert(std::is_copy_constructible_v<FeedMessage>);
static_assert(std::is_copy_assignable_v<FeedMessage>);
static_assert(!std::is_convertible_v<QString, FeedMessage>);

namespace {

using Field = SharedValueField<FeedMessage>;

QDateTime day(int number) { return QDateTime(QDate(2020, 1, number), QTime(12, 0), Qt::UTC); }

FeedEnclosure enclosure(const QString &uri, const QString &remoteUrl = QString(),
                        const QString &sourceNamespace = QString())
{
    FeedEnclosure result;
    result.setUri(uri);
    result.setRemoteUrl(remoteUrl);
    result.setsourceNamespace(sourceNamespace);
    return result;
}

QList<FeedEnclosure> enclosures(const QStringList &uris)
{
    QList<FeedEnclosure> result;
    for (const QString &uri : uris)
        result.append(enclosure(uri));
    return result;
}

QStringList enclosureUris(const FeedMessage &message)
{
    QStringList uris;
    const QList<FeedEnclosure> held = message.enclosures();
    for (const FeedEnclosure &one : held)
        uris.append(one.uri());
    return uris;
}

const std::vector<Field> &fields()
{
    using M = FeedMessage;
    using V = QVariant;
    static const std::vector<Field> all{
        {"title", [](const M &m) { return V(m.title()); }, [](M &m, const V &v) { m.setTitle(v.toString()); },
         "", "title 1", " title  2\n", " title  2\n"},
        {"link", [](const M &m) { return V(m.link()); }, [](M &m, const V &v) { m.setLink(v.toString()); },
         "", " http://a/1\n", "\t \nhttp://a/2  x\r\n ", "http://a/2  x"},
        {"id", [](const M &m) { return V(m.id()); }, [](M &m, const V &v) { m.setId(v.toString()); }, "",
         "id 1", " id  2\n", " id  2\n"},
        {"description", [](const M &m) { return V(m.description()); },
         [](M &m, const V &v) { m.setDescription(v.toString()); }, "", "description 1", " description  2\n",
         " description  2\n"},
        {"summary", [](const M &m) { return V(m.summary()); },
         [](M &m, const V &v) { m.setSummary(v.toString()); }, "", "summary 1", " summary  2\n",
         " summary  2\n"},
        {"baseUrl", [](const M &m) { return V(m.baseUrl()); },
         [](M &m, const V &v) { m.setBaseUrl(v.toUrl()); }, QUrl(), QUrl(), QUrl("http://b/2"),
         QUrl("http://b/2")},
        {"publishedDate", [](const M &m) { return V(m.publishedDate()); },
         [](M &m, const V &v) { m.setPublishedDate(v.toDateTime()); }, QDateTime(), day(1), day(12), day(12)},
        {"enclosures", [](const M &m) { return V(enclosureUris(m)); },
         [](M &m, const V &v) { m.setEnclosures(enclosures(v.toStringList())); }, QStringList(),
         QStringList({"e1", "e2"}), QStringList({"e4", "e3", "e4"}), QStringList({"e4", "e3", "e4"})},
        {"downloadedTime", [](const M &m) { return V(m.downloadedTime()); },
         [](M &m, const V &v) { m.setDownloadedTime(v.toDateTime()); }, QDateTime(), day(2), day(13),
         day(13)},
        {"favorite", [](const M &m) { return V(m.isFavorite()); },
         [](M &m, const V &v) { m.setFavorite(v.toBool()); }, false, true, false, false},
    };
    return all;
}

FeedMessage filled()
{
    return FeedMessage("title 1", " http://a/1\n", "id 1", "description 1", "summary 1", day(1),
                       enclosures({"e1", "e2"}), day(2), true);
}

void add(FeedMessage &message, FeedEnclosure child) { static_cast<FeedNode *>(&message)->addChild(&child); }

/// A class that a host may derive, with a member of its own.
class MarkedMessage : public FeedMessage
{
public:
    MarkedMessage(const FeedMessage &message, int ownMark) : FeedMessage(message), mark(ownMark) { }

    int mark;
};

} // namespace

class tst_FeedMessage : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsAnEmptyMessage();
    void fourArgumentConstructorSetsTheDownloadedTime();
    void fullConstructorPutsEachArgumentInItsField() { shared.constructorPutsEachArgumentInItsField(); }
    void setterChangesItsFieldOnly_data() { shared.addFieldRows(); }
    void setterChangesItsFieldOnly() { shared.setterChangesItsFieldOnly(); }
    void setterOnACopyLeavesTheOriginal_data() { shared.addFieldRows(); }
    void setterOnACopyLeavesTheOriginal() { shared.setterOnACopyLeavesTheOriginal(); }
    void setterOnTheOriginalLeavesTheCopy_data() { shared.addFieldRows(); }
    void setterOnTheOriginalLeavesTheCopy() { shared.setterOnTheOriginalLeavesTheCopy(); }
    void favoriteCanBeSetAndCleared();
    void copySharesTheRecord() { shared.copySharesTheRecord(); }
    void assignmentSharesTheRecord() { shared.assignmentSharesTheRecord(); }
    void assignmentWithinOneRecordChangesNothing() { shared.assignmentWithinOneRecordChangesNothing(); }
    void selfAssignmentChangesNothing() { shared.selfAssignmentChangesNothing(); }
    void moveLeavesAUsableObject() { shared.moveLeavesAUsableObject(); }
    void detachMakesACopyOfAllFields();
    void detachKeepsARecordThatIsNotShared();
    void lastOwnerDeletesTheRecord();
    void addEnclosureAppendsWithoutMerging();
    void addEnclosureAppendsAListInItsOrder();
    void addEnclosureOnACopyLeavesTheOriginal();
    void setEnclosuresWithAnEmptyListEmptiesTheList();
    void enclosuresIsACopyOfTheList();
    void addChildAppendsToAnEmptyList();
    void addChildAppendsAnotherRemoteUrl();
    void addChildReplacesInPlace();
    void addChildKeepsAnEntryWithANamespace();
    void addChildReplacesByAnEntryWithANamespace();
    void addChildLooksAtTheFirstMatchOnly();
    void addChildMergesEmptyRemoteUrls();
    void addChildTakesACopy();
    void addChildOnACopyLeavesTheOriginal();
    void addChildDetachesEvenWhenTheEntryStays();
    void addChildIgnoresOtherNodesWithoutDetaching();
    void castsFromNodeToMessage();
    void derivedClassIsAMessage();
    void copiesMayBeUsedInSeveralThreads();

private:
    const SharedValueTests<FeedMessage> shared{fields(), filled};
};

void tst_FeedMessage::defaultIsAnEmptyMessage()
{
    const FeedMessage message;
    QVERIFY(message.publishedDate().isNull());
    QVERIFY(message.downloadedTime().isNull());
    QVERIFY(message.baseUrl().isEmpty());
    shared.defaultHasTheDefaultValues();
}

void tst_FeedMessage::fourArgumentConstructorSetsTheDownloadedTime()
{
    FeedMessage expected;
    QVariantList values = shared.valuesOf(expected);
    values[0] = "title 1";
    values[1] = " http://a/1\n";
    values[3] = "description 1";
    values[8] = day(2);

    const FeedMessage message("title 1", " http://a/1\n", "description 1", day(2));
    QCOMPARE(shared.valuesOf(message), values);
}

void tst_FeedMessage::favoriteCanBeSetAndCleared()
{
    FeedMessage message;
    message.setFavorite(true);
    QVERIFY(message.isFavorite());
    message.setFavorite(false);
    QVERIFY(!message.isFavorite());
}

void tst_FeedMessage::detachMakesACopyOfAllFields()
{
    FeedMessage original = filled();
    original.setBaseUrl(QUrl("http://b/"));
    shared.detachMakesACopyOfAllFields(original);
}

void tst_FeedMessage::detachKeepsARecordThatIsNotShared()
{
    shared.detachKeepsARecordThatIsNotShared([](FeedMessage &message) { message.setTitle("other"); });
}

void tst_FeedMessage::lastOwnerDeletesTheRecord()
{
    shared.lastOwnerDeletesTheRecord(2, [](FeedMessage &message, const std::vector<QString> &texts) {
        message.setTitle(texts[0]);
        message.addEnclosure(enclosure(texts[1]));
    });
}

void tst_FeedMessage::addEnclosureAppendsWithoutMerging()
{
    FeedMessage message;
    message.addEnclosure(enclosure("e1", "http://a/1"));
    message.addEnclosure(enclosure("e2", "http://a/1"));
    message.addEnclosure(message.enclosures().constFirst());
    QCOMPARE(enclosureUris(message), QStringList({"e1", "e2", "e1"}));
}

void tst_FeedMessage::addEnclosureAppendsAListInItsOrder()
{
    FeedMessage message;
    message.addEnclosure(enclosure("e1"));
    message.addEnclosure(enclosures({"e3", "e2", "e1"}));
    QCOMPARE(enclosureUris(message), QStringList({"e1", "e3", "e2", "e1"}));
    message.addEnclosure(QList<FeedEnclosure>());
    QCOMPARE(enclosureUris(message), QStringList({"e1", "e3", "e2", "e1"}));
}

void tst_FeedMessage::addEnclosureOnACopyLeavesTheOriginal()
{
    const FeedMessage original = filled();
    FeedMessage one = original;
    one.addEnclosure(enclosure("e3"));
    FeedMessage several = original;
    several.addEnclosure(enclosures({"e4", "e5"}));

    QCOMPARE(enclosureUris(original), QStringList({"e1", "e2"}));
    QCOMPARE(enclosureUris(one), QStringList({"e1", "e2", "e3"}));
    QCOMPARE(enclosureUris(several), QStringList({"e1", "e2", "e4", "e5"}));
}

void tst_FeedMessage::setEnclosuresWithAnEmptyListEmptiesTheList()
{
    FeedMessage message = filled();
    message.setEnclosures(QList<FeedEnclosure>());
    QVERIFY(message.enclosures().isEmpty());
}

void tst_FeedMessage::enclosuresIsACopyOfTheList()
{
    FeedMessage message = filled();
    QList<FeedEnclosure> list = message.enclosures();
    list.first().setUri("changed");
    list.removeLast();
    QCOMPARE(enclosureUris(message), QStringList({"e1", "e2"}));

    const QList<FeedEnclosure> held = message.enclosures();
    message.addEnclosure(enclosure("e3"));
    QCOMPARE(held.size(), decltype(held.size())(2));
}

void tst_FeedMessage::addChildAppendsToAnEmptyList()
{
    FeedMessage message;
    add(message, enclosure("e1", "http://a/1", "media"));
    QCOMPARE(enclosureUris(message), QStringList({"e1"}));
}

void tst_FeedMessage::addChildAppendsAnotherRemoteUrl()
{
    FeedMessage message;
    add(message, enclosure("e1", "http://a/1"));
    add(message, enclosure("e2", "http://a/2"));
    add(message, enclosure("e3", "http://a/1/"));
    QCOMPARE(enclosureUris(message), QStringList({"e1", "e2", "e3"}));
}

void tst_FeedMessage::addChildReplacesInPlace()
{
    FeedMessage message;
    add(message, enclosure("e1", "http://a/1"));
    add(message, enclosure("e2", "http://a/2"));
    add(message, enclosure("e3", "http://a/3"));

    FeedEnclosure newer = enclosure("e4", "http://a/2");
    newer.setLength(77);
    add(message, newer);
    QCOMPARE(enclosureUris(message), QStringList({"e1", "e4", "e3"}));
    QCOMPARE(message.enclosures().at(1).length(), 77u);
}

void tst_FeedMessage::addChildKeepsAnEntryWithANamespace()
{
    FeedMessage message;
    add(message, enclosure("e1", "http://a/1", "media"));
    add(message, enclosure("e2", "http://a/1"));
    add(message, enclosure("e3", "http://a/1", "itunes"));
    QCOMPARE(enclosureUris(message), QStringList({"e1"}));
    QCOMPARE(message.enclosures().constFirst().sourceNamespace(), QString("media"));
}

void tst_FeedMessage::addChildReplacesByAnEntryWithANamespace()
{
    FeedMessage message;
    add(message, enclosure("e1", "http://a/1"));
    add(message, enclosure("e2", "http://a/1", "media"));
    QCOMPARE(enclosureUris(message), QStringList({"e2"}));
    add(message, enclosure("e3", "http://a/1"));
    QCOMPARE(enclosureUris(message), QStringList({"e2"}));
}

void tst_FeedMessage::addChildLooksAtTheFirstMatchOnly()
{
    FeedMessage open;
    open.setEnclosures({enclosure("e1", "http://a/1"), enclosure("e2", "http://a/1", "media")});
    add(open, enclosure("e3", "http://a/1"));
    QCOMPARE(enclosureUris(open), QStringList({"e3", "e2"}));

    FeedMessage closed;
    closed.setEnclosures({enclosure("e1", "http://a/1", "media"), enclosure("e2", "http://a/1")});
    add(closed, enclosure("e3", "http://a/1"));
    QCOMPARE(enclosureUris(closed), QStringList({"e1", "e2"}));
}

void tst_FeedMessage::addChildMergesEmptyRemoteUrls()
{
    FeedMessage message;
    add(message, enclosure("e1", QString()));
    add(message, enclosure("e2", ""));
    QCOMPARE(enclosureUris(message), QStringList({"e2"}));
}

void tst_FeedMessage::addChildTakesACopy()
{
    FeedMessage message;
    FeedEnclosure child = enclosure("e1", "http://a/1");
    message.addChild(&child);
    child.setUri("changed");
    QCOMPARE(enclosureUris(message), QStringList({"e1"}));
}

void tst_FeedMessage::addChildOnACopyLeavesTheOriginal()
{
    FeedMessage original;
    add(original, enclosure("e1", "http://a/1"));

    FeedMessage appended = original;
    add(appended, enclosure("e2", "http://a/2"));
    FeedMessage replaced = original;
    add(replaced, enclosure("e3", "http://a/1"));
    QCOMPARE(enclosureUris(original), QStringList({"e1"}));
    QCOMPARE(enclosureUris(appended), QStringList({"e1", "e2"}));
    QCOMPARE(enclosureUris(replaced), QStringList({"e3"}));

    const FeedMessage empty;
    FeedMessage first = empty;
    add(first, enclosure("e1"));
    QVERIFY(empty.enclosures().isEmpty());
}

void tst_FeedMessage::addChildDetachesEvenWhenTheEntryStays()
{
    FeedMessage message;
    add(message, enclosure("e1", "http://a/1", "media"));
    const FeedMessage copy = message;
    add(message, enclosure("e2", "http://a/1"));
    QVERIFY(recordOf(message) != recordOf(copy));
}

void tst_FeedMessage::addChildIgnoresOtherNodesWithoutDetaching()
{
    FeedMessage message = filled();
    const FeedMessage copy = message;
    FeedMessage childMessage;
    FeedChannel childChannel;

    FeedNode *children[] = {nullptr, &childMessage, &childChannel, &message};
    for (FeedNode *child : children)
        static_cast<FeedNode *>(&message)->addChild(child);
    QCOMPARE(recordOf(message), recordOf(copy));
    QCOMPARE(shared.valuesOf(message), shared.valuesOf(filled()));
}

void tst_FeedMessage::castsFromNodeToMessage()
{
    FeedMessage message;
    FeedEnclosure child;
    FeedNode *node = &message;
    QCOMPARE(dynamic_cast<FeedMessage *>(node), &message);
    QVERIFY(!dynamic_cast<FeedChannel *>(node));
    node = &child;
    QVERIFY(!dynamic_cast<FeedMessage *>(node));
}

void tst_FeedMessage::derivedClassIsAMessage()
{
    MarkedMessage marked(filled(), 7);
    const MarkedMessage copy = marked;
    MarkedMessage assigned(FeedMessage(), 0);
    assigned = copy;
    QCOMPARE(assigned.mark, 7);
    QCOMPARE(recordOf(static_cast<const FeedMessage &>(assigned)),
             recordOf(static_cast<const FeedMessage &>(marked)));

    marked.setTitle("other");
    QCOMPARE(marked.title(), QString("other"));
    QCOMPARE(shared.valuesOf(copy), shared.valuesOf(filled()));
    const FeedMessage message = copy;
    QCOMPARE(shared.valuesOf(message), shared.valuesOf(filled()));

    FeedChannel channel;
    channel.addChild(&marked);
    QCOMPARE(recordOf(channel.messages().constFirst()), recordOf(static_cast<FeedMessage &>(marked)));
    FeedEnclosure child = enclosure("e");
    MarkedMessage parent(FeedMessage(), 1);
    static_cast<FeedNode &>(parent).addChild(&child);
    QCOMPARE(enclosureUris(parent), QStringList{"e"});
}

void tst_FeedMessage::copiesMayBeUsedInSeveralThreads()
{
    shared.copiesMayBeUsedInSeveralThreads([](FeedMessage &message, const FeedMessage &sharer, int) {
        message.addEnclosure(sharer.enclosures());
    });
}

QTEST_APPLESS_MAIN(tst_FeedMessage)
#include "tst_feedmessage.moc"
