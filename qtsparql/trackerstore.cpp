// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackerstore_p.h"

#include "absence_p.h"
#include "obstacle_p.h"
#include "ontology_p.h"
#include "sqlitewaiting_p.h"
#include "storefolder_p.h"
#include "tracker_p.h"
#include "trackerdialect_p.h"
#include "turtlestream_p.h"

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>

// Tracker's own messages are for developers. They appear in a terminal only if this category is enabled.
Q_LOGGING_CATEGORY(lcTracker, "tidel.sparql.tracker", QtFatalMsg)

namespace {

QSparqlError::ErrorType kindOf(const GError *error)
{
    // This is an error of the statement too. Tracker has no public name for the domain.
    if (error->domain == g_quark_try_string("tracker_date_error-quark"))
        return QSparqlError::StatementError;
    if (error->domain != TRACKER_SPARQL_ERROR)
        return QSparqlError::BackendError;
    switch (error->code) {
    case TRACKER_SPARQL_ERROR_PARSE:
    case TRACKER_SPARQL_ERROR_TYPE:
    case TRACKER_SPARQL_ERROR_UNKNOWN_CLASS:
    case TRACKER_SPARQL_ERROR_UNKNOWN_GRAPH:
    case TRACKER_SPARQL_ERROR_UNKNOWN_PROPERTY:
    case TRACKER_SPARQL_ERROR_UNSUPPORTED: return QSparqlError::StatementError;
    case TRACKER_SPARQL_ERROR_CONSTRAINT: return QSparqlError::TransactionError;
    default: return QSparqlError::BackendError;
    }
}

/// Converts \a error and frees it. \a what says which step failed.
QSparqlError fromGError(const QString &what, GError *error)
{
    const QString text = what + QLatin1String(": ") + QString::fromUtf8(error->message);
    const QSparqlError result(text, kindOf(error), error->code);
    g_error_free(error);
    return result;
}

/// The last critical message of Tracker on this thread. The call that caused it can still report success.
thread_local QString lastCriticalMessage;

void logFromGLib(const gchar *, GLogLevelFlags level, const gchar *message, gpointer)
{
    if (level & G_LOG_LEVEL_CRITICAL)
        lastCriticalMessage = QString::fromUtf8(message);
    qCDebug(lcTracker) << message;
}

void routeTrackerMessages()
{
    static const guint handler =
        g_log_set_handler("Tracker", GLogLevelFlags(G_LOG_LEVEL_MASK), logFromGLib, nullptr);
    Q_UNUSED(handler)
}

SparqlTable::Cell readCell(TrackerSparqlCursor *cursor, int column)
{
    const auto text = [cursor, column] {
        glong length = 0;
        const gchar *utf8 = tracker_sparql_cursor_get_string(cursor, column, &length);
        return QString::fromUtf8(utf8, int(length));
    };
    switch (tracker_sparql_cursor_get_value_type(cursor, column)) {
    case TRACKER_SPARQL_VALUE_TYPE_UNBOUND: return {};
    case TRACKER_SPARQL_VALUE_TYPE_URI:
        return {TrackerDialect::iriFromTracker(text()), SparqlTable::CellKind::Resource};
    case TRACKER_SPARQL_VALUE_TYPE_BLANK_NODE: return {text(), SparqlTable::CellKind::BlankNode};
    case TRACKER_SPARQL_VALUE_TYPE_INTEGER:
        return {qlonglong(tracker_sparql_cursor_get_integer(cursor, column))};
    case TRACKER_SPARQL_VALUE_TYPE_DOUBLE: return {tracker_sparql_cursor_get_double(cursor, column)};
    case TRACKER_SPARQL_VALUE_TYPE_BOOLEAN: return {bool(tracker_sparql_cursor_get_boolean(cursor, column))};
    case TRACKER_SPARQL_VALUE_TYPE_DATETIME: {
        const QString iso = text();
        const QDateTime time = QDateTime::fromString(iso, Qt::ISODateWithMs);
        return {time.isValid() ? QVariant(time) : QVariant(iso)};
    }
    default: return {text()};
    }
}

QSparqlError connectionError(const QString &message)
{
    return QSparqlError(message, QSparqlError::ConnectionError);
}

QSparqlError refuseNull(const QString &statement)
{
    // Tracker reads a statement up to the first null character only.
    if (!statement.contains(QChar(u'\0')))
        return QSparqlError();
    return QSparqlError(
        QStringLiteral(
            "The statement contains a null character, which the store cannot read; remove the character"),
        QSparqlError::StatementError);
}

const QString updateRefused = QStringLiteral("The update is refused");

/// What the store says, and what that means for the user.
struct Meaning
{
    const char *said;
    const char *meant;
};

const QString cannotMake = QStringLiteral("Cannot create the database of the store in %1: %2");

const Meaning meaningsOfRefusals[] = {
    {"Corrupt db file",
     "its database is damaged; put back a copy of the folder, or move the folder away to start with an empty store"},
    {"database disk image is malformed",
     "its database is damaged; put back a copy of the folder, or move the folder away to start with an empty store"},
    {"does not have enough space", "the disk is full; free some space and try again"},
    {"got version 0,",
     "there is no database in it, or a damaged one; put back a copy of the folder, or move the folder away to start with an empty store"},
    {"version is too old",
     "its database was made by an older version of Tracker; open it with that version, or move the folder away to start with an empty store"},
    {"version is too new",
     "its database was made by a newer version of Tracker; update Tracker, or move the folder away to start with an empty store"},
};

const Meaning meaningsOfFailures[] = {
    {"database or disk is full", "the disk is full; free some space and try again"},
    {"No space left on device", "the disk is full; free some space and try again"},
    {"database disk image is malformed",
     "the database is damaged; put back a copy of the folder of the store"},
};

template <int size> QString meaning(const Meaning (&meanings)[size], const QString &said)
{
    const auto found = std::find_if(std::begin(meanings), std::end(meanings), [&](const Meaning &each) {
        return said.contains(QLatin1String(each.said));
    });
    return found == std::end(meanings) ? QString() : QString::fromLatin1(found->meant);
}

/// Returns true if \a error says that the content of the database is damaged; otherwise returns false.
bool isDamage(const QSparqlError &error)
{
    const QString message = error.message();
    return message.contains(QLatin1String("Corrupt db file"))
        || message.contains(QLatin1String("database disk image is malformed"));
}

/// Returns true if \a error says that there is no database of Tracker in the file; otherwise returns false.
bool isUseless(const QSparqlError &error)
{
    return isDamage(error) || error.message().contains(QLatin1String("got version 0,"));
}

/// Returns true if SQLite refused the update because another process wrote after the update had read;
/// otherwise returns false. Tracker has no error code for that.
bool isOutOfDate(const QSparqlError &error)
{
    static const QRegularExpression locked(
        QLatin1Char('^') + updateRefused
        + QLatin1String(": (?:Could not \\w+ FTS text: )?database is locked"));
    return locked.match(error.message()).hasMatch();
}

} // namespace

