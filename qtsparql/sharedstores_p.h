// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SHAREDSTORES_P_H
#define SHAREDSTORES_P_H

#include <memory>

class QSparqlConnectionOptions;
class QSparqlError;
class TrackerStore;

/**
 * Returns the open store in the folder that \a options name, `tidel/store` below the user's data folder if
 * they name none. If it cannot be opened, sets \a error and returns null. An open store has the patience with
 * which it was opened.
 *
 * All connections of a thread share the store, because Tracker reads the whole database when it opens it.
 */
std::shared_ptr<TrackerStore> sharedStore(const QSparqlConnectionOptions &options, QSparqlError *error);

#endif
