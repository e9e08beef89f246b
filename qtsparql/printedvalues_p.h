// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PRINTEDVALUES_P_H
#define PRINTEDVALUES_P_H

struct sqlite3;

/// Replaces the functions by which Tracker's connection \a database prints the names of resources and times.
/// These give the same texts. Tracker's prepare a statement for each name, and make an object of each time.
void printValuesFast(sqlite3 *database);

#endif
