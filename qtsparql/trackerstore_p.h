// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERSTORE_P_H
#define TRACKERSTORE_P_H

#include "qsparqlerror.h"
#include "sparqltable_p.h"

#include <functional>
#include <memory>

class DividedQuery;
class OpenDatabase;
class QIODevice;
class QueryParameters;
class SqliteWaiting;
class StoreFolder;
class UpdateBatch;

/**
 * An open Tracker database. Only this class uses Tracker's library.
 *
 * The database is open only for reading until the first update. Opening it for writing compares ontologies,
 * and closing it afterwards cleans it up. Both take longer for a larger database.
 *
 * Every function blocks until the store has answered. If a function fails, it does not change its arguments.
 */
class TrackerStore
{
public:
    /// Opens the database in \a folder and creates it if it does not exist. If that fails, sets \a error and
    /// returns null. A complete database is opened without waiting. Everything else waits for other programs,
    /// for at most \a patience milliseconds each time.
    ///
    /// If the database is complete, but nothing can be written beside it, this is a copy of it in a temporary
    /// folder.
    static std::unique_ptr<TrackerStore> open(const QString &folder, int patience, QSparqlError *error);
    /// Closes the database.
    ~TrackerStore();

    /// Runs the query \a statement and stores its rows in \a table. \a parameters is the same query.
    QSparqlError select(const QString &statement, const QueryParameters &parameters, SparqlTable *table);
    /// Runs an update, which can contain several operations. If one of them fails, none has an effect. If
    /// other processes write at the same time, the update waits and is repeated.
    QSparqlError update(const QString &statement);
    /// Writes what the query \a description describes to \a device, see SparqlTurtle::write().
    QSparqlError writeTurtle(const QString &description, QIODevice *device);
    /// Adds what the file \a fileName says, see SparqlTurtle::read().
    QSparqlError readTurtle(const QString &fileName);
    /// Writes the updates of all programs to the disk. Until then a power loss can undo them.
    QSparqlError sync() const;

private:
    enum class Access { Reading, Writing };

    TrackerStore(const QString &folder, int patience);
    void openInTurn(StoreFolder *place, QSparqlError *error);
    bool selectPrepared(const QueryParameters &query, SparqlTable *table);
    bool selectDivided(const DividedQuery &query, SparqlTable *table);
    QSparqlError selectText(const QString &query, SparqlTable *table);
    QSparqlError becomeWritable();
    QSparqlError explained(const QSparqlError &error);
    QSparqlError refuseWithoutSpace(const QString &fileName) const;
    QSparqlError patiently(const QString &refused, const std::function<QSparqlError(SqliteWaiting *)> &write);
    QSparqlError updateOnce(const QString &text, const UpdateBatch &batch, SqliteWaiting *waiting);
    QSparqlError readOnce(const QString &fileName, SqliteWaiting *waiting) const;

    const QString m_folder;
    const int m_patience;
    std::unique_ptr<OpenDatabase> m_database;
    Access m_access = Access::Reading;
    QSparqlError m_damage; // refuses updates from then on
};

#endif
