// SPDX-License-Identifier: LGPL-2.1-or-later
#include "helper.h"
#include "scratchstore.h"

#include <heldlocks.h>
#include <sparqlturtle.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

#include <dlfcn.h>
#include <sqlite3.h>

/// Programs that were stopped, as Ctrl-Z does, while others need the store.
class TestStoppedPrograms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whileOpening_data();
    void whileOpening();
    void whileWriting();
    void whileReading();
    void lockThatIsFreeTooLate();
    void lockThatIsTakenAfterReading_data();
    void lockThatIsTakenAfterReading();
    void lockedWhileAFileIsRead();
};

namespace {

const QString insertOne = QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" }");
const QString countTitles = QStringLiteral("SELECT COUNT(?s) { ?s nie:title ?t }");

ScratchStore::Connection connectTo(const QString &folder, int patience)
{
    QSparqlConnectionOptions options;
    options.setOption(QStringLiteral("patience"), patience);
    return ScratchStore::connect(folder, options);
}

QString failure(const QString &folder, int patience)
{
    const auto connection = connectTo(folder, patience);
    return ScratchStore::run(*connection, insertOne, QSparqlQuery::InsertStatement)->lastError().message();
}

/// The connection that keeps the database locked until others have been refused so many times.
sqlite3 *blocker = nullptr;
int refusalsLeft = 0;

void release()
{
    sqlite3_exec(blocker, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(blocker);
    blocker = nullptr;
}

/// Says that \a message names \a process as suspended.
bool names(const QString &message, qint64 process)
{
    const QRegularExpression words(
        QStringLiteral(
            "tidel_store_hel\\S* \\(process %1\\) has been (writing|opening it) for \\d+ seconds and is "
            "suspended; continue it with \"kill -CONT %1\", or end it$")
            .arg(process));
    return words.match(message).hasMatch();
}

} // namespace

/// Called by Tracker in place of the one of SQLite.
extern "C" int sqlite3_step(sqlite3_stmt *statement)
{
    using Step = int (*)(sqlite3_stmt *);
    static const auto step = reinterpret_cast<Step>(dlsym(RTLD_NEXT, "sqlite3_step"));
    const int result = step(statement);
    if (result == SQLITE_BUSY && blocker && --refusalsLeft == 0)
        release();
    return result;
}

void TestStoppedPrograms::whileOpening_data()
{
    QTest::addColumn<bool>("isMade");
    QTest::newRow("new store") << false;
    QTest::newRow("existing store") << true;
}

void TestStoppedPrograms::whileOpening()
{
    QFETCH(bool, isMade);
    const QTemporaryDir dir;
    if (isMade)
        QVERIFY(ScratchStore::connect(dir.path())->isValid());
    Helper holder({QStringLiteral("lock"), dir.path()});
    holder.go();
    QVERIFY(holder.reads(QStringLiteral("locked")));
    kill(pid_t(holder.process()), SIGSTOP);
    // However old the lock is, its holder is alive.
    QFile lock(dir.filePath(QStringLiteral("opening.lock")));
    QVERIFY(lock.open(QIODevice::ReadWrite));
    lock.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);

    // Nothing but reading is possible.
    auto reader = connectTo(dir.path(), 0);
    QCOMPARE(reader->isValid(), isMade);
    if (isMade)
        QCOMPARE(ScratchStore::rows(*reader, countTitles), QStringList(QStringLiteral("0")));
    const QString message = failure(dir.path(), 100);
    QVERIFY2(names(message, holder.process()), qPrintable(message));

    reader.reset();
    kill(pid_t(holder.process()), SIGCONT);
    holder.go();
    QCOMPARE(failure(dir.path(), 30000), QString());
}

void TestStoppedPrograms::whileWriting()
{
    const ScratchStore store;
    Helper writer({QStringLiteral("write"), store.folder(), QStringLiteral("w"), QStringLiteral("100000")});
    writer.go();
    QVERIFY(stopWithLock(writer.process(), "WRITE", 120, 120));

    // With another path, the connections do not share an open store.
    const QTemporaryDir links;
    const QString link = links.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(store.folder(), link));
    const auto reader = connectTo(link, 2200);
    QCOMPARE(ScratchStore::rows(*reader, QStringLiteral("ASK { <urn:one> nie:title ?t }")).size(), 1);
    const QString before = ScratchStore::rows(*reader, countTitles).value(0);
    const QRegularExpression notice(
        QStringLiteral("^Waiting for tidel_store_hel\\S* \\(process %1\\), which has been writing for \\d+ "
                       "seconds$")
            .arg(writer.process()));
    QTest::ignoreMessage(QtInfoMsg, notice);
    const auto result = ScratchStore::run(*reader, insertOne, QSparqlQuery::InsertStatement);
    VERIFY_REFUSED(result, BackendError);
    const QString message = result->lastError().message();
    QVERIFY2(names(message, writer.process()), qPrintable(message));
    QCOMPARE(ScratchStore::rows(*reader, countTitles), QStringList(before));

    kill(pid_t(writer.process()), SIGCONT);
    VERIFY_DONE(ScratchStore::run(*reader, insertOne, QSparqlQuery::InsertStatement));
}

