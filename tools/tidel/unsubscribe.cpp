// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "question.h"
#include "removalreport.h"

#include <TidelReader/channelcontent.h>
#include <TidelReader/channels.h>

namespace Tidel {

namespace {

/// What is deleted with a channel whose content is \a content.
struct Loss
{
    Loss(const ChannelContent &content, bool keepsFavorites)
        : messages(content.messages - (keepsFavorites ? content.favorites : 0)),
          favorites(keepsFavorites ? 0 : content.favorites),
          files(int(content.files.size()) - (keepsFavorites ? int(content.filesOfFavorites.size()) : 0))
    {
    }

    int messages; ///< The favorites are among them.
    int favorites;
    int files;
};

QString shown(const Loss &loss)
{
    const QString favorites = loss.favorites == 0
        ? QString()
        : QStringLiteral(", %1 among them").arg(countedFavorites(loss.favorites));
    return QStringLiteral("%1%2, %3")
        .arg(countedMessages(loss.messages), favorites, countedFiles(loss.files));
}

void showLoss(const FeedChannel &channel, const Loss &loss, Output &output)
{
    QJsonObject json = channelJson(channel);
    json.insert(QStringLiteral("wouldDelete"), loss.messages);
    json.insert(QStringLiteral("favorites"), loss.favorites);
    json.insert(QStringLiteral("files"), loss.files);
    output.object(json);
    output.line(QStringLiteral("%1: would delete %2").arg(channel.title(), shown(loss)));
}

/// Returns true if the user wants to delete \a channel; otherwise returns false.
bool isWanted(const FeedChannel &channel, const Loss &loss)
{
    const std::optional<QString> answer =
        ask(QStringLiteral("Delete %1 with %2? [y/N] ").arg(channel.title(), shown(loss)));
    return answer && answer->startsWith(QLatin1Char('y'), Qt::CaseInsensitive);
}

void remove(const Store &store, const FeedChannel &channel, bool keepsFavorites, Output &output)
{
    RemovalReport report(output);
    const Result<void> removed = Channels(store).remove(
        channel, report.step(), keepsFavorites ? Channels::KeepFavorites : Channels::DeleteFavorites);
    if (removed)
        output.report(QStringLiteral("Unsubscribed: %1").arg(channel.title()),
                      report.json(channelJson(channel)));
    else
        output.failure(
            channel.title(), removed.error(),
            QStringLiteral("; unsubscribe again; a refresh brings back what the feed still shows"));
}

void unsubscribe(const Store &store, const Arguments &arguments, Output &output)
{
    const bool keepsFavorites = arguments.isSet("keep-favorites");
    const bool isDry = arguments.isSet("dry-run");
    const bool asks = canAsk() && !arguments.isSet("yes") && output.style() == Output::Text;
    const QList<FeedChannel> channels = chooseChannels(store, arguments.names, output);
    for (const FeedChannel &channel : channels) {
        if (!isDry && !asks) {
            remove(store, channel, keepsFavorites, output);
            continue;
        }
        const Result<ChannelContent> content = ChannelContent::of(store, channel.uri());
        if (!content)
            output.failure(channel.title(), content.error());
        else if (isDry)
            showLoss(channel, Loss(*content, keepsFavorites), output);
        else if (isWanted(channel, Loss(*content, keepsFavorites)))
            remove(store, channel, keepsFavorites, output);
        else
            output.line(QStringLiteral("Not deleted: %1").arg(channel.title()));
    }
}

} // namespace

const Command unsubscribeCommand = {
    "unsubscribe",
    "CHANNEL...",
    "Delete channels with their messages and downloaded files. Asks before, on a terminal.",
    "Channels: numbers in the last list, parts of titles, links, files or URIs.",
    1,
    anyNumber,
    {{"keep-favorites", nullptr, "Keeps the favorites, which then belong to no channel."},
     {"dry-run", nullptr, "Shows what would be deleted, and deletes nothing."},
     {"yes", nullptr, "Deletes without asking."}},
    {"tidel unsubscribe \"Garden Notes\"", "tidel unsubscribe 2 5 --keep-favorites --yes",
     "tidel unsubscribe \"Garden Notes\" --dry-run"},
    unsubscribe};

} // namespace Tidel
