// SPDX-License-Identifier: LGPL-2.1-or-later
#include "schedule.h"

#include "detailfields_p.h"
#include "feednotes_p.h"
#include "statements_p.h"
#include "store_p.h"

#include <QLocale>
#include <QUrl>

namespace Tidel {

namespace {

/// The first time from \a time on that is in none of these hours and days. \a time itself if all are skipped.
QDateTime outside(const QDateTime &time, const QList<int> &skipHours, const QStringList &skipDays)
{
    if (skipHours.isEmpty() && skipDays.isEmpty())
        return time;
    constexpr int hoursOfWeek = 7 * 24;
    QDateTime candidate = time;
    for (int i = 0; i < hoursOfWeek; ++i) {
        const QString day = QLocale::c().dayName(candidate.date().dayOfWeek());
        if (!skipHours.contains(candidate.time().hour()) && !skipDays.contains(day))
            return candidate;
        candidate.setTime(QTime(candidate.time().hour(), 0));
        candidate = candidate.addSecs(60 * qint64(60));
    }
    return time;
}

} // namespace

void Schedule::Plan::add(const QString &name, const QVariant &value)
{
    if (name == QLatin1String("skipHour"))
        skipHours.append(value.toInt());
    else if (name == QLatin1String("skipDay"))
        skipDays.append(value.toString());
    else
        addDetail(notes, name, value);
}

Result<Schedule> Schedule::read(const Store &store, const QDateTime &now)
{
    const QStringList names =
        detailNames<FeedNotes>() + QStringList{QStringLiteral("skipHour"), QStringLiteral("skipDay")};
    return StorePrivate::of(store)
        .run(Statements::detailsOfChannels(names), "read from the store when the channels are due")
        .map([&](const Answer &answer) {
            Schedule schedule;
            schedule.m_now = now.toUTC();
            while (answer->next()) {
                Plan &plan = schedule.m_plans[answer->value(0).toString()];
                for (int i = 0; i < names.size(); ++i) {
                    if (answer->value(i + 1).isValid())
                        plan.add(names.at(i), answer->value(i + 1));
                }
            }
            for (const Plan &plan : qAsConst(schedule.m_plans)) {
                QDateTime &until = schedule.m_heldHosts[plan.notes.heldHost];
                until = qMax(until, plan.notes.retryAfter);
            }
            schedule.m_heldHosts.remove(QString());
            return schedule;
        });
}

QDateTime Schedule::refusedUntil(const FeedChannel &channel) const
{
    const QDateTime ofHost = m_heldHosts.value(QUrl(channel.link()).host());
    return qMax(m_plans.value(channel.uri()).notes.retryAfter, ofHost);
}

QDateTime Schedule::due(const FeedChannel &channel) const
{
    if (QUrl(channel.link()).isLocalFile())
        return m_now;
    const Plan plan = m_plans.value(channel.uri());
    // Salvaged messages have a channel whose link is only a name.
    const bool isName = QUrl(channel.link()).scheme() == QLatin1String("urn");
    if (isName || plan.notes.status == goneStatus)
        return {};
    const QDateTime allowed = qMax(qMax(m_now, plan.notes.notBefore), refusedUntil(channel));
    return outside(allowed, plan.skipHours, plan.skipDays);
}

bool Schedule::isRefused(const FeedChannel &channel) const
{
    if (QUrl(channel.link()).isLocalFile())
        return false;
    return m_plans.value(channel.uri()).notes.status == goneStatus || refusedUntil(channel) > m_now;
}

} // namespace Tidel
