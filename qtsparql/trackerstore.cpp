// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackerstore_p.h"

#include "trackerdialect_p.h"

// The library carries its new name from 3.8 on.
#if __has_include(<tinysparql.h>)
#include <tinysparql.h>
#else
#include <libtracker-sparql/tracker-sparql.h>
#endif

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QLoggingCategory>

// Tracker's own messages are for whoever looks into the store; they must not reach a user's terminal unasked.
Q_LOGGING_CATEGORY(lcTracker, "tidel.sparql.tracker", QtFatalMsg)

namespace {

struct GObjectDeleter
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T> using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

constexpr int lockTimeoutMs = 30000;

QSparqlError::ErrorType kindOf(const GError *error)
{
    // The statement's fault as well, but of a domain that Tracker has no public name for.
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

/// The one place where a store's error becomes ours. Takes \a error.
QSparqlError fromGError(const QString &what, GError *error)
{
    const QString text = what + QLatin1String(": ") + QString::fromUtf8(error->message);
    const QSparqlError result(text, kindOf(error), error->code);
    g_error_free(error);
    return result;
}

QSparqlError connectionError(const QString &message)
{
    return QSparqlError(message, QSparqlError::ConnectionError);
}

/// What went wrong within Tracker on this thread, whether or not it made a call fail.
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

QSparqlError refuseNull(const QString &statement)
{
    // Tracker takes zero-terminated text, so that the rest of such a statement would silently be left out.
    if (!statement.contains(QChar(u'\0')))
        return QSparqlError();
    return QSparqlError(QStringLiteral("The statement contains a null character"),
                        QSparqlError::StatementError);
}

bool waitFor(QLockFile *lock)
{
    // Left to itself QLockFile looks ever more rarely: the last of eight programs would start after six
    // seconds.
    constexpr int intervalMs = 10;
    const QDeadlineTimer deadline(lockTimeoutMs);
    while (!lock->tryLock(intervalMs)) {
        if (lock->error() != QLockFile::LockFailedError || deadline.hasExpired())
            return false;
    }
    return true;
}

/**
 * Stands in the folder of a store for as long as a database is being made there. Tracker never again opens a
 * database whose making was cut short. It holds nothing yet, since the lock is kept until it is whole, so
 * that whoever finds the mark may begin anew.
 */
class CreationMark
{
public:
    explicit CreationMark(const QString &folder)
        : m_folder(folder), m_file(m_folder.filePath(QStringLiteral("creating")))
    {
    }

    /// Leaves a store that is whole alone. False when the folder cannot be written to.
    bool set()
    {
        if (m_file.exists()) {
            const QStringList remains = m_folder.entryList({QStringLiteral("meta.db*")}, QDir::Files);
            for (const QString &name : remains)
                m_folder.remove(name);
        }
        return m_folder.exists(QStringLiteral("meta.db")) || m_file.open(QIODevice::WriteOnly);
    }

    /// False when the mark that was set is still there, or was taken over by somebody else.
    bool remove() { return !m_file.isOpen() || m_file.remove(); }

private:
    QDir m_folder;
    QFile m_file;
};

} // namespace

struct TrackerStore::Handle
{
    GObjectPtr<TrackerSparqlConnection> connection;
};

TrackerStore::TrackerStore(std::unique_ptr<Handle> handle) : m_handle(std::move(handle)) { }

TrackerStore::~TrackerStore() { tracker_sparql_connection_close(m_handle->connection.get()); }

std::unique_ptr<TrackerStore> TrackerStore::open(const QString &folder, QSparqlError *error)
{
    routeTrackerMessages();
    if (!QDir().mkpath(folder)) {
        *error = connectionError(QStringLiteral("Cannot create the folder of the store, %1").arg(folder));
        return nullptr;
    }
    // Two processes that create one database at once spoil it for each other.
    QLockFile lock(folder + QLatin1String("/opening.lock"));
    if (!waitFor(&lock)) {
        *error = connectionError(QStringLiteral("Cannot lock the store in %1").arg(folder));
        return nullptr;
    }
    CreationMark mark(folder);
    std::unique_ptr<TrackerStore> store = mark.set() ? openLocked(folder, error) : nullptr;
    if (store && mark.remove())
        return store;
    if (!error->isValid())
        *error = connectionError(QStringLiteral("Cannot write in the folder of the store, %1").arg(folder));
    return nullptr;
}

std::unique_ptr<TrackerStore> TrackerStore::openLocked(const QString &folder, QSparqlError *error)
{
    const GObjectPtr<GFile> store(g_file_new_for_path(QFile::encodeName(folder).constData()));
    const GObjectPtr<GFile> ontology(g_file_new_for_uri("resource:///tidel/ontology"));
    GError *cause = nullptr;
    auto handle = std::make_unique<Handle>();
    handle->connection.reset(tracker_sparql_connection_new(TRACKER_SPARQL_CONNECTION_FLAGS_NONE, store.get(),
                                                           ontology.get(), nullptr, &cause));
    if (cause) {
        const QString what =
            QStringLiteral("Cannot open the store in %1, damaged or of another version").arg(folder);
        *error = fromGError(what, cause);
        error->setType(QSparqlError::ConnectionError);
        return nullptr;
    }
    return std::unique_ptr<TrackerStore>(new TrackerStore(std::move(handle)));
}

QSparqlError TrackerStore::select(const QString &statement, SparqlTable *table)
{
    if (const QSparqlError refusal = refuseNull(statement); refusal.isValid())
        return refusal;
    GError *error = nullptr;
    const GObjectPtr<TrackerSparqlCursor> cursor(tracker_sparql_connection_query(
        m_handle->connection.get(), TrackerDialect::toTracker(statement).toUtf8().constData(), nullptr,
        &error));
    if (!cursor)
        return fromGError(QStringLiteral("The query is refused"), error);

    SparqlTable rows;
    const int columns = tracker_sparql_cursor_get_n_columns(cursor.get());
    for (int i = 0; i < columns; ++i)
        rows.names.append(QString::fromUtf8(tracker_sparql_cursor_get_variable_name(cursor.get(), i)));
    while (tracker_sparql_cursor_next(cursor.get(), nullptr, &error)) {
        for (int i = 0; i < columns; ++i)
            rows.cells.push_back(readCell(cursor.get(), i));
    }
    // An open cursor would hold the read transaction until the result goes.
    tracker_sparql_cursor_close(cursor.get());
    if (error)
        return fromGError(QStringLiteral("The query failed"), error);
    *table = std::move(rows);
    return QSparqlError();
}

QSparqlError TrackerStore::update(const QString &statement)
{
    if (TrackerDialect::isBlank(statement))
        return QSparqlError();
    if (const QSparqlError refusal = refuseNull(statement); refusal.isValid())
        return refusal;
    GError *error = nullptr;
    lastCriticalMessage.clear();
    tracker_sparql_connection_update(m_handle->connection.get(),
                                     TrackerDialect::toTracker(statement).toUtf8().constData(), nullptr,
                                     &error);
    if (error)
        return fromGError(QStringLiteral("The update is refused"), error);
    // Tracker only logs that it could not commit, as on a full disk, and reports success.
    return lastCriticalMessage.isEmpty()
        ? QSparqlError()
        : QSparqlError(QStringLiteral("The update failed: ") + lastCriticalMessage,
                       QSparqlError::BackendError);
}
