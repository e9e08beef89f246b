// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feednotes_p.h"

#include "detailfields_p.h"
#include "statements_p.h"
#include "usertext.h"

#include <QHash>

#include <feedplugininterface.h>

namespace Tidel {

namespace {

constexpr qint64 hour = 60 * qint64(60);
constexpr qint64 day = 24 * hour;
constexpr int tooManyRequests = 429;

/// How long the document itself says that it does not change.
qint64 lifeTime(const ChannelDetails &details)
{
    static const QHash<QString, qint64> periods = {{QStringLiteral("hourly"), hour},
                                                   {QStringLiteral("daily"), day},
                                                   {QStringLiteral("weekly"), 7 * day},
                                                   {QStringLiteral("monthly"), 30 * day},
                                                   {QStringLiteral("yearly"), 365 * day}};
    const qint64 period = periods.value(details.updatePeriod) / qMax(1, details.updateFrequency);
    return qMax(period, qint64(details.minutesToLive) * 60);
}

/// Returns true if the reason of \a error may be the network of the user; otherwise returns false.
bool mayBeOwnNetwork(int error)
{
    return error == FeedDownloadNotFound || error == FeedDownloadConnectionFailed
        || error == FeedDownloadTimedOut;
}

/// How long a channel is left alone after \a failures in a row. The first one may be chance.
qint64 pauseAfter(int failures, int error)
{
    constexpr qint64 firstPause = hour / 4;
    const qint64 pause = failures < 2 ? 0 : firstPause << qMin(failures - 2, 7);
    return qMin(pause, mayBeOwnNetwork(error) ? hour / 2 : day);
}

QDateTime later(const QDateTime &now, qint64 seconds)
{
    return seconds > 0 ? now.addSecs(seconds) : QDateTime();
}

FeedNotes notesAfterFailure(const FeedAnswer &answer, const FeedPlan &plan, const QDateTime &now)
{
    const FeedNotes &before = plan.notes;
    FeedNotes notes;
    notes.error = shownReason(answer.reason);
    notes.status = answer.error;
    notes.failures = before.failures + 1;
    notes.movedTo = before.movedTo;
    notes.timesMoved = before.timesMoved;
    if (answer.host.isEmpty())
        return notes;
    notes.notBefore = later(now, qMax(qint64(plan.interval), pauseAfter(notes.failures, answer.error)));
    notes.retryAfter = later(now, qMin(answer.wait, FeedAnswer::longestWait));
    if (answer.error == tooManyRequests)
        notes.heldHost = answer.host;
    return notes;
}

FeedNotes notesAfter(const FeedAnswer &answer, const FeedPlan &plan, const QDateTime &now)
{
    if (answer.error != FeedDownloadNoError)
        return notesAfterFailure(answer, plan, now);
    FeedNotes notes;
    if (answer.host.isEmpty())
        return notes;
    const qint64 wish = qMin(qMax(answer.wait, lifeTime(plan.details)), FeedAnswer::longestWait);
    notes.notBefore = later(now, qMax(wish, qint64(plan.interval)));
    notes.movedTo = answer.movedTo;
    if (!answer.movedTo.isNull())
        notes.timesMoved =
            answer.movedTo == plan.notes.movedTo ? qMin(plan.notes.timesMoved, movesToFollow) + 1 : 1;
    return notes;
}

} // namespace

QString noteOfAnswer(const QString &channelUri, const FeedAnswer &answer, const FeedPlan &plan,
                     const QDateTime &now)
{
    const QVector<DetailValue> values = detailValues(notesAfter(answer, plan, now));
    return values == detailValues(plan.notes)
        ? QString()
        : Statements::replaceNotes(channelUri, detailNames<FeedNotes>(), values);
}

} // namespace Tidel
