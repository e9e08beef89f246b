// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHINDEX_P_H
#define TIDEL_SEARCHINDEX_P_H

#include "sqlitedatabase_p.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVector>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

namespace Tidel {

/// A message for the index.
struct SearchableMessage
{
    qlonglong id = 0; ///< The store's number of it.
    qlonglong modified = 0; ///< Changes when the message does.
    QString uri;
    QDateTime published;
    QString title; ///< Plain text, as the next.
    QString text;
};

/// A change of a message that left its texts as they are.
struct MarkChange
{
    qlonglong id = 0; ///< The store's number of it.
    qlonglong before = 0; ///< Its mark of change before, and after.
    qlonglong after = 0;
};

/// What the index knows of a message.
struct IndexedState
{
    qlonglong modified = 0;
    qlonglong uriHash = 0;
};

/// Which messages a search may find.
struct SearchBounds
{
    std::optional<QVector<qlonglong>> ids; ///< All messages if there is none.
    QDateTime since; ///< Without a bound if invalid.
    QDateTime until;
    int limit = 0;
};

/// A text with the words that were found between beginMark and endMark.
struct MarkedMessage
{
    qlonglong id = 0;
    QString title;
    QString excerpt;
};

/**
 * The words of all messages, in a file that is only a cache. It keeps no texts, only where each word stands.
 *
 * Functions that return bool return false if SQLite fails; see error().
 */
class SearchIndex
{
public:
    static constexpr QChar beginMark = QChar(2);
    static constexpr QChar endMark = QChar(3);
    static constexpr int maximumRanked = 2000; ///< find() compares no more.

    /// The file of the index of the user's store.
    static QString file();

    /// Opens the index in the file \a path, and makes or empties it if it is of another version, damaged or
    /// missing. If the file cannot be written, the index is in a temporary file.
    explicit SearchIndex(const QString &path);

    /// Returns true if the index is in its file; otherwise returns false.
    bool isKept() const { return m_isKept; }
    /// Goes on with an empty index in a temporary file, which goes with this object.
    bool useTemporaryFile();
    QString error() const { return m_database->error(); }
    /// Returns true if the file is damaged; otherwise returns false.
    bool isDamaged() const { return m_isDamaged; }
    /// Empties the index, also if the file is damaged.
    bool reset();

    /// A text that tells whether the store has changed since it was noted, and when that was.
    QString sign();
    qint64 noteTime();
    bool note(const QString &sign, qint64 time);

    /// The number of messages.
    int size();
    /// Sums over all messages: 1, the number, modified, the product of both. Empty if they are too large.
    QVariantList sums();
    /// The number of the last message; 0 if there is none.
    qlonglong lastId();
    /// The states of the messages from the number \a first to \a last.
    QHash<qlonglong, IndexedState> states(qlonglong first = 0,
                                          qlonglong last = std::numeric_limits<qlonglong>::max());
    static qlonglong hashOf(const QString &uri);
    /// Returns true if more is to be dropped than is worth keeping; otherwise returns false.
    bool isWasteful();

    /// Calls \a work while no other process can write. What it writes is kept if it returns true.
    bool inTransaction(const std::function<bool()> &work);
    /// Begins a transaction. No other process can write before its end().
    bool begin();
    /// Ends the transaction. What it wrote is kept if \a isDone is true. Returns true if it is kept.
    bool end(bool isDone);
    /// Adds \a messages, or replaces those with the same numbers.
    bool put(const QVector<SearchableMessage> &messages);
    bool remove(const QVector<qlonglong> &ids);
    /// Takes over the new marks of messages that the index had as they were before.
    bool note(const QVector<MarkChange> &changes);

    /// The numbers of the messages that match \a expression, see matchExpression(), the best first. If
    /// thousands match, the best of those that were stored last.
    bool find(const QString &expression, const SearchBounds &bounds, QVector<qlonglong> *ids);
    /// Those of \a messages that match \a expression, with the found words marked.
    bool mark(const QString &expression, const QVector<SearchableMessage> &messages,
              QVector<MarkedMessage> *marked);
    /// Returns true if the words in the index are those of its messages, as far as can be seen without the
    /// texts; otherwise returns false.
    bool check();

private:
    bool open(const QString &path);
    bool isCurrent();
    bool make();
    bool run(const char *statement, const QVariantList &values = {}, const SqliteDatabase::Row &row = {});
    QVariant value(const char *statement);
    bool restrictTo(const QVector<qlonglong> &ids);

    std::unique_ptr<SqliteDatabase> m_database;
    bool m_isKept = false;
    bool m_isDamaged = false;
};

} // namespace Tidel

#endif
