// SPDX-License-Identifier: LGPL-2.1-or-later
#include "deletions.h"
#include "statements.h"
#include "storetest.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <type_traits>

using namespace Deletions;
namespace S = Statements;

using Store = FeedTrackerSparql;
static_assert(std::is_same_v<decltype(&Store::deleteChannelImage), void (Store::*)(const QString &) const>);
static_assert(std::is_same_v<decltype(&Store::deleteChannelImageIfNotInUse),
                             void (Store::*)(const QString &, const QString &) const>);

namespace {

QStringList failureOfMessageForm(const QStringList &items)
{
    return QStringList(criticalLine("deleteEnclosures(const QString&)", items));
}

QStringList failureOfListForm(const QStringList &items)
{
    return QStringList(criticalLine("deleteEnclosures(QList<QUrl>)", items));
}

/// Returns the trace for a list without stored enclosures, which is not a failure.
QStringList nothingFound()
{
    return QStringList(debugLine("deleteEnclosures(QList<QUrl>)", {"No enclosures found"}));
}

QStringList imageJournal(const QString &channelUri = "urn:c:1")
{
    return {selectLine(S::imageFile(channelUri)), deleteLine(S::imageDeletion(channelUri))};
}

QStringList imageIfNotInUseJournal(const QString &image)
{
    return imageJournal() + QStringList(selectLine(S::imageUsers(image)));
}

} // namespace

class TestDeleteEnclosures : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void emptyMessageUriIsRefused();
    void messageWithoutEnclosures_data();
    void messageWithoutEnclosures();
    void enclosuresOfAMessageAreDeleted();
    void enclosureOfTwoMessagesSurvives_data();
    void enclosureOfTwoMessagesSurvives();
    void onlyMessagesProtectAnEnclosure();
    void messageUriIsBoundAsAResource();
    void failureOfAMessage_data();
    void failureOfAMessage();

    void emptyListIsRefused();
    void unknownEnclosuresAreNotAnnounced();
    void listIsOneUpdateInItsOrder();
    void listIsDeletedDespiteOtherOwners();
    void resourceThatIsNoEnclosureStays();
    void incompleteEnclosureStays_data();
    void incompleteEnclosureStays();
    void eachRowIsAnnounced();
    void failingLookupSkipsThatEnclosureOnly_data();
    void failingLookupSkipsThatEnclosureOnly();
    void failureOfAList_data();
    void failureOfAList();
    void hundredsOfEnclosures();
    void filesOfEnclosuresAreLeftToTheHost();

    void signalComesOnceBeforeTheReturn();
    void receiverMayChangeTheList();
    void updateIsReleasedWhenTheSignalComes();
    void receiverMayUseTheStore();

    void imageIsDeletedWithItsFile();
    void imageNodesAreDeletedToo();
    void channelWithoutImage();
    void onlyTheFirstFileIsRemoved();
    void pathsAndUrls_data();
    void pathsAndUrls();
    void foldersAndTargetsOfLinksStay();
    void imageWithoutRemoteLinkStaysWithoutItsFile();
    void imageOfAnotherChannelStays();
    void imageOfTwoChannelsIsDeletedForBoth();
    void enclosuresOfMessagesAreNoImages();
    void emptyChannelUriKeepsOtherImages();
    void imageFailure_data();
    void imageFailure();

    void imageInUseKeepsItsFile();
    void unusedImageIsDeletedWithItsFile_data();
    void unusedImageIsDeletedWithItsFile();
    void channelThatIsStoredUsesItsOwnImage();
    void imageIsComparedAsText();
    void imageIfNotInUseFailure_data();
    void imageIfNotInUseFailure();

private:
    /// Creates a file and returns its path.
    QString file(const QString &name) const;
    /// Stores the image <urn:i> of <urn:c:1>.
    void storeImage(const QString &localLink, const QString &uri = "urn:i") const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestDeleteEnclosures::init()
{
    StoreTestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
}

