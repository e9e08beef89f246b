// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/search.h>
#include <TidelReader/searchfiller.h>

#include <statementgate.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSparqlConnection>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

using namespace Tidel;

class TestSearch : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void words_data();
    void words();
    void nothingToLookFor_data();
    void nothingToLookFor();
    void titleCountsMore();
    void hit();
    void marks();
    void longWord();
    void bounds();
    void changesOfOtherPrograms();
    void deletedText();
    void reusedNumbers();
    void unchangedStoreIsNotCompared();
    void newMessagesAreNotCompared();
    void everyChangeIsCompared_data();
    void everyChangeIsCompared();
    void addNewMessages();
    void filler();
    void fillerOfManyMessages();
    void fillerOfUnwritableIndex();
    void missingOrDamagedIndex_data();
    void missingOrDamagedIndex();
    void unwritableIndex();
    void droppedWords();
    void check();
    void severalAtOnce();

private:
    QString indexFile() const { return store().dataFolder() + "/tidel/store/search.db"; }
    /// Stores a message whose link is linkOf(\a name).
    void add(const QString &name, const QString &title, const QString &text,
             const QString &summary = {}) const;
    QStringList found(const QString &words) const { return found(Search(reader()), words); }
    /// Names of the found messages, the best first.
    static QStringList found(Search &&search, const QString &words);
    /// The rows of the index that \a query selects.
    QStringList indexed(const char *query) const;
    /// Runs \a sql on the index. Returns its rows.
    QVector<QByteArray> inIndex(const QString &sql) const;
    /// Makes the files of the store so old that a change of them is told by their times.
    void age() const;
};

void TestSearch::init()
{
    ReaderTestCase::init();
    addChannel("news");
}

void TestSearch::add(const QString &name, const QString &title, const QString &text,
                     const QString &summary) const
{
    store().update(QString("INSERT { <%1> a mfo:FeedMessage ; nie:isLogicalPartOf <%2> ; nie:links <%3> ; "
                           "nie:title \"%4\" ; nie:description \"%5\" ; nie:subject \"%6\" ; "
                           "mfo:downloadedTime '2026-11-20T10:00:00Z' } ")
                       .arg(messageUri(name), channelUri("news"), linkOf(name), title, text, summary));
}

QStringList TestSearch::found(Search &&search, const QString &words)
{
    SearchQuery query;
    query.words = words;
    const auto hits = search.find(query);
    if (!hits)
        return {hits.error().text()};
    QStringList names;
    for (const SearchHit &hit : *hits)
        names.append(hit.uri.section(':', -1));
    return names;
}

QVector<QByteArray> TestSearch::inIndex(const QString &sql) const
{
    QVector<QByteArray> rows;
    const auto append = [](void *list, int count, char **values, char **) {
        QByteArrayList row;
        for (int i = 0; i < count; ++i)
            row.append(values[i]);
        static_cast<QVector<QByteArray> *>(list)->append(row.join(' '));
        return 0;
    };
    sqlite3 *index = nullptr;
    sqlite3_open(QFile::encodeName(indexFile()).constData(), &index);
    if (sqlite3_exec(index, sql.toUtf8().constData(), append, &rows, nullptr) != SQLITE_OK)
        qFatal("%s", sqlite3_errmsg(index));
    sqlite3_close(index);
    return rows;
}

void TestSearch::age() const
{
    const QString folder = store().dataFolder() + "/tidel/store/";
    const timespec times[] = {{1000000000, 0}, {1000000000, 0}};
    for (const QString &name : QDir(folder).entryList({"meta.db", "meta.db-wal"}))
        QCOMPARE(utimensat(AT_FDCWD, QFile::encodeName(folder + name).constData(), times, 0), 0);
}

