// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef DATEINDEX_P_H
#define DATEINDEX_P_H

struct sqlite3;

/**
 * Makes an index of the dates of messages, so that the newest messages are found without a pass through all.
 * SQLite keeps it up to date, whichever program writes, and Tracker does not know of it: its own index of a
 * date has no order that a query can use. If the index cannot be made, queries take longer.
 */
void indexDates(sqlite3 *database);

#endif