QString TestDeleteEnclosures::file(const QString &name) const
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void TestDeleteEnclosures::storeImage(const QString &localLink, const QString &uri) const
{
    store().update(QString("INSERT { <%1> a mfo:Enclosure ; mfo:remoteLink <http://example.org/i.png> ; "
                           "mfo:localLink <%2> ; nie:isLogicalPartOf <urn:c:1> }")
                       .arg(uri, localLink));
}

void TestDeleteEnclosures::emptyMessageUriIsRefused()
{
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(QString()); }),
             failureOfMessageForm({"messageUri empty"}));
}

void TestDeleteEnclosures::messageWithoutEnclosures_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("without enclosures") << "urn:m:1";
    QTest::newRow("unknown") << "urn:unknown";
}

void TestDeleteEnclosures::messageWithoutEnclosures()
{
    QFETCH(QString, uri);
    store().update(storedMessage("1", {}) + storedMessage("2", {}) + storedEnclosure("2", {"urn:m:2"}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(uri); }), enclosuresOfMessageJournal(uri, {}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::enclosuresOfAMessageAreDeleted()
{
    store().update(storedMessage("1", {}) + storedMessage("2", {}) + storedEnclosure("2", {"urn:m:2"}));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("1", {"urn:m:1"}) + storedEnclosure("3", {"urn:m:1"}));
    QStringList names;
    for (const QString &uri : store().texts(S::enclosuresToDelete("urn:m:1")))
        names.append(uri.section(':', 2));
    QCOMPARE(names.size(), 2);
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(QString("urn:m:1")); }),
             enclosuresOfMessageJournal("urn:m:1", names));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::enclosureOfTwoMessagesSurvives_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("first") << "urn:m:1";
    QTest::newRow("second") << "urn:m:2";
}

void TestDeleteEnclosures::enclosureOfTwoMessagesSurvives()
{
    QFETCH(QString, uri);
    store().update(storedMessage("1", {}) + storedMessage("2", {})
                   + storedEnclosure("shared", {"urn:m:1", "urn:m:2"}));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("own", {uri}));
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(uri); }), enclosuresOfMessageJournal(uri, {"own"}));
    QCOMPARE(everythingIn(store()), before);
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(uri); }), enclosuresOfMessageJournal(uri, {}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::onlyMessagesProtectAnEnclosure()
{
    store().update(storedMessage("1", {}) + storedChannel("1")
                   + storedEnclosure("1", {"urn:m:1", "urn:c:1", "urn:deleted"}));
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(QString("urn:m:1")); }),
             enclosuresOfMessageJournal("urn:m:1", {"1"}));
    QVERIFY(!subjectsIn(store()).contains("urn:e:1"));
}

void TestDeleteEnclosures::messageUriIsBoundAsAResource()
{
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(QString("urn:a b\">")); }),
             enclosuresOfMessageJournal("urn:a%20b%22%3E", {}));
}

void TestDeleteEnclosures::failureOfAMessage_data()
{
    addFailureColumns();
    const QStringList all = enclosuresOfMessageJournal("urn:m:1", {"1"});
    const auto row = [=](const QString &name, const Intervention &intervention, const QStringList &rest) {
        addFailureRow(
            name,
            [=] {
                tracker()->deleteEnclosures(QString("urn:m:1"));
                return true;
            },
            {intervention}, throughStatement(all, intervention.statement) + rest);
    };
    row("no result", {0, StatementGate::NoResult}, failureOfMessageForm({"Query Execution failed"}));
    row("refused", {0, StatementGate::Refuse},
        failureOfMessageForm({"Query execution failed ", quoted(S::enclosuresToDelete("urn:m:1"))}));
    row("lookup, no result", {1, StatementGate::NoResult},
        failureOfListForm({"Query Execution failed"}) + nothingFound());
    row("lookup, refused", {1, StatementGate::Refuse},
        failureOfListForm({"Not able to find enclosure information", quoted(S::enclosureToDelete("urn:e:1"))})
            + nothingFound());
    row("update, no result", {2, StatementGate::NoResult}, failureOfListForm({"Query Execution failed"}));
}

