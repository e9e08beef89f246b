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

static_assert(std::is_abstract_v<FeedNode>);
static_assert(sizeof(FeedNode) == sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedNode>);
static_assert(!std::is_destructible_v<FeedNode>, "nodes are destroyed as what they are");

static_assert(std::is_base_of_v<FeedNode, FeedEnclosure>);
static_assert(sizeof(FeedEnclosure) == 2 * sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedEnclosure>);
static_assert(std::is_final_v<FeedEnclosure>, "nothing derived may be deleted without its destructor");
static_assert(std::is_default_constructible_v<FeedEnclosure>);
static_assert(std::is_copy_constructible_v<FeedEnclosure>);
static_assert(std::is_copy_assignable_v<FeedEnclosure>);
static_assert(!std::is_convertible_v<QString, FeedEnclosure>);

static_assert(std::is_same_v<std::underlying_type_t<FeedEnclosure::Type>, int>);
static_assert(std::is_convertible_v<FeedEnclosure::Type, int>, "a plain enumeration");
static_assert(FeedEnclosure::Essential == 1);
static_assert(FeedEnclosure::Optional == 2);

static_assert(
    std::is_same_v<decltype(&FeedEnclosure::operator==), bool (FeedEnclosure::*)(const FeedEnclosure &)>);

namespace {

struct Field
{
    const char *name;
    QVariant (*get)(const FeedEnclosure &);
    void (*set)(FeedEnclosure &, const QVariant &);
    QVariant defaultValue;
    QVariant constructed;
    QVariant other;
};

const std::vector<Field> &fields()
{
    using E = FeedEnclosure;
    using V = QVariant;
    static const std::vector<Field> all{
        {"uri", [](const E &e) { return V(e.uri()); }, [](E &e, const V &v) { e.setUri(v.toString()); }, "",
         "urn:1", " urn:2\n"},
        {"remoteUrl", [](const E &e) { return V(e.remoteUrl()); },
         [](E &e, const V &v) { e.setRemoteUrl(v.toString()); }, "", "http://a/1", " http://a/2\n"},
        {"localUrl", [](const E &e) { return V(e.localUrl()); },
         [](E &e, const V &v) { e.setLocalUrl(v.toString()); }, "", "file:///1", " file:///2\n"},
        {"sourceNamespace", [](const E &e) { return V(e.sourceNamespace()); },
         [](E &e, const V &v) { e.setsourceNamespace(v.toString()); }, "", "media", " itunes\n"},
        {"length", [](const E &e) { return V(e.length()); },
         [](E &e, const V &v) { e.setLength(v.toUInt()); }, 0u, 11u, 4294967295u},
        {"type", [](const E &e) { return V(int(e.type())); },
         [](E &e, const V &v) { e.setType(FeedEnclosure::Type(v.toInt())); }, 2, 1, 7},
        {"groupId", [](const E &e) { return V(e.groupId()); },
         [](E &e, const V &v) { e.setGroupId(v.toUInt()); }, 0u, 22u, 4294967294u},
        {"isDefault", [](const E &e) { return V(e.isDefault()); },
         [](E &e, const V &v) { e.setDefault(v.toBool()); }, false, true, false},
        {"mimeType", [](const E &e) { return V(e.mimeType()); },
         [](E &e, const V &v) { e.setMimeType(v.toString()); }, "", "", " audio/ogg\n"},
        {"typeIcon", [](const E &e) { return V(e.typeIcon()); },
         [](E &e, const V &v) { e.setTypeIcon(v.toString()); }, "", "", " audio-icon\n"},
    };
    return all;
}

QVariantList valuesOf(const FeedEnclosure &enclosure)
{
    QVariantList values;
    for (const Field &field : fields())
        values.append(field.get(enclosure));
    return values;
}

FeedEnclosure filled()
{
    return FeedEnclosure("urn:1", "http://a/1", "file:///1", "media", 11, FeedEnclosure::Essential, 22, true);
}

// The record is all that an enclosure holds beside its virtual table.
const void *recordOf(const FeedEnclosure &enclosure)
{
    const void *record = nullptr;
    std::memcpy(&record, reinterpret_cast<const char *>(&enclosure) + sizeof(void *), sizeof record);
    return record;
}

bool ownsItsRecordAlone(FeedEnclosure &enclosure)
{
    const void *before = recordOf(enclosure);
    enclosure.detach();
    return recordOf(enclosure) == before;
}

void addFieldRows()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < fields().size(); ++i)
        QTest::newRow(fields()[i].name) << int(i);
}

} // namespace

