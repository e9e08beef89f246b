// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHABLE_H
#define TIDEL_SEARCHABLE_H

#include <TidelReader/search.h>
#include <TidelReader/searchfiller.h>

namespace Tidel {

/// Adds the messages that a command has told \a filler of to the index for searches.
inline void addToIndex(const Store &store, SearchFiller &filler)
{
    // If it fails, the next search adds them, or says why it cannot.
    const int left = filler.finish();
    if (left > 0)
        static_cast<void>(Search(store).addNewMessages(left));
}

} // namespace Tidel

#endif