void TestDeleteEnclosures::failureOfAMessage()
{
    store().update(storedMessage("1", {}) + storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::emptyListIsRefused()
{
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(QList<QUrl>()); }),
             failureOfListForm({"Nothing to delete"}));
}

void TestDeleteEnclosures::unknownEnclosuresAreNotAnnounced()
{
    store().update(storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] {
                 tracker()->deleteEnclosures(enclosureUris({"a", "b"}));
             }),
             QStringList(
                 {selectLine(S::enclosureToDelete("urn:e:a")), selectLine(S::enclosureToDelete("urn:e:b"))})
                 + nothingFound());
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::listIsOneUpdateInItsOrder()
{
    store().update(storedEnclosure("4", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    for (const char *name : {"1", "2", "3"})
        store().update(storedEnclosure(name, {"urn:m:1"}));
    const QStringList all = enclosureJournal({"3", "1", "2"});
    QCOMPARE(journalOf([&] {
                 tracker()->deleteEnclosures(enclosureUris({"3", "unknown", "1", "2"}));
             }),
             all.mid(0, 1) + QStringList(selectLine(S::enclosureToDelete("urn:e:unknown"))) + all.mid(1));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::listIsDeletedDespiteOtherOwners()
{
    store().update(storedMessage("1", {}) + storedMessage("2", {}) + storedChannel("1"));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("1", {"urn:m:1", "urn:m:2", "urn:c:1"}));
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(enclosureUris({"1"})); }), enclosureJournal({"1"}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::resourceThatIsNoEnclosureStays()
{
    store().update(storedMessage("1", {}) + storedChannel("1"));
    const QStringList before = everythingIn(store());
    tracker()->deleteEnclosures({QUrl("urn:m:1"), QUrl("urn:c:1"), QUrl("http://example.org/feed/1")});
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::incompleteEnclosureStays_data()
{
    QTest::addColumn<QString>("properties");
    QTest::newRow("no remote link") << "; mfo:localLink <file:///1.ogg>";
    QTest::newRow("no local link") << "; mfo:remoteLink <http://example.org/1.ogg>";
    QTest::newRow("neither") << "";
}

void TestDeleteEnclosures::incompleteEnclosureStays()
{
    QFETCH(QString, properties);
    store().update("INSERT { <urn:e:1> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m:1> " + properties + " }");
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(QString("urn:m:1")); }),
             QStringList(
                 {selectLine(S::enclosuresToDelete("urn:m:1")), selectLine(S::enclosureToDelete("urn:e:1"))})
                 + nothingFound());
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::eachRowIsAnnounced()
{
    store().update(storedEnclosure("1", {"urn:m:1"}, "mfo:localLink <file:///copy.ogg>"));
    QList<FeedEnclosure> list;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this,
            [&list](const QList<FeedEnclosure> &enclosures) { list = enclosures; });
    const QStringList journal = journalOf([&] { tracker()->deleteEnclosures(enclosureUris({"1"})); });
    QCOMPARE(journal.at(1), deleteLine(S::enclosurePiece("urn:e:1") + S::enclosurePiece("urn:e:1")));
    QCOMPARE(list.size(), 2);
    QStringList files = {list.at(0).localUrl(), list.at(1).localUrl()};
    files.sort();
    QCOMPARE(files, QStringList({"file:///1.ogg", "file:///copy.ogg"}));
    QCOMPARE(everythingIn(store()), QStringList());

    store().update(storedEnclosure("1", {"urn:m:1"}));
    QCOMPARE(journalOf([&] {
                 tracker()->deleteEnclosures(enclosureUris({"1", "1"}));
             }),
             enclosureJournal({"1", "1"}));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteEnclosures::failingLookupSkipsThatEnclosureOnly_data()
{
    QTest::addColumn<int>("verdict");
    QTest::addColumn<QStringList>("trace");
    QTest::newRow("no result") << int(StatementGate::NoResult)
                               << failureOfListForm({"Query Execution failed"});
    QTest::newRow("refused") << int(StatementGate::Refuse)
                             << failureOfListForm({"Not able to find enclosure information",
                                                   quoted(S::enclosureToDelete("urn:e:2"))});
}

void TestDeleteEnclosures::failingLookupSkipsThatEnclosureOnly()
{
    QFETCH(int, verdict);
    QFETCH(QStringList, trace);
    store().update(storedEnclosure("2", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("1", {"urn:m:1"}) + storedEnclosure("3", {"urn:m:1"}));
    const QStringList all = enclosureJournal({"1", "3"});
    QCOMPARE(journalOf(
                 [&] {
                     tracker()->deleteEnclosures(enclosureUris({"1", "2", "3"}));
                 },
                 {{1, StatementGate::Verdict(verdict)}}),
             all.mid(0, 1) + QStringList(selectLine(S::enclosureToDelete("urn:e:2"))) + trace + all.mid(1));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::failureOfAList_data()
{
    QTest::addColumn<int>("verdict");
    QTest::newRow("no result") << int(StatementGate::NoResult);
    QTest::newRow("refused") << int(StatementGate::Refuse);
}

void TestDeleteEnclosures::failureOfAList()
{
    QFETCH(int, verdict);
    store().update(storedEnclosure("1", {"urn:m:1"}) + storedEnclosure("2", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    const QStringList start = throughStatement(enclosureJournal({"1", "2"}), 2);
    // The signal is not emitted.
    QCOMPARE(journalOf(
                 [&] {
                     tracker()->deleteEnclosures(enclosureUris({"1", "2"}));
                 },
                 {{2, StatementGate::Verdict(verdict)}}),
             start
                 + (verdict == StatementGate::NoResult
                        ? failureOfListForm({"Query Execution failed"})
                        : failureOfListForm({"Delete Query Failed", refusalError()})));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::hundredsOfEnclosures()
{
    QStringList names;
    QString insert;
    for (int i = 0; i < 500; ++i) {
        names.append(QString::number(i));
        insert += storedEnclosure(names.last(), {"urn:m:1"});
    }
    store().update(insert);
    QCOMPARE(journalOf([&] { tracker()->deleteEnclosures(enclosureUris(names)); }), enclosureJournal(names));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteEnclosures::filesOfEnclosuresAreLeftToTheHost()
{
    const QString path = file("1.ogg");
    store().update(QString("INSERT { <urn:e:1> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m:1> ; "
                           "mfo:remoteLink <http://example.org/1.ogg> ; mfo:localLink <%1> }")
                       .arg(path));
    tracker()->deleteEnclosures(QString("urn:m:1"));
    QCOMPARE(everythingIn(store()), QStringList());
    QVERIFY(QFile::exists(path));
}

void TestDeleteEnclosures::signalComesOnceBeforeTheReturn()
{
    store().update(storedEnclosure("1", {"urn:m:1"}));
    int calls = 0;
    bool isStored = true;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this, [&] {
        ++calls;
        isStored = !everythingIn(store()).isEmpty();
    });
    tracker()->deleteEnclosures(enclosureUris({"1"}));
    QCOMPARE(calls, 1);
    QVERIFY(!isStored);
    QCoreApplication::processEvents();
    QCOMPARE(calls, 1);
}

void TestDeleteEnclosures::receiverMayChangeTheList()
{
    store().update(storedEnclosure("1", {"urn:m:1"}) + storedEnclosure("2", {"urn:m:1"}));
    QList<int> sizes;
    const auto takeFirst = [&sizes](QList<FeedEnclosure> &enclosures) {
        sizes.append(int(enclosures.size()));
        enclosures.removeFirst();
    };
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this, takeFirst);
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this, takeFirst);
    tracker()->deleteEnclosures(enclosureUris({"1", "2"}));
    QCOMPARE(sizes, QList<int>({2, 1}));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteEnclosures::updateIsReleasedWhenTheSignalComes()
{
    store().update(storedEnclosure("1", {"urn:m:1"}));
    QList<QPointer<QSparqlResult>> results;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this, [&results] {
        results = StatementGate::results();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
    StatementGate::reset();
    tracker()->deleteEnclosures(enclosureUris({"1"}));
    QCOMPARE(results.size(), 2);
    QVERIFY(results.at(0).isNull());
    QVERIFY(results.at(1).isNull());
}

void TestDeleteEnclosures::receiverMayUseTheStore()
{
    store().update(storedMessage("1", {}) + storedMessage("2", {}) + storedEnclosure("1", {"urn:m:1"})
                   + storedEnclosure("2", {"urn:m:2"}));
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this,
            [this](const QList<FeedEnclosure> &enclosures) {
                if (enclosures.first().uri() == "urn:e:1")
                    tracker()->deleteMessages(messageUris({"2"}));
            });
    tracker()->deleteMessages(messageUris({"1"}));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteEnclosures::imageIsDeletedWithItsFile()
{
    const QString path = file("image.png");
    const QString neighbour = file("image.png.other");
    store().update(storedChannel("1"));
    const QStringList before = everythingIn(store());
    storeImage(path);
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImage("urn:c:1"); }), imageJournal());
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(!QFile::exists(path));
    QVERIFY(QFile::exists(neighbour));
}

void TestDeleteEnclosures::imageNodesAreDeletedToo()
{
    const QString path = file("image.png");
    store().update(storedNode("urn:unrelated"));
    const QStringList before = everythingIn(store());
    storeImage(path);
    store().update(storedNode(path) + storedNode("http://example.org/i.png"));
    tracker()->deleteChannelImage("urn:c:1");
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::channelWithoutImage()
{
    store().update(storedChannel("1"));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImage("urn:c:1"); }),
             imageJournal() + QStringList(emptyPathWarning()));
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImageIfNotInUse("urn:c:1", QString()); }),
             imageIfNotInUseJournal(QString()) + QStringList(emptyPathWarning()));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::onlyTheFirstFileIsRemoved()
{
    const QStringList paths = {file("1.png"), file("2.png"), file("3.png")};
    for (int i = 0; i < 3; ++i)
        storeImage(paths.at(i), QString("urn:i:%1").arg(i));
    const QString first = store().texts(S::imageFile("urn:c:1")).first();
    QVERIFY(paths.contains(first));
    tracker()->deleteChannelImage("urn:c:1");
    QCOMPARE(everythingIn(store()), QStringList());
    for (const QString &path : paths)
        QCOMPARE(QFile::exists(path), path != first);
}

