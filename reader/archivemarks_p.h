// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARCHIVEMARKS_P_H
#define TIDEL_ARCHIVEMARKS_P_H

#include "storedfacts_p.h"

namespace Tidel {

/// Merges the marks of the message \a uri as a favorite and as read: \a own are the facts of the store, and
/// \a others those of another archive. Of two marks the later one counts. A mark without a time is older than
/// every mark with a time. Of two marks without a time, a favorite counts. Returns the pieces of the
/// update, and removes the marks from \a others.
QString laterMarks(const QString &uri, const StoredFacts &own, StoredFacts *others);

} // namespace Tidel

#endif