void TestSearch::words_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("of a title") << "beans" << QStringList("a");
    QTest::newRow("of a text") << "poles" << QStringList("a");
    QTest::newRow("of a summary") << "climbing" << QStringList("a");
    QTest::newRow("both") << "beans poles" << QStringList("a");
    QTest::newRow("in two messages") << "beans frost" << QStringList();
    QTest::newRow("upper case") << "BEANS" << QStringList("a");
    QTest::newRow("without accents") << "creme" << QStringList("b");
    QTest::newRow("with accents") << "cr\u00e8me" << QStringList("b");
    QTest::newRow("entity") << "br\u00fbl\u00e9e" << QStringList("b");
    QTest::newRow("not in tags") << "strong" << QStringList();
    QTest::newRow("phrase") << "\"red runner\"" << QStringList("a");
    QTest::newRow("other order") << "\"runner red\"" << QStringList();
    QTest::newRow("open phrase") << "\"red runner" << QStringList("a");
    QTest::newRow("phrase and word") << "\"red runner\" poles" << QStringList("a");
    QTest::newRow("part of a word") << "runne" << QStringList();
    QTest::newRow("beginning") << "runne*" << QStringList("a");
    QTest::newRow("beginning after a phrase") << "\"red runne\"*" << QStringList("a");
    QTest::newRow("hyphen") << "red-runner" << QStringList("a");
    QTest::newRow("nothing of it") << "tomatoes" << QStringList();
    for (const char *operation :
         {"beans OR frost", "beans NOT poles", "beans AND poles", "title:beans", "beans NEAR poles",
          "beans + and", "NEAR(beans poles)", "beans ^poles and", "{title} : beans", "- title : beans"})
        QTest::newRow(operation) << operation << QStringList();
    for (const char *punctuation :
         {"beans'", "(beans", "beans)", "-beans", "^beans", "beans;", "%beans", "\"\" beans", "beans \"",
          "beans ***", "beans {", "beans \\", "beans \"*\""})
        QTest::newRow(punctuation) << punctuation << QStringList("a");
    QTest::newRow("null character") << QString("beans") + QChar(0) + "x" << QStringList();
}

void TestSearch::words()
{
    QFETCH(QString, words);
    QFETCH(QStringList, names);
    add("a", "Beans", "<p>Red runner</p><p><strong>Poles</strong></p>", "Climbing");
    add("b", "Cr\u00e8me", "Br&ucirc;l&eacute;e with frost");
    QCOMPARE(found(words), names);
}

void TestSearch::nothingToLookFor_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("reason");
    const QString none = "could not search: there is no word to look for; give a word of letters or digits";
    for (const char *words : {"", " ", "*", "\"", "\"\"", "---", "\"*\"*"})
        QTest::newRow(words) << words << none;
    QTest::newRow("many") << QString("a ").repeated(65)
                          << "could not search: there are more than 64 words; give fewer";
}

void TestSearch::nothingToLookFor()
{
    QFETCH(QString, words);
    QFETCH(QString, reason);
    SearchQuery query;
    query.words = words;
    VERIFY_ERROR(Search(reader()).find(query), Error::StoreRefused, reason);
    QCOMPARE(found(QString("a ").repeated(64)), QStringList());
}

void TestSearch::titleCountsMore()
{
    add("a", "Weather", "beans beans beans");
    add("b", "Beans", "Weather of the year in the north");
    add("c", "Weather", "beans and many other words about things that grow in a garden near the sea");
    QCOMPARE(found("beans"), QStringList({"b", "a", "c"}));
}

void TestSearch::hit()
{
    addMessages({"a"}, "news", 3);
    addChannel("other");
    share("a", "other");
    SearchQuery query;
    query.words = "title";
    const auto hits = Search(reader()).find(query);
    VERIFY_OK(hits);
    QCOMPARE(hits->size(), 1);
    const SearchHit hit = hits->constFirst();
    QCOMPARE(hit.uri, messageUri("a"));
    QCOMPARE(hit.message.link(), linkOf("a"));
    QCOMPARE(hit.message.title(), QString("Title of a"));
    QCOMPARE(hit.message.publishedDate(), QDateTime(QDate(2026, 11, 3), QTime(12, 0), Qt::UTC));
    QCOMPARE(sorted(hit.channels), QStringList({"news", "other"}));
    QCOMPARE(hit.title.text, QString("Title of a"));
    QCOMPARE(hit.title.marks, (QVector<QPair<int, int>>{{0, 5}}));
    QCOMPARE(hit.excerpt.text, QString("Summary of a\nText of a"));
    QCOMPARE(hit.excerpt.marks, (QVector<QPair<int, int>>()));
}

