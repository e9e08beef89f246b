// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"
#include "teststore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSet>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

#include <dlfcn.h>

class TestConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drivers();
    void execIsAnExportedSymbol();
    void unknownDriver_data();
    void unknownDriver();
    void defaultFolder();
    void defaultFolderWithoutXdgDataHome_data();
    void defaultFolderWithoutXdgDataHome();
    void namedFolder_data();
    void namedFolder();
    void relativeFolder_data();
    void relativeFolder();
    void folderThatCannotBe_data();
    void folderThatCannotBe();
    void damagedDatabase_data();
    void damagedDatabase();
    void damagedPages();
    void damagedOntologyCopyIsNotRead_data();
    void damagedOntologyCopyIsNotRead();
    void unfinishedCreationIsBegunAnew_data();
    void unfinishedCreationIsBegunAnew();
    void wholeStoreIsNeverBegunAnew();
    void reopenedAtOnce();
    void twoConnectionsSeeEachOther_data();
    void twoConnectionsSeeEachOther();
    void readerSeesWhatOthersWrite();
    void secondOutlivesTheFirst();
    void databaseMadeInItsPlace();
    void connectionsInThreads();
    void twoStoresAreApart();
    void resultOutlivesItsConnection();
    void belongsToItsParent();
    void createUrn();
    void urnsSortByTheirTime();
};

namespace {

const QString driver = QStringLiteral("QTRACKER_DIRECT");
const QString insertOne = QStringLiteral("INSERT { <urn:one> a mfo:FeedMessage ; nie:title \"one\" }");
const QString selectTitles = QStringLiteral("SELECT ?t { ?s a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t");

/// Sets an environment variable during its lifetime.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char *name, const QByteArray &value) : m_name(name), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~EnvironmentVariable() { qputenv(m_name, m_before); }

private:
    Q_DISABLE_COPY(EnvironmentVariable)

    const char *const m_name;
    const QByteArray m_before;
};

/// Checks every kind of statement on a connection that is not open.
void verifyRefusesAll(QSparqlConnection &connection)
{
    QVERIFY(!connection.isValid());
    QVERIFY(connection.hasError());
    QCOMPARE(connection.lastError().type(), QSparqlError::ConnectionError);
    for (int type = QSparqlQuery::AskStatement; type <= QSparqlQuery::DeleteStatement; ++type) {
        for (const QString &statement : {selectTitles, insertOne, QString()}) {
            const auto result = ScratchStore::run(connection, statement, QSparqlQuery::StatementType(type));
            VERIFY_REFUSED(result, ConnectionError);
            QCOMPARE(result->lastError().message(), connection.lastError().message());
            QVERIFY(result->isFinished());
        }
    }
}

void overwrite(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray rubbish(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    unsigned state = 1;
    for (char &byte : bytes)
        byte = char((state = state * 1103515245 + 12345) >> 16);
    return bytes;
}

/// Creates a store with the data of insertOne and closes it.
QString filledStore(const QTemporaryDir &dir)
{
    const QString folder = dir.filePath(QStringLiteral("store"));
    const auto connection = ScratchStore::connect(folder);
    const auto result = ScratchStore::run(*connection, insertOne, QSparqlQuery::InsertStatement);
    if (result->hasError())
        qFatal("%s", qPrintable(result->lastError().message()));
    return folder;
}

} // namespace

void TestConnection::drivers() { QCOMPARE(QSparqlConnection::drivers(), QStringList(driver)); }

void TestConnection::execIsAnExportedSymbol()
{
    // A test program replaces the function by this name.
    QVERIFY(dlsym(RTLD_DEFAULT, "_ZN17QSparqlConnection4execERK12QSparqlQuery"));
}

void TestConnection::unknownDriver_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("none") << QString();
    QTest::newRow("other") << QStringLiteral("QSPARQL_ENDPOINT");
    QTest::newRow("lower case") << driver.toLower();
    QTest::newRow("blank behind") << driver + QLatin1Char(' ');
}

void TestConnection::unknownDriver()
{
    QFETCH(QString, name);
    QSparqlConnection connection(name);
    QCOMPARE(connection.driverName(), name);
    QVERIFY(connection.lastError().message().contains(QLatin1Char('"') + name + QLatin1Char('"')));
    verifyRefusesAll(connection);
}

