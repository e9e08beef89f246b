// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERSTORE_P_H
#define TRACKERSTORE_P_H

#include "qsparqlerror.h"
#include "sparqltable_p.h"

#include <memory>

class StoreFolder;

/**
 * An open Tracker database. The only unit that knows Tracker.
 *
 * It is open for reading alone until the first update: opening for writing compares ontologies, and closing
 * then tidies up, both of which take the longer the more there is.
 *
 * Every call blocks until the store has answered. An error leaves what the arguments point to as it was.
 */
class TrackerStore
{
public:
    /// Opens the database in \a folder and creates it where there is none; null with \a error set when that
    /// fails.
    static std::unique_ptr<TrackerStore> open(const QString &folder, QSparqlError *error);
    ~TrackerStore();

    QSparqlError select(const QString &statement, SparqlTable *table);
    /// Runs an update of any number of operations; all of them or none take effect. Begins anew for half a
    /// minute at most where other processes keep writing what it has read.
    QSparqlError update(const QString &statement);

private:
    struct Handle;
    enum class Access { Reading, Writing };

    static std::unique_ptr<Handle> connect(const QString &folder, Access access, QSparqlError *error);
    static std::unique_ptr<Handle> openForWriting(StoreFolder *place, QSparqlError *error);
    TrackerStore(const QString &folder, std::unique_ptr<Handle> handle, Access access);
    QSparqlError becomeWritable();
    QSparqlError updateOnce(const QByteArray &text);

    const QString m_folder;
    std::unique_ptr<Handle> m_handle;
    Access m_access;
};

#endif
