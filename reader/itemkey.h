// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMKEY_H
#define TIDEL_ITEMKEY_H

#include "tidelreaderglobal.h"

#include <QString>

namespace Tidel {

/// The key under which the store knows the item that has the identifier \a id in the feed of the channel
/// \a channelUri. Keys are short, and those of different channels differ.
TIDELREADER_EXPORT QString itemKey(const QString &channelUri, const QString &id);

} // namespace Tidel

#endif
