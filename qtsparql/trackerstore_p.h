// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERSTORE_P_H
#define TRACKERSTORE_P_H

#include "qsparqlerror.h"
#include "sparqltable_p.h"

#include <memory>

/**
 * An open Tracker database. The only unit that knows Tracker and GLib.
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
    /// Runs an update of any number of operations; all of them or none take effect.
    QSparqlError update(const QString &statement);

private:
    struct Handle;
    static std::unique_ptr<TrackerStore> openLocked(const QString &folder, QSparqlError *error);
    explicit TrackerStore(std::unique_ptr<Handle> handle);

    const std::unique_ptr<Handle> m_handle;
};

#endif
