// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHFILLER_H
#define TIDEL_SEARCHFILLER_H

#include "store.h"

#include <memory>

namespace Tidel {

/**
 * Adds new messages to the index for searches while a program stores others, on a thread of its own. What is
 * left at the end is for Search::addNewMessages():
 *
 * \code
 * SearchFiller filler(store);
 * filler.add(result.newMessages().size()); // after each feed
 * Search(store).addNewMessages(filler.finish());
 * \endcode
 */
class TIDELREADER_EXPORT SearchFiller
{
public:
    /// Works on \a store.
    explicit SearchFiller(const Store &store);
    /// Waits for the thread.
    ~SearchFiller();

    /// Hears that \a count messages were stored. Adds some to the index if many wait and the thread is idle.
    void add(int count);
    /// Waits for the thread. Returns how many messages still have to be added; all of them if one could not
    /// be added.
    int finish();

private:
    Q_DISABLE_COPY(SearchFiller)

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace Tidel

#endif
