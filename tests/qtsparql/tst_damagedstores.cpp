// SPDX-License-Identifier: LGPL-2.1-or-later
#include "ordinaryuser.h"
#include "scratchstore.h"

#include <smallfiles.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <sys/syscall.h>
#include <unistd.h>

/// Stores that are damaged, half-made or not to be written.
class TestDamagedStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readOnlyFile_data();
    void readOnlyFile();
    void damageIsRefusedUntilRestored();
    void connectionThatMetDamageWritesNoMore();
    void damageThatAStatementMeets();
    void creationIsOnTheDiskBeforeItsMarkGoes();
    void powerLossDuringTheCreation_data();
    void powerLossDuringTheCreation();
    void creationWithoutSpaceLeavesNothing();
    void leftOverMarkOfTheCreation();
    void damagedStoreWithTheMarkIsSetAside();
};

namespace {

/// What was written to the disk while the mark of the creation was there.
QStringList syncedWithMark;

const QString insertOne = QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" }");
const QString insertTwo = QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage ; nie:title \"two\" }");
const QString selectTitles = QStringLiteral("SELECT ?t { ?s a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t");
const QStringList one(QStringLiteral("one"));

ScratchStore::Result insert(const QString &folder, const QString &statement)
{
    const auto connection = ScratchStore::connect(folder);
    return ScratchStore::run(*connection, statement, QSparqlQuery::InsertStatement);
}

QStringList titles(const QString &folder)
{
    return ScratchStore::rows(*ScratchStore::connect(folder), selectTitles);
}

/// Overwrites pages of the database in \a folder. The tables of messages are not there.
void damage(const QString &folder)
{
    QFile file(folder + QStringLiteral("/meta.db"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(file.size() / 2));
    const QByteArray bytes(20000, 'x');
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setContent(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

/// Replaces the database in \a folder by a copy. Connections that are open keep the file that they have.
void restore(const QString &folder, const QByteArray &database)
{
    for (const char *name : {"/meta.db", "/meta.db-wal", "/meta.db-shm"})
        QFile::remove(folder + QString::fromLatin1(name));
    setContent(folder + QStringLiteral("/meta.db"), database);
}

;

} // namespace

/// Called by the library in place of the one of the C library.
extern "C" int fsync(int descriptor)
{
    const QString path = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    const QString folder = QFileInfo(path).isDir() ? path : QFileInfo(path).path();
    if (QFile::exists(folder + QStringLiteral("/creating")))
        syncedWithMark.append(path);
    return int(syscall(SYS_fsync, descriptor));
}

void TestDamagedStores::readOnlyFile_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"meta.db", "meta.db-wal", "meta.db-shm"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestDamagedStores::readOnlyFile()
{
    QFETCH(QString, name);
    const OrdinaryUser user;
    const ScratchStore store;
    VERIFY_DONE(store.update(insertOne));
    // With another path, the connections do not share an open store.
    const QTemporaryDir links;
    const QString link = links.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(store.folder(), link));
    QFile file(store.folder() + QLatin1Char('/') + name);
    QVERIFY(file.setPermissions(QFile::ReadOwner));

    const auto connection = ScratchStore::connect(link);
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    QCOMPARE(ScratchStore::rows(*connection, selectTitles), one);
    const auto result = ScratchStore::run(*connection, insertTwo, QSparqlQuery::InsertStatement);
    VERIFY_REFUSED(result, ConnectionError);
    const QString message = result->lastError().message();
    QVERIFY2(message.contains(link) && message.contains(name), qPrintable(message));

    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    VERIFY_DONE(ScratchStore::run(*connection, insertTwo, QSparqlQuery::InsertStatement));
    QCOMPARE(store.rows(selectTitles).size(), 2);
}

void TestDamagedStores::damageIsRefusedUntilRestored()
{
    const QTemporaryDir dir;
    VERIFY_DONE(insert(dir.path(), insertOne));
    const QString database = dir.filePath(QStringLiteral("meta.db"));
    const QByteArray sound = contentOf(database);
    damage(dir.path());
    const QByteArray damaged = contentOf(database);
    // Tracker leaves this file when its program ends uncleanly.
    setContent(dir.filePath(QStringLiteral(".meta.isrunning")), QByteArray());
    for (int i = 0; i < 3; ++i) {
        const auto result = insert(dir.path(), insertTwo);
        VERIFY_REFUSED(result, ConnectionError);
        const QString message = result->lastError().message();
        QVERIFY2(message.contains(dir.path()) && message.contains(QStringLiteral("is damaged; put back")),
                 qPrintable(message));
        QVERIFY(contentOf(database) == damaged);
    }
    QVERIFY(!ScratchStore::connect(dir.path())->isValid());

    restore(dir.path(), sound);
    VERIFY_DONE(insert(dir.path(), insertTwo));
    QCOMPARE(titles(dir.path()).size(), 2);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("damaged"))));
}

void TestDamagedStores::connectionThatMetDamageWritesNoMore()
{
    const QTemporaryDir dir;
    VERIFY_DONE(insert(dir.path(), insertOne));
    damage(dir.path());
    setContent(dir.filePath(QStringLiteral(".meta.isrunning")), QByteArray());
    const auto connection = ScratchStore::connect(dir.path());
    for (int i = 0; i < 2; ++i) {
        const auto result = ScratchStore::run(*connection, insertTwo, QSparqlQuery::InsertStatement);
        VERIFY_REFUSED(result, ConnectionError);
        QCOMPARE(ScratchStore::rows(*connection, selectTitles), one);
        QFile::remove(dir.filePath(QStringLiteral("damaged")));
    }
}

