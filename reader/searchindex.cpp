// SPDX-License-Identifier: LGPL-2.1-or-later
#include "searchindex_p.h"

#include "storedatabase.h"

#include <QCryptographicHash>
#include <QFile>
#include <QtEndian>

#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

namespace Tidel {

namespace {

// Of the tables below. An index of another version is emptied.
constexpr int version = 1;
constexpr int patience = 10000; // milliseconds

const char *const tables[] = {
    // The number of an entry is never given again, because the words of a deleted one stay.
    "CREATE TABLE messages (entry INTEGER PRIMARY KEY AUTOINCREMENT, id INTEGER NOT NULL UNIQUE, "
    "modified INTEGER NOT NULL, uri INTEGER NOT NULL, published INTEGER)",
    "CREATE VIRTUAL TABLE words USING fts5 (title, text, content = '', "
    "tokenize = 'unicode61 remove_diacritics 2')",
    "CREATE TABLE notes (name TEXT PRIMARY KEY, value) WITHOUT ROWID",
};
const char *const shownTable = "CREATE VIRTUAL TABLE temp.shown USING fts5 (title, text, "
                               "tokenize = 'unicode61 remove_diacritics 2')";
const char *const allowedTable = "CREATE TABLE temp.allowed (id INTEGER PRIMARY KEY)";

// The best of the 2,000 that were stored last: to rank a word that is in every message would take a second.
const char *const bestMessages =
    "SELECT id FROM (SELECT m.id AS id, bm25(words, 10.0, 1.0) AS score "
    "FROM words CROSS JOIN messages AS m ON m.entry = words.rowid WHERE words MATCH ?1 "
    "AND (?2 IS NULL OR m.published >= ?2) AND (?3 IS NULL OR m.published < ?3) "
    "AND (?4 = 0 OR m.id IN (SELECT id FROM temp.allowed)) "
    "ORDER BY words.rowid DESC LIMIT 2000) ORDER BY score, id DESC LIMIT ?5";

/// Creates the file, which nobody else may read. SQLite would take the permissions of the process.
void createFile(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file >= 0)
        ::close(file);
}

QVariant seconds(const QDateTime &time)
{
    return time.isValid() ? QVariant(time.toSecsSinceEpoch()) : QVariant();
}

} // namespace

QString SearchIndex::file() { return StoreDatabase::folder() + QLatin1String("/search.db"); }

SearchIndex::SearchIndex(const QString &path)
{
    createFile(path);
    m_isKept = open(path);
    if (!m_isKept)
        useTemporaryFile();
}

bool SearchIndex::useTemporaryFile()
{
    m_isKept = false;
    return open(QString());
}

