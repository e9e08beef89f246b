// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackerstore_p.h"

#include "absence_p.h"
#include "dividedquery_p.h"
#include "obstacle_p.h"
#include "opendatabase_p.h"
#include "queryparameters_p.h"
#include "sqlitewaiting_p.h"
#include "storeerrors_p.h"
#include "storefolder_p.h"
#include "trackerdialect_p.h"
#include "trackermessages_p.h"
#include "turtlestream_p.h"
#include "updatebatch_p.h"

#include <QLocale>
#include <QSet>
#include <QStorageInfo>

namespace {

const QString fileRefused = QStringLiteral("The file is refused");

void readCell(TrackerSparqlCursor *cursor, int column, SparqlTable *table)
{
    using Type = SparqlTable::TextType;
    const auto append = [&](Type type) {
        glong length = 0;
        const gchar *utf8 = tracker_sparql_cursor_get_string(cursor, column, &length);
        table->append(type, utf8, size_t(length));
    };
    switch (tracker_sparql_cursor_get_value_type(cursor, column)) {
    case TRACKER_SPARQL_VALUE_TYPE_UNBOUND: table->append(); break;
    case TRACKER_SPARQL_VALUE_TYPE_URI: append(Type::Resource); break;
    case TRACKER_SPARQL_VALUE_TYPE_BLANK_NODE: append(Type::BlankNode); break;
    case TRACKER_SPARQL_VALUE_TYPE_INTEGER:
        table->append(qint64(tracker_sparql_cursor_get_integer(cursor, column)));
        break;
    case TRACKER_SPARQL_VALUE_TYPE_DOUBLE:
        table->append(tracker_sparql_cursor_get_double(cursor, column));
        break;
    case TRACKER_SPARQL_VALUE_TYPE_BOOLEAN:
        table->append(bool(tracker_sparql_cursor_get_boolean(cursor, column)));
        break;
    case TRACKER_SPARQL_VALUE_TYPE_DATETIME: append(Type::Time); break;
    default: append(Type::Literal);
    }
}

/// Stores the rows of \a cursor in \a table. Returns false if that fails, and sets \a error; otherwise
/// returns true.
bool readRows(TrackerSparqlCursor *cursor, SparqlTable *table, GError **error)
{
    GError *failure = nullptr;
    QStringList names;
    const int columns = tracker_sparql_cursor_get_n_columns(cursor);
    for (int i = 0; i < columns; ++i)
        names.append(QString::fromUtf8(tracker_sparql_cursor_get_variable_name(cursor, i)));
    SparqlTable rows(names);
    while (tracker_sparql_cursor_next(cursor, nullptr, &failure)) {
        for (int i = 0; i < columns; ++i)
            readCell(cursor, i, &rows);
    }
    // An open cursor would keep the read transaction open until the result is deleted.
    tracker_sparql_cursor_close(cursor);
    if (failure) {
        g_propagate_error(error, failure);
        return false;
    }
    *table = std::move(rows);
    return true;
}

} // namespace

TrackerStore::TrackerStore(const QString &folder, int patience) : m_folder(folder), m_patience(patience) { }

TrackerStore::~TrackerStore() = default;

std::unique_ptr<TrackerStore> TrackerStore::open(const QString &folder, int patience, QSparqlError *error)
{
    TrackerMessages::route();
    std::unique_ptr<TrackerStore> store(new TrackerStore(folder, patience));
    StoreFolder place(folder);
    bool isReadOnly = place.isMade() && place.refuseReadOnly().isValid();
    if (!isReadOnly)
        store->m_database = OpenDatabase::openForReading(&place);
    if (!store->m_database)
        isReadOnly = isReadOnly || (place.isMade() && !obstacleIn(folder).isEmpty());
    if (isReadOnly)
        store->m_database = OpenDatabase::openCopy(place, error);
    else if (!store->m_database)
        store->openInTurn(&place, error);
    return store->m_database ? std::move(store) : nullptr;
}

/// Opens what no other process opens at the same time. On failure, sets \a error.
void TrackerStore::openInTurn(StoreFolder *place, QSparqlError *error)
{
    *error = place->enter(m_patience);
    if (error->isValid())
        return;
    // Another process may have made the store in the meantime.
    m_database = OpenDatabase::openForReading(place);
    if (m_database)
        return;
    m_access = Access::Writing;
    m_database = OpenDatabase::openForWriting(place, error);
}

