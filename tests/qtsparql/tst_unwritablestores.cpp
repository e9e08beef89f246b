// SPDX-License-Identifier: LGPL-2.1-or-later
#include "ordinaryuser.h"
#include "scratchstore.h"

#include <QDir>
#include <QTest>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

/// Stores that can be read but not written: of another user, or on a disk that is full or read-only.
class TestUnwritableStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readOnlyFolder_data();
    void readOnlyFolder();
    void fullDisk_data();
    void fullDisk();
    void readOnlyFileSystem();

private:
    bool m_canMount = false;
};

namespace {

const QString insertOne = QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" }");
const QString insertTwo = QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage ; nie:title \"two\" }");
const QString selectTitles = QStringLiteral("SELECT ?t { ?s a mfo:FeedMessage ; nie:title ?t }");
const QStringList one(QStringLiteral("one"));

void make(const QString &folder)
{
    VERIFY_DONE(ScratchStore::run(*ScratchStore::connect(folder), insertOne, QSparqlQuery::InsertStatement));
}

/// The log of the database and its index, which a program leaves that only reads.
void openForReading(const QString &folder)
{
    QCOMPARE(ScratchStore::rows(*ScratchStore::connect(folder), selectTitles), one);
    QVERIFY(QFile::exists(folder + QStringLiteral("/meta.db-shm")));
}

QString failure(QSparqlConnection &connection)
{
    return ScratchStore::run(connection, insertTwo, QSparqlQuery::InsertStatement)->lastError().message();
}

QStringList copies() { return QDir::temp().entryList({QStringLiteral("tidel-??????")}, QDir::Dirs); }

/// A small disk in memory.
class SmallDisk
{
public:
    SmallDisk() : m_path(QFile::encodeName(m_dir.path()))
    {
        mount("none", m_path.constData(), "tmpfs", 0, "size=16m,mode=0777");
    }
    ~SmallDisk() { umount2(m_path.constData(), MNT_DETACH); }

    QString folder() const { return m_dir.filePath(QStringLiteral("store")); }
    void makeReadOnly() const { mount("none", m_path.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr); }
    void makeWritable() const { mount("none", m_path.constData(), "tmpfs", MS_REMOUNT, nullptr); }
    void fill() const
    {
        QFile file(filler());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray bytes(4096, 'x');
        while (file.write(bytes) > 0) { }
    }
    void makeSpace() const { QVERIFY(QFile::remove(filler())); }

private:
    Q_DISABLE_COPY(SmallDisk)

    QString filler() const { return m_dir.filePath(QStringLiteral("filler")); }

    const QTemporaryDir m_dir;
    const QByteArray m_path;
};

} // namespace

void TestUnwritableStores::initTestCase()
{
    // No other process sees what is mounted from now on.
    m_canMount = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

void TestUnwritableStores::readOnlyFolder_data()
{
    QTest::addColumn<bool>("hasIndex");
    QTest::newRow("after a program that wrote") << false;
    QTest::newRow("after a program that only read") << true;
}

void TestUnwritableStores::readOnlyFolder()
{
    QFETCH(bool, hasIndex);
    const OrdinaryUser user;
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("store"));
    make(folder);
    if (hasIndex)
        openForReading(folder);
    const QStringList files = QDir(folder).entryList(QDir::Files);
    for (const QString &name : files)
        QVERIFY(QFile::setPermissions(folder + QLatin1Char('/') + name, QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));

    const QStringList copiesBefore = copies();
    {
        const auto connection = ScratchStore::connect(folder);
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        QCOMPARE(ScratchStore::rows(*connection, selectTitles), one);
        const QString message = failure(*connection);
        QVERIFY2(message.contains(QStringLiteral("Cannot write to the store in ") + folder)
                     && message.contains(QStringLiteral("this user may not write there; check the owner")),
                 qPrintable(message));
        QCOMPARE(QDir(folder).entryList(QDir::Files), files);

        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        for (const QString &name : files)
            QVERIFY(QFile::setPermissions(folder + QLatin1Char('/') + name,
                                          QFile::ReadOwner | QFile::WriteOwner));
        QCOMPARE(failure(*connection), QString());
        QCOMPARE(ScratchStore::rows(*connection, selectTitles).size(), 2);
    }
    QCOMPARE(copies(), copiesBefore);
}

void TestUnwritableStores::fullDisk_data() { readOnlyFolder_data(); }

void TestUnwritableStores::fullDisk()
{
    if (!m_canMount)
        QSKIP("This user may not mount a disk.");
    QFETCH(bool, hasIndex);
    const SmallDisk disk;
    make(disk.folder());
    if (hasIndex)
        openForReading(disk.folder());
    // Its removal would make space.
    QFile::remove(disk.folder() + QStringLiteral("/ontologies.gvdb"));
    disk.fill();
    const auto connection = ScratchStore::connect(disk.folder());
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    QCOMPARE(ScratchStore::rows(*connection, selectTitles), one);
    const QString message = failure(*connection);
    QVERIFY2(message.contains(QStringLiteral("the disk is full; free some space")), qPrintable(message));
    QCOMPARE(ScratchStore::rows(*connection, selectTitles), one);

    disk.makeSpace();
    QCOMPARE(failure(*connection), QString());
    QCOMPARE(ScratchStore::rows(*connection, selectTitles).size(), 2);
    disk.fill();
    // The log has some space left.
    int stored = 2;
    QString fault;
    for (int i = 0; fault.isEmpty() && i < 1000; ++i) {
        const QString insertion = QStringLiteral("INSERT { <urn:n:%1> a mfo:FeedMessage ; nie:title \"%2\" }")
                                      .arg(i)
                                      .arg(QString(50000, QLatin1Char('x')));
        fault =
            ScratchStore::run(*connection, insertion, QSparqlQuery::InsertStatement)->lastError().message();
        stored += fault.isEmpty() ? 1 : 0;
    }
    QVERIFY2(fault.contains(QStringLiteral("the disk is full; free some space")), qPrintable(fault));
    QCOMPARE(ScratchStore::rows(*connection, selectTitles).size(), stored);
}

void TestUnwritableStores::readOnlyFileSystem()
{
    if (!m_canMount)
        QSKIP("This user may not mount a disk.");
    const SmallDisk disk;
    make(disk.folder());
    disk.makeReadOnly();
    const auto connection = ScratchStore::connect(disk.folder());
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    QCOMPARE(ScratchStore::rows(*connection, selectTitles), one);
    const QString message = failure(*connection);
    QVERIFY2(message.contains(QStringLiteral("the file system is read-only; mount it for writing")),
             qPrintable(message));
    disk.makeWritable();
    QCOMPARE(failure(*connection), QString());
}

QTEST_GUILESS_MAIN(TestUnwritableStores)
#include "tst_unwritablestores.moc"
