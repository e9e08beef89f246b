// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARCHIVEMARKS_P_H
#define TIDEL_ARCHIVEMARKS_P_H

#include "storedfacts_p.h"

namespace Tidel {

/// The pieces of an update that mark the message \a uri, of which the store says \a own, as \a others say
/// where that was marked later: as a favorite and as read. Takes the marks out of \a others. A mark without a
/// time is older than each with a time; of two without a time, the favorite counts.
QString laterMarks(const QString &uri, const StoredFacts &own, StoredFacts *others);

} // namespace Tidel

#endif
