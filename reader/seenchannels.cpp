// SPDX-License-Identifier: LGPL-2.1-or-later
#include "seenchannels_p.h"

#include "statements_p.h"

namespace Tidel {

namespace {

const char *const attempt = "look for changes of channels in the store";

SeenChannels extractChannels(const Answer &answer)
{
    constexpr int firstShown = 3; // after URI, number and mark
    SeenChannels channels;
    while (answer->next()) {
        SeenChannel &channel = channels[answer->value(0).toString()];
        channel.number = answer->value(1).toLongLong();
        channel.mark = answer->value(2).toLongLong();
        const int count = answer->current().count();
        // The numbers keep values of different properties apart.
        for (int i = firstShown; i < count; ++i)
            channel.shown.append(QString::number(i) + answer->value(i).toString());
    }
    return channels;
}

/// Adds the details of \a answer, each in a column of its own, to the channels in its first column.
void addDetails(const Answer &answer, SeenChannels *channels)
{
    while (answer->next()) {
        const auto channel = channels->find(answer->value(0).toString());
        if (channel == channels->end())
            continue;
        const int count = answer->current().count();
        for (int i = 1; i < count; ++i) {
            const QString value = answer->value(i).toString();
            if (!value.isEmpty())
                channel->shown.append(QLatin1Char('+') + QString::number(i) + value);
        }
    }
}

} // namespace

Result<SeenChannels> readSeenChannels(StorePrivate &store)
{
    static const QStringList details = {Statements::folder, Statements::website, Statements::interval,
                                        Statements::retention, QStringLiteral("error")};
    Result<SeenChannels> channels = store.run(Statements::shownChannels(), attempt).map(extractChannels);
    if (!channels)
        return channels;
    const Result<void> added =
        store.run(Statements::detailsOfChannels(details), attempt).map([&](const Answer &answer) {
            addDetails(answer, &*channels);
        });
    if (!added)
        return Failure(added.error());
    for (SeenChannel &channel : *channels) {
        channel.shown.sort();
        channel.shown.removeDuplicates(); // The rows of several values repeat the others.
    }
    return channels;
}

} // namespace Tidel