void TestConnection::defaultFolder()
{
    const TestStore user;
    {
        const QSparqlConnection connection(driver);
        QVERIFY2(connection.isValid(), qPrintable(connection.lastError().message()));
        QVERIFY(!connection.hasError());
        QVERIFY(!connection.lastError().isValid());
        QCOMPARE(connection.driverName(), driver);
        QVERIFY(connection.options() == QSparqlConnectionOptions());
    }
    QVERIFY(QFile::exists(user.dataFolder() + QStringLiteral("/tidel/store/meta.db")));
    QCOMPARE(QDir(user.dataFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("tidel")));
}

void TestConnection::defaultFolderWithoutXdgDataHome_data()
{
    QTest::addColumn<bool>("isSet");
    QTest::newRow("not set") << false;
    QTest::newRow("empty") << true;
}

void TestConnection::defaultFolderWithoutXdgDataHome()
{
    QFETCH(bool, isSet);
    const QTemporaryDir home;
    const EnvironmentVariable homeVariable("HOME", QFile::encodeName(home.path()));
    const EnvironmentVariable dataHome("XDG_DATA_HOME", QByteArray());
    if (!isSet)
        qunsetenv("XDG_DATA_HOME");
    const QSparqlConnection connection(driver);
    QVERIFY2(connection.isValid(), qPrintable(connection.lastError().message()));
    QVERIFY(QFile::exists(home.filePath(QStringLiteral(".local/share/tidel/store/meta.db"))));
}

void TestConnection::namedFolder_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"store", "a/b/c", "two words", "%20", "a#b", "a?b", "it's \"x\"", "-", "back\\slash"})
        QTest::newRow(name) << QString::fromLatin1(name);
    QTest::newRow("outside ASCII") << QStringLiteral("\u00e4\u65e5\u05e9");
    QTest::newRow("line break") << QStringLiteral("a\nb");
}

void TestConnection::namedFolder()
{
    QFETCH(QString, name);
    const QTemporaryDir dir;
    const QString folder = dir.filePath(name);
    for (int i = 0; i < 2; ++i) {
        const auto connection = ScratchStore::connect(folder);
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        QCOMPARE(connection->options().databaseName(), folder);
        const auto result = ScratchStore::run(*connection, insertOne, QSparqlQuery::InsertStatement);
        VERIFY_DONE(result);
        QCOMPARE(ScratchStore::rows(*connection, selectTitles), QStringList(QStringLiteral("one")));
    }
    QVERIFY(QFile::exists(folder + QStringLiteral("/meta.db")));
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
}

void TestConnection::relativeFolder_data()
{
    QTest::addColumn<bool>("isTheUsersOwn");
    QTest::newRow("named") << false;
    QTest::newRow("the user's own") << true;
}

void TestConnection::relativeFolder()
{
    QFETCH(bool, isTheUsersOwn);
    const QTemporaryDir dir;
    const QTemporaryDir elsewhere;
    // Some versions of Qt ignore a relative XDG_DATA_HOME.
    const EnvironmentVariable home("HOME", QFile::encodeName(dir.path()));
    const EnvironmentVariable dataHome("XDG_DATA_HOME", "here");
    const auto goBack = qScopeGuard([before = QDir::currentPath()] { QDir::setCurrent(before); });
    const auto connect = [isTheUsersOwn] {
        return isTheUsersOwn ? std::make_unique<QSparqlConnection>(driver)
                             : ScratchStore::connect(QStringLiteral("here"));
    };

    QVERIFY(QDir::setCurrent(dir.path()));
    VERIFY_DONE(ScratchStore::run(*connect(), insertOne, QSparqlQuery::InsertStatement));
    // The first update does not use the new current folder.
    const auto connection = connect();
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    QVERIFY(QDir::setCurrent(elsewhere.path()));
    VERIFY_DONE(ScratchStore::run(
        *connection, QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage ; nie:title \"two\" }"),
        QSparqlQuery::InsertStatement));
    QVERIFY(QDir(elsewhere.path()).isEmpty());
    QCOMPARE(ScratchStore::rows(*connection, selectTitles).size(), 2);
}

