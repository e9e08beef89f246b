// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SALVAGE_P_H
#define TIDEL_SALVAGE_P_H

#include "sqlitefile_p.h"
#include "store_p.h"
#include "storedatabase.h"

namespace Tidel {

/// Copies the resources in \a file, a database of Tracker that can be damaged, to the new store \a target.
/// Leaves what describes the ontology. A resource whose name is lost gets a new one.
Result<void> copyResources(SqliteFile &file, StorePrivate &target, const StoreDatabase::Progress &progress);

/// Makes the next refresh bring back what is lost and what the feeds still show.
Result<void> requestWholeReading(StorePrivate &store);

/// Gives the messages without a channel to a new one.
Result<void> adoptMessages(StorePrivate &store);

/// The numbers of what \a store holds.
Result<SavedContents> countContents(StorePrivate &store);

} // namespace Tidel

#endif
