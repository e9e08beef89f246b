// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "removalreport.h"

#include <TidelReader/retention.h>

namespace Tidel {

namespace {

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

void drop(Retention &retention, const FeedChannel &channel, const QStringList &uris, Output &output)
{
    RemovalReport report(output);
    const Result<void> dropped = retention.drop(channel.uri(), uris, report.step());
    if (report.messages() > 0)
        output.report(
            QStringLiteral("%1: deleted %2, %3")
                .arg(channel.title(), countedMessages(report.messages()), countedFiles(report.files())),
            report.json(channelJson(channel)));
    if (!dropped)
        output.failure(channel.title(), dropped.error(), QStringLiteral("; prune again"));
}

QString misuseOfPrune(const Arguments &arguments)
{
    bool isNumber = false;
    const int keep = arguments.value("keep").toInt(&isNumber);
    return isNumber && keep >= 0 ? QString()
                                 : QStringLiteral("give the number of messages to keep: --keep N, 0 or more");
}

void prune(const Store &store, const Arguments &arguments, Output &output)
{
    Retention retention(store);
    const QList<FeedChannel> chosen = chooseChannels(store, arguments.names, output);
    for (const FeedChannel &channel : chosen) {
        const Result<QStringList> uris = retention.excess(channel.uri(), arguments.value("keep").toInt());
        if (!uris)
            output.failure(channel.title(), uris.error());
        else if (uris->isEmpty())
            output.report(QStringLiteral("%1: nothing to delete").arg(channel.title()),
                          RemovalReport(output).json(channelJson(channel)));
        else if (arguments.isSet("dry-run"))
            show(retention, channel, *uris, output);
        else
            drop(retention, channel, *uris, output);
    }
}

} // namespace

const Command pruneCommand = {"prune",
                              "[CHANNEL...] --keep N [--dry-run]",
                              "Delete the oldest messages of each channel, except favorites.",
                              someChannels,
                              0,
                              anyNumber,
                              {{"keep", "N", "The number of messages to keep in addition to favorites."},
                               {"dry-run", nullptr, "Shows what would be deleted, and deletes nothing."}},
                              {"tidel prune --keep 100", "tidel prune \"Town News\" --keep 20 --dry-run"},
                              prune,
                              misuseOfPrune};

} // namespace Tidel
