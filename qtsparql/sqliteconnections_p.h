// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SQLITECONNECTIONS_P_H
#define SQLITECONNECTIONS_P_H

#include <QVector>

#include <functional>

struct sqlite3;

/// Calls \a work. Returns SQLite's connections that this thread opened in the meantime and that are still
/// open. Tracker has set them up by then; it does not show them otherwise.
QVector<sqlite3 *> connectionsOpenedBy(const std::function<void()> &work);

#endif
