// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sqlitearchive.h"

#include <QDateTime>
#include <QUuid>

#include <sqlite3.h>

#include <stdexcept>

namespace {

/// A prepared statement.
class Statement
{
public:
    Statement(sqlite3 *database, const char *sql)
    {
        if (sqlite3_prepare_v2(database, sql, -1, &m_statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(database));
    }
    ~Statement() { sqlite3_finalize(m_statement); }

    void bind(int index, const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        sqlite3_bind_text(m_statement, index, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
    void bind(int index, sqlite3_int64 number) { sqlite3_bind_int64(m_statement, index, number); }
    bool step() { return sqlite3_step(m_statement) == SQLITE_ROW; }
    void reset() { sqlite3_reset(m_statement); }
    sqlite3_int64 number(int column) { return sqlite3_column_int64(m_statement, column); }
    QString text(int column)
    {
        return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column)),
                                 sqlite3_column_bytes(m_statement, column));
    }
    QDateTime time(int column) { return QDateTime::fromString(text(column), Qt::ISODate); }

private:
    Q_DISABLE_COPY(Statement)
    sqlite3_stmt *m_statement = nullptr;
};

} // namespace

SqliteArchive::SqliteArchive(const QString &file)
{
    if (sqlite3_open(file.toUtf8().constData(), &m_database) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_database));
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA synchronous = OFF");
    run("CREATE TABLE IF NOT EXISTS message (id INTEGER PRIMARY KEY, uri TEXT UNIQUE, link TEXT UNIQUE, "
        "title TEXT,"
        " description TEXT, summary TEXT, published TEXT, downloaded TEXT, favorite INTEGER DEFAULT 0)");
    run("CREATE TABLE IF NOT EXISTS part (channel TEXT, message INTEGER, PRIMARY KEY (channel, message))"
        " WITHOUT ROWID");
    run("CREATE INDEX IF NOT EXISTS part_message ON part (message)");
}

SqliteArchive::~SqliteArchive() { sqlite3_close(m_database); }

void SqliteArchive::run(const char *sql) const
{
    if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_database));
}

void SqliteArchive::addMessages(const QList<FeedMessage> &messages, const QString &channelUri)
{
    Statement find(m_database, "SELECT id FROM message WHERE link = ?");
    Statement insert(m_database,
                     "INSERT INTO message (uri, link, title, description, summary, published, downloaded)"
                     " VALUES (?, ?, ?, ?, ?, ?, ?)");
    Statement own(m_database, "INSERT OR IGNORE INTO part VALUES (?, ?)");
    const QString now = QDateTime::currentDateTime().toString(Qt::ISODate);
    run("BEGIN");
    for (const FeedMessage &message : messages) {
        find.bind(1, message.link());
        sqlite3_int64 id = find.step() ? find.number(0) : 0;
        find.reset();
        if (id == 0) {
            insert.bind(1, QUuid::createUuid().toString());
            insert.bind(2, message.link());
            insert.bind(3, message.title());
            insert.bind(4, message.description());
            insert.bind(5, message.summary());
            insert.bind(6, message.publishedDate().toString(Qt::ISODate));
            insert.bind(7, now);
            insert.step();
            insert.reset();
            id = sqlite3_last_insert_rowid(m_database);
        }
        own.bind(1, channelUri);
        own.bind(2, id);
        own.step();
        own.reset();
    }
    run("COMMIT");
}

QList<FeedMessage> SqliteArchive::messagesForChannel(const QString &channelUri) const
{
    Statement select(m_database,
                     "SELECT title, description, link, published, downloaded, favorite, summary FROM part"
                     " JOIN message ON message.id = part.message WHERE channel = ? ORDER BY downloaded");
    select.bind(1, channelUri);
    QList<FeedMessage> messages;
    while (select.step()) {
        FeedMessage message;
        message.setTitle(select.text(0));
        message.setDescription(select.text(1));
        message.setLink(select.text(2));
        message.setPublishedDate(select.time(3));
        message.setDownloadedTime(select.time(4));
        message.setFavorite(select.number(5) != 0);
        message.setSummary(select.text(6));
        messages.append(message);
    }
    return messages;
}

void SqliteArchive::deleteNewest(int count)
{
    Statement newest(m_database, "SELECT id FROM message ORDER BY id DESC LIMIT ?");
    Statement deletion(m_database, "DELETE FROM message WHERE id = ?");
    Statement taking(m_database, "DELETE FROM part WHERE message = ?");
    newest.bind(1, count);
    run("BEGIN");
    while (newest.step()) {
        deletion.bind(1, newest.number(0));
        deletion.step();
        deletion.reset();
        taking.bind(1, newest.number(0));
        taking.step();
        taking.reset();
    }
    run("COMMIT");
}