void TestSearch::marks()
{
    // Characters that mark words within the library are not taken from texts.
    add("a", "x\u0002y",
        QString("word ").repeated(100) + "Cr&egrave;me br\u0003ul\u00e9e " + QString("tail ").repeated(100));
    SearchQuery query;
    query.words = "creme";
    const auto hits = Search(reader()).find(query);
    VERIFY_OK(hits);
    const MarkedText excerpt = hits->at(0).excerpt;
    QCOMPARE(hits->at(0).title.text, QString("xy"));
    QVERIFY(excerpt.text.startsWith(QChar(0x2026)) && excerpt.text.endsWith(QChar(0x2026)));
    QVERIFY(excerpt.text.contains("Cr\u00e8me brul\u00e9e"));
    QVERIFY(excerpt.text.size() < 250);
    QCOMPARE(excerpt.marks.size(), 1);
    QCOMPARE(excerpt.text.mid(excerpt.marks.at(0).first, excerpt.marks.at(0).second), QString("Cr\u00e8me"));
}

void TestSearch::longWord()
{
    add("a", QString(5000, 'y'), QString(50000, 'x') + " beans");
    SearchQuery query;
    query.words = "xxx*";
    const auto hits = Search(reader()).find(query);
    VERIFY_OK(hits);
    QCOMPARE(hits->at(0).title.text.size(), 600);
    QCOMPARE(hits->at(0).excerpt.text.size(), 600);
    QCOMPARE(hits->at(0).excerpt.marks, (QVector<QPair<int, int>>{{0, 600}}));
}

void TestSearch::bounds()
{
    addChannel("other");
    addMessages({"a", "b", "c"}, "news", 1);
    addMessages({"d"}, "other", 4);
    addMessages({"undated"}, "other");
    addFavorite("b");
    addFavorite("d");
    Search search(reader());
    const auto found = [&](const SearchQuery &query) {
        QStringList names;
        const QList<SearchHit> hits = search.find(query).value();
        for (const SearchHit &hit : hits)
            names.append(hit.uri.section(':', 2));
        return sorted(names);
    };
    const QDateTime noon(QDate(2026, 11, 2), QTime(12, 0), Qt::UTC);
    QCOMPARE(found({{{}, false, false, {}, {}}, "text", 9}), QStringList({"a", "b", "c", "d", "undated"}));
    QCOMPARE(found({{{channelUri("news")}, false, false, {}, {}}, "text", 9}), QStringList({"a", "b", "c"}));
    QCOMPARE(found({{{}, false, true, {}, {}}, "text", 9}), QStringList({"b", "d"}));
    QCOMPARE(found({{{channelUri("news")}, false, true, {}, {}}, "text", 9}), QStringList({"b"}));
    QCOMPARE(found({{{}, false, false, noon, {}}, "text", 9}), QStringList({"b", "c", "d"}));
    QCOMPARE(found({{{}, false, false, {}, noon}, "text", 9}), QStringList({"a"}));
    QCOMPARE(found({{{}, false, false, noon, noon.addDays(1)}, "text", 9}), QStringList({"b"}));
    QCOMPARE(found({{{}, false, false, {}, {}}, "text", 2}).size(), 2);
    QCOMPARE(found({{{channelUri("none")}, false, false, {}, {}}, "text", 9}), QStringList());
}

