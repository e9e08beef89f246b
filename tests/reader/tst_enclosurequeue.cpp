// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/enclosurequeue.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/retention.h>

using namespace Tidel;

class TestEnclosureQueue : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void order();
    void placeIsKept();
    void remove();
    void unknownEnclosures();
    void hostileUris();
    void times();
    void deletedEnclosure();
    void newest();
    void newestOfChannels();
    void newestBehindManyMessages();

private:
    EnclosureQueue queue() const { return EnclosureQueue(reader()); }
    void addMissing(const QString &name, const QString &message) const;
    QStringList newestNames(int count, const QStringList &channels = {}) const;
};

void TestEnclosureQueue::init()
{
    ReaderTestCase::init();
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b"}, "news", 1);
    addMessages({"r"}, "radio", 2);
}

/// Stores an enclosure that was never downloaded.
void TestEnclosureQueue::addMissing(const QString &name, const QString &message) const
{
    addEnclosure(name, messageUri(message));
    store().update(QString("DELETE { <%1> mfo:localLink ?l } INSERT { <%1> mfo:localLink <> } "
                           "WHERE { <%1> mfo:localLink ?l }")
                       .arg(enclosureUri(name)));
}

/// The names of the newest enclosures of the channels with the names \a channels.
QStringList TestEnclosureQueue::newestNames(int count, const QStringList &channels) const
{
    QStringList uris;
    for (const QString &name : channels)
        uris.append(channelUri(name));
    const Result<QStringList> newest = Enclosures(reader()).newest(count, uris);
    return newest ? QStringList(*newest).replaceInStrings("urn:enclosure:", "") : QStringList("failed");
}

void TestEnclosureQueue::order()
{
    QCOMPARE(*queue().uris(), QStringList());
    QStringList uris;
    // A millisecond each, so that one of them is that of a whole second.
    for (const QString &name : numberedNames("file", 1001)) {
        addEnclosure(name, messageUri("a"));
        uris.prepend(enclosureUri(name));
    }
    VERIFY_OK(queue().add(uris));
    QCOMPARE(*queue().uris(), uris);
}

void TestEnclosureQueue::placeIsKept()
{
    addEnclosure("one", messageUri("a"));
    addEnclosure("two", messageUri("a"));
    VERIFY_OK(queue().add({enclosureUri("one"), enclosureUri("two")}));
    QTest::qWait(5);
    VERIFY_OK(queue().add({enclosureUri("one"), enclosureUri("one")}));
    QCOMPARE(*queue().uris(), QStringList({enclosureUri("one"), enclosureUri("two")}));
    QCOMPARE(store().count("<urn:enclosure:one> tidel:queuedTime ?t"), 1);
}

void TestEnclosureQueue::remove()
{
    addEnclosure("one", messageUri("a"));
    addEnclosure("two", messageUri("a"));
    VERIFY_OK(queue().add({enclosureUri("one"), enclosureUri("two")}));
    VERIFY_OK(queue().remove({enclosureUri("one"), "urn:nothing"}));
    QCOMPARE(*queue().uris(), QStringList(enclosureUri("two")));
    VERIFY_OK(queue().remove({}));
    QCOMPARE(queue().uris()->size(), 1);
}

void TestEnclosureQueue::unknownEnclosures()
{
    VERIFY_OK(queue().add({"urn:nothing", messageUri("a")}));
    QCOMPARE(*queue().uris(), QStringList());
    QCOMPARE(store().count("<urn:nothing> a rdfs:Resource"), 0);
}

void TestEnclosureQueue::hostileUris()
{
    const QString hostile = "urn:x> \"2026-01-01T00:00:00Z\"^^xsd:dateTime) } } DELETE { ?s ?p ?o } #";
    const QStringList before = contents();
    queue().add({hostile});
    queue().remove({hostile});
    QVERIFY(queue().times({hostile}).value_or(QHash<QString, QDateTime>()).isEmpty());
    QCOMPARE(contents(), before);
}

void TestEnclosureQueue::times()
{
    addEnclosure("one", messageUri("a"));
    addEnclosure("two", messageUri("a"));
    const QDateTime before = QDateTime::currentDateTimeUtc();
    VERIFY_OK(queue().add({enclosureUri("one")}));
    const auto times = *queue().times({enclosureUri("one"), enclosureUri("two")});
    QCOMPARE(times.keys(), QStringList(enclosureUri("one")));
    const QDateTime time = times.value(enclosureUri("one"));
    QVERIFY(time >= before && time <= QDateTime::currentDateTimeUtc());
}

void TestEnclosureQueue::deletedEnclosure()
{
    addEnclosure("one", messageUri("b"));
    VERIFY_OK(queue().add({enclosureUri("one")}));
    VERIFY_OK(Retention(reader()).drop(channelUri("news"), {messageUri("b")}, {0, {}, true},
                                       [](int, const QList<FeedEnclosure> &) {}));
    QCOMPARE(*queue().uris(), QStringList());
    QCOMPARE(store().count("?e tidel:queuedTime ?t"), 0);
}

void TestEnclosureQueue::newest()
{
    addMissing("old", "a");
    addEnclosure("downloaded", messageUri("b"));
    addMissing("new", "b");
    addMissing("song", "r");
    store().update("INSERT DATA { <urn:enclosure:new> nie:isLogicalPartOf <urn:message:a> }");
    const QStringList all = newestNames(9);
    QCOMPARE(all.last(), QString("old"));
    QCOMPARE(sorted(all), QStringList({"new", "old", "song"}));
    QCOMPARE(newestNames(1), all.mid(0, 1));
    QCOMPARE(newestNames(0), QStringList());
}

void TestEnclosureQueue::newestOfChannels()
{
    addMissing("old", "a");
    addMissing("song", "r");
    QCOMPARE(newestNames(9, {"news"}), QStringList("old"));
    QCOMPARE(newestNames(9, {"radio"}), QStringList("song"));
    QCOMPARE(newestNames(1, {"news", "radio"}), QStringList("song"));
}

void TestEnclosureQueue::newestBehindManyMessages()
{
    addMessages({"first"}, "news");
    addMissing("old", "first");
    addMessages(numberedNames("later", 120), "news");
    QCOMPARE(newestNames(1), QStringList("old"));
}

QTEST_GUILESS_MAIN(TestEnclosureQueue)
#include "tst_enclosurequeue.moc"
