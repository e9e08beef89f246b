// SPDX-License-Identifier: LGPL-2.1-or-later
#include "deletions.h"
#include "statements.h"
#include "storetest.h"

#include <smallfiles.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Deletions;
namespace S = Statements;

namespace {

QStringList traced(const char *function, const QString &statementLine)
{
    return {debugLine(function, {quoted(statementLine.section(": ", 1))}), statementLine};
}

} // namespace

/// Tests of updates that the store cannot write to the disk.
class TestFullDisk : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void failedUpdateLeavesTheStoreAsItIs_data();
    void failedUpdateLeavesTheStoreAsItIs();
    void nothingIsAdded();
};

void TestFullDisk::failedUpdateLeavesTheStoreAsItIs_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const Operation &operation, const QStringList &journal,
                        const QString &error) { QTest::newRow(name) << operation << journal << error; };
    const auto returning = [](const std::function<void()> &operation) {
        return [operation] {
            operation();
            return true;
        };
    };
    const auto withStatement = [](const QString &text, const QStringList &journal) {
        return text + ' ' + quoted(journal.last().section(": ", 1)) + ' ';
    };

    FeedChannel channel;
    channel.setUri("urn:c:1");
    QStringList journal = QStringList(selectLine(S::channelToUpdate("urn:c:1")))
        + traced("updateChannel", insertLine(S::channelUpdate(channel)));
    row(
        "updateChannel", [=] { return !tracker()->updateChannel(channel); }, journal,
        withStatement("updateChannel: Query Execution Failed - update Channel", journal));

    const QStringList found = traced("editChannel", selectLine(S::channelToEdit("urn:c:1")));
    journal = found + traced("editChannel", selectLine(S::linkOfChannel("urn:c:1")))
        + traced("editChannel",
                 insertLine(S::linkEdit("urn:c:1", "http://example.org/feed/1", "http://example.org/new",
                                        "2020-01-01T00:00:00Z")));
    row(
        "editChannel, link",
        [=] {
            return !tracker()->editChannel("urn:c:1",
                                           {{FeedTrackerSparql::LinkKey, "http://example.org/new"}});
        },
        journal, withStatement("editChannel: Query Execution Failed - link Query", journal));
    journal = found + traced("editChannel", insertLine(S::titleEdit("urn:c:1", "New")));
    row(
        "editChannel, title",
        [=] {
            return !tracker()->editChannel("urn:c:1", {{FeedTrackerSparql::TitleKey, "New"}});
        },
        journal, withStatement("editChannel: Query Execution Failed!!!", journal));
    journal =
        found + traced("editChannel", insertLine(S::lastModifiedTimeEdit("urn:c:1", "2021-01-01T00:00:00Z")));
    row(
        "editChannel, last-modified time",
        [=] {
            return !tracker()->editChannel(
                "urn:c:1", {{FeedTrackerSparql::LastModifiedTimeKey, "2021-01-01T00:00:00Z"}});
        },
        journal, withStatement("editChannel: Updation of Last Modified time failed", journal));

    journal = traced("deleteChannel", selectLine(S::channelToDelete("urn:c:1")))
        + QStringList(deleteLine(S::channelDeletion("urn:c:1", "http://example.org/feed/1")));
    row("deleteChannel", returning([=] { tracker()->deleteChannel("urn:c:1"); }), journal,
        withStatement("deleteChannel: Query Execution Failed ", journal));

    journal = traced("deleteMessage", selectLine(S::messageToDelete("urn:m:2", "urn:c:1")))
        + enclosuresOfMessageJournal("urn:m:2", {})
        + QStringList(deleteLine(S::messageDeletion("urn:m:2", "http://example.org/2")));
    row("deleteMessage", returning([=] { tracker()->deleteMessage("urn:m:2", "urn:c:1"); }), journal,
        withStatement("deleteMessage: Query Execution failed", journal));

    row("deleteMessages", returning([=] { tracker()->deleteMessages(messageUris({"1"})); }),
        throughStatement(messageJournal({{"1", {"1"}}}), 0),
        "deleteMessages(QList<QUrl>): Delete Query Failed QSparqlError(");
    row("deleteEnclosures", returning([=] { tracker()->deleteEnclosures(enclosureUris({"1"})); }),
        throughStatement(enclosureJournal({"1"}), 1),
        "deleteEnclosures(QList<QUrl>): Delete Query Failed QSparqlError(");

    journal = QStringList({selectLine(S::imageFile("urn:c:1")), deleteLine(S::imageDeletion("urn:c:1"))});
    row("deleteChannelImage", returning([=] { tracker()->deleteChannelImage("urn:c:1"); }), journal,
        withStatement("deleteChannelImage: Query Execution Failed", journal));
    row("deleteChannelImageIfNotInUse",
        returning([=] { tracker()->deleteChannelImageIfNotInUse("urn:c:1", "/image.png"); }), journal,
        withStatement("deleteChannelImageIfNotInUse: Query Execution Failed", journal));

    journal = QStringList(deleteLine(S::orphanMessageDeletion()));
    row("deleteOrphanMessages", returning([=] { tracker()->deleteOrphanMessages(); }), journal,
        withStatement("deleteOrphanMessages: Error in query execution: ", journal));
    journal = QStringList({selectLine(S::orphanEnclosures()),
                           debugLine("deleteOrphanEnclosures", {"enclosure deletion count: ", "1"}),
                           deleteLine(S::orphanEnclosureDeletion())});
    row("deleteOrphanEnclosures", returning([=] { tracker()->deleteOrphanEnclosures(); }), journal,
        withStatement("deleteOrphanEnclosures: Query preperation failed: ", journal));
}