void TestDeleteEnclosures::pathsAndUrls_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("localLink");
    QTest::addColumn<bool>("isRemoved");
    QTest::newRow("path") << "image.png"
                          << "%1/image.png" << true;
    QTest::newRow("URL") << "image.png"
                         << "file://%1/image.png" << false;
    QTest::newRow("URL without host") << "image.png"
                                      << "file:%1/image.png" << false;
    QTest::newRow("non-ASCII path") << QString::fromUtf8("\u00e4.png") << QString::fromUtf8("%1/\u00e4.png")
                                    << true;
    QTest::newRow("encoded path") << "a b.png"
                                  << "%1/a%20b.png" << false;
    QTest::newRow("percent sign in the name") << "a%20b.png"
                                              << "%1/a%20b.png" << true;
    QTest::newRow("path with a detour") << "image.png"
                                        << "%1/./image.png" << true;
    QTest::newRow("another file") << "image.png"
                                  << "%1/image.pn" << false;
    QTest::newRow("only a name") << "image.png"
                                 << "image.png" << false;
}

void TestDeleteEnclosures::pathsAndUrls()
{
    QFETCH(QString, fileName);
    QFETCH(QString, localLink);
    QFETCH(bool, isRemoved);
    const QString link = localLink.replace("%1", m_folder->path());
    for (bool ifNotInUse : {false, true}) {
        const QString path = file(fileName);
        storeImage(link);
        if (ifNotInUse)
            tracker()->deleteChannelImageIfNotInUse("urn:c:1", link);
        else
            tracker()->deleteChannelImage("urn:c:1");
        QCOMPARE(QFile::exists(path), !isRemoved);
        QCOMPARE(everythingIn(store()), QStringList());
    }
}