// SQLite cannot empty its log then. Tracker alone would wait 100 s when it closes the store.
void TestStoppedPrograms::whileReading()
{
    const ScratchStore store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage ; nie:title \"two\" }")));
    Helper reader({QStringLiteral("read"), store.folder()});
    reader.go();
    QVERIFY(stopWithLock(reader.process(), "READ", 123, 127));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(failure(store.folder() + QStringLiteral("/../store"), 30000), QString());
    QVERIFY2(clock.elapsed() < 60000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(holdsLock(reader.process(), "READ", 123, 127));
    QCOMPARE(store.rows(countTitles), QStringList(QStringLiteral("2")));
}

/// Locks the database in \a folder until other connections have been refused \a count times, or until
/// release().
bool block(const QString &folder, int count)
{
    refusalsLeft = count;
    const QByteArray file = QFile::encodeName(folder + QStringLiteral("/meta.db"));
    return sqlite3_open(file.constData(), &blocker) == SQLITE_OK
        && sqlite3_exec(blocker, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_OK;
}

// Tracker goes on after a statement that SQLite refused, and would commit the others.
void TestStoppedPrograms::lockThatIsFreeTooLate()
{
    const QTemporaryDir dir;
    const auto connection = connectTo(dir.path(), 100);
    VERIFY_DONE(ScratchStore::run(*connection, QStringLiteral("INSERT { <urn:c> a mfo:FeedChannel }"),
                                  QSparqlQuery::InsertStatement));
    const QString statement =
        QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage } INSERT { <urn:two> a mfo:FeedMessage }");
    QVERIFY(block(dir.path(), 1));
    const auto result = ScratchStore::run(*connection, statement, QSparqlQuery::InsertStatement);
    QVERIFY(!blocker);
    VERIFY_REFUSED(result, BackendError);
    const QString messages = QStringLiteral("SELECT ?s { ?s a mfo:FeedMessage }");
    QCOMPARE(ScratchStore::rows(*connection, messages), QStringList());
    VERIFY_DONE(ScratchStore::run(*connection, statement, QSparqlQuery::InsertStatement));
    QCOMPARE(ScratchStore::rows(*connection, messages).size(), 2);
}

void TestStoppedPrograms::lockThatIsTakenAfterReading_data()
{
    QTest::addColumn<int>("refusals");
    for (const int refusals : {1, 2, 3, 5, 8, 20, 50})
        QTest::addRow("%d", refusals) << refusals;
}

// An update that has read already does not wait for a lock: SQLite refuses its statements at once.
void TestStoppedPrograms::lockThatIsTakenAfterReading()
{
    QFETCH(int, refusals);
    const ScratchStore store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:c> a mfo:FeedChannel }")));
    QVERIFY(block(store.folder(), refusals));
    VERIFY_DONE(
        store.update(QStringLiteral("INSERT { ?c nie:comment \"old\" } WHERE { ?c nie:title \"none\" } "
                                    "INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" } "
                                    "INSERT { <urn:two> a mfo:FeedMessage ; nie:title \"two\" } "
                                    "INSERT { <urn:three> a mfo:FeedMessage ; nie:title \"three\" }")));
    QVERIFY(!blocker);
    QCOMPARE(store.rows(countTitles), QStringList(QStringLiteral("3")));
}

void TestStoppedPrograms::lockedWhileAFileIsRead()
{
    const QTemporaryDir dir;
    const auto connection = connectTo(dir.path(), 100);
    VERIFY_DONE(ScratchStore::run(*connection, QStringLiteral("INSERT { <urn:c> a mfo:FeedChannel }"),
                                  QSparqlQuery::InsertStatement));
    QTemporaryFile file;
    QVERIFY(file.open());
    for (const char *name : {"one", "two", "three"})
        file.write(QByteArray("<urn:").append(name).append(
            "> a <http://tracker.api.gnome.org/ontology/v3/mfo#FeedMessage> ; "
            "<http://tracker.api.gnome.org/ontology/v3/nie#title> \"title\" .\n"));
    file.close();
    const QSparqlConnectionOptions options = connection->options();
    QVERIFY(block(dir.path(), -1));
    const QString message = SparqlTurtle::read(options, file.fileName()).message();
    QVERIFY2(message.startsWith(
                 QLatin1String("The file is refused: another program has been writing for 0 seconds; ")),
             qPrintable(message));
    QCOMPARE(ScratchStore::rows(*connection, countTitles), QStringList(QStringLiteral("0")));
    release();
    QVERIFY(!SparqlTurtle::read(options, file.fileName()).isValid());
    QCOMPARE(ScratchStore::rows(*connection, countTitles), QStringList(QStringLiteral("3")));
}

QTEST_GUILESS_MAIN(TestStoppedPrograms)
#include "tst_stoppedprograms.moc"
