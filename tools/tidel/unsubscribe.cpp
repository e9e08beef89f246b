// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "removalreport.h"

#include <TidelReader/channels.h>

namespace Tidel {

namespace {

void unsubscribe(const Store &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    RemovalReport report(output);
    const Result<void> removed = Channels(store).remove(*channel, report.step());
    if (removed)
        output.report(QStringLiteral("Unsubscribed: %1").arg(channel->title()),
                      report.json(channelJson(*channel)));
    else
        output.failure(
            channel->title(), removed.error(),
            QStringLiteral("; unsubscribe again; a refresh brings back what the feed still shows"));
}

} // namespace

const Command unsubscribeCommand = {"unsubscribe",
                                    "CHANNEL",
                                    "Delete a channel with its messages and their downloaded files.",
                                    aChannel,
                                    1,
                                    1,
                                    {},
                                    {"tidel unsubscribe \"Garden Notes\""},
                                    unsubscribe};

} // namespace Tidel