void TestSearch::changesOfOtherPrograms()
{
    add("a", "sparrow", "one");
    add("b", "wren", "two");
    Search search(reader());
    const auto found = [&search](const char *words) {
        return search.find({{{}, false, false, {}, {}}, words, 9})->size();
    };
    QCOMPARE(found("sparrow"), 1);
    add("c", "nightingale", "three");
    QCOMPARE(found("nightingale"), 1);
    const QString title = QString("DELETE { <%1> nie:title ?t } WHERE { <%1> nie:title ?t } "
                                  "INSERT { <%1> nie:title 'eagle' }")
                              .arg(messageUri("a"));
    store().update(title);
    QCOMPARE(found("eagle"), 1);
    QCOMPARE(found("sparrow"), 0);
    store().update(QString("DELETE { <%1> a rdfs:Resource }").arg(messageUri("b")));
    QCOMPARE(found("wren"), 0);
    QCOMPARE(found("one"), 1);
}

void TestSearch::deletedText()
{
    // The store does not mark a message as changed if a value is only deleted.
    add("a", "sparrow", "one");
    QCOMPARE(found("sparrow"), QStringList("a"));
    store().update(QString("DELETE { <%1> nie:title 'sparrow' }").arg(messageUri("a")));
    QCOMPARE(found("sparrow"), QStringList());
}

void TestSearch::reusedNumbers()
{
    // A store of its own, because the numbers of an open one are not used again.
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
    const auto run = [](const QString &statement, QSparqlQuery::StatementType type) {
        const QSparqlConnection connection("QTRACKER_DIRECT");
        std::unique_ptr<QSparqlResult> result(
            const_cast<QSparqlConnection &>(connection).exec(QSparqlQuery(statement, type)));
        result->waitForFinished();
        return result->next() ? result->value(0).toString() + ' ' + result->value(1).toString() : QString();
    };
    const auto insert = [&run](const QString &name) {
        run(QString("INSERT { <urn:%1> a mfo:FeedMessage ; nie:title '%1' }").arg(name),
            QSparqlQuery::InsertStatement);
        return run("SELECT tracker:id(?m) ?v { ?m a mfo:FeedMessage ; nrl:modified ?v }",
                   QSparqlQuery::SelectStatement);
    };
    const QString numbers = insert("sparrow");
    QCOMPARE(found(Search(Store::open().value()), "sparrow"), QStringList("sparrow"));
    run("DELETE { <urn:sparrow> a rdfs:Resource }", QSparqlQuery::DeleteStatement);
    QCOMPARE(insert("wren"), numbers);
    QCOMPARE(found(Search(Store::open().value()), "wren"), QStringList("wren"));
    QCOMPARE(found(Search(Store::open().value()), "sparrow"), QStringList());
}

void TestSearch::unchangedStoreIsNotCompared()
{
    add("a", "sparrow", "one");
    age();
    QCOMPARE(found("sparrow"), QStringList("a"));
    StatementGate::reset();
    QCOMPARE(found("sparrow"), QStringList("a"));
    const QString statements = StatementGate::statements().join('\n');
    QVERIFY2(!statements.contains("nrl:modified ?state }"), qPrintable(statements));
    add("b", "wren", "two");
    QCOMPARE(found("wren"), QStringList("b"));
}

void TestSearch::newMessagesAreNotCompared()
{
    add("a", "sparrow", "one");
    QCOMPARE(found("sparrow"), QStringList("a"));
    add("b", "wren", "two");
    StatementGate::reset();
    QCOMPARE(found("wren"), QStringList("b"));
    const QString statements = StatementGate::statements().join('\n');
    QVERIFY2(!statements.contains("SELECT tracker:id(?m) ?state"), qPrintable(statements));
}

void TestSearch::everyChangeIsCompared_data()
{
    QTest::addColumn<QString>("change");
    // What the store says differs from the index as if it had changed the other way.
    QTest::newRow("one mark") << "UPDATE messages SET modified = modified - 1 WHERE id = %1";
    QTest::newRow("two marks") << "UPDATE messages SET modified = modified + CASE id WHEN %1 THEN 1 WHEN %2 "
                                  "THEN -1 ELSE 0 END";
    QTest::newRow("deletion") << "INSERT INTO messages (id, modified, uri) VALUES (1, 1, 1)";
}

