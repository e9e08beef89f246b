// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/fsuid.h>

/// Stores that are damaged, half-made or not to be written.
class TestDamagedStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readOnlyFile_data();
    void readOnlyFile();
};

namespace {

const QString insertOne = QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" }");
const QString insertTwo = QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage ; nie:title \"two\" }");
const QString selectTitles = QStringLiteral("SELECT ?t { ?s a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t");
const QStringList one(QStringLiteral("one"));

/// Takes from this thread what the user root may do to the files of others.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_before(setfsuid(65534)) { }
    ~OrdinaryUser() { setfsuid(uid_t(m_before)); }

private:
    Q_DISABLE_COPY(OrdinaryUser)

    const int m_before;
};

} // namespace

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

QTEST_GUILESS_MAIN(TestDamagedStores)
#include "tst_damagedstores.moc"
