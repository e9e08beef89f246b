// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SQLITEARCHIVE_H
#define SQLITEARCHIVE_H

#include <feedmessage.h>

#include <QList>
#include <QString>

struct sqlite3;

/// What the store does, done with nothing but SQLite: the yardstick of the benchmarks.
class SqliteArchive
{
public:
    explicit SqliteArchive(const QString &file);
    ~SqliteArchive();

    void addMessages(const QList<FeedMessage> &messages, const QString &channelUri);
    QList<FeedMessage> messagesForChannel(const QString &channelUri) const;

private:
    Q_DISABLE_COPY(SqliteArchive)
    void run(const char *sql) const;

    sqlite3 *m_database = nullptr;
};

#endif
