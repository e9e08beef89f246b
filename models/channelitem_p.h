// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELITEM_P_H
#define TIDEL_CHANNELITEM_P_H

#include "channelmodel.h"

#include <TidelReader/readstate.h>

#include <vector>

namespace Tidel {

/// What a row of a ChannelModel shows, and the rows below it in their order.
struct ChannelItem
{
    ChannelModel::Kind kind = ChannelModel::FolderKind;
    QString uri; ///< Of a channel.
    QString folder; ///< The path of the folder, or of the folder that a channel is in.
    QString title;
    QString link;
    QString image;
    QString error;
    MessageCounts counts;
    std::vector<ChannelItem> children;

    /// Says which row it is, also when all that it shows has changed.
    QString name() const;
    /// Returns true if both show the same, without what is below them; otherwise returns false.
    bool looksLike(const ChannelItem &other) const;
};

/// Reads what a ChannelModel shows, as the root of its tree.
Result<ChannelItem> readChannelItems(const Store &store, bool withLists);

} // namespace Tidel

#endif
