// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ORPHANS_H
#define TIDEL_ORPHANS_H

#include "error.h"
#include "removal.h"
#include "store.h"

namespace Tidel {

/// The messages that belong to no channel, and the enclosures that belong to neither a message nor a channel.
class TIDELREADER_EXPORT Orphans
{
public:
    /// Works on \a store.
    explicit Orphans(const Store &store);

    /// Deletes them, and calls \a step after each update. A message without a link stays, and so does an
    /// enclosure without a remote or a local link. Takes a WriteTurn for each hundred.
    Result<void> remove(const RemovalStep &step);

private:
    Store m_store;
};

} // namespace Tidel

#endif
