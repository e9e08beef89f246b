// SPDX-License-Identifier: LGPL-2.1-or-later
#include "opendatabase_p.h"

#include "dateindex_p.h"
#include "obstacle_p.h"
#include "ontology_p.h"
#include "printedvalues_p.h"
#include "sqliteconnections_p.h"
#include "sqlitewaiting_p.h"
#include "storeerrors_p.h"
#include "storefolder_p.h"

#include <QFile>
#include <QLoggingCategory>

#include <algorithm>

Q_DECLARE_LOGGING_CATEGORY(lcStore)

namespace {

const QString cannotMake = QStringLiteral("Cannot create the database of the store in %1: %2");

} // namespace

OpenDatabase::OpenDatabase(const QString &path) : m_folder(path) { }

OpenDatabase::~OpenDatabase()
{
    m_prepared.reset();
    for (const auto &cleanup : m_cleanups)
        cleanup->beforeClosing();
    // Closing cleans up. If others are in the way, the next program that closes the store does it.
    const SqliteWaiting waiting(m_folder, 1000);
    if (m_connection)
        tracker_sparql_connection_close(m_connection.get());
}

bool OpenDatabase::ask(const QByteArray &question) const
{
    const GObjectPtr<TrackerSparqlCursor> answer(
        tracker_sparql_connection_query(m_connection.get(), question.constData(), nullptr, nullptr));
    return answer && tracker_sparql_cursor_next(answer.get(), nullptr, nullptr)
        && tracker_sparql_cursor_get_boolean(answer.get(), 0);
}

bool OpenDatabase::hasOurOntology() const
{
    static const QByteArray question = ontologyQuestion();
    return ask(question);
}

bool OpenDatabase::indexesTitles() const { return ask("ASK { nie:title nrl:fulltextIndexed true }"); }

bool OpenDatabase::forgetTitleIndex() const
{
    tracker_sparql_connection_update(m_connection.get(),
                                     "DELETE { nie:title nrl:fulltextIndexed true } "
                                     "INSERT { nie:title nrl:fulltextIndexed false }",
                                     nullptr, nullptr);
    return !indexesTitles();
}

/// Makes queries print their values quickly.
void OpenDatabase::quickenQueries() const
{
    // Tracker opens a connection for queries when it is asked for the first time, and keeps it.
    const QVector<sqlite3 *> connections = connectionsOpenedBy([this] { ask("ASK {}"); });
    std::for_each(connections.cbegin(), connections.cend(), printValuesFast);
}

OpenDatabase::Pointer OpenDatabase::connect(const StoreFolder &place, Access access, QSparqlError *error)
{
    const GObjectPtr<GFile> store(g_file_new_for_path(QFile::encodeName(place.path()).constData()));
    const GObjectPtr<GFile> ontology(
        g_file_new_for_uri((QByteArrayLiteral("resource://") + ontologyPath).constData()));
    const bool isForWriting = access == Access::Writing;
    GError *cause = nullptr;
    auto database = Pointer(new OpenDatabase(place.path()));
    const QVector<sqlite3 *> connections = SqliteWaiting::govern([&] {
        database->m_connection.reset(tracker_sparql_connection_new(
            isForWriting ? TRACKER_SPARQL_CONNECTION_FLAGS_NONE : TRACKER_SPARQL_CONNECTION_FLAGS_READONLY,
            store.get(), isForWriting ? ontology.get() : nullptr, nullptr, &cause));
    });
    if (!cause) {
        if (isForWriting)
            std::for_each(connections.cbegin(), connections.cend(), indexDates);
        for (sqlite3 *connection : connections)
            database->m_cleanups.push_back(std::make_unique<ClosingCleanup>(connection));
        database->quickenQueries();
        database->m_ranges.emplace(database->m_connection.get());
        database->m_prepared.emplace(database->m_connection.get(), &*database->m_ranges);
        return database;
    }
    *error = fromGError(QString(), cause);
    if (isDamage(*error))
        place.noteDamage();
    // Without space Tracker says of a sound database that it has another version.
    QString why = isDamage(*error) ? QString() : obstacleIn(place.path());
    if (why.isEmpty())
        why = meaningOfRefusal(error->message());
    if (why.isEmpty())
        why = QStringLiteral("it may be damaged; to start with an empty store, move the folder away");
    *error = QSparqlError(
        QStringLiteral("Cannot open the store in %1: %2%3").arg(place.path(), why, error->message()),
        QSparqlError::ConnectionError, error->number());
    return nullptr;
}

OpenDatabase::Pointer OpenDatabase::openForReading(StoreFolder *place)
{
    // Only opening for reading looks at the copy of the ontology.
    if (!place->isMade() || place->isDamaged() || !place->removeOntologyCopy())
        return nullptr;
    QSparqlError refusal;
    Pointer database = connect(*place, Access::Reading, &refusal);
    return database && database->hasOurOntology() ? std::move(database) : nullptr;
}

OpenDatabase::Pointer OpenDatabase::openCopy(const StoreFolder &place, QSparqlError *error)
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
    Pointer database = connect(copied, Access::Writing, error);
    if (database)
        database->m_copy = std::move(copy);
    return database;
}

/// Creates the database. One whose creation was interrupted is used if it can be opened. On failure, sets
/// \a error and returns false.
bool OpenDatabase::make(StoreFolder *place, QSparqlError *error)
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

OpenDatabase::Pointer OpenDatabase::openForWriting(StoreFolder *place, QSparqlError *error)
{
    if (!place->isMade() && !make(place, error))
        return nullptr;
    if (place->isDamaged())
        place->requestCheck();
    *error = QSparqlError();
    Pointer database = connect(*place, Access::Writing, error);
    // Tracker has dropped the index, but would write to it as long as the store says that there is one.
    if (database && database->indexesTitles() && database->forgetTitleIndex()) {
        qCInfo(lcStore).noquote() << "Removed the old index of titles from the store in" << place->path();
        database.reset();
        database = connect(*place, Access::Writing, error);
    }
    if (database) {
        place->forgetDamage();
        place->tighten();
    }
    return database;
}
