// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <soon.h>

#include <TidelReader/backup.h>
#include <TidelReader/channels.h>
#include <TidelReader/enclosurequeue.h>
#include <TidelReader/itemkey.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/readstate.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>
#include <memory>

using namespace Tidel;

namespace {

QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString sizeText(const Result<Backup::Size> &size)
{
    return size ? QString("%1 %2 %3").arg(size->channels).arg(size->messages).arg(size->enclosures)
                : size.error().text();
}

/// Returns what a backup has become.
using Damage = QByteArray (*)(const QByteArray &good);

} // namespace

Q_DECLARE_METATYPE(Damage)

class TestBackup : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void emptyArchive();
    void everythingComesBack();
    void plainTurtleIsReadToo();
    void onlyTheUserMayRead();
    void fileIsReplaced();
    void whatIsNoFileStays();
    void fileThatCannotBeWritten();
    void archiveThatIsNotEmptyStays_data();
    void archiveThatIsNotEmptyStays();
    void badFiles_data();
    void badFiles();
    void oneMomentWhileOthersWrite();

    void copiesThatDiverged();
    void archivesOfTheirOwn();
    void channelWithAnotherLink();
    void laterMarksWin_data();
    void laterMarksWin();
    void droppedMessages();
    void interruptedMerge();
    void manyMessages();

