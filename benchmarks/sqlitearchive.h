// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SQLITEARCHIVE_H
#define SQLITEARCHIVE_H

#include <feedmessage.h>

#include <QList>
#include <QString>

struct sqlite3;

/// Stores messages with SQLite only. The benchmarks compare the store with this class.
class SqliteArchive
{
public:
    /// Opens the archive in \a file, which is created if necessary.
    explicit SqliteArchive(const QString &file);
    /// Closes the archive.
    ~SqliteArchive();

    /// Adds the messages that are not stored, and adds all messages to the channel.
    void addMessages(const QList<FeedMessage> &messages, const QString &channelUri);
    /// Returns the messages of the channel.
    QList<FeedMessage> messagesForChannel(const QString &channelUri) const;
    /// Deletes the \a count messages that were added last.
    void deleteNewest(int count);

private:
    Q_DISABLE_COPY(SqliteArchive)
    void run(const char *sql) const;

    sqlite3 *m_database = nullptr;
};

#endif