class tst_FeedEnclosure : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsAnEmptyOptionalEnclosure();
    void constructorPutsEachArgumentInItsField();
    void setterChangesItsFieldOnly_data() { addFieldRows(); }
    void setterChangesItsFieldOnly();
    void setterOnACopyLeavesTheOriginal_data() { addFieldRows(); }
    void setterOnACopyLeavesTheOriginal();
    void setterOnTheOriginalLeavesTheCopy_data() { addFieldRows(); }
    void setterOnTheOriginalLeavesTheCopy();
    void typeKeepsUnknownValues();
    void copySharesTheRecord();
    void assignmentSharesTheRecord();
    void assignmentWithinOneRecordChangesNothing();
    void selfAssignmentChangesNothing();
    void moveLeavesAUsableObject();
    void detachMakesACopyOfAllFields();
    void detachKeepsARecordThatIsNotShared();
    void lastOwnerDeletesTheRecord();
    void assignmentDeletesTheRecordThatNobodyHolds();
    void equalityComparesTheRemoteUrlOnly();
    void addChildChangesNothing();
    void castsFromNodeToEnclosure();
    void copiesMayBeUsedInSeveralThreads();
};

void tst_FeedEnclosure::defaultIsAnEmptyOptionalEnclosure()
{
    const FeedEnclosure enclosure;
    for (const Field &field : fields())
        QVERIFY2(field.get(enclosure) == field.defaultValue, field.name);
}

void tst_FeedEnclosure::constructorPutsEachArgumentInItsField()
{
    const FeedEnclosure enclosure = filled();
    for (const Field &field : fields())
        QVERIFY2(field.get(enclosure) == field.constructed, field.name);
}

void tst_FeedEnclosure::setterChangesItsFieldOnly()
{
    QFETCH(int, index);
    const Field &field = fields()[size_t(index)];
    FeedEnclosure enclosure = filled();
    QVariantList expected = valuesOf(enclosure);
    QVERIFY(expected.at(index) != field.other);
    expected[index] = field.other;

    field.set(enclosure, field.other);
    QCOMPARE(valuesOf(enclosure), expected);
}

void tst_FeedEnclosure::setterOnACopyLeavesTheOriginal()
{
    QFETCH(int, index);
    const Field &field = fields()[size_t(index)];
    const FeedEnclosure original = filled();
    const QVariantList before = valuesOf(original);
    FeedEnclosure copy = original;

    field.set(copy, field.other);
    QCOMPARE(valuesOf(original), before);
    QCOMPARE(field.get(copy), field.other);
}

void tst_FeedEnclosure::setterOnTheOriginalLeavesTheCopy()
{
    QFETCH(int, index);
    const Field &field = fields()[size_t(index)];
    FeedEnclosure original = filled();
    const QVariantList before = valuesOf(original);
    const FeedEnclosure copy = original;

    field.set(original, field.other);
    QCOMPARE(valuesOf(copy), before);
    QCOMPARE(field.get(original), field.other);
}

void tst_FeedEnclosure::typeKeepsUnknownValues()
{
    FeedEnclosure enclosure;
    for (int value : {0, 1, 2, 3, 7, -1}) {
        enclosure.setType(FeedEnclosure::Type(value));
        QCOMPARE(int(enclosure.type()), value);
    }
}

void tst_FeedEnclosure::copySharesTheRecord()
{
    FeedEnclosure original = filled();
    FeedEnclosure copy = original;
    QCOMPARE(recordOf(copy), recordOf(original));
    QCOMPARE(valuesOf(copy), valuesOf(filled()));
}

void tst_FeedEnclosure::assignmentSharesTheRecord()
{
    FeedEnclosure original = filled();
    FeedEnclosure copy;
    FeedEnclosure &result = (copy = original);
    QCOMPARE(&result, &copy);
    QCOMPARE(recordOf(copy), recordOf(original));
    QCOMPARE(valuesOf(copy), valuesOf(filled()));
}

void tst_FeedEnclosure::assignmentWithinOneRecordChangesNothing()
{
    FeedEnclosure original = filled();
    const void *record = recordOf(original);
    {
        FeedEnclosure copy = original;
        copy = original;
        original = copy;
        QCOMPARE(recordOf(copy), record);
        QCOMPARE(recordOf(original), record);
    }
    QVERIFY(ownsItsRecordAlone(original));
    QCOMPARE(valuesOf(original), valuesOf(filled()));
}

void tst_FeedEnclosure::selfAssignmentChangesNothing()
{
    FeedEnclosure enclosure = filled();
    const void *record = recordOf(enclosure);
    const FeedEnclosure &alias = enclosure;
    enclosure = alias;
    QCOMPARE(recordOf(enclosure), record);
    QVERIFY(ownsItsRecordAlone(enclosure));
    QCOMPARE(valuesOf(enclosure), valuesOf(filled()));
}