struct TrackerStore::Handle
{
    explicit Handle(const QString &path) : folder(path) { }

    const QString folder;
    std::unique_ptr<QTemporaryDir> copy; // if the folder is one
    GObjectPtr<TrackerSparqlConnection> connection;

    ~Handle();
    /// Returns true if the store has the compiled-in ontology; otherwise returns false.
    bool hasOurOntology() const;
};

TrackerStore::Handle::~Handle()
{
    // Closing cleans up. If others are in the way, the next program that closes the store does it.
    const SqliteWaiting waiting(folder, 1000);
    if (connection)
        tracker_sparql_connection_close(connection.get());
}

bool TrackerStore::Handle::hasOurOntology() const
{
    static const QByteArray question = ontologyQuestion();
    const GObjectPtr<TrackerSparqlCursor> answer(
        tracker_sparql_connection_query(connection.get(), question.constData(), nullptr, nullptr));
    return answer && tracker_sparql_cursor_next(answer.get(), nullptr, nullptr)
        && tracker_sparql_cursor_get_boolean(answer.get(), 0);
}

TrackerStore::TrackerStore(const QString &folder, int patience) : m_folder(folder), m_patience(patience) { }

TrackerStore::~TrackerStore() = default;

std::unique_ptr<TrackerStore> TrackerStore::open(const QString &folder, int patience, QSparqlError *error)
{
    routeTrackerMessages();
    std::unique_ptr<TrackerStore> store(new TrackerStore(folder, patience));
    StoreFolder place(folder);
    bool isReadOnly = place.isMade() && place.refuseReadOnly().isValid();
    if (!isReadOnly)
        store->m_handle = openForReading(&place);
    if (!store->m_handle)
        isReadOnly = isReadOnly || (place.isMade() && !obstacleIn(folder).isEmpty());
    if (isReadOnly)
        store->m_handle = openCopy(place, error);
    else if (!store->m_handle)
        store->openInTurn(&place, error);
    return store->m_handle ? std::move(store) : nullptr;
}

/// Opens what no other process opens at the same time. On failure, sets \a error.
void TrackerStore::openInTurn(StoreFolder *place, QSparqlError *error)
{
    *error = place->enter(m_patience);
    if (error->isValid())
        return;
    // Another process may have made the store in the meantime.
    m_handle = openForReading(place);
    if (m_handle)
        return;
    m_access = Access::Writing;
    m_handle = openForWriting(place, error);
}