/// An empty path means a temporary file.
bool SearchIndex::open(const QString &path)
{
    m_database = std::make_unique<SqliteDatabase>(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    m_isDamaged = false;
    sqlite3_busy_timeout(m_database->handle(), patience);
    const bool isWritable =
        run("PRAGMA journal_mode = WAL") && sqlite3_db_readonly(m_database->handle(), "main") == 0;
    const bool isReady = isWritable ? isCurrent() || make() || reset() : m_isDamaged && reset();
    return isReady && run("PRAGMA synchronous = NORMAL") && run("PRAGMA temp_store = MEMORY")
        && run(shownTable) && run(allowedTable);
}

bool SearchIndex::isCurrent() { return value("PRAGMA user_version").toInt() == version; }

/// Makes the tables in an empty file, if no other process has done so.
bool SearchIndex::make()
{
    return inTransaction([this] {
        if (isCurrent())
            return true;
        bool isDone = value("SELECT count(*) FROM sqlite_master").toInt() == 0;
        for (const char *table : tables)
            isDone = isDone && run(table);
        return isDone && note({}, QDateTime::currentSecsSinceEpoch()) && run("PRAGMA user_version = 1");
    });
}

bool SearchIndex::reset()
{
    // Works with a damaged file too, and with other processes that have it open.
    sqlite3 *const handle = m_database->handle();
    value("PRAGMA user_version");
    sqlite3_db_config(handle, SQLITE_DBCONFIG_RESET_DATABASE, 1, nullptr);
    const bool isEmpty = run("VACUUM");
    sqlite3_db_config(handle, SQLITE_DBCONFIG_RESET_DATABASE, 0, nullptr);
    m_isDamaged = !isEmpty;
    return isEmpty && run("PRAGMA journal_mode = WAL") && make();
}

QString SearchIndex::sign() { return value("SELECT value FROM notes WHERE name = 'sign'").toString(); }

qint64 SearchIndex::noteTime() { return value("SELECT value FROM notes WHERE name = 'time'").toLongLong(); }

bool SearchIndex::note(const QString &sign, qint64 time)
{
    return run("REPLACE INTO notes VALUES ('sign', ?1), ('time', ?2)", {sign, time});
}

int SearchIndex::size() { return value("SELECT count(*) FROM messages").toInt(); }

qlonglong SearchIndex::lastId() { return value("SELECT max(id) FROM messages").toLongLong(); }

QVariantList SearchIndex::sums()
{
    QVariantList sums;
    run("SELECT count(*), sum(id), sum(modified), sum(id * modified) FROM messages", {},
        [&sums](const QVariantList &row) { sums = row; });
    return sums;
}

QHash<qlonglong, IndexedState> SearchIndex::states(qlonglong first, qlonglong last)
{
    QHash<qlonglong, IndexedState> states;
    run("SELECT id, modified, uri FROM messages WHERE id BETWEEN ?1 AND ?2", {first, last},
        [&states](const QVariantList &row) {
            states.insert(row.at(0).toLongLong(), {row.at(1).toLongLong(), row.at(2).toLongLong()});
        });
    return states;
}

qlonglong SearchIndex::hashOf(const QString &uri)
{
    const QByteArray hash = QCryptographicHash::hash(uri.toUtf8(), QCryptographicHash::Sha1);
    return qFromBigEndian<qlonglong>(hash.constData());
}

bool SearchIndex::isWasteful()
{
    const qlonglong kept = value("SELECT count(*) FROM messages").toLongLong();
    const qlonglong dropped = value("SELECT max(seq) FROM sqlite_sequence").toLongLong() - kept;
    return dropped > 1000 && dropped > kept / 2;
}

bool SearchIndex::inTransaction(const std::function<bool()> &work) { return begin() && end(work()); }

bool SearchIndex::begin() { return run("BEGIN IMMEDIATE"); }

bool SearchIndex::end(bool isDone)
{
    const bool isKept = isDone && run("COMMIT");
    if (!isKept && sqlite3_get_autocommit(m_database->handle()) == 0)
        m_database->run("ROLLBACK");
    return isKept;
}

bool SearchIndex::put(const QVector<SearchableMessage> &messages)
{
    for (const SearchableMessage &message : messages) {
        // REPLACE gives the message a new entry.
        const bool isDone =
            run("REPLACE INTO messages (id, modified, uri, published) VALUES (?1, ?2, ?3, ?4)",
                {message.id, message.modified, hashOf(message.uri), seconds(message.published)})
            && run("INSERT INTO words (rowid, title, text) VALUES (last_insert_rowid(), ?1, ?2)",
                   {message.title, message.text});
        if (!isDone)
            return false;
    }
    return true;
}

bool SearchIndex::remove(const QVector<qlonglong> &ids)
{
    bool isDone = true;
    for (qlonglong id : ids)
        isDone = isDone && run("DELETE FROM messages WHERE id = ?1", {id});
    return isDone;
}

bool SearchIndex::note(const QVector<MarkChange> &changes)
{
    return inTransaction([&] {
        bool isDone = true;
        for (const MarkChange &change : changes)
            isDone = isDone
                && run("UPDATE messages SET modified = ?3 WHERE id = ?1 AND modified = ?2",
                       {change.id, change.before, change.after});
        return isDone;
    });
}

bool SearchIndex::restrictTo(const QVector<qlonglong> &ids)
{
    bool isDone = run("DELETE FROM temp.allowed");
    for (qlonglong id : ids)
        isDone = isDone && run("INSERT OR IGNORE INTO temp.allowed VALUES (?1)", {id});
    return isDone;
}

bool SearchIndex::find(const QString &expression, const SearchBounds &bounds, QVector<qlonglong> *ids)
{
    const bool isRestricted = bounds.ids.has_value();
    ids->clear();
    return (!isRestricted || restrictTo(*bounds.ids))
        && run(bestMessages,
               {expression, seconds(bounds.since), seconds(bounds.until), int(isRestricted), bounds.limit},
               [ids](const QVariantList &row) { ids->append(row.first().toLongLong()); });
}

bool SearchIndex::mark(const QString &expression, const QVector<SearchableMessage> &messages,
                       QVector<MarkedMessage> *marked)
{
    marked->clear();
    // In one transaction, because each one of its own writes a part of the table of its own.
    bool isDone = run("BEGIN");
    for (const SearchableMessage &message : messages)
        isDone = isDone
            && run("INSERT INTO temp.shown (rowid, title, text) VALUES (?1, ?2, ?3)",
                   {message.id, message.title, message.text});
    isDone = isDone
        && run("SELECT rowid, highlight(shown, 0, char(2), char(3)), "
               "snippet(shown, 1, char(2), char(3), '…', 32) FROM temp.shown WHERE shown MATCH ?1",
               {expression}, [marked](const QVariantList &row) {
                   marked->append({row.at(0).toLongLong(), row.at(1).toString(), row.at(2).toString()});
               });
    // What was inserted is of no use any more.
    m_database->run("ROLLBACK");
    return isDone;
}

bool SearchIndex::check()
{
    return value("PRAGMA quick_check(1)").toString() == QLatin1String("ok")
        && run("INSERT INTO words (words) VALUES ('integrity-check')");
}

bool SearchIndex::run(const char *statement, const QVariantList &values, const SqliteDatabase::Row &row)
{
    const int code = m_database->run(statement, values, row);
    m_isDamaged = m_isDamaged || code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
    return code == SQLITE_DONE;
}

/// The first value of the first row.
QVariant SearchIndex::value(const char *statement)
{
    QVariant first;
    run(statement, {}, [&first](const QVariantList &row) { first = row.first(); });
    return first;
}

} // namespace Tidel