void TestSearch::everyChangeIsCompared()
{
    QFETCH(QString, change);
    add("a", "sparrow", "one");
    add("b", "wren", "two");
    add("c", "eagle", "three");
    QCOMPARE(found("sparrow"), QStringList("a"));
    const QVector<QByteArray> before = inIndex("SELECT id, modified, uri FROM messages ORDER BY id");
    QCOMPARE(before.size(), 3);
    inIndex(change.arg(QString(before[0].split(' ')[0]), QString(before[1].split(' ')[0])));
    QCOMPARE(found("sparrow"), QStringList("a"));
    QCOMPARE(inIndex("SELECT id, modified, uri FROM messages ORDER BY id"), before);
}

void TestSearch::addNewMessages()
{
    addMessages(numberedNames("a", 3), "news");
    Search search(reader());
    VERIFY_OK(search.addNewMessages(2));
    QVERIFY(QFile::exists(indexFile()));
    StatementGate::reset();
    VERIFY_OK(search.addNewMessages(100));
    // It asks for the new ones, and whether there are more.
    QCOMPARE(StatementGate::statements().size(), 2);
    QCOMPARE(found("title").size(), 3);
}

QStringList TestSearch::indexed(const char *query) const
{
    const auto addRow = [](void *list, int columns, char **values, char **) {
        QStringList row;
        for (int i = 0; i < columns; ++i)
            row.append(QString::fromUtf8(values[i]));
        static_cast<QStringList *>(list)->append(row.join(' '));
        return 0;
    };
    sqlite3 *database = nullptr;
    QStringList rows;
    sqlite3_open(QFile::encodeName(indexFile()).constData(), &database);
    sqlite3_exec(database, query, addRow, &rows, nullptr);
    sqlite3_close(database);
    return rows;
}

void TestSearch::filler()
{
    const char *const all = "CREATE VIRTUAL TABLE temp.places USING fts5vocab('main', 'words', 'instance');"
                            "SELECT * FROM temp.places ORDER BY doc, col, offset; SELECT * FROM messages";
    addMessages(numberedNames("a", 1100), "news");
    VERIFY_OK(Search(reader()).addNewMessages(1100));
    const QStringList plain = indexed(all);
    QVERIFY(plain.size() > 2 * 1100);
    QVERIFY(QFile::remove(indexFile()));
    SearchFiller filler(reader());
    filler.add(499);
    QVERIFY(!QFile::exists(indexFile()));
    filler.add(601);
    // The second group begins when the thread is idle.
    QTRY_VERIFY_WITH_TIMEOUT((filler.add(0), indexed("SELECT id FROM messages").size() == 1000), 60000);
    QCOMPARE(filler.finish(), 100);
    VERIFY_OK(Search(reader()).addNewMessages(100));
    QCOMPARE(indexed(all), plain);
}

/// The first search after them need not compare each of them.
void TestSearch::fillerOfManyMessages()
{
    addMessages(numberedNames("a", 5000), "news");
    const auto timeAfter = [this](int count) {
        static_cast<void>(indexed("UPDATE notes SET value = 0 WHERE name = 'time'"));
        SearchFiller filler(reader());
        filler.add(count);
        const int left = filler.finish();
        return QString::number(left) + ' '
            + indexed("SELECT value > 0 FROM notes WHERE name = 'time'").join(' ');
    };
    VERIFY_OK(Search(reader()).addNewMessages(600));
    QCOMPARE(timeAfter(1000), "500 0");
    QCOMPARE(timeAfter(5000), "0 1");
    QCOMPARE(indexed("SELECT count(*) FROM messages"), QStringList("5000"));
}

void TestSearch::fillerOfUnwritableIndex()
{
    QVERIFY(QDir().mkpath(indexFile()));
    addMessages(numberedNames("a", 600), "news");
    SearchFiller filler(reader());
    filler.add(600);
    QCOMPARE(filler.finish(), 600);
    QCOMPARE(found("text").size(), 20);
}