void TestDamagedStores::damageThatAStatementMeets()
{
    const QTemporaryDir dir;
    VERIFY_DONE(
        insert(dir.path(), QStringLiteral("INSERT { <urn:n> a mfo:FeedMessage ; nie:title \"needle\" }")));
    const QString database = dir.filePath(QStringLiteral("meta.db"));
    const QByteArray sound = contentOf(database);
    const int pageSize = uchar(sound.at(16)) << 8 | uchar(sound.at(17));
    QByteArray damaged = sound;
    for (int at = 0; (at = damaged.indexOf("needle", at)) > 0;)
        damaged.replace(at / pageSize * pageSize, pageSize, QByteArray(pageSize, 'x'));
    setContent(database, damaged);

    for (int i = 0; i < 2; ++i) {
        const auto connection = ScratchStore::connect(dir.path());
        QVERIFY2(connection->isValid() == (i == 0), qPrintable(connection->lastError().message()));
        const auto result = ScratchStore::run(*connection, selectTitles, QSparqlQuery::SelectStatement);
        QVERIFY(result->hasError());
        const QString message = result->lastError().message();
        QVERIFY2(message.contains(QLatin1String(i == 0 ? "malformed" : "is damaged; put back")),
                 qPrintable(message));
    }
    restore(dir.path(), sound);
    QCOMPARE(titles(dir.path()), QStringList(QStringLiteral("needle")));
}

void TestDamagedStores::creationIsOnTheDiskBeforeItsMarkGoes()
{
    const QTemporaryDir dir;
    syncedWithMark.clear();
    VERIFY_DONE(insert(dir.path(), insertOne));
    // First the mark itself.
    QCOMPARE(syncedWithMark.value(0), dir.path());
    for (const QString &name : {QStringLiteral("meta.db"), QStringLiteral("ontologies.gvdb")}) {
        const int synced = syncedWithMark.indexOf(dir.filePath(name));
        QVERIFY2(synced > 0 && synced < syncedWithMark.lastIndexOf(dir.path()), qPrintable(name));
    }
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("creating"))));
}

void TestDamagedStores::powerLossDuringTheCreation_data()
{
    QTest::addColumn<int>("cutTo");
    QTest::addColumn<int>("zerosFrom");
    for (int size : {0, 1, 16, 100, 8192, 100000, 500000})
        QTest::addRow("cut to %d", size) << size << size;
    for (int size : {0, 8192, 100000, 500000})
        QTest::addRow("zeros from %d", size) << -1 << size;
}

void TestDamagedStores::powerLossDuringTheCreation()
{
    QFETCH(int, cutTo);
    QFETCH(int, zerosFrom);
    const QTemporaryDir dir;
    ScratchStore::connect(dir.path());
    const QString database = dir.filePath(QStringLiteral("meta.db"));
    const QByteArray whole = contentOf(database);
    QVERIFY(whole.size() > 500000);
    const QByteArray rest(cutTo < 0 ? whole.size() - zerosFrom : 0, '\0');
    setContent(database, whole.left(zerosFrom) + rest);
    setContent(dir.filePath(QStringLiteral("creating")), QByteArray());
    setContent(dir.filePath(QStringLiteral("ontologies.gvdb")), QByteArray());

    for (int i = 0; i < 2; ++i) {
        VERIFY_DONE(insert(dir.path(), insertOne));
        QCOMPARE(titles(dir.path()), one);
    }
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("creating"))));
}

void TestDamagedStores::creationWithoutSpaceLeavesNothing()
{
    const QTemporaryDir dir;
    {
        const SmallFiles limit(100000);
        for (int i = 0; i < 2; ++i)
            QVERIFY(!ScratchStore::connect(dir.path())->isValid());
    }
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("meta.db"))));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
    VERIFY_DONE(insert(dir.path(), insertOne));
}

void TestDamagedStores::leftOverMarkOfTheCreation()
{
    const QTemporaryDir dir;
    VERIFY_DONE(insert(dir.path(), insertOne));
    setContent(dir.filePath(QStringLiteral("creating")), QByteArray());
    QCOMPARE(titles(dir.path()), one);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("creating"))));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
}

void TestDamagedStores::damagedStoreWithTheMarkIsSetAside()
{
    const QTemporaryDir dir;
    VERIFY_DONE(insert(dir.path(), insertOne));
    damage(dir.path());
    const QByteArray damaged = contentOf(dir.filePath(QStringLiteral("meta.db")));
    setContent(dir.filePath(QStringLiteral("creating")), QByteArray());
    const QRegularExpression warning(
        QStringLiteral("The database in %1 .* was moved away.* look into %1/aside-\\d{4}-").arg(dir.path()));
    QTest::ignoreMessage(QtWarningMsg, warning);
    QCOMPARE(titles(dir.path()), QStringList());

    const QStringList aside = QDir(dir.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(aside.size(), 1);
    QVERIFY(contentOf(dir.filePath(aside.first() + QStringLiteral("/meta.db"))) == damaged);
    VERIFY_DONE(insert(dir.path(), insertTwo));
    QCOMPARE(titles(dir.path()).size(), 1);
}

QTEST_GUILESS_MAIN(TestDamagedStores)
#include "tst_damagedstores.moc"
