// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SHAREDSTORES_P_H
#define SHAREDSTORES_P_H

#include <QString>

#include <memory>

class QSparqlError;
class TrackerStore;

/**
 * The open store of a folder, shared by all connections of the calling thread: Tracker looks through a whole
 * database when it opens it. Null with \a error set when it cannot be opened.
 */
std::shared_ptr<TrackerStore> sharedStore(const QString &folder, QSparqlError *error);

#endif