void TestConnection::folderThatCannotBe_data()
{
    QTest::addColumn<bool>("isBelowAFile");
    QTest::addColumn<QString>("name");
    QTest::newRow("a file") << true << QString();
    QTest::newRow("below a file") << true << QStringLiteral("/below");
    QTest::newRow("not to be created") << false << QStringLiteral("/proc/self/tidel");
    QTest::newRow("not to be written to") << false << QStringLiteral("/proc/self");
}

void TestConnection::folderThatCannotBe()
{
    QFETCH(bool, isBelowAFile);
    QFETCH(QString, name);
    const QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("file"));
    overwrite(file, "text");

    const QString folder = isBelowAFile ? file + name : name;
    const auto connection = ScratchStore::connect(folder);
    verifyRefusesAll(*connection);
    QVERIFY2(connection->lastError().message().contains(folder),
             qPrintable(connection->lastError().message()));
    QCOMPARE(QFileInfo(file).size(), qint64(4));
}

void TestConnection::damagedDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("rubbish") << rubbish(500000);
    QTest::newRow("text") << QByteArray("This is no database.\n");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(100000, '\0');
    QTest::newRow("header alone") << QByteArray("SQLite format 3\0", 16);
}

void TestConnection::damagedDatabase()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    const QString database = folder + QStringLiteral("/meta.db");
    overwrite(database, content);
    // Unknown data must not be deleted.
    for (int i = 0; i < 2; ++i) {
        const auto connection = ScratchStore::connect(folder);
        verifyRefusesAll(*connection);
        const QString message = connection->lastError().message();
        QVERIFY2(message.contains(folder) && message.contains(QStringLiteral("damaged")),
                 qPrintable(message));
        QFile file(database);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().startsWith(content));
    }

    QVERIFY(QFile::remove(database));
    const auto connection = ScratchStore::connect(folder);
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
}

void TestConnection::damagedPages()
{
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    QFile file(folder + QStringLiteral("/meta.db"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(8192));
    const int size = int(file.size() - 8192);
    QCOMPARE(file.write(rubbish(size)), qint64(size));
    file.close();

    const auto connection = ScratchStore::connect(folder);
    for (const QString &statement : {selectTitles, insertOne}) {
        const bool isUpdate = statement == insertOne;
        const auto result = ScratchStore::run(
            *connection, statement, isUpdate ? QSparqlQuery::InsertStatement : QSparqlQuery::SelectStatement);
        QVERIFY(result->hasError());
        QVERIFY(!result->next());
    }
}

void TestConnection::damagedOntologyCopyIsNotRead_data()
{
    QTest::addColumn<int>("whole");
    QTest::addColumn<QByteArray>("rest");
    QTest::newRow("empty") << 0 << QByteArray();
    QTest::newRow("rubbish") << 0 << rubbish(1000);
    QTest::newRow("cut in its head") << 100 << QByteArray();
    QTest::newRow("cut at a page") << 8192 << QByteArray();
    QTest::newRow("end not written") << 4096 << QByteArray(50000, '\0');
}

void TestConnection::damagedOntologyCopyIsNotRead()
{
    QFETCH(int, whole);
    QFETCH(QByteArray, rest);
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    QFile copy(folder + QStringLiteral("/ontologies.gvdb"));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    const QByteArray content = copy.read(whole);
    QCOMPARE(content.size(), whole);
    overwrite(copy.fileName(), content + rest);
    for (int i = 0; i < 2; ++i) {
        const auto connection = ScratchStore::connect(folder);
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        QCOMPARE(ScratchStore::rows(*connection, selectTitles), QStringList(QStringLiteral("one")));
        VERIFY_DONE(ScratchStore::run(*connection, QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage }"),
                                      QSparqlQuery::InsertStatement));
    }
}

void TestConnection::unfinishedCreationIsBegunAnew_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing yet") << QByteArray();
    QTest::newRow("rubbish") << rubbish(8192);
    QTest::newRow("header alone") << QByteArray("SQLite format 3\0", 16);
}

