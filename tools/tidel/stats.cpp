// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "table.h"

#include <QLocale>

#include <TidelReader/channels.h>
#include <TidelReader/statistics.h>

#include <algorithm>

namespace Tidel {

namespace {

constexpr int shownDays = 14;
constexpr int shownChannels = 5;
constexpr int silentDays = 90;

void showTotals(const Statistics::Totals &totals, Output &output)
{
    const QVector<QPair<QString, QString>> lines{
        {QStringLiteral("Channels"), QString::number(totals.channels)},
        {QStringLiteral("Messages"), QStringLiteral("%1, %2 unread").arg(totals.messages).arg(totals.unread)},
        {QStringLiteral("Favorites"), QString::number(totals.favorites)},
        {QStringLiteral("Enclosures"),
         QStringLiteral("%1, %2 downloaded").arg(totals.enclosures).arg(totals.downloaded)},
        {QStringLiteral("Archive"), QLocale::c().formattedDataSize(totals.storeSize)},
    };
    for (const auto &[name, value] : lines)
        output.line(QStringLiteral("%1 %2").arg(name + QLatin1Char(':'), -12).arg(value));
    output.object({{QStringLiteral("channels"), totals.channels},
                   {QStringLiteral("messages"), totals.messages},
                   {QStringLiteral("unread"), totals.unread},
                   {QStringLiteral("favorites"), totals.favorites},
                   {QStringLiteral("enclosures"), totals.enclosures},
                   {QStringLiteral("downloaded"), totals.downloaded},
                   {QStringLiteral("length"), totals.storeSize}});
}

void showDays(const QMap<QDate, int> &days, Output &output)
{
    output.line(QString());
    output.line(QStringLiteral("Messages of the last %1 days:").arg(days.size()));
    const int most = std::max(1, *std::max_element(days.begin(), days.end()));
    // A few messages make a short bar.
    const int width = std::min(std::clamp(output.width() - 30, 10, 60), 3 * most);
    for (auto day = days.begin(); day != days.end(); ++day) {
        // A day with a message has a bar.
        const int length = (day.value() * width + most - 1) / most;
        const QString bar = length > 0 ? QLatin1Char(' ') + QString(length, QChar(0x2587)) : QString();
        output.line(QStringLiteral("  %1 %2%3")
                        .arg(QLocale::c().toString(day.key(), QStringLiteral("yyyy-MM-dd ddd")))
                        .arg(day.value(), 6)
                        .arg(bar));
        output.object({{QStringLiteral("day"), day.key().toString(Qt::ISODate)},
                       {QStringLiteral("messages"), day.value()}});
    }
}

/// A channel, and what it is listed for.
struct Activity
{
    FeedChannel channel;
    int messages = 0;
    QDateTime newest;
};

void show(const QString &head, const QList<Activity> &activities, Output &output)
{
    if (activities.isEmpty())
        return;
    output.line(QString());
    output.line(head);
    Table table({1});
    for (const Activity &activity : activities)
        table.addRow({QLatin1String("  ") + shownTitle(activity.channel.title()),
                      countedMessages(activity.messages),
                      activity.newest.isValid() ? QLatin1String("last ") + shownTime(activity.newest)
                                                : shownTime({})});
    output.table(table);
}

void showChannels(QList<Activity> activities, Output &output)
{
    for (const Activity &activity : qAsConst(activities)) {
        QJsonObject json = channelJson(activity.channel);
        json.insert(QStringLiteral("messages"), activity.messages);
        addTime(json, "newest", activity.newest);
        output.object(json);
    }
    std::stable_sort(activities.begin(), activities.end(),
                     [](const Activity &a, const Activity &b) { return a.messages > b.messages; });
    show(QStringLiteral("The busiest channels:"), activities.mid(0, shownChannels), output);
    const QDateTime limit = QDateTime::currentDateTime().addDays(-silentDays);
    QList<Activity> silent;
    std::copy_if(activities.cbegin(), activities.cend(), std::back_inserter(silent),
                 [&](const Activity &each) { return !each.newest.isValid() || each.newest < limit; });
    std::stable_sort(silent.begin(), silent.end(),
                     [](const Activity &a, const Activity &b) { return a.newest < b.newest; });
    show(QStringLiteral("Silent for %1 days:").arg(silentDays), silent.mid(0, shownChannels), output);
    if (silent.size() > shownChannels)
        output.line(QStringLiteral("  and %1 more").arg(silent.size() - shownChannels));
}

void stats(const Store &store, const Arguments &, Output &output)
{
    const Statistics statistics(store);
    const auto totals = statistics.totals();
    const auto days = statistics.messagesPerDay(shownDays);
    const auto channels = Channels(store).all();
    const auto counts = Channels(store).messageCounts();
    const auto newest = statistics.newestMessages();
    if (!totals)
        return output.failure(totals.error());
    if (!days)
        return output.failure(days.error());
    if (!channels)
        return output.failure(channels.error());
    if (!counts)
        return output.failure(counts.error());
    if (!newest)
        return output.failure(newest.error());
    QList<Activity> activities;
    for (const FeedChannel &channel : *channels)
        activities.append({channel, counts->value(channel.uri()), newest->value(channel.uri())});
    showTotals(*totals, output);
    showDays(*days, output);
    showChannels(activities, output);
}

} // namespace

const Command statsCommand = {"stats",
                              "",
                              "Show how much the archive holds, and which channels are busy or silent.",
                              "",
                              0,
                              0,
                              {},
                              {"tidel stats", "tidel stats --json"},
                              stats};

} // namespace Tidel
