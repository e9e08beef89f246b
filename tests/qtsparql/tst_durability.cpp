// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QFile>
#include <QTest>

#include <cerrno>

#include <sys/syscall.h>
#include <unistd.h>

/// What is on the disk when an update has finished.
class TestDurability : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void updates_data();
    void updates();
    void diskThatFails();
};

namespace {

/// What the process did to the log of the database and its folder, in this order.
QStringList events;
bool isDiskBroken = false;

void note(const char *what, int descriptor)
{
    const QString path = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    if (path.endsWith(QLatin1String("/meta.db-wal")))
        events.append(QLatin1String(what) + QLatin1String(" log"));
    else if (path.endsWith(QLatin1String("/store")))
        events.append(QLatin1String(what) + QLatin1String(" folder"));
}

const QString insertion = QStringLiteral("INSERT { <urn:%1> a mfo:FeedMessage ; nie:title \"one\" }");

ScratchStore::Connection connectTo(const QString &folder, const QVariant &isDurable)
{
    QSparqlConnectionOptions options;
    options.setOption(QStringLiteral("durable"), isDurable);
    return ScratchStore::connect(folder, options);
}

} // namespace

/// \name Called by SQLite and the library in place of those of the C library
/// @{
extern "C" ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off64_t at)
{
    note("write", descriptor);
    return syscall(SYS_pwrite64, descriptor, bytes, size, at);
}

extern "C" int fdatasync(int descriptor)
{
    note("sync", descriptor);
    if (isDiskBroken) {
        errno = EIO;
        return -1;
    }
    return int(syscall(SYS_fdatasync, descriptor));
}

extern "C" int fsync(int descriptor)
{
    note("sync", descriptor);
    return int(syscall(SYS_fsync, descriptor));
}
/// @}

void TestDurability::updates_data()
{
    QTest::addColumn<QVariant>("option");
    QTest::addColumn<bool>("isDurable");
    QTest::newRow("by default") << QVariant() << false;
    QTest::newRow("not durable") << QVariant(false) << false;
    QTest::newRow("durable") << QVariant(true) << true;
}

void TestDurability::updates()
{
    QFETCH(QVariant, option);
    QFETCH(bool, isDurable);
    const ScratchStore store;
    const auto connection = connectTo(store.folder(), option);
    for (int i = 0; i < 2; ++i) {
        events.clear();
        VERIFY_DONE(ScratchStore::run(*connection, insertion.arg(i), QSparqlQuery::InsertStatement));
        QVERIFY(events.contains(QStringLiteral("write log")));
        const QString end =
            events.mid(events.lastIndexOf(QStringLiteral("write log")) + 1).join(QLatin1Char(' '));
        QCOMPARE(end, isDurable ? QStringLiteral("sync log sync folder") : QString());
    }
    events.clear();
    QCOMPARE(ScratchStore::rows(*connection, QStringLiteral("SELECT ?s { ?s nie:title ?t }")).size(), 2);
    QCOMPARE(events, QStringList());
}

void TestDurability::diskThatFails()
{
    const ScratchStore store;
    const auto connection = connectTo(store.folder(), true);
    VERIFY_DONE(ScratchStore::run(*connection, insertion.arg(1), QSparqlQuery::InsertStatement));
    isDiskBroken = true;
    const auto result = ScratchStore::run(*connection, insertion, QSparqlQuery::InsertStatement);
    isDiskBroken = false;
    VERIFY_REFUSED(result, BackendError);
    QCOMPARE(result->lastError().number(), EIO);
}

QTEST_GUILESS_MAIN(TestDurability)
#include "tst_durability.moc"
