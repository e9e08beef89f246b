// SPDX-License-Identifier: LGPL-2.1-or-later
#include "duechannels.h"

#include "output.h"
#include "phrases.h"

#include <TidelReader/schedule.h>

namespace Tidel {

namespace {

/// \a time for a person: without its day if that is today.
QString shownMoment(const QDateTime &time)
{
    const QDateTime local = time.toLocalTime();
    return local.date() == QDate::currentDate() ? local.toString(QStringLiteral("HH:mm")) : shownTime(time);
}

/// Why the server of \a channel is not asked though the user wants it.
QString refusal(const FeedChannel &channel, const Schedule &schedule)
{
    const QString reason = schedule.due(channel).isValid()
        ? QStringLiteral("its server refuses to answer before %1")
              .arg(shownMoment(schedule.refusedUntil(channel)))
        : schedule.notes(channel.uri()).error;
    return QStringLiteral("%1: not asked for: %2; --force asks nevertheless").arg(channel.title(), reason);
}

/// Says that \a count channels were left out, and when the first of them is \a due; invalid if none will be.
QString rest(int count, const QDateTime &due)
{
    const bool isOne = count == 1;
    const QString next =
        due.isValid() ? QStringLiteral("; the next one is due at %1").arg(shownMoment(due)) : QString();
    return QStringLiteral("%1 not due%2; --force asks for %3 too")
        .arg(countedChannels(count) + QLatin1String(isOne ? " is" : " are"), next,
             QLatin1String(isOne ? "it" : "them"));
}

} // namespace

QList<FeedChannel> dueChannels(const Store &store, const QList<FeedChannel> &channels,
                               const Arguments &arguments, Output &output)
{
    const Result<Schedule> schedule = Schedule::read(store, QDateTime::currentDateTimeUtc());
    if (!schedule) {
        output.failure(schedule.error());
        return {};
    }
    const bool isForced = arguments.isSet("force");
    QList<FeedChannel> chosen;
    int others = 0;
    QDateTime next;
    for (const FeedChannel &channel : channels) {
        const QDateTime due = schedule->due(channel);
        const bool isWanted =
            arguments.names.isEmpty() ? schedule->isDue(channel) : !schedule->isRefused(channel);
        if (isWanted || isForced)
            chosen.append(channel);
        if (isWanted)
            continue;
        ++others;
        if (due.isValid() && (!next.isValid() || due < next))
            next = due;
        if (!isForced && !arguments.names.isEmpty())
            output.note(refusal(channel, *schedule));
    }
    if (others > 0 && isForced)
        output.note(QStringLiteral("--force asks for %1 before the time").arg(countedChannels(others)));
    else if (others > 0 && arguments.names.isEmpty())
        output.note(rest(others, next));
    return chosen;
}

} // namespace Tidel
