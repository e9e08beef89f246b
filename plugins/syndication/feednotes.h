// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDNOTES_H
#define TIDEL_FEEDNOTES_H

#include <QString>

#include <optional>

namespace Tidel {

class FeedStore;

/// What tells whether a document has changed since it was read: what its server said of it, as it said it.
struct Validators
{
    QString entityTag;
    QString lastModified;
};

/// What the store knows of a channel's document.
struct FeedNotes
{
    QString link;
    QString
        itemBase; ///< what items without a link are named after: the first link, also where it was changed
    Validators validators;
};

/// Of the channel \a channelUri; nothing when there is no such channel.
std::optional<FeedNotes> feedNotes(const FeedStore &store, const QString &channelUri);

/// Notes that the channel's document was read now, and what its server said of it.
bool noteReading(FeedStore &store, const QString &channelUri, const Validators &validators);

} // namespace Tidel

#endif