void TestDeleteEnclosures::foldersAndTargetsOfLinksStay()
{
    const QString inside = file("inside");
    storeImage(m_folder->path());
    tracker()->deleteChannelImage("urn:c:1");
    QVERIFY(QFileInfo(m_folder->path()).isDir());

    // A symbolic link is removed, its target is not.
    QVERIFY(QFile::link(inside, m_folder->filePath("link")));
    storeImage(m_folder->filePath("link"));
    tracker()->deleteChannelImage("urn:c:1");
    QVERIFY(!QFileInfo(m_folder->filePath("link")).isSymLink());
    QVERIFY(QFile::exists(inside));
}

void TestDeleteEnclosures::imageWithoutRemoteLinkStaysWithoutItsFile()
{
    const QString path = file("image.png");
    store().update(
        QString("INSERT { <urn:i> a mfo:Enclosure ; nie:isLogicalPartOf <urn:c:1> ; mfo:localLink <%1> }")
            .arg(path));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImage("urn:c:1"); }), imageJournal());
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(!QFile::exists(path));
}

void TestDeleteEnclosures::imageOfAnotherChannelStays()
{
    const QString path = file("image.png");
    storeImage(path);
    const QStringList before = everythingIn(store());
    tracker()->deleteChannelImage("urn:c:2");
    tracker()->deleteChannelImageIfNotInUse("urn:c:2", path);
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(QFile::exists(path));
}