void TestConnection::unfinishedCreationIsBegunAnew()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir dir;
    for (const char *name : {"/meta.db", "/meta.db-wal", "/meta.db-shm", "/creating"})
        overwrite(dir.path() + QString::fromLatin1(name), content);
    const QString other = dir.filePath(QStringLiteral("other"));
    overwrite(other, "somebody else's");

    for (int i = 0; i < 2; ++i) {
        const auto connection = ScratchStore::connect(dir.path());
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        VERIFY_DONE(ScratchStore::run(*connection, insertOne, QSparqlQuery::InsertStatement));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("creating"))));
    }
    QVERIFY(QFile::exists(other));
}

void TestConnection::wholeStoreIsNeverBegunAnew()
{
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    for (int i = 0; i < 5; ++i) {
        QVERIFY(!QFile::exists(folder + QStringLiteral("/creating")));
        const auto connection = ScratchStore::connect(folder);
        QCOMPARE(ScratchStore::rows(*connection, selectTitles), QStringList(QStringLiteral("one")));
    }
}

void TestConnection::reopenedAtOnce()
{
    const QTemporaryDir dir;
    for (int i = 0; i < 20; ++i) {
        const auto connection = ScratchStore::connect(dir.path());
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        const QString statement = QStringLiteral("INSERT { <urn:%1> a mfo:FeedMessage }").arg(i);
        VERIFY_DONE(ScratchStore::run(*connection, statement, QSparqlQuery::InsertStatement));
        const QString count = QStringLiteral("SELECT COUNT(?s) { ?s a mfo:FeedMessage }");
        QCOMPARE(ScratchStore::rows(*connection, count), QStringList(QString::number(i + 1)));
    }
}

void TestConnection::twoConnectionsSeeEachOther_data()
{
    QTest::addColumn<bool>("throughALink");
    QTest::newRow("same folder") << false;
    QTest::newRow("symbolic link to it") << true;
}

void TestConnection::twoConnectionsSeeEachOther()
{
    QFETCH(bool, throughALink);
    const ScratchStore store;
    const QTemporaryDir links;
    const QString link = links.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(store.folder(), link));
    const auto other = ScratchStore::connect(throughALink ? link : store.folder());
    QVERIFY(other->isValid());
    for (int i = 0; i < 10; ++i) {
        QSparqlConnection &writer = i % 2 ? store.connection() : *other;
        QSparqlConnection &reader = i % 2 ? *other : store.connection();
        const QString statement =
            QStringLiteral("INSERT { <urn:%1> a mfo:FeedMessage ; nie:title \"%1\" }").arg(i);
        VERIFY_DONE(ScratchStore::run(writer, statement, QSparqlQuery::InsertStatement));
        QCOMPARE(ScratchStore::rows(reader, selectTitles).size(), i + 1);
        QCOMPARE(ScratchStore::rows(writer, selectTitles).size(), i + 1);
    }
}

void TestConnection::readerSeesWhatOthersWrite()
{
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    const QString link = dir.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(folder, link));
    // With another path, the connections do not share an open store.
    const auto reader = ScratchStore::connect(link);
    QCOMPARE(ScratchStore::rows(*reader, selectTitles).size(), 1);
    const auto writer = ScratchStore::connect(folder);
    for (int i = 0; i < 10; ++i) {
        const QString statement =
            QStringLiteral("INSERT { <urn:%1> a mfo:FeedMessage ; nie:title \"%1\" }").arg(i);
        VERIFY_DONE(ScratchStore::run(*writer, statement, QSparqlQuery::InsertStatement));
        QCOMPARE(ScratchStore::rows(*reader, selectTitles).size(), i + 2);
    }
}

void TestConnection::secondOutlivesTheFirst()
{
    const QTemporaryDir dir;
    auto first = ScratchStore::connect(dir.path());
    const auto second = ScratchStore::connect(dir.path());
    VERIFY_DONE(ScratchStore::run(*first, insertOne, QSparqlQuery::InsertStatement));
    first.reset();
    QCOMPARE(ScratchStore::rows(*second, selectTitles), QStringList(QStringLiteral("one")));
    VERIFY_DONE(ScratchStore::run(*second, QStringLiteral("INSERT { <urn:two> a mfo:FeedMessage }"),
                                  QSparqlQuery::InsertStatement));
}