void TestSearch::missingOrDamagedIndex_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("no database") << QByteArray(5000, 'x');
    QTest::newRow("cut") << QByteArray("SQLite format 3\0", 16);
    QTest::newRow("damaged pages") << QByteArray("pages");
    QTest::newRow("another version") << QByteArray("version");
}

void TestSearch::missingOrDamagedIndex()
{
    QFETCH(QByteArray, content);
    addMessages(numberedNames("a", 300), "news");
    QCOMPARE(found("text").size(), 20);
    age();
    QCOMPARE(found("text").size(), 20);
    QFile file(indexFile());
    if (content == "version") {
        sqlite3 *database = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(indexFile()).constData(), &database), SQLITE_OK);
        QCOMPARE(sqlite3_exec(database, "PRAGMA user_version = 99; DROP TABLE messages", nullptr, nullptr,
                              nullptr),
                 SQLITE_OK);
        sqlite3_close(database);
    } else if (content == "pages") {
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.size() > 3 * 4096);
        file.seek(4096);
        file.write(QByteArray(int(file.size()) - 4096, 'x'));
        file.close();
    } else {
        QVERIFY(file.remove());
        if (!content.isNull()) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
            file.close();
        }
    }
    QCOMPARE(found("text").size(), 20);
    QCOMPARE(found("a300"), QStringList("a300"));
    QVERIFY(Search(reader()).check());
}

void TestSearch::unwritableIndex()
{
    QVERIFY(QDir().mkpath(indexFile()));
    add("a", "sparrow", "one");
    QCOMPARE(found("sparrow"), QStringList("a"));
    Search search(reader());
    VERIFY_OK(search.addNewMessages(1));
    add("b", "wren", "two");
    QCOMPARE(search.find({{{}, false, false, {}, {}}, "wren", 9})->size(), 1);
}

void TestSearch::droppedWords()
{
    addMessages(numberedNames("a", 1500), "news");
    QCOMPARE(found("text").size(), 20);
    store().update("DELETE { ?m a rdfs:Resource } WHERE { ?m a mfo:FeedMessage FILTER(?m != <"
                   + messageUri("a7") + ">) }");
    QCOMPARE(found("text"), QStringList("a7"));
    const qint64 size = QFileInfo(indexFile()).size();
    QVERIFY(size > 100000);
    // Most of the index is of no use, so it is made again.
    add("b", "wren", "two");
    QCOMPARE(sorted(found("text")), QStringList("a7"));
    QCOMPARE(found("wren"), QStringList("b"));
    QVERIFY(QFileInfo(indexFile()).size() < size / 2);
}

void TestSearch::check()
{
    QVERIFY(Search(reader()).check());
    add("a", "sparrow", "one");
    QCOMPARE(found("sparrow"), QStringList("a"));
    QVERIFY(Search(reader()).check());
    QCOMPARE(QFile::permissions(indexFile()) & QFile::Permissions(0x0077), QFile::Permissions());
    // The words of the message are missing.
    sqlite3 *database = nullptr;
    QCOMPARE(sqlite3_open(QFile::encodeName(indexFile()).constData(), &database), SQLITE_OK);
    QCOMPARE(sqlite3_exec(database, "UPDATE words_data SET block = zeroblob(30) WHERE id > 10", nullptr,
                          nullptr, nullptr),
             SQLITE_OK);
    sqlite3_close(database);
    QVERIFY(!Search(reader()).check());
    QVERIFY(Search(reader()).check());
    QCOMPARE(found("sparrow"), QStringList("a"));
}

void TestSearch::severalAtOnce()
{
    addMessages(numberedNames("a", 700), "news");
    Search one(reader());
    Search two(reader());
    VERIFY_OK(one.addNewMessages(100));
    VERIFY_OK(two.addNewMessages(100));
    const SearchQuery all{{}, "text", 1000};
    QCOMPARE(two.find(all)->size(), 700);
    add("b", "wren", "text");
    QCOMPARE(one.find(all)->size(), 701);
    QCOMPARE(two.find(all)->size(), 701);
}

QTEST_GUILESS_MAIN(TestSearch)
#include "tst_search.moc"