/// Opens the database in \a place. For writing, the compiled-in ontology is used. On failure, sets \a error
/// and returns null.
std::unique_ptr<TrackerStore::Handle> TrackerStore::connect(const StoreFolder &place, Access access,
                                                            QSparqlError *error)
{
    const GObjectPtr<GFile> store(g_file_new_for_path(QFile::encodeName(place.path()).constData()));
    const GObjectPtr<GFile> ontology(
        g_file_new_for_uri((QByteArrayLiteral("resource://") + ontologyPath).constData()));
    const bool isForWriting = access == Access::Writing;
    GError *cause = nullptr;
    auto handle = std::make_unique<Handle>(place.path());
    SqliteWaiting::govern([&] {
        handle->connection.reset(tracker_sparql_connection_new(
            isForWriting ? TRACKER_SPARQL_CONNECTION_FLAGS_NONE : TRACKER_SPARQL_CONNECTION_FLAGS_READONLY,
            store.get(), isForWriting ? ontology.get() : nullptr, nullptr, &cause));
    });
    if (!cause)
        return handle;
    *error = fromGError(QString(), cause);
    if (isDamage(*error))
        place.noteDamage();
    // Without space Tracker says of a sound database that it has another version.
    QString why = isDamage(*error) ? QString() : obstacleIn(place.path());
    if (why.isEmpty())
        why = meaning(meaningsOfRefusals, error->message());
    if (why.isEmpty())
        why = QStringLiteral("it may be damaged; to start with an empty store, move the folder away");
    *error = QSparqlError(
        QStringLiteral("Cannot open the store in %1: %2%3").arg(place.path(), why, error->message()),
        QSparqlError::ConnectionError, error->number());
    return nullptr;
}

/// Opens the database without waiting for anybody. Returns null if that fails or something has to be done to
/// the database first.
std::unique_ptr<TrackerStore::Handle> TrackerStore::openForReading(StoreFolder *place)
{
    // Only opening for reading looks at the copy of the ontology.
    if (!place->isMade() || place->isDamaged() || !place->removeOntologyCopy())
        return nullptr;
    QSparqlError refusal;
    std::unique_ptr<Handle> handle = connect(*place, Access::Reading, &refusal);
    return handle && handle->hasOurOntology() ? std::move(handle) : nullptr;
}

/// Opens a copy of the database in \a place. On failure, sets \a error and returns null.
std::unique_ptr<TrackerStore::Handle> TrackerStore::openCopy(const StoreFolder &place, QSparqlError *error)
{
    std::unique_ptr<QTemporaryDir> copy = place.copy();
    if (!copy) {
        *error = connectionError(
            QStringLiteral("Cannot open the store in %1: %2; a copy for reading could not be made in %3")
                .arg(place.path(), obstacleIn(place.path()), QDir::tempPath()));
        return nullptr;
    }
    const StoreFolder copied(copy->path());
    if (place.isDamaged())
        copied.requestCheck();
    // A copy can be extended to the compiled-in ontology.
    std::unique_ptr<Handle> handle = connect(copied, Access::Writing, error);
    if (handle)
        handle->copy = std::move(copy);
    return handle;
}

/// Creates the database. One whose creation was interrupted is used if it can be opened. On failure, sets
/// \a error and returns false.
bool TrackerStore::make(StoreFolder *place, QSparqlError *error)
{
    if (!place->beginMaking()) {
        *error = connectionError(cannotMake.arg(place->path(), obstacleIn(place->path())));
        return false;
    }
    bool isNew = !place->holdsData();
    if (isNew)
        place->removeDatabase();
    else
        place->requestCheck();
    QSparqlError refusal;
    bool isOpened = connect(*place, Access::Writing, &refusal) != nullptr;
    if (!isOpened && !isNew && isUseless(refusal) && obstacleIn(place->path()).isEmpty()) {
        isNew = place->setAside();
        isOpened = isNew && connect(*place, Access::Writing, &refusal);
    }
    // If the disk is full, Tracker can report success of a creation that failed.
    const bool isMade =
        isOpened && place->sync() && connect(*place, Access::Writing, &refusal) && place->endMaking();
    if (isMade)
        return true;
    // Its removal makes space.
    const QString why = obstacleIn(place->path());
    *error = isOpened || !why.isEmpty() ? connectionError(cannotMake.arg(place->path(), why)) : refusal;
    if (isNew)
        place->removeDatabase();
    return false;
}

/// Opens the database for writing and creates it if it does not exist.
std::unique_ptr<TrackerStore::Handle> TrackerStore::openForWriting(StoreFolder *place, QSparqlError *error)
{
    if (!place->isMade() && !make(place, error))
        return nullptr;
    if (place->isDamaged())
        place->requestCheck();
    *error = QSparqlError();
    std::unique_ptr<Handle> handle = connect(*place, Access::Writing, error);
    if (handle) {
        place->forgetDamage();
        place->tighten();
    }
    return handle;
}