/// Opens the store for writing. The new connection also replaces the one for reading, so that queries see
/// every update at once.
QSparqlError TrackerStore::becomeWritable()
{
    if (m_access == Access::Writing || m_damage.isValid())
        return m_damage;
    StoreFolder place(m_folder);
    QSparqlError error = place.enter(m_patience);
    OpenDatabase::Pointer database = error.isValid() ? nullptr : OpenDatabase::openForWriting(&place, &error);
    if (database) {
        m_database = std::move(database);
        m_access = Access::Writing;
    }
    return error;
}

/// Returns \a error with its meaning for the user. If it reports damage, this object writes nothing more, and
/// the next opening checks the database.
QSparqlError TrackerStore::explained(const QSparqlError &error)
{
    QSparqlError result = error;
    if (error.type() == QSparqlError::BackendError) {
        const QString known = meaningOfFailure(error.message());
        const QString why = known.isEmpty() ? obstacleIn(m_folder) : known;
        if (!why.isEmpty())
            result.setMessage(why + QLatin1String(": ") + error.message());
    }
    if (isDamage(error)) {
        StoreFolder(m_folder).noteDamage();
        m_damage = result;
    }
    return result;
}

QSparqlError TrackerStore::select(const QString &statement, const QueryParameters &parameters,
                                  SparqlTable *table)
{
    if (const QSparqlError refusal = refuseNull(statement); refusal.isValid())
        return refusal;
    // Not to read the text again is half of the time of a small query.
    if (m_database->prepared().knows(parameters) && selectPrepared(parameters, table))
        return QSparqlError();
    const QString query = withNotExists(statement);
    const std::optional<DividedQuery> divided = DividedQuery::of(query);
    if (divided ? selectDivided(*divided, table) : selectPrepared(parameters, table))
        return QSparqlError();
    return selectText(query, table);
}

/// Runs \a query. Returns false if it has to be run as a text; otherwise returns true.
bool TrackerStore::selectPrepared(const QueryParameters &query, SparqlTable *table)
{
    const GObjectPtr<TrackerSparqlCursor> prepared = m_database->prepared().run(query);
    if (!prepared || !readRows(prepared.get(), table, nullptr))
        return false;
    if (query.column())
        table->fillColumn(query.column()->index, query.column()->resource);
    return true;
}

/// Runs \a query. Returns false if it has to be run as a whole; otherwise returns true.
bool TrackerStore::selectDivided(const DividedQuery &query, SparqlTable *table)
{
    // Longer lists gain nothing.
    constexpr int mostCandidates = 100;
    SparqlTable candidates;
    if (selectText(query.candidates(), &candidates).isValid() || candidates.rowCount() > mostCandidates)
        return false;
    QStringList resources;
    for (int row = 0; row < candidates.rowCount(); ++row) {
        if (candidates.cell(row, 0).kind != SparqlTable::CellKind::Resource)
            return false;
        resources.append(candidates.cell(row, 0).value.toString());
    }
    const QString question = resources.isEmpty() ? QString() : query.excluded(resources);
    SparqlTable excluded;
    if (!resources.isEmpty() && (question.isEmpty() || selectText(question, &excluded).isValid()))
        return false;
    QSet<QString> names;
    for (int row = 0; row < excluded.rowCount(); ++row)
        names.insert(excluded.cell(row, 0).value.toString());
    candidates.removeRows([&](int row) { return names.contains(resources.at(row)); });
    *table = std::move(candidates);
    return true;
}

QSparqlError TrackerStore::selectText(const QString &query, SparqlTable *table)
{
    GError *error = nullptr;
    const GObjectPtr<TrackerSparqlCursor> cursor(tracker_sparql_connection_query(
        m_database->connection(), TrackerDialect::toTracker(query).toUtf8().constData(), nullptr, &error));
    if (!cursor)
        return explained(fromGError(QStringLiteral("The query is refused"), error));
    return readRows(cursor.get(), table, &error)
        ? QSparqlError()
        : explained(fromGError(QStringLiteral("The query failed"), error));
}

QSparqlError TrackerStore::update(const QString &statement)
{
    if (TrackerDialect::isBlank(statement))
        return QSparqlError();
    if (const QSparqlError refusal = refuseNull(statement); refusal.isValid())
        return refusal;
    if (const QSparqlError failure = becomeWritable(); failure.isValid())
        return explained(failure);
    const QString text = TrackerDialect::toTracker(TrackerDialect::withoutEmptySubjects(statement));
    const UpdateBatch batch(text, &m_database->ranges());
    return patiently(updateRefused, [&](SqliteWaiting *waiting) { return updateOnce(text, batch, waiting); });
}

