// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STATISTICS_H
#define TIDEL_STATISTICS_H

#include "error.h"
#include "store.h"

#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QString>

namespace Tidel {

/// How much a store holds. The questions take longer the more messages it has.
class TIDELREADER_EXPORT Statistics
{
public:
    /// How many things there are.
    struct Totals
    {
        int channels = 0;
        int messages = 0;
        int unread = 0;
        int favorites = 0;
        int enclosures = 0;
        int downloaded = 0; ///< Enclosures with a local copy.
        qint64 storeSize = 0; ///< Bytes of the database and of the index for searches.
    };

    /// Asks \a store.
    explicit Statistics(const Store &store);

    /// The totals.
    Result<Totals> totals() const;
    /// The date of the newest message of each channel by its URI. A channel without dated messages is left
    /// out.
    Result<QHash<QString, QDateTime>> newestMessages() const;
    /// The number of messages published on each of the last \a days days, in local time. A day without
    /// messages has the number 0.
    Result<QMap<QDate, int>> messagesPerDay(int days) const;

private:
    Store m_store;
};

} // namespace Tidel

#endif
