// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DATABASEFILES_P_H
#define TIDEL_DATABASEFILES_P_H

#include "error.h"

#include <QDir>
#include <QString>

namespace Tidel {

/// The path of the database in the folder of a store.
QString databaseIn(const QString &folder);

/// Copies the database \a damaged to \a path, with the beginning of \a sound, a new database of the same
/// version, in place of its own: \a size bytes. The first hundred bytes of a database say how to read it, and
/// the first page begins the list of its tables.
Result<void> copyWithBeginning(const QString &damaged, const QString &sound, int size, const QString &path);

/// Puts the database in \a newFolder in the place of the one in \a folder, whose files are in a new folder
/// `damaged-DATE` then. Returns the path of that. At each moment the old database is complete in one of both
/// places.
Result<QString> replaceDatabase(const QString &folder, const QString &newFolder);

} // namespace Tidel

#endif