void TestFullDisk::failedUpdateLeavesTheStoreAsItIs()
{
    QFETCH(Operation, operation);
    QFETCH(QStringList, journal);
    QFETCH(QString, error);
    const QTemporaryDir folder;
    QFile image(folder.filePath("image.png"));
    QVERIFY(image.open(QIODevice::WriteOnly));
    store().update(storedChannel("1", "mfo:image '/image.png'") + storedMessage("1", {"urn:c:1"})
                   + storedEnclosure("1", {"urn:m:1"}) + storedMessage("2", {"urn:c:1"})
                   + storedMessage("orphan", {}) + storedEnclosure("orphan", {"urn:deleted"})
                   + QString("INSERT { <urn:i> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; "
                             "mfo:localLink <%1> ; nie:isLogicalPartOf <urn:c:1> }")
                         .arg(image.fileName()));
    const QStringList before = everythingIn(store());
    bool isAsExpected = false;
    QStringList lines = journalOf([&] {
        const SmallFiles disk(0);
        isAsExpected = operation();
    });
    const QString last = lines.takeLast();
    QCOMPARE(lines, journal);
    QVERIFY2(last.startsWith("critical " + error), qPrintable(last));
    QVERIFY(isAsExpected);
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(image.exists());

    // With space on the disk, the same operation succeeds.
    QCOMPARE(journalOf([&] { operation(); }).mid(0, journal.size()), journal);
    QVERIFY(everythingIn(store()) != before);
}

void TestFullDisk::nothingIsAdded()
{
    FeedEnclosure enclosure;
    enclosure.setRemoteUrl("http://example.org/1.ogg");
    enclosure.setTypeIcon("/new.png");
    FeedChannel channel;
    channel.setLink("http://example.org/feed");
    const FeedMessage message("T", "http://example.org/message", "D", QDateTime());
    store().update(storedEnclosure("1", {"urn:m:1"}, "mfo:image '/old.png'"));
    const QStringList before = everythingIn(store());
    {
        const SmallFiles disk(0);
        QCOMPARE(tracker()->addChannel(channel), QString());
        QVERIFY(!tracker()->addMessages({message}, "urn:c:1"));
        QVERIFY(!tracker()->addEnclosures({enclosure}, "urn:m:2"));
        QVERIFY(!tracker()->updateEnclosure(enclosure));
    }
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(!tracker()->addChannel(channel).isEmpty());
    QVERIFY(tracker()->addMessages({message}, "urn:c:1"));
    QVERIFY(tracker()->addEnclosures({enclosure}, "urn:m:2"));
    QVERIFY(tracker()->updateEnclosure(enclosure));
}

QTEST_GUILESS_MAIN(TestFullDisk)
#include "tst_fulldisk.moc"
