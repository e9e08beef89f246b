// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/backup.h>
#include <TidelReader/channels.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>

#include <QFileInfo>
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

private:
    /// Stores a channel with messages, as a reader has them after some time.
    void fill();
    /// Continues with a new store.
    void startAgain();
    /// Returns everything in the store, with all URIs and times.
    QStringList everything() const { return everythingIn(store()); }
    QString path(const QString &name) const { return m_folder->filePath(name); }

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
    QTRY_VERIFY(written > 10);
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

QTEST_GUILESS_MAIN(TestBackup)
#include "tst_backup.moc"
