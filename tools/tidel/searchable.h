// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHABLE_H
#define TIDEL_SEARCHABLE_H

#include <TidelReader/search.h>

namespace Tidel {

/// Adds the \a count messages that a command has stored to the index for searches.
inline void addToIndex(const Store &store, int count)
{
    // If it fails, the next search adds them, or says why it cannot.
    if (count > 0)
        static_cast<void>(Search(store).addNewMessages(count));
}

} // namespace Tidel

#endif
