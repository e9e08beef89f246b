// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sharedvalue.h"

#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <QtTest>

#include <type_traits>
#include <vector>

#include <dlfcn.h>
#include <link.h>

static_assert(std::is_abstract_v<FeedNode>);
static_assert(sizeof(FeedNode) == sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedNode>);
static_assert(!std::is_destructible_v<FeedNode>, "nodes are destroyed as their own type");

static_assert(std::is_base_of_v<FeedNode, FeedEnclosure>);
static_assert(sizeof(FeedEnclosure) == 2 * sizeof(void *));
static_assert(!std::has_virtual_destructor_v<FeedEnclosure>);
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

using Field = SharedValueField<FeedEnclosure>;

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

FeedEnclosure filled()
{
    return FeedEnclosure("urn:1", "http://a/1", "file:///1", "media", 11, FeedEnclosure::Essential, 22, true);
}

/// A class that a host may derive, with a member of its own.
class MarkedEnclosure : public FeedEnclosure
{
public:
    MarkedEnclosure(const FeedEnclosure &enclosure, int ownMark) : FeedEnclosure(enclosure), mark(ownMark) { }

    int mark;
};

} // namespace

class tst_FeedEnclosure : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsAnEmptyOptionalEnclosure() { shared.defaultHasTheDefaultValues(); }
    void constructorPutsEachArgumentInItsField() { shared.constructorPutsEachArgumentInItsField(); }
    void setterChangesItsFieldOnly_data() { shared.addFieldRows(); }
    void setterChangesItsFieldOnly() { shared.setterChangesItsFieldOnly(); }
    void setterOnACopyLeavesTheOriginal_data() { shared.addFieldRows(); }
    void setterOnACopyLeavesTheOriginal() { shared.setterOnACopyLeavesTheOriginal(); }
    void setterOnTheOriginalLeavesTheCopy_data() { shared.addFieldRows(); }
    void setterOnTheOriginalLeavesTheCopy() { shared.setterOnTheOriginalLeavesTheCopy(); }
    void typeKeepsUnknownValues();
    void copySharesTheRecord() { shared.copySharesTheRecord(); }
    void assignmentSharesTheRecord() { shared.assignmentSharesTheRecord(); }
    void assignmentWithinOneRecordChangesNothing() { shared.assignmentWithinOneRecordChangesNothing(); }
    void selfAssignmentChangesNothing() { shared.selfAssignmentChangesNothing(); }
    void moveLeavesAUsableObject() { shared.moveLeavesAUsableObject(); }
    void detachMakesACopyOfAllFields();
    void detachKeepsARecordThatIsNotShared();
    void lastOwnerDeletesTheRecord();
    void assignmentDeletesAnUnusedRecord();
    void equalityComparesTheRemoteUrlOnly();
    void addChildChangesNothing();
    void addChildIsTheOnlyVirtualFunction();
    void castsFromNodeToEnclosure();
    void derivedClassIsAnEnclosure();
    void copiesMayBeUsedInSeveralThreads();

private:
    const SharedValueTests<FeedEnclosure> shared{fields(), filled};
};

void tst_FeedEnclosure::typeKeepsUnknownValues()
{
    FeedEnclosure enclosure;
    for (int value : {0, 1, 2, 3, 7, -1}) {
        enclosure.setType(FeedEnclosure::Type(value));
        QCOMPARE(int(enclosure.type()), value);
    }
}

void tst_FeedEnclosure::detachMakesACopyOfAllFields()
{
    FeedEnclosure original = filled();
    original.setMimeType("audio/ogg");
    original.setTypeIcon("audio-icon");
    shared.detachMakesACopyOfAllFields(original);
}

void tst_FeedEnclosure::detachKeepsARecordThatIsNotShared()
{
    shared.detachKeepsARecordThatIsNotShared([](FeedEnclosure &enclosure) { enclosure.setLength(5); });
}

void tst_FeedEnclosure::lastOwnerDeletesTheRecord()
{
    shared.lastOwnerDeletesTheRecord(
        1, [](FeedEnclosure &enclosure, const std::vector<QString> &texts) { enclosure.setUri(texts[0]); });
}

void tst_FeedEnclosure::assignmentDeletesAnUnusedRecord()
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
    QCOMPARE(shared.valuesOf(enclosure), shared.valuesOf(filled()));
}

void tst_FeedEnclosure::addChildIsTheOnlyVirtualFunction()
{
    void *const table = dlsym(RTLD_DEFAULT, "_ZTV13FeedEnclosure");
    QVERIFY(table);
    Dl_info info;
    void *entry = nullptr;
    QVERIFY(dladdr1(table, &info, &entry, RTLD_DL_SYMENT));
    // The table contains the offset to the top, the type information and one function.
    QCOMPARE(size_t(static_cast<const ElfW(Sym) *>(entry)->st_size), 3 * sizeof(void *));
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

void tst_FeedEnclosure::derivedClassIsAnEnclosure()
{
    MarkedEnclosure marked(filled(), 7);
    const MarkedEnclosure copy = marked;
    MarkedEnclosure assigned(FeedEnclosure(), 0);
    assigned = copy;
    QCOMPARE(assigned.mark, 7);
    QCOMPARE(recordOf(static_cast<const FeedEnclosure &>(assigned)),
             recordOf(static_cast<const FeedEnclosure &>(marked)));

    marked.setRemoteUrl("http://a/2");
    QCOMPARE(marked.remoteUrl(), QString("http://a/2"));
    QCOMPARE(shared.valuesOf(copy), shared.valuesOf(filled()));
    const FeedEnclosure enclosure = copy;
    QCOMPARE(shared.valuesOf(enclosure), shared.valuesOf(filled()));

    FeedMessage message;
    message.addChild(&marked);
    QCOMPARE(recordOf(message.enclosures().constFirst()), recordOf(static_cast<FeedEnclosure &>(marked)));
}

void tst_FeedEnclosure::copiesMayBeUsedInSeveralThreads()
{
    shared.copiesMayBeUsedInSeveralThreads([](FeedEnclosure &enclosure, const FeedEnclosure &, int thread) {
        enclosure.setLength(unsigned(thread));
    });
}

QTEST_APPLESS_MAIN(tst_FeedEnclosure)
#include "tst_feedenclosure.moc"