private:
    /// Stores a channel with messages, as a reader has them after some time.
    void fill();
    /// Continues with a new store.
    void startAgain();
    /// Returns everything in the store, with all URIs and times.
    QStringList everything() const { return everythingIn(store()); }
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void backUp(const QString &name) { VERIFY_OK(Backup(reader()).write(path(name))); }
    QString merge(const QString &name) { return sizeText(Backup(reader()).merge(path(name))); }
    void read(const QString &message) { VERIFY_OK(ReadState(reader()).set({messageUri(message)}, true)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestBackup::init()
{
    ReaderTestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestBackup::fill()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    addEnclosure("a.ogg", messageUri("a"));
    addEnclosure("icon.png", channelUri("news"));
    addFavorite("b");
    addDropped({"x", "y"}, "news");
    store().update(
        "INSERT DATA { <urn:message:a> tidel:itemKey 'key' ; tidel:author 'Z \"Q\" \\\\ \u51ac\\nline' ; "
        "tidel:digest 'd' . <urn:message:orphan> a mfo:FeedMessage ; nie:title 'alone' }");
}

void TestBackup::startAgain()
{
    cleanup();
    ReaderTestCase::init();
}

void TestBackup::emptyArchive()
{
    QCOMPARE(sizeText(Backup(reader()).write(path("a"))), QString("0 0 0"));
    QCOMPARE(sizeText(Backup(reader()).restore(path("a"))), QString("0 0 0"));
    QCOMPARE(everything(), QStringList());
}

void TestBackup::everythingComesBack()
{
    fill();
    const QStringList before = everything();
    QVERIFY(before.size() > 30);
    QCOMPARE(sizeText(Backup(reader()).write(path("a"))), QString("1 3 2"));
    QCOMPARE(everything(), before);
    startAgain();
    QCOMPARE(everything(), QStringList());
    QCOMPARE(sizeText(Backup(reader()).restore(path("a"))), QString("1 3 2"));
    QCOMPARE(everything(), before);
}

void TestBackup::plainTurtleIsReadToo()
{
    QFile file(path("a.ttl"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("@prefix mfo: <http://tracker.api.gnome.org/ontology/v3/mfo#> .\n"
               "@prefix nie: <http://tracker.api.gnome.org/ontology/v3/nie#> .\n"
               "<urn:m> a mfo:FeedMessage ; nie:title \"T\" .\n");
    file.close();
    QCOMPARE(sizeText(Backup(reader()).restore(path("a.ttl"))), QString("0 1 0"));
    QCOMPARE(store().texts("SELECT ?t { <urn:m> nie:title ?t }"), QStringList("T"));
}

void TestBackup::onlyTheUserMayRead()
{
    VERIFY_OK(Backup(reader()).write(path("a")));
    const QFile::Permissions ofUser =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QCOMPARE(QFileInfo(path("a")).permissions() & ~ofUser, QFile::Permissions());
}

void TestBackup::fileIsReplaced()
{
    VERIFY_OK(Backup(reader()).write(path("a")));
    const QByteArray ofEmpty = bytesOf(path("a"));
    fill();
    VERIFY_OK(Backup(reader()).write(path("a")));
    QVERIFY(bytesOf(path("a")).size() > ofEmpty.size());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList("a"));
}

void TestBackup::whatIsNoFileStays()
{
    VERIFY_ERROR(Backup(reader()).write(m_folder->path()), Error::FileFailed,
                 "could not write the backup: " + m_folder->path()
                     + ": this is not a file; give the name of a file");
    QVERIFY(QFileInfo(m_folder->path()).isDir());
}

void TestBackup::fileThatCannotBeWritten()
{
    VERIFY_ERROR(Backup(reader()).write(path("none/a")), Error::FileFailed,
                 "could not write the backup: " + path("none/a") + ": No such file or directory");
}

void TestBackup::archiveThatIsNotEmptyStays_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("channel") << "<urn:c> a mfo:FeedChannel";
    QTest::newRow("message") << "<urn:m> a mfo:FeedMessage";
    QTest::newRow("enclosure") << "<urn:e> a mfo:Enclosure";
}

void TestBackup::archiveThatIsNotEmptyStays()
{
    QFETCH(QString, content);
    fill();
    VERIFY_OK(Backup(reader()).write(path("a")));
    startAgain();
    store().update("INSERT DATA { " + content + " }");
    const QStringList before = everything();
    VERIFY_ERROR(Backup(reader()).restore(path("a")), Error::NotEmpty,
                 "could not restore the backup: the archive is not empty");
    QCOMPARE(everything(), before);
}

void TestBackup::badFiles_data()
{
    QTest::addColumn<Damage>("damage");
    const auto add = [](const char *name, Damage damage) { QTest::newRow(name) << damage; };
    add("head only", [](const QByteArray &good) { return good.left(10); });
    add("cut", [](const QByteArray &good) { return good.left(good.size() - 20); });
    add("garbled", [](const QByteArray &good) {
        return good.left(good.size() / 2) + QByteArray(50, '\xaa') + good.mid(good.size() / 2);
    });
    add("feed",
        [](const QByteArray &) { return QByteArray("<?xml version=\"1.0\"?><rss version=\"2.0\"/>"); });
    add("another vocabulary",
        [](const QByteArray &) { return QByteArray("<urn:a> a <http://xmlns.com/foaf/0.1/Person> ."); });
    add("error after a message", [](const QByteArray &) {
        return QByteArray(
            "<urn:m> a <http://tracker.api.gnome.org/ontology/v3/mfo#FeedMessage> .\n<urn:x> oops");
    });
}

void TestBackup::badFiles()
{
    QFETCH(Damage, damage);
    fill();
    VERIFY_OK(Backup(reader()).write(path("good")));
    startAgain();
    QFile file(path("bad"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(damage(bytesOf(path("good"))));
    file.close();
    const auto refused = Backup(reader()).restore(path("bad"));
    QVERIFY(!refused);
    QCOMPARE(refused.error().kind(), Error::FileFailed);
    QVERIFY2(
        refused.error().text().startsWith("could not restore the backup: " + path("bad")
                                          + ": the file is damaged or is not a backup; try another copy ("),
        qPrintable(refused.error().text()));
    QCOMPARE(everything(), QStringList());
}

// Each update adds a message and its partner, so that a copy with an odd number shows two moments.
void TestBackup::oneMomentWhileOthersWrite()
{
    std::atomic<bool> isDone{false};
    std::atomic<int> written{0};
    const std::unique_ptr<QThread> writer(QThread::create([&] {
        QSparqlConnection connection("QTRACKER_DIRECT");
        for (int i = 0; !isDone && i < 5000; ++i) {
            const QString update =
                QString("INSERT { <urn:a:%1> a mfo:FeedMessage . <urn:b:%1> a mfo:FeedMessage }").arg(i);
            const std::unique_ptr<QSparqlResult> result(
                connection.exec(QSparqlQuery(update, QSparqlQuery::InsertStatement)));
            written = i;
        }
    }));
    writer->start();
    VERIFY_SOON(written > 10);
    for (int i = 0; i < 10; ++i)
        VERIFY_OK(Backup(reader()).write(path(QString::number(i))));
    isDone = true;
    writer->wait();
    QVERIFY(written > 20);
    for (int i = 0; i < 10; ++i) {
        startAgain();
        const auto size = Backup(reader()).restore(path(QString::number(i)));
        VERIFY_OK(size);
        QVERIFY(size->messages > 0);
        QCOMPARE(size->messages % 2, 0);
    }
}

namespace {

/// \a lines with times in whole seconds, and without those of subscription: a merge writes these in UTC.
QStringList inSeconds(QStringList lines)
{
    lines.replaceInStrings(QRegularExpression("(:\\d\\d)\\.\\d{3}Z$"), "\\1Z");
    return lines.filter(QRegularExpression("^(?!.* nie:created )"));
}

} // namespace

/// Two copies of one archive go different ways, and each takes what the other one has.
void TestBackup::copiesThatDiverged()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b", "c"}, "news", 1);
    addMessages({"d"}, "radio", 1);
    addEnclosure("a.ogg", messageUri("a"));
    addFavorite("c");
    backUp("start");

    read("a");
    VERIFY_OK(Messages(reader()).setFavorite(messageUri("c"), false));
    addMessages({"here"}, "news", 4);
    addEnclosure("here.ogg", messageUri("here"));
    VERIFY_OK(EnclosureQueue(reader()).add({enclosureUri("a.ogg")}));
    VERIFY_OK(Channels(reader()).remove(Channels(reader()).all()->last(),
                                        [](int, const QList<FeedEnclosure> &) {}));
    QCOMPARE(Channels(reader()).all()->size(), 1);
    backUp("here");

    startAgain();
    VERIFY_OK(Backup(reader()).restore(path("start")));
    VERIFY_OK(Messages(reader()).setFavorite(messageUri("b"), true));
    addMessages({"there"}, "news", 5);
    backUp("there");
    QCOMPARE(merge("here"), QString("0 1 1"));
    const QStringList united = everything();
    QCOMPARE(messagesIn("news"), QStringList({"a", "b", "c", "here", "there"}));
    QCOMPARE(messagesIn("radio"), QStringList("d"));
    QCOMPARE(store().texts("SELECT ?m { ?m nao:hasTag nao:predefined-tag-favorite }"),
             QStringList(messageUri("b")));
    QCOMPARE(store().texts("SELECT ?m { ?m tidel:readTime ?t }"), QStringList(messageUri("a")));
    QCOMPARE(store().texts("SELECT ?m { <urn:enclosure:here.ogg> nie:isLogicalPartOf ?m }"),
             QStringList(messageUri("here")));
    QCOMPARE(merge("here"), QString("0 0 0"));
    QCOMPARE(merge("there"), QString("0 0 0"));
    QCOMPARE(everything(), united);

    startAgain();
    VERIFY_OK(Backup(reader()).restore(path("here")));
    QCOMPARE(merge("there"), QString("1 2 0"));
    QCOMPARE(inSeconds(everything()), inSeconds(united));
    // What waits in the copy waits here too.
    QCOMPARE(*EnclosureQueue(reader()).uris(), QStringList(enclosureUri("a.ogg")));
    QCOMPARE(store()
                 .texts("SELECT ?t { <https://example.org/radio> nie:created ?t "
                        "FILTER(?t = '2026-11-01T04:30:00Z'^^xsd:dateTime) }")
                 .size(),
             1);
}

/// Nothing but links and keys tells that the archives have the same.
void TestBackup::archivesOfTheirOwn()
{
    const QString common = "a mfo:FeedChannel ; nie:links <https://example.org/news> ; nie:title 'News'";
    store().update("INSERT DATA { <urn:c:1> " + common
                   + " . <urn:m:1> a mfo:FeedMessage ; nie:title 'one' ; "
                     "nie:links <https://example.org/moved> ; nie:isLogicalPartOf <urn:c:1> ; tidel:itemKey '"
                   + itemKey("urn:c:1", "1")
                   + "' . <urn:m:2> a mfo:FeedMessage ; nie:title 'two' ; nie:links "
                     "<https://example.org/2> ; nie:isLogicalPartOf <urn:c:1> ; tidel:itemKey '"
                   + itemKey("urn:c:1", "2")
                   + "' ; tidel:author 'Ada' . <urn:e:1> a mfo:Enclosure ; "
                     "mfo:remoteLink <https://example.org/e> ; nie:isLogicalPartOf <urn:m:1> , <urn:m:2> }");
    backUp("other");
    startAgain();
    store().update("INSERT DATA { <urn:c:9> " + common
                   + " . <urn:m:9> a mfo:FeedMessage ; nie:title 'one' ; "
                     "nie:links <https://example.org/1> ; nie:isLogicalPartOf <urn:c:9> ; tidel:itemKey '"
                   + itemKey("urn:c:9", "1")
                   + "' . <urn:e:9> a mfo:Enclosure ; mfo:remoteLink "
                     "<https://example.org/e> ; nie:isLogicalPartOf <urn:m:9> }");
    QCOMPARE(merge("other"), QString("0 1 0"));
    QCOMPARE(store().texts("SELECT ?l { ?m a mfo:FeedMessage ; nie:links ?l } ORDER BY ?l"),
             QStringList({"https://example.org/1", "https://example.org/2"}));
    QCOMPARE(store().texts("SELECT ?k { <urn:m:2> tidel:itemKey ?k }"), QStringList(itemKey("urn:c:9", "2")));
    QCOMPARE(store().texts("SELECT ?c { <urn:m:2> nie:isLogicalPartOf ?c }"), QStringList("urn:c:9"));
    QCOMPARE(store().texts("SELECT ?a { <urn:m:2> tidel:author ?a }"), QStringList("Ada"));
    QCOMPARE(store().texts("SELECT ?m { <urn:e:9> nie:isLogicalPartOf ?m } ORDER BY ?m"),
             QStringList({"urn:m:2", "urn:m:9"}));
    const QStringList before = everything();
    QCOMPARE(merge("other"), QString("0 0 0"));
    QCOMPARE(everything(), before);
}

/// One of two copies has given the channel another address.
void TestBackup::channelWithAnotherLink()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    store().update(
        "INSERT DATA { <urn:tidel:every-channel> a nie:DataObject ; tidel:retention 'keep=9' . "
        "<urn:channel:news> tidel:folder 'There' ; tidel:retention 'keep=5' ; tidel:entityTag 'e' }");
    backUp("other");
    startAgain();
    addChannel("news");
    VERIFY_OK(Channels(reader()).edit(Channels(reader()).all()->first(), "News", linkOf("moved")));
    store().update("INSERT DATA { <urn:channel:news> tidel:retention 'keep=7' }");
    QCOMPARE(merge("other"), QString("0 1 0"));
    QCOMPARE(store().texts("SELECT ?l { ?l a nie:DataObject } ORDER BY ?l"),
             QStringList({linkOf("moved"), "urn:tidel:every-channel"}));
    QCOMPARE(store().texts("SELECT ?v { <urn:channel:news> nie:title ?v }"), QStringList("News"));
    QCOMPARE(store().texts("SELECT ?v { <urn:channel:news> tidel:folder ?v }"), QStringList("There"));
    QCOMPARE(store().texts("SELECT ?v { ?x tidel:retention ?v } ORDER BY ?v"),
             QStringList({"keep=7", "keep=9"}));
    // The next refresh reads the whole document.
    QCOMPARE(store().count("?x tidel:entityTag ?v"), 0);
}

void TestBackup::laterMarksWin_data()
{
    QTest::addColumn<QString>("theirs");
    QTest::addColumn<QString>("own");
    QTest::addColumn<bool>("isFavorite");
    QTest::addColumn<bool>("isRead");
    const QString favorite = "nao:hasTag nao:predefined-tag-favorite";
    const auto at = [](const QString &name, int hour) {
        return QString("tidel:%1 '2026-11-20T1%2:00:00Z'").arg(name).arg(hour);
    };
    const auto add = [](const char *name, const QStringList &theirs, const QStringList &own, bool isFavorite,
                        bool isRead) {
        QTest::newRow(name) << theirs.join(" ; ") << own.join(" ; ") << isFavorite << isRead;
    };
    add("none", {}, {}, false, false);
    add("read there", {at("readTime", 1)}, {}, false, true);
    add("read here", {}, {at("readTime", 1)}, false, true);
    add("unread later there", {at("unreadTime", 2)}, {at("readTime", 1)}, false, false);
    add("unread earlier there", {at("unreadTime", 1)}, {at("readTime", 2)}, false, true);
    add("read later there", {at("readTime", 2)}, {at("unreadTime", 1)}, false, true);
    add("old favorite there", {favorite}, {}, true, false);
    add("old favorite here", {}, {favorite}, true, false);
    add("old favorite there, taken away here", {favorite}, {at("favoriteTime", 1)}, false, false);
    add("taken away there, old favorite here", {at("favoriteTime", 1)}, {favorite}, false, false);
    add("later favorite there", {favorite, at("favoriteTime", 2)}, {at("favoriteTime", 1)}, true, false);
    add("earlier favorite there", {favorite, at("favoriteTime", 1)}, {at("favoriteTime", 2)}, false, false);
}

void TestBackup::laterMarksWin()
{
    QFETCH(QString, theirs);
    QFETCH(QString, own);
    const auto mark = [this](const QString &marks) {
        addChannel("news");
        addMessages({"a"}, "news", 1);
        if (!marks.isEmpty())
            store().update("INSERT DATA { <urn:message:a> " + marks + " }");
    };
    mark(theirs);
    backUp("other");
    startAgain();
    mark(own);
    QCOMPARE(merge("other"), QString("0 0 0"));
    QTEST(store().count("?m nao:hasTag nao:predefined-tag-favorite") == 1, "isFavorite");
    QTEST(store().count("?m tidel:readTime ?t") == 1, "isRead");
    const QStringList before = everything();
    QCOMPARE(merge("other"), QString("0 0 0"));
    QCOMPARE(everything(), before);
}

/// A message that is there is not one that was dropped.
void TestBackup::droppedMessages()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    addDropped({"b", "c"}, "news");
    backUp("other");
    startAgain();
    addChannel("news");
    addMessages({"b"}, "news", 1);
    addDropped({"a", "d"}, "news");
    QCOMPARE(merge("other"), QString("0 1 0"));
    QCOMPARE(messagesIn("news"), QStringList({"a", "b"}));
    QCOMPARE(droppedFrom("news"), linksOf({"c", "d"}));
}

/// Whatever statement fails, what was there stays, and the next merge completes it.
void TestBackup::interruptedMerge()
{
    fill();
    backUp("other");
    startAgain();
    VERIFY_OK(Backup(reader()).merge(path("other")));
    const QStringList whole = everything();
    bool isInterrupted = true;
    int at = 0;
    for (; isInterrupted; ++at) {
        startAgain();
        StatementGate::reset();
        StatementGate::failAt(at, StatementGate::NoResult);
        const auto merged = Backup(reader()).merge(path("other"));
        isInterrupted = StatementGate::statements().size() > at;
        StatementGate::reset();
        QCOMPARE(merged.has_value(), !isInterrupted);
        VERIFY_OK(Backup(reader()).merge(path("other")));
        QCOMPARE(everything(), whole);
    }
    QVERIFY2(at > 10, qPrintable(QString::number(at)));
}

void TestBackup::manyMessages()
{
    addChannel("news");
    addMessages(numberedNames("m", 250), "news");
    addEnclosure("same.ogg", messageUri("m1"));
    store().update("INSERT DATA { <urn:enclosure:same.ogg> nie:isLogicalPartOf <urn:message:m250> }");
    backUp("other");
    const QStringList before = everything();
    startAgain();
    addChannel("news");
    addMessages(numberedNames("m", 120), "news");
    QCOMPARE(merge("other"), QString("0 130 1"));
    QCOMPARE(everything().size(), before.size());
    QCOMPARE(store().count("<urn:enclosure:same.ogg> nie:isLogicalPartOf ?m"), 2);
}

QTEST_GUILESS_MAIN(TestBackup)
#include "tst_backup.moc"