void TestDeleteEnclosures::imageOfTwoChannelsIsDeletedForBoth()
{
    const QString path = file("image.png");
    const QString image = "mfo:image '" + path + '\'';
    store().update(storedChannel("1", image) + storedChannel("2", image));
    const QStringList before = everythingIn(store());
    storeImage(path);
    store().update("INSERT { <urn:i> nie:isLogicalPartOf <urn:c:2> }");
    tracker()->deleteChannelImageIfNotInUse("urn:c:1", path);
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(QFile::exists(path));
    tracker()->deleteChannelImage("urn:c:2");
    QVERIFY(QFile::exists(path));
}

void TestDeleteEnclosures::enclosuresOfMessagesAreNoImages()
{
    store().update(storedChannel("1") + storedMessage("1", {"urn:c:1"}) + storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    tracker()->deleteChannelImage("urn:c:1");
    tracker()->deleteChannelImageIfNotInUse("urn:c:1", QString());
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteEnclosures::emptyChannelUriKeepsOtherImages()
{
    const QString path = file("image.png");
    storeImage(path);
    const QStringList before = everythingIn(store());
    store().update(QString("INSERT { <urn:i:2> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; "
                           "mfo:localLink <urn:l> ; nie:isLogicalPartOf <> }"));
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImage(QString()); }), imageJournal(QString()));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(QFile::exists(path));
}

void TestDeleteEnclosures::imageFailure_data()
{
    addFailureColumns();
    for (int i = 0; i < 2; ++i) {
        const QStringList start = throughStatement(imageJournal(), i);
        const QString statement = start.last().section(": ", 1);
        const Operation operation = [=] {
            tracker()->deleteChannelImage("urn:c:1");
            return true;
        };
        addFailureRow(QString("statement %1, no result").arg(i), operation, {{i, StatementGate::NoResult}},
                      start + QStringList(criticalLine("deleteChannelImage", {"Query Execution failed"})));
        addFailureRow(QString("statement %1, refused").arg(i), operation, {{i, StatementGate::Refuse}},
                      start
                          + QStringList(criticalLine("deleteChannelImage",
                                                     {"Query Execution Failed", quoted(statement)})));
    }
}

