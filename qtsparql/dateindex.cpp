// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dateindex_p.h"

#include <sqlite3.h>

void indexDates(sqlite3 *database)
{
    sqlite3_exec(database,
                 "CREATE INDEX IF NOT EXISTS tidel_dates "
                 "ON \"nie:InformationElement_nie:contentCreated\" (\"nie:contentCreated\", ID)",
                 nullptr, nullptr, nullptr);
}
