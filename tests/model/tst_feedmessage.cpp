// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <QtTest>

#include <cstring>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

static_assert(std::is_base_of_v<FeedNode, FeedMessage>);
static_assert(sizeof(FeedMessage) == 2 * sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedMessage>);
static_assert(std::is_final_v<FeedMessage>, "nothing derived may be deleted without its destructor");
static_assert(std::is_default_constructible_v<FeedMessage>);
static_assert(std::is_copy_constructible_v<FeedMessage>);
static_assert(std::is_copy_assignable_v<FeedMessage>);
static_assert(!std::is_convertible_v<QString, FeedMessage>);

namespace {

struct Field
{
    const char *name;
    QVariant (*get)(const FeedMessage &);
    void (*set)(FeedMessage &, const QVariant &);
    QVariant defaultValue;
    QVariant constructed;
    QVariant given;
    QVariant stored;
};

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

QVariantList valuesOf(const FeedMessage &message)
{
    QVariantList values;
    for (const Field &field : fields())
        values.append(field.get(message));
    return values;
}

FeedMessage filled()
{
    return FeedMessage("title 1", " http://a/1\n", "id 1", "description 1", "summary 1", day(1),
                       enclosures({"e1", "e2"}), day(2), true);
}

// The record is all that a message holds beside its virtual table.
const void *recordOf(const FeedMessage &message)
{
    const void *record = nullptr;
    std::memcpy(&record, reinterpret_cast<const char *>(&message) + sizeof(void *), sizeof record);
    return record;
}

bool ownsItsRecordAlone(FeedMessage &message)
{
    const void *before = recordOf(message);
    message.detach();
    return recordOf(message) == before;
}

void add(FeedMessage &message, FeedEnclosure child) { static_cast<FeedNode *>(&message)->addChild(&child); }

void addFieldRows()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < fields().size(); ++i)
        QTest::newRow(fields()[i].name) << int(i);
}

} // namespace

class tst_FeedMessage : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsAnEmptyMessage();
    void fourArgumentConstructorSetsTheDownloadedTime();
    void fullConstructorPutsEachArgumentInItsField();
    void setterChangesItsFieldOnly_data() { addFieldRows(); }
    void setterChangesItsFieldOnly();
    void setterOnACopyLeavesTheOriginal_data() { addFieldRows(); }
    void setterOnACopyLeavesTheOriginal();
    void setterOnTheOriginalLeavesTheCopy_data() { addFieldRows(); }
    void setterOnTheOriginalLeavesTheCopy();
    void favoriteMayBeSetAndTakenBack();
    void copySharesTheRecord();
    void assignmentSharesTheRecord();
    void assignmentWithinOneRecordChangesNothing();
    void selfAssignmentChangesNothing();
    void moveLeavesAUsableObject();
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
    void copiesMayBeUsedInSeveralThreads();
};

void tst_FeedMessage::defaultIsAnEmptyMessage()
{
    const FeedMessage message;
    for (const Field &field : fields())
        QVERIFY2(field.get(message) == field.defaultValue, field.name);
    QVERIFY(message.publishedDate().isNull());
    QVERIFY(message.downloadedTime().isNull());
    QVERIFY(message.baseUrl().isEmpty());
}

void tst_FeedMessage::fourArgumentConstructorSetsTheDownloadedTime()
{
    FeedMessage expected;
    QVariantList values = valuesOf(expected);
    values[0] = "title 1";
    values[1] = " http://a/1\n";
    values[3] = "description 1";
    values[8] = day(2);

    const FeedMessage message("title 1", " http://a/1\n", "description 1", day(2));
    QCOMPARE(valuesOf(message), values);
}

void tst_FeedMessage::fullConstructorPutsEachArgumentInItsField()
{
    const FeedMessage message = filled();
    for (const Field &field : fields())
        QVERIFY2(field.get(message) == field.constructed, field.name);
}

void tst_FeedMessage::setterChangesItsFieldOnly()
{
    QFETCH(int, index);
    const Field &field = fields()[size_t(index)];
    FeedMessage message = filled();
    QVariantList expected = valuesOf(message);
    QVERIFY(expected.at(index) != field.stored);
    expected[index] = field.stored;

    field.set(message, field.given);
    QCOMPARE(valuesOf(message), expected);
}

void tst_FeedMessage::setterOnACopyLeavesTheOriginal()
{
    QFETCH(int, index);
    const Field &field = fields()[size_t(index)];
    const FeedMessage original = filled();
    const QVariantList before = valuesOf(original);
    FeedMessage copy = original;

    field.set(copy, field.given);
    QCOMPARE(valuesOf(original), before);
    QCOMPARE(field.get(copy), field.stored);
}

