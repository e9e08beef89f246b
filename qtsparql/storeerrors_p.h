// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STOREERRORS_P_H
#define STOREERRORS_P_H

#include "qsparqlerror.h"

#include <glib.h>

/// Converts \a error and frees it. \a what says which step failed.
QSparqlError fromGError(const QString &what, GError *error);
QSparqlError connectionError(const QString &message);
/// Returns an error if \a statement contains a null character; otherwise returns no error.
QSparqlError refuseNull(const QString &statement);

/// How the errors of updates begin that Tracker did not take.
extern const QString updateRefused;

/// Returns what \a said, with which Tracker does not open a database, means for the user; empty if unknown.
QString meaningOfRefusal(const QString &said);
/// Returns what \a said, with which a statement failed, means for the user; empty if unknown.
QString meaningOfFailure(const QString &said);

/// Returns true if \a error says that the content of the database is damaged; otherwise returns false.
bool isDamage(const QSparqlError &error);
/// Returns true if \a error says that there is no database of Tracker in the file; otherwise returns false.
bool isUseless(const QSparqlError &error);
/// Returns true if SQLite refused the update because another process wrote after the update had read;
/// otherwise returns false. Tracker has no error code for that.
bool isOutOfDate(const QSparqlError &error);

#endif
