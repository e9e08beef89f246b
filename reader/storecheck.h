// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORECHECK_H
#define TIDEL_STORECHECK_H

#include "error.h"
#include "removal.h"
#include "store.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace Tidel {

/// What StoreCheck found of one kind.
struct Finding
{
    /// What it looks for, in the order in which it mends.
    enum Kind {
        SameChannels, ///< The links of several channels.
        SameMessages, ///< The links of several messages.
        SameEnclosures, ///< The remote links of several enclosures.
        MissingValues, ///< The URIs of channels and messages without a link, a title or the like, so that no
                       ///< list shows them.
        SeveralValues, ///< The URIs of resources with several values where one is meant.
        OrphanMessages, ///< The URIs of messages that belong to no channel.
        OrphanEnclosures, ///< The remote links of enclosures that belong to nothing.
        MissingFiles, ///< The paths of downloaded files that are not there any more.
        UnfinishedFiles, ///< The paths of parts of files in the download folder that no download is going to
                         ///< continue.
        UnknownFiles ///< The paths of files in the download folder that belong to no enclosure.
    };

    Kind kind; ///< What is wrong.
    QStringList places; ///< Where.

    /// Returns true if StoreCheck::repair() mends it without a loss; otherwise returns false.
    bool isMendable() const { return kind != SeveralValues && kind != UnknownFiles; }
    /// Returns true if it is something to know, but nothing wrong with the store; otherwise returns false.
    bool isNote() const { return kind == UnknownFiles; }
};

/**
 * Looks for what programs that were interrupted, older versions and other programs can have left in a store,
 * and mends it.
 *
 * The time that this takes grows with the size of the store, ten seconds for a million messages or so.
 */
class TIDELREADER_EXPORT StoreCheck
{
public:
    /// Hears how many of all steps are done.
    using Progress = std::function<void(int done, int all)>;

    /// Works on \a store.
    explicit StoreCheck(const Store &store);

    /// Looks for everything. Returns each kind once, also if nothing was found.
    Result<QList<Finding>> find(const Progress &progress = {}) const;

    /// Mends those of \a findings that can be mended:
    /// - Of several resources with one link the oldest one stays. It gets the tags, keys, owners and
    /// enclosures of
    ///   the others, and the values that it lacks.
    /// - Missing texts become empty, missing times become now, and a missing link becomes a new URN.
    /// - Orphans are deleted. \a step hears of their enclosures.
    /// - Enclosures whose file is missing can be downloaded again.
    /// - Parts of files are removed.
    /// Takes a WriteTurn for each hundred or so. What was mended before a failure stays mended.
    Result<void> repair(const QList<Finding> &findings, const RemovalStep &step);

private:
    Store m_store;
};

} // namespace Tidel

#endif