void tst_FeedMessage::setterOnTheOriginalLeavesTheCopy()
{
    QFETCH(int, index);
    const Field &field = fields()[size_t(index)];
    FeedMessage original = filled();
    const QVariantList before = valuesOf(original);
    const FeedMessage copy = original;

    field.set(original, field.given);
    QCOMPARE(valuesOf(copy), before);
    QCOMPARE(field.get(original), field.stored);
}

void tst_FeedMessage::favoriteMayBeSetAndTakenBack()
{
    FeedMessage message;
    message.setFavorite(true);
    QVERIFY(message.isFavorite());
    message.setFavorite(false);
    QVERIFY(!message.isFavorite());
}

void tst_FeedMessage::copySharesTheRecord()
{
    const FeedMessage original = filled();
    const FeedMessage copy = original;
    QCOMPARE(recordOf(copy), recordOf(original));
    QCOMPARE(valuesOf(copy), valuesOf(filled()));
}

void tst_FeedMessage::assignmentSharesTheRecord()
{
    const FeedMessage original = filled();
    FeedMessage copy;
    FeedMessage &result = (copy = original);
    QCOMPARE(&result, &copy);
    QCOMPARE(recordOf(copy), recordOf(original));
    QCOMPARE(valuesOf(copy), valuesOf(filled()));
}

void tst_FeedMessage::assignmentWithinOneRecordChangesNothing()
{
    FeedMessage original = filled();
    const void *record = recordOf(original);
    {
        FeedMessage copy = original;
        copy = original;
        original = copy;
        QCOMPARE(recordOf(copy), record);
        QCOMPARE(recordOf(original), record);
    }
    QVERIFY(ownsItsRecordAlone(original));
    QCOMPARE(valuesOf(original), valuesOf(filled()));
}

void tst_FeedMessage::selfAssignmentChangesNothing()
{
    FeedMessage message = filled();
    const void *record = recordOf(message);
    const FeedMessage &alias = message;
    message = alias;
    QCOMPARE(recordOf(message), record);
    QVERIFY(ownsItsRecordAlone(message));
    QCOMPARE(valuesOf(message), valuesOf(filled()));
}

void tst_FeedMessage::moveLeavesAUsableObject()
{
    FeedMessage original = filled();
    FeedMessage moved = std::move(original);
    QVERIFY(recordOf(original));
    QCOMPARE(valuesOf(moved), valuesOf(filled()));

    FeedMessage assigned;
    assigned = std::move(moved);
    QVERIFY(recordOf(moved));
    QCOMPARE(valuesOf(assigned), valuesOf(filled()));
}

void tst_FeedMessage::detachMakesACopyOfAllFields()
{
    FeedMessage original = filled();
    original.setBaseUrl(QUrl("http://b/"));
    const void *record = recordOf(original);
    FeedMessage copy = original;

    copy.detach();
    QCOMPARE(recordOf(original), record);
    QVERIFY(recordOf(copy) != record);
    QCOMPARE(valuesOf(copy), valuesOf(original));
    QVERIFY(ownsItsRecordAlone(copy));
    QVERIFY(ownsItsRecordAlone(original));
}

void tst_FeedMessage::detachKeepsARecordThatIsNotShared()
{
    FeedMessage message = filled();
    const void *record = recordOf(message);
    message.detach();
    QCOMPARE(recordOf(message), record);
    message.setTitle("other");
    QCOMPARE(recordOf(message), record);
}

void tst_FeedMessage::lastOwnerDeletesTheRecord()
{
    QString title = QString("title ") + QString::number(1);
    QString uri = QString("urn:") + QString::number(1);
    {
        FeedMessage copy;
        {
            FeedMessage original;
            original.setTitle(title);
            original.addEnclosure(enclosure(uri));
            copy = original;
        }
        QVERIFY(!title.isDetached());
        QVERIFY(!uri.isDetached());
        QCOMPARE(copy.title(), title);
    }
    QVERIFY(title.isDetached());
    QVERIFY(uri.isDetached());
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
    QCOMPARE(valuesOf(message), valuesOf(filled()));
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

void tst_FeedMessage::copiesMayBeUsedInSeveralThreads()
{
    constexpr int Threads = 4;
    constexpr int Rounds = 20000;
    FeedMessage original = filled();
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([copy = original] {
            for (int round = 0; round < Rounds; ++round) {
                const FeedMessage second = copy;
                FeedMessage third = second;
                third.addEnclosure(second.enclosures());
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    threads.clear();
    QVERIFY(ownsItsRecordAlone(original));
    QCOMPARE(valuesOf(original), valuesOf(filled()));
}

QTEST_APPLESS_MAIN(tst_FeedMessage)
#include "tst_feedmessage.moc"
