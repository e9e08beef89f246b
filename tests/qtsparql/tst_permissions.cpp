// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>

/// Nobody but the user can read a store.
class TestPermissions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_maskBefore = umask(0); }
    void cleanup() { umask(m_maskBefore); }

    void newStore();
    void storeOfToday();
    void sharedFolderStaysShared();

private:
    mode_t m_maskBefore = 0;
};

namespace {

const QString insertOne = QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" }");

int modeOf(const QString &path)
{
    struct stat status;
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}

/// Returns the names of what others may read or write in \a folder and of the folder itself.
QStringList open(const QString &folder)
{
    QStringList open;
    const QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
        << QStringLiteral(".");
    for (const QString &name : names) {
        if ((modeOf(folder + QLatin1Char('/') + name) & 077) != 0)
            open.append(name);
    }
    return open;
}

} // namespace

void TestPermissions::newStore()
{
    const ScratchStore store;
    VERIFY_DONE(store.update(insertOne));
    QCOMPARE(open(store.folder()), QStringList());
    QCOMPARE(modeOf(store.folder()), 0700);
    QCOMPARE(modeOf(store.folder() + QStringLiteral("/meta.db")), 0600);
}

void TestPermissions::storeOfToday()
{
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("store"));
    ScratchStore::connect(folder);
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden) << QStringLiteral(".");
    for (const QString &name : names)
        chmod(QFile::encodeName(folder + QLatin1Char('/') + name).constData(), 0755);
    const auto connection = ScratchStore::connect(folder);
    QVERIFY(connection->isValid());
    VERIFY_DONE(ScratchStore::run(*connection, insertOne, QSparqlQuery::InsertStatement));
    QCOMPARE(open(folder), QStringList());
}

void TestPermissions::sharedFolderStaysShared()
{
    const QTemporaryDir dir;
    QCOMPARE(chmod(QFile::encodeName(dir.path()).constData(), 01777), 0);
    QVERIFY(ScratchStore::connect(dir.path())->isValid());
    QCOMPARE(modeOf(dir.path()), 01777);
    QCOMPARE(modeOf(dir.filePath(QStringLiteral("meta.db"))), 0600);
}

QTEST_GUILESS_MAIN(TestPermissions)
#include "tst_permissions.moc"
