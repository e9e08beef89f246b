// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEORDER_H
#define TIDEL_MESSAGEORDER_H

#include "tidelreaderglobal.h"

#include <QList>

#include <feedmessage.h>

namespace Tidel {

/// Puts the newest message first, and messages without a date last. Of messages with the same date, the one
/// that comes later in the list is newer.
TIDELREADER_EXPORT void sortNewestFirst(QList<FeedMessage> &messages);

} // namespace Tidel

#endif