void TestConnection::databaseMadeInItsPlace()
{
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    const auto old = ScratchStore::connect(folder);
    QVERIFY(QDir(folder).removeRecursively());
    // A new connection must not share the deleted database.
    const auto connection = ScratchStore::connect(folder);
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    QCOMPARE(ScratchStore::rows(*connection, selectTitles), QStringList());
    VERIFY_DONE(ScratchStore::run(*connection, insertOne, QSparqlQuery::InsertStatement));
    QVERIFY(QFile::exists(folder + QStringLiteral("/meta.db")));
}

void TestConnection::connectionsInThreads()
{
    constexpr int inserts = 20;
    const QTemporaryDir dir;
    std::atomic<int> done{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&dir, &done, thread] {
            const auto connection = ScratchStore::connect(dir.path());
            for (int i = 0; i < inserts; ++i) {
                const QString statement =
                    QStringLiteral("INSERT { <urn:%1:%2> a mfo:FeedMessage }").arg(thread).arg(i);
                const auto result = ScratchStore::run(*connection, statement, QSparqlQuery::InsertStatement);
                done += result->hasError() ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(done.load(), 4 * inserts);
    QCOMPARE(ScratchStore::rows(*ScratchStore::connect(dir.path()),
                                QStringLiteral("SELECT ?s { ?s a mfo:FeedMessage }"))
                 .size(),
             4 * inserts);
}

void TestConnection::twoStoresAreApart()
{
    const ScratchStore one;
    const ScratchStore two;
    VERIFY_DONE(one.update(insertOne));
    QCOMPARE(one.rows(selectTitles).size(), 1);
    QCOMPARE(two.rows(selectTitles).size(), 0);
}

void TestConnection::resultOutlivesItsConnection()
{
    const QTemporaryDir dir;
    const QString folder = filledStore(dir);
    ScratchStore::Result result;
    {
        const auto connection = ScratchStore::connect(folder);
        result = ScratchStore::run(*connection, selectTitles, QSparqlQuery::SelectStatement);
    }
    QVERIFY(result->next());
    QCOMPARE(result->stringValue(0), QStringLiteral("one"));
    QVERIFY(!result->next());
}

void TestConnection::belongsToItsParent()
{
    QObject parent;
    auto *connection = new QSparqlConnection(QString(), QSparqlConnectionOptions(), &parent);
    QCOMPARE(connection->parent(), &parent);
}

void TestConnection::createUrn()
{
    const QRegularExpression form(
        QStringLiteral("\\Aurn:uuid:[0-9a-f]{8}-[0-9a-f]{4}-7[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\\z"));
    const ScratchStore store;
    const auto other = store.connect();
    QSet<QString> seen;
    for (int i = 0; i < 5000; ++i) {
        for (const QSparqlConnection *connection : {&store.connection(), other.get()}) {
            const QUrl urn = connection->createUrn();
            QVERIFY(urn.isValid());
            QVERIFY2(form.match(urn.toString()).hasMatch(), qPrintable(urn.toString()));
            QVERIFY(!seen.contains(urn.toString()));
            seen.insert(urn.toString());
        }
    }
    QVERIFY(form.match(QSparqlConnection().createUrn().toString()).hasMatch());
}

void TestConnection::urnsSortByTheirTime()
{
    const QSparqlConnection connection;
    const auto timeOf = [](const QUrl &urn) {
        const QString digits = urn.toString().remove(QLatin1String("urn:uuid:")).remove(QLatin1Char('-'));
        return digits.left(12).toLongLong(nullptr, 16);
    };
    QString last;
    for (int i = 0; i < 20; ++i) {
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        const QUrl urn = connection.createUrn();
        QVERIFY(timeOf(urn) >= before);
        QVERIFY(timeOf(urn) <= QDateTime::currentMSecsSinceEpoch());
        QVERIFY(urn.toString() > last);
        last = urn.toString();
        QTest::qSleep(1);
    }
}

QTEST_GUILESS_MAIN(TestConnection)
#include "tst_qsparqlconnection.moc"