/// Calls \a write until no other process is in the way, or too much time has passed. The message begins with
/// \a refused then.
QSparqlError TrackerStore::patiently(const QString &refused,
                                     const std::function<QSparqlError(SqliteWaiting *)> &write)
{
    SqliteWaiting waiting(m_folder, m_patience);
    QSparqlError error = write(&waiting);
    while ((isOutOfDate(error) || waiting.hasMissedLock()) && waiting.goOn())
        error = write(&waiting);
    if (waiting.isOver())
        return QSparqlError(refused + QLatin1String(": ") + waiting.failure(), QSparqlError::BackendError);
    return explained(error);
}

/// Runs \a batch, or \a text if that is empty or refused: what the text reports is what hosts know.
QSparqlError TrackerStore::updateOnce(const QString &text, const UpdateBatch &batch, SqliteWaiting *waiting)
{
    GError *error = nullptr;
    TrackerMessages::forget();
    waiting->begin();
    if (!batch.isEmpty())
        batch.run(m_database->connection(), &error);
    if (batch.isEmpty() || (error && !waiting->hasMissedLock())) {
        g_clear_error(&error);
        TrackerMessages::forget();
        waiting->begin();
        tracker_sparql_connection_update(m_database->connection(), text.toUtf8().constData(), nullptr,
                                         &error);
    }
    return error ? fromGError(updateRefused, error) : TrackerMessages::failureOfCommit();
}

QSparqlError TrackerStore::writeTurtle(const QString &description, QIODevice *device)
{
    GError *error = nullptr;
    const QByteArray text = TrackerDialect::toTracker(description).toUtf8();
    return ::writeTurtle(m_database->connection(), text, device, &error)
        ? QSparqlError()
        : explained(fromGError(QStringLiteral("The description failed"), error));
}

/// Returns an error if the disk has not enough space for the file \a fileName. Tracker can crash when it
/// notices that in the middle of a file.
QSparqlError TrackerStore::refuseWithoutSpace(const QString &fileName) const
{
    // The database is about as large as the text, and so is the log of the update.
    const qint64 needed = 2 * sizeOfTurtle(fileName);
    const qint64 available = QStorageInfo(m_folder).bytesAvailable();
    if (available < 0 || available >= needed)
        return QSparqlError();
    const QLocale locale = QLocale::c();
    return QSparqlError(
        fileRefused
            + QStringLiteral(
                  ": about %1 are needed on the disk, and %2 are free; free some space and try again")
                  .arg(locale.formattedDataSize(needed), locale.formattedDataSize(available)),
        QSparqlError::BackendError);
}

QSparqlError TrackerStore::readTurtle(const QString &fileName)
{
    if (const QSparqlError failure = becomeWritable(); failure.isValid())
        return explained(failure);
    if (const QSparqlError failure = refuseWithoutSpace(fileName); failure.isValid())
        return failure;
    const QSparqlError failure =
        patiently(fileRefused, [&](SqliteWaiting *waiting) { return readOnce(fileName, waiting); });
    return failure.isValid() ? failure : explained(sync());
}

QSparqlError TrackerStore::readOnce(const QString &fileName, SqliteWaiting *waiting) const
{
    GError *error = nullptr;
    waiting->begin();
    if (::readTurtle(m_database->connection(), fileName, &error) && !waiting->isUndone())
        return QSparqlError();
    // The file cannot be read or decompressed.
    const bool isOfFile = error && error->domain == G_IO_ERROR;
    QSparqlError result = error ? fromGError(fileRefused, error)
                                : QSparqlError(fileRefused + QLatin1String(": the database undid the update"),
                                               QSparqlError::BackendError);
    if (isOfFile)
        result.setType(QSparqlError::StatementError);
    else if (!obstacleIn(m_folder).isEmpty())
        result.setType(QSparqlError::BackendError);
    return result;
}

QSparqlError TrackerStore::sync() const
{
    const int error = StoreFolder(m_folder).syncUpdates();
    return error == 0 ? QSparqlError()
                      : QSparqlError(QStringLiteral("The updates may not be on the disk: ") + obstacle(error),
                                     QSparqlError::BackendError, error);
}
