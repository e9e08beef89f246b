// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMKEY_P_H
#define TIDEL_ITEMKEY_P_H

#include "itemkey.h"

namespace Tidel {

/// What all keys of items of the channel \a channelUri begin with.
QString itemKeyPrefix(const QString &channelUri);

} // namespace Tidel

#endif
