// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERSTORE_P_H
#define TRACKERSTORE_P_H

#include "qsparqlerror.h"
#include "sparqltable_p.h"

#include <memory>

class QIODevice;
class StoreFolder;

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
    /// returns null.
    static std::unique_ptr<TrackerStore> open(const QString &folder, QSparqlError *error);
    /// Closes the database.
    ~TrackerStore();

    /// Runs a query and stores its rows in \a table.
    QSparqlError select(const QString &statement, SparqlTable *table);
    /// Runs an update, which can contain several operations. If one of them fails, none has an effect. If
    /// other processes write at the same time, the update is repeated for at most half a minute.
    QSparqlError update(const QString &statement);
    /// Writes what the query \a description describes to \a device, see SparqlTurtle::write().
    QSparqlError writeTurtle(const QString &description, QIODevice *device);
    /// Adds what the file \a fileName says, see SparqlTurtle::read().
    QSparqlError readTurtle(const QString &fileName);

private:
    struct Handle;
    enum class Access { Reading, Writing };

    static std::unique_ptr<Handle> connect(const StoreFolder &place, Access access, QSparqlError *error);
    static bool make(StoreFolder *place, QSparqlError *error);
    static std::unique_ptr<Handle> openForWriting(StoreFolder *place, QSparqlError *error);
    TrackerStore(const QString &folder, std::unique_ptr<Handle> handle, Access access);
    QSparqlError becomeWritable();
    QSparqlError noted(const QSparqlError &error);
    QSparqlError updateOnce(const QByteArray &text);
    static QSparqlError afterCommit();

    const QString m_folder;
    std::unique_ptr<Handle> m_handle;
    Access m_access;
    QSparqlError m_damage; // refuses updates from then on
};

#endif
