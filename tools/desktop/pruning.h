// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PRUNING_H
#define TIDEL_DESKTOP_PRUNING_H

#include <TidelReader/error.h>
#include <TidelReader/store.h>

#include <QStringList>

namespace Tidel {

/// Drops from the channels \a uris what their own retention rules do not keep, and the downloaded files of
/// what is dropped.
Result<void> prune(const Store &store, const QStringList &uris);

} // namespace Tidel

#endif
