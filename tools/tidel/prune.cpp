// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "prunerule.h"
#include "removalreport.h"

#include <TidelReader/retention.h>
#include <TidelReader/retentionrules.h>

namespace Tidel {

namespace {

using Rules = QHash<QString, RetentionRule>;

void show(const Retention &retention, const FeedChannel &channel, const QStringList &uris, Output &output)
{
    const Result<QList<FeedMessage>> messages = retention.headlines(uris);
    if (!messages) {
        output.failure(channel.title(), messages.error());
        return;
    }
    QJsonObject json = channelJson(channel);
    json.insert(QStringLiteral("wouldDelete"), int(uris.size()));
    output.object(json);
    output.line(
        QStringLiteral("%1: would delete %2").arg(channel.title(), countedMessages(int(uris.size()))));
    for (const FeedMessage &message : *messages)
        output.line(
            QStringLiteral("  %1  %2").arg(shownTime(message.publishedDate()), shownTitle(message.title())));
}

void drop(Retention &retention, const FeedChannel &channel, const QStringList &uris,
          const RetentionRule &rule, Output &output)
{
    RemovalReport report(output);
    const Result<void> dropped = retention.drop(channel.uri(), uris, rule, report.step());
    if (report.messages() > 0)
        output.report(
            QStringLiteral("%1: deleted %2, %3")
                .arg(channel.title(), countedMessages(report.messages()), countedFiles(report.files())),
            report.json(channelJson(channel)));
    if (!dropped)
        output.failure(channel.title(), dropped.error(), QStringLiteral("; prune again"));
}

/// Returns true if \a rule deletes nothing from \a channel; otherwise returns false.
bool apply(const Store &store, const FeedChannel &channel, const RetentionRule &rule, bool isDry,
           Output &output)
{
    Retention retention(store);
    const Result<QStringList> uris = retention.excess(channel.uri(), rule);
    if (!uris)
        output.failure(channel.title(), uris.error());
    else if (uris->isEmpty())
        output.object(RemovalReport(output).json(channelJson(channel)));
    else if (isDry)
        show(retention, channel, *uris, output);
    else
        drop(retention, channel, *uris, rule, output);
    return uris && uris->isEmpty();
}

/// A channel, and the rule that applies to it.
using RuledChannel = QPair<FeedChannel, RetentionRule>;

void applyAll(const Store &store, const QVector<RuledChannel> &channels, bool isDry, Output &output)
{
    int unchanged = 0;
    for (const RuledChannel &channel : channels)
        unchanged += apply(store, channel.first, channel.second, isDry, output) ? 1 : 0;
    if (unchanged == 0 || unchanged < channels.size())
        return;
    const QString what = unchanged == 1 ? channels.constFirst().first.title() : countedChannels(unchanged);
    output.report(QStringLiteral("%1: nothing to delete").arg(what), {});
}

/// Remembers \a rule for \a channels, or for all if there are none. Forgets it if there is none.
void remember(const Store &store, const QList<FeedChannel> &channels,
              const std::optional<RetentionRule> &rule, Output &output)
{
    RetentionRules rules(store);
    const auto set = [&](const QString &title, const QString &uri) {
        const Result<void> done = rules.set(uri, rule);
        if (!done)
            output.failure(title, done.error());
        else if (!rule)
            output.report(QStringLiteral("%1: rule forgotten").arg(title), {});
    };
    if (channels.isEmpty())
        set(QStringLiteral("All channels"), QString());
    for (const FeedChannel &channel : channels)
        set(channel.title(), channel.uri());
}

void showRules(const Rules &rules, const QList<FeedChannel> &channels, Output &output)
{
    if (rules.contains(QString())) {
        output.object(ruleJson(rules.value(QString()), {}));
        output.line(QStringLiteral("All other channels: %1").arg(shownRule(rules.value(QString()))));
    }
    for (const FeedChannel &channel : channels) {
        if (!rules.contains(channel.uri()))
            continue;
        const RetentionRule rule = rules.value(channel.uri());
        output.object(ruleJson(rule, channelJson(channel)));
        output.line(QStringLiteral("%1: %2").arg(channel.title(), shownRule(rule)));
    }
    if (rules.isEmpty())
        output.note(
            QStringLiteral("No rules are remembered; \"tidel prune --keep 100 --remember\" adds one."));
}

void applyRemembered(const Store &store, const QList<FeedChannel> &channels, const Rules &rules, bool isDry,
                     Output &output)
{
    QVector<RuledChannel> ruled;
    for (const FeedChannel &channel : channels) {
        const auto own = rules.constFind(channel.uri());
        const auto rule = own == rules.cend() ? rules.constFind(QString()) : own;
        if (rule != rules.cend())
            ruled.append({channel, *rule});
    }
    applyAll(store, ruled, isDry, output);
    if (ruled.isEmpty() && !channels.isEmpty())
        output.error(QStringLiteral(
            "no rule is remembered; give --keep N or --older-than 90d, and --remember for the next time"));
}

QString misuseOfPrune(const Arguments &arguments)
{
    const bool hasRule = ruleIn(arguments).has_value();
    const bool isAboutRules = arguments.isSet("forget") || arguments.isSet("rules");
    if ((arguments.isSet("include-unread") || arguments.isSet("remember")) && !hasRule)
        return QStringLiteral("give a rule: --keep N or --older-than 90d");
    if (isAboutRules && (hasRule || arguments.isSet("dry-run")))
        return QStringLiteral("--rules and --forget delete no messages; leave out the other options");
    return misuseOfRule(arguments);
}

void prune(const Store &store, const Arguments &arguments, Output &output)
{
    const QList<FeedChannel> chosen = chooseChannels(store, arguments.names, output);
    const QList<FeedChannel> named = arguments.names.isEmpty() ? QList<FeedChannel>() : chosen;
    if (chosen.isEmpty() && !arguments.names.isEmpty())
        return;
    const auto rule = ruleIn(arguments);
    const bool isDry = arguments.isSet("dry-run");
    if (arguments.isSet("forget") || (arguments.isSet("remember") && !isDry))
        remember(store, named, rule, output);
    if (arguments.isSet("forget"))
        return;
    if (rule) {
        QVector<RuledChannel> ruled;
        for (const FeedChannel &channel : chosen)
            ruled.append({channel, *rule});
        applyAll(store, ruled, isDry, output);
        return;
    }
    const auto rules = RetentionRules(store).all();
    if (!rules)
        output.failure(rules.error());
    else if (arguments.isSet("rules"))
        showRules(*rules, chosen, output);
    else
        applyRemembered(store, chosen, *rules, isDry, output);
}

} // namespace

const Command pruneCommand = {
    "prune",
    "[CHANNEL...] [--keep N] [--older-than 90d]",
    "Delete old messages, except favorites and unread ones, once or by remembered rules.",
    someChannels,
    0,
    anyNumber,
    {{"keep", "N", "Deletes what is beyond the newest N messages of each channel; \"all\" keeps everything."},
     {"older-than", "DAYS", "Deletes what is older, such as 90d."},
     {"include-unread", nullptr, "Deletes unread messages, too."},
     {"remember", nullptr, "Remembers this rule for the channels, or for all that have no other one."},
     {"forget", nullptr, "Forgets the rule of the channels, or the one of all."},
     {"rules", nullptr, "Shows the remembered rules."},
     {"dry-run", nullptr, "Shows what would be deleted, and deletes and remembers nothing."}},
    {"tidel prune --keep 100", "tidel prune --older-than 90d --remember",
     "tidel prune \"Town News\" --keep 20 --include-unread --dry-run", "tidel prune --rules",
     "tidel prune \"Town News\" --forget", "tidel prune"},
    prune,
    misuseOfPrune};

} // namespace Tidel