/// Opens the store for writing. The new connection also replaces the one for reading, so that queries see
/// every update at once.
QSparqlError TrackerStore::becomeWritable()
{
    if (m_access == Access::Writing || m_damage.isValid())
        return m_damage;
    StoreFolder place(m_folder);
    QSparqlError error = place.enter(m_patience);
    std::unique_ptr<Handle> handle = error.isValid() ? nullptr : openForWriting(&place, &error);
    if (handle) {
        m_handle = std::move(handle);
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
        const QString known = meaning(meaningsOfFailures, error.message());
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

QSparqlError TrackerStore::select(const QString &statement, SparqlTable *table)
{
    if (const QSparqlError refusal = refuseNull(statement); refusal.isValid())
        return refusal;
    GError *error = nullptr;
    const GObjectPtr<TrackerSparqlCursor> cursor(tracker_sparql_connection_query(
        m_handle->connection.get(), TrackerDialect::toTracker(withNotExists(statement)).toUtf8().constData(),
        nullptr, &error));
    if (!cursor)
        return explained(fromGError(QStringLiteral("The query is refused"), error));

    SparqlTable rows;
    const int columns = tracker_sparql_cursor_get_n_columns(cursor.get());
    for (int i = 0; i < columns; ++i)
        rows.names.append(QString::fromUtf8(tracker_sparql_cursor_get_variable_name(cursor.get(), i)));
    while (tracker_sparql_cursor_next(cursor.get(), nullptr, &error)) {
        for (int i = 0; i < columns; ++i)
            rows.cells.push_back(readCell(cursor.get(), i));
    }
    // An open cursor would keep the read transaction open until the result is deleted.
    tracker_sparql_cursor_close(cursor.get());
    if (error)
        return explained(fromGError(QStringLiteral("The query failed"), error));
    *table = std::move(rows);
    return QSparqlError();
}

QSparqlError TrackerStore::update(const QString &statement)
{
    if (TrackerDialect::isBlank(statement))
        return QSparqlError();
    if (const QSparqlError refusal = refuseNull(statement); refusal.isValid())
        return refusal;
    if (const QSparqlError failure = becomeWritable(); failure.isValid())
        return explained(failure);
    const QByteArray text =
        TrackerDialect::toTracker(TrackerDialect::withoutEmptySubjects(statement)).toUtf8();
    SqliteWaiting waiting(m_folder, m_patience);
    QSparqlError error = updateOnce(text);
    while (isOutOfDate(error) && waiting.goOn())
        error = updateOnce(text);
    if (waiting.isOver())
        return QSparqlError(updateRefused + QLatin1String(": ") + waiting.failure(),
                            QSparqlError::BackendError);
    return explained(error);
}

QSparqlError TrackerStore::updateOnce(const QByteArray &text)
{
    GError *error = nullptr;
    lastCriticalMessage.clear();
    tracker_sparql_connection_update(m_handle->connection.get(), text.constData(), nullptr, &error);
    return error ? fromGError(updateRefused, error) : afterCommit();
}

/// Returns the error of the last commit. If a commit fails, for example because the disk is full, Tracker
/// logs that and reports success.
QSparqlError TrackerStore::afterCommit()
{
    return lastCriticalMessage.isEmpty()
        ? QSparqlError()
        : QSparqlError(QStringLiteral("The update failed: ") + lastCriticalMessage,
                       QSparqlError::BackendError);
}

QSparqlError TrackerStore::writeTurtle(const QString &description, QIODevice *device)
{
    GError *error = nullptr;
    const QByteArray text = TrackerDialect::toTracker(description).toUtf8();
    return ::writeTurtle(m_handle->connection.get(), text, device, &error)
        ? QSparqlError()
        : explained(fromGError(QStringLiteral("The description failed"), error));
}

QSparqlError TrackerStore::readTurtle(const QString &fileName)
{
    if (const QSparqlError failure = becomeWritable(); failure.isValid())
        return explained(failure);
    GError *error = nullptr;
    lastCriticalMessage.clear();
    if (::readTurtle(m_handle->connection.get(), fileName, &error)) {
        const QSparqlError failure = afterCommit();
        return explained(failure.isValid() ? failure : sync());
    }
    // The file cannot be read or decompressed.
    const bool isOfFile = error->domain == G_IO_ERROR;
    QSparqlError result = fromGError(QStringLiteral("The file is refused"), error);
    if (isOfFile)
        result.setType(QSparqlError::StatementError);
    return explained(result);
}

QSparqlError TrackerStore::sync() const
{
    const int error = StoreFolder(m_folder).syncUpdates();
    return error == 0 ? QSparqlError()
                      : QSparqlError(QStringLiteral("The updates may not be on the disk: ") + obstacle(error),
                                     QSparqlError::BackendError, error);
}