void TestDeleteEnclosures::imageFailure()
{
    const QString path = file("image.png");
    storeImage(path);
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(QFile::exists(path));
}

void TestDeleteEnclosures::imageInUseKeepsItsFile()
{
    const QString path = file("image.png");
    store().update(storedChannel("2", "mfo:image '" + path + '\''));
    const QStringList before = everythingIn(store());
    storeImage(path);
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImageIfNotInUse("urn:c:1", path); }),
             imageIfNotInUseJournal(path));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(QFile::exists(path));
}

void TestDeleteEnclosures::unusedImageIsDeletedWithItsFile_data()
{
    QTest::addColumn<QString>("other");
    QTest::newRow("no other channel") << "";
    QTest::newRow("another image") << storedChannel("2", "mfo:image '/other.png'");
    QTest::newRow("a channel without image") << storedChannel("2");
    QTest::newRow("not a channel's image") << storedEnclosure("1", {"urn:m:1"}, "mfo:image '/image.png'");
}

void TestDeleteEnclosures::unusedImageIsDeletedWithItsFile()
{
    QFETCH(QString, other);
    store().update(other);
    const QStringList before = everythingIn(store());
    const QString path = file("image.png");
    storeImage(path);
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImageIfNotInUse("urn:c:1", "/image.png"); }),
             imageIfNotInUseJournal("/image.png"));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(!QFile::exists(path));
}

void TestDeleteEnclosures::channelThatIsStoredUsesItsOwnImage()
{
    const QString path = file("image.png");
    store().update(storedChannel("1", "mfo:image '" + path + '\''));
    storeImage(path);
    tracker()->deleteChannelImageIfNotInUse("urn:c:1", path);
    QVERIFY(QFile::exists(path));
    QVERIFY(!subjectsIn(store()).contains("urn:i"));
}

void TestDeleteEnclosures::imageIsComparedAsText()
{
    const QString path = file("image.png");
    store().update(storedChannel("2", "mfo:image '" + path + '\''));
    const QString sameFile = m_folder->path() + "/./image.png";
    storeImage(path);
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImageIfNotInUse("urn:c:1", sameFile); }),
             imageIfNotInUseJournal(sameFile));
    QVERIFY(!QFile::exists(path));

    const QString odd = "/a\"b\\c.png";
    QCOMPARE(journalOf([&] { tracker()->deleteChannelImageIfNotInUse("urn:c:1", odd); }).at(2),
             selectLine(S::imageUsers("/a\\\"b\\\\c.png")));
}

void TestDeleteEnclosures::imageIfNotInUseFailure_data()
{
    addFailureColumns();
    const QStringList all = imageIfNotInUseJournal("/image.png");
    for (int i = 0; i < 3; ++i) {
        const QStringList start = throughStatement(all, i);
        const Operation operation = [=] {
            tracker()->deleteChannelImageIfNotInUse("urn:c:1", "/image.png");
            return true;
        };
        const auto failure = [=](const QStringList &items) {
            return start + QStringList(criticalLine("deleteChannelImageIfNotInUse", items));
        };
        addFailureRow(QString("statement %1, no result").arg(i), operation, {{i, StatementGate::NoResult}},
                      failure({"Query Execution failed"}));
        addFailureRow(QString("statement %1, refused").arg(i), operation, {{i, StatementGate::Refuse}},
                      failure({"Query Execution Failed", quoted(start.last().section(": ", 1))}));
    }
}

void TestDeleteEnclosures::imageIfNotInUseFailure()
{
    QFETCH(Interventions, interventions);
    const QString path = file("image.png");
    const QStringList before = everythingIn(store());
    storeImage(path);
    const QStringList withImage = everythingIn(store());
    checkFailingOperation();
    // The last statement asks whether a channel uses the file.
    QCOMPARE(everythingIn(store()), interventions.front().statement < 2 ? withImage : before);
    QVERIFY(QFile::exists(path));
}

QTEST_GUILESS_MAIN(TestDeleteEnclosures)
#include "tst_deleteenclosures.moc"
