// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORESTATE_P_H
#define TIDEL_STORESTATE_P_H

#include "seenchannels_p.h"
#include "seenmessages_p.h"
#include "storechanges_p.h"

#include <QSet>

#include <array>
#include <atomic>

namespace Tidel {

/**
 * Remembers what the store said, and finds out what it says now.
 *
 * The store numbers its resources, and marks each with a number that most changes raise. Sums of both over
 * blocks of numbers tell which blocks to read. The marks cannot tell alone: programs that write at the same
 * time give marks which are lower than those of before.
 */
class StoreState
{
public:
    /// \a isOver ends a look early when it becomes true.
    explicit StoreState(const std::shared_ptr<const std::atomic_bool> &isOver);

    /// Notes from where on changes are told. Reads little more than the channels.
    Result<void> begin(StorePrivate &store);
    /// What has changed since the last look. The first one reads all messages, and finds what was added or
    /// changed since begin().
    Result<StoreChanges> look(StorePrivate &store);

private:
    // Of the marks, then of the owners: number of rows, sum, sum of the products with the numbers.
    using Sums = std::array<qlonglong, 6>;
    using SumsOfBlocks = QHash<qlonglong, Sums>;

    Result<SumsOfBlocks> readSums(StorePrivate &store, const SeenChannels &channels) const;
    Result<QVector<qlonglong>> differentBlocks(StorePrivate &store, const SumsOfBlocks &sums) const;
    Result<void> readBlocks(StorePrivate &store, const SumsOfBlocks &sums);
    Result<void> readBlocks(StorePrivate &store, qlonglong first, qlonglong last);
    void compareMessages(const SeenBlock &before, const SeenBlock &now);
    void compareMarks(const SeenMessage &before, const SeenMessage &now);
    void compareParts(const SeenBlock &before, const SeenBlock &now);
    void noteAdded(const SeenMessage &message);
    bool hasOtherOwners(const SeenChannels &channels) const;
    void compareChannels(const SeenChannels &now);
    StoreChanges takeChanges();
    void mergeMoved();
    const SeenMessage *message(qlonglong number) const;

    const std::shared_ptr<const std::atomic_bool> m_isOver;
    bool m_isComplete = false; // All messages were read once.
    qint64 m_time = 0; // when the last look began, in seconds
    qlonglong m_lastNumber = 0; // of begin()
    qlonglong m_lastMark = 0;
    SeenChannels m_channels;
    SumsOfBlocks m_sums;
    QHash<qlonglong, SeenBlock> m_blocks;

    // What was found since changes were taken.
    StoreChanges m_changes;
    // Numbers of messages and channels.
    QSet<qlonglong> m_added;
    QSet<qlonglong> m_touched; // They have changed, or a part of them has.
    QSet<qlonglong> m_owners; // Messages were added to them, or taken from them.
};

} // namespace Tidel

#endif
