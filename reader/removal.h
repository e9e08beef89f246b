// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_REMOVAL_H
#define TIDEL_REMOVAL_H

#include "tidelreaderglobal.h"

#include <QList>

#include <feedenclosure.h>

#include <functional>

namespace Tidel {

/**
 * Hears what one step of a removal has removed. \a messages is the number of messages that the channel does
 * not have any more. \a enclosures were deleted from the store; only their URIs, remote URLs and local URLs
 * are set. The library leaves their files to the caller, see DownloadFolder::removeFiles().
 */
using RemovalStep = std::function<void(int messages, const QList<FeedEnclosure> &enclosures)>;

} // namespace Tidel

#endif
