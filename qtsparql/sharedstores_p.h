// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SHAREDSTORES_P_H
#define SHAREDSTORES_P_H

#include <QString>

#include <memory>

class QSparqlError;
class TrackerStore;

/**
 * Returns the open store in \a folder. If it cannot be opened, sets \a error and returns null.
 *
 * All connections of a thread share the store, because Tracker reads the whole database when it opens it.
 */
std::shared_ptr<TrackerStore> sharedStore(const QString &folder, QSparqlError *error);

#endif
