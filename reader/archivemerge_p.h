// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARCHIVEMERGE_P_H
#define TIDEL_ARCHIVEMERGE_P_H

#include "store_p.h"

namespace Tidel {

/**
 * Adds to \a target what it lacks of \a source, another archive. A channel is known by its link, a message by
 * its link or the key of its item, an enclosure by its address, and each of them by its URI if the archives
 * are copies of one.
 *
 * Nothing is added twice, and nothing is deleted. Of texts that differ those of \a target stay. A message is
 * a favorite or read as it was marked last. Takes a WriteTurn for each group of channels or messages: if this
 * is interrupted, the groups before are complete, and another call goes on.
 */
Result<void> mergeArchive(StorePrivate &source, StorePrivate &target);

} // namespace Tidel

#endif
