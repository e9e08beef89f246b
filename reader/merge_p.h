// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MERGE_P_H
#define TIDEL_MERGE_P_H

#include "statements_p.h"
#include "store_p.h"

namespace Tidel {

/// Makes one of the resources of \a kind with each of \a links: the oldest one stays.
Result<void> mergeSameLinks(StorePrivate &store, Statements::Kind kind, const QStringList &links);

} // namespace Tidel

#endif