void tst_FeedEnclosure::moveLeavesAUsableObject()
{
    FeedEnclosure original = filled();
    FeedEnclosure moved = std::move(original);
    QVERIFY(recordOf(original));
    QVERIFY(recordOf(moved));
    QCOMPARE(valuesOf(moved), valuesOf(filled()));

    FeedEnclosure assigned;
    assigned = std::move(moved);
    QVERIFY(recordOf(moved));
    QCOMPARE(valuesOf(assigned), valuesOf(filled()));
}

void tst_FeedEnclosure::detachMakesACopyOfAllFields()
{
    FeedEnclosure original = filled();
    original.setMimeType("audio/ogg");
    original.setTypeIcon("audio-icon");
    const void *record = recordOf(original);
    FeedEnclosure copy = original;

    copy.detach();
    QCOMPARE(recordOf(original), record);
    QVERIFY(recordOf(copy) != record);
    QCOMPARE(valuesOf(copy), valuesOf(original));
    QVERIFY(ownsItsRecordAlone(copy));
    QVERIFY(ownsItsRecordAlone(original));
}

void tst_FeedEnclosure::detachKeepsARecordThatIsNotShared()
{
    FeedEnclosure enclosure = filled();
    const void *record = recordOf(enclosure);
    enclosure.detach();
    QCOMPARE(recordOf(enclosure), record);
    enclosure.setLength(5);
    QCOMPARE(recordOf(enclosure), record);
}

void tst_FeedEnclosure::lastOwnerDeletesTheRecord()
{
    QString text = QString("urn:") + QString::number(1);
    {
        FeedEnclosure copy;
        {
            FeedEnclosure original;
            original.setUri(text);
            copy = original;
        }
        QVERIFY(!text.isDetached());
        QCOMPARE(copy.uri(), text);
    }
    QVERIFY(text.isDetached());
}

void tst_FeedEnclosure::assignmentDeletesTheRecordThatNobodyHolds()
{
    QString text = QString("urn:") + QString::number(1);
    FeedEnclosure enclosure;
    enclosure.setUri(text);
    QVERIFY(!text.isDetached());
    enclosure = FeedEnclosure();
    QVERIFY(text.isDetached());
}

void tst_FeedEnclosure::equalityComparesTheRemoteUrlOnly()
{
    FeedEnclosure one = filled();
    FeedEnclosure two;
    QVERIFY(!(one == two));

    two.setRemoteUrl(one.remoteUrl());
    QVERIFY(one == two);
    QVERIFY(two == one);

    FeedEnclosure sameButElsewhere = filled();
    sameButElsewhere.setRemoteUrl("http://A/1");
    QVERIFY(!(one == sameButElsewhere));

    one.setRemoteUrl(QString());
    two.setRemoteUrl("");
    QVERIFY(one == two);
}

void tst_FeedEnclosure::addChildChangesNothing()
{
    FeedEnclosure enclosure = filled();
    const FeedEnclosure copy = enclosure;
    FeedEnclosure childEnclosure;
    FeedMessage childMessage;
    FeedChannel childChannel;

    FeedNode *children[] = {nullptr, &childEnclosure, &childMessage, &childChannel, &enclosure};
    for (FeedNode *child : children)
        static_cast<FeedNode *>(&enclosure)->addChild(child);
    QCOMPARE(recordOf(enclosure), recordOf(copy));
    QCOMPARE(valuesOf(enclosure), valuesOf(filled()));
}

void tst_FeedEnclosure::castsFromNodeToEnclosure()
{
    FeedEnclosure enclosure;
    FeedMessage message;
    FeedNode *node = &enclosure;
    QCOMPARE(dynamic_cast<FeedEnclosure *>(node), &enclosure);
    QVERIFY(!dynamic_cast<FeedMessage *>(node));
    node = &message;
    QVERIFY(!dynamic_cast<FeedEnclosure *>(node));
}

void tst_FeedEnclosure::copiesMayBeUsedInSeveralThreads()
{
    constexpr int Threads = 4;
    constexpr int Rounds = 20000;
    FeedEnclosure original = filled();
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([copy = original, i] {
            for (int round = 0; round < Rounds; ++round) {
                const FeedEnclosure second = copy;
                FeedEnclosure third = second;
                third.setLength(unsigned(i));
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    threads.clear();
    QVERIFY(ownsItsRecordAlone(original));
    QCOMPARE(valuesOf(original), valuesOf(filled()));
}

QTEST_APPLESS_MAIN(tst_FeedEnclosure)
#include "tst_feedenclosure.moc"
