// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_KNOWNMESSAGE_P_H
#define TIDEL_KNOWNMESSAGE_P_H

#include <QString>

namespace Tidel {

/// A stored message of the channel that is being read.
struct KnownMessage
{
    QString uri;
    QString link;
    QString digest; ///< The digest() of its texts; empty if an older version stored it.
    bool hasKey = false; ///< Whether it is known by a key of the channel.
};

} // namespace Tidel

#endif
