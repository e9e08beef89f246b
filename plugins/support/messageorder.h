// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEORDER_H
#define TIDEL_MESSAGEORDER_H

#include <QList>

#include <feedmessage.h>

namespace Tidel {

/// Puts the newest first and those without a date last. Where dates do not tell, what comes later is newer.
void sortNewestFirst(QList<FeedMessage> &messages);

} // namespace Tidel

#endif
