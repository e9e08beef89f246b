// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SCHEDULE_H
#define TIDEL_SCHEDULE_H

#include "error.h"
#include "feedanswer.h"
#include "store.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <feedchannel.h>

namespace Tidel {

/**
 * When the channels of a store may be asked for again.
 *
 * Servers and feeds say how long a document does not change, users how often they want to know, and a channel
 * that fails rests for a while. The longest of these times counts. A feed in a file is always due.
 *
 * \code
 * const Result<Schedule> schedule = Schedule::read(store, QDateTime::currentDateTimeUtc());
 * if (schedule && schedule->isDue(channel))
 *     queue.downloadFeed(channel.uri(), handler);
 * \endcode
 */
class TIDELREADER_EXPORT Schedule
{
public:
    /// Reads what is known of the channels of \a store at \a now.
    static Result<Schedule> read(const Store &store, const QDateTime &now);

    /// When \a channel is due, in UTC; the time of read() if it is due. Invalid if it will not be, because
    /// its feed was removed permanently, or because its link names no place.
    QDateTime due(const FeedChannel &channel) const;
    /// Returns true if \a channel is due; otherwise returns false.
    bool isDue(const FeedChannel &channel) const { return due(channel) == m_now; }
    /// Returns true if the server has said that it will not answer, so that not even a user who wants to see
    /// the feed now may ask for \a channel; otherwise returns false.
    bool isRefused(const FeedChannel &channel) const;
    /// Until when the server of \a channel has refused to answer, in UTC; invalid if it has not said so.
    QDateTime refusedUntil(const FeedChannel &channel) const;
    /// What is noted of the channel \a uri.
    FeedNotes notes(const QString &uri) const { return m_plans.value(uri).notes; }

private:
    /// What is known of a channel.
    struct Plan
    {
        FeedNotes notes;
        QList<int> skipHours; // As those of ChannelDetails.
        QStringList skipDays;

        /// Adds a value of the property \a name.
        void add(const QString &name, const QVariant &value);
    };

    QDateTime m_now;
    QHash<QString, Plan> m_plans; // By the URIs of the channels.
    QHash<QString, QDateTime> m_heldHosts; // Until when.
};

} // namespace Tidel

#endif
