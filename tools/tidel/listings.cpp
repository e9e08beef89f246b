// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "lastlist.h"
#include "messagefinder.h"
#include "output.h"
#include "phrases.h"
#include "table.h"

#include <QUrl>

#include <TidelReader/channels.h>
#include <TidelReader/enclosurequeue.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/folders.h>
#include <TidelReader/readstate.h>
#include <TidelReader/schedule.h>
#include <TidelReader/usertext.h>

#include <algorithm>

namespace Tidel {

namespace {

QString shownLength(unsigned int length)
{
    return length == 0 ? QStringLiteral("(no size)") : shownSize(length);
}

QString shownType(const QString &mimeType)
{
    return mimeType.isEmpty() ? QStringLiteral("(no type)") : mimeType;
}

QJsonObject json(const FeedChannel &channel, const QString &folder, const MessageCounts &counts,
                 const ChannelDetails &details, const Schedule &schedule)
{
    QJsonObject json = channelJson(channel);
    addText(json, "folder", folder);
    addText(json, "website", withoutPasswords(details.website.toString()));
    addTimes(json, channel, schedule);
    json.insert(QStringLiteral("messages"), counts.all);
    json.insert(QStringLiteral("unread"), counts.unread);
    return json;
}

/// What a list of channels shows beside them.
struct ChannelFacts
{
    QHash<QString, MessageCounts> counts; ///< By URI, as the next.
    QHash<QString, QString> folders;
    QHash<QString, ChannelDetails> details; ///< Only for other programs, as the next.
    Schedule schedule;
};

Result<ChannelFacts> factsOf(const Store &store, const QStringList &uris, bool withDetails)
{
    ChannelFacts facts;
    return ReadState(store)
        .counts()
        .and_then([&](const QHash<QString, MessageCounts> &counts) {
            facts.counts = counts;
            return Folders(store).all();
        })
        .and_then([&](const QHash<QString, QString> &folders) {
            facts.folders = folders;
            return Channels(store).details(withDetails ? uris : QStringList());
        })
        .and_then([&](const QHash<QString, ChannelDetails> &details) {
            facts.details = details;
            return withDetails ? Schedule::read(store, QDateTime::currentDateTimeUtc()) : Schedule();
        })
        .map([&](const Schedule &schedule) {
            facts.schedule = schedule;
            return facts;
        });
}

/// The rows of \a channels: number, title, folder if there are any, unread and all messages, link, URI.
Table channelTable(const QList<FeedChannel> &channels, const ChannelFacts &facts, bool withUris)
{
    const bool hasFolders = !facts.folders.isEmpty();
    Table table({0, hasFolders ? 3 : 2});
    table.setElastic(hasFolders ? QVector<int>{4, 2, 1} : QVector<int>{3, 1}, 12);
    int row = 0;
    for (const FeedChannel &channel : channels) {
        const MessageCounts counts = facts.counts.value(channel.uri());
        QStringList cells{QString::number(++row), shownTitle(channel.title()),
                          QStringLiteral("%1/%2").arg(counts.unread).arg(counts.all), channel.link()};
        if (hasFolders)
            cells.insert(2, facts.folders.value(channel.uri()));
        if (withUris)
            cells.append(channel.uri());
        table.addRow(cells);
    }
    return table;
}

void listChannels(const Store &store, const Arguments &arguments, Output &output)
{
    const QList<FeedChannel> channels = chooseChannels(store, {}, output);
    if (channels.isEmpty())
        return;
    QStringList uris;
    for (const FeedChannel &channel : channels)
        uris.append(channel.uri());
    const Result<ChannelFacts> facts = factsOf(store, uris, output.style() == Output::Json);
    if (!facts) {
        output.failure(facts.error());
        return;
    }
    for (const FeedChannel &channel : channels)
        output.object(json(channel, facts->folders.value(channel.uri()), facts->counts.value(channel.uri()),
                           facts->details.value(channel.uri()), facts->schedule));
    if (output.style() == Output::Text)
        LastList(LastList::Channels).remember(uris);
    output.table(channelTable(channels, *facts, arguments.isSet("uri")));
}

/// What a list of enclosures shows beside them, by their URIs.
struct EnclosureFacts
{
    QHash<QString, EnclosureDetails> details;
    QHash<QString, QDateTime> queued;
};

Result<EnclosureFacts> factsOf(const Store &store, const QList<FeedEnclosure> &enclosures)
{
    QStringList uris;
    for (const FeedEnclosure &enclosure : enclosures)
        uris.append(enclosure.uri());
    EnclosureFacts facts;
    return Enclosures(store)
        .details(uris)
        .and_then([&](const QHash<QString, EnclosureDetails> &details) {
            facts.details = details;
            return EnclosureQueue(store).times(uris);
        })
        .map([&](const QHash<QString, QDateTime> &queued) {
            facts.queued = queued;
            return facts;
        });
}

/// Lists \a enclosures with their local copies, and with their durations if any is known.
void showEnclosures(const QList<FeedEnclosure> &enclosures, const EnclosureFacts &facts, Output &output)
{
    const bool showsDurations = std::any_of(facts.details.begin(), facts.details.end(),
                                            [](const EnclosureDetails &each) { return each.duration > 0; });
    Table table(showsDurations ? QSet<int>{0, 1} : QSet<int>{0});
    for (const FeedEnclosure &enclosure : enclosures) {
        const EnclosureDetails more = facts.details.value(enclosure.uri());
        const QDateTime queued = facts.queued.value(enclosure.uri());
        const QString file = QUrl(enclosure.localUrl()).toLocalFile();
        QStringList row{shownLength(enclosure.length())};
        if (showsDurations)
            row.append(more.duration > 0 ? shownDuration(more.duration) : QString());
        row << shownType(enclosure.mimeType()) << enclosure.remoteUrl()
            << (queued.isValid() ? QStringLiteral("waits to be downloaded") : file);
        table.addRow(row);
        output.object(enclosureJson(enclosure, more, queued));
    }
    output.table(table);
}

/// Lists \a enclosures with all that is known of them.
void showEnclosures(const Store &store, const QList<FeedEnclosure> &enclosures, Output &output)
{
    const Result<EnclosureFacts> facts = factsOf(store, enclosures);
    if (facts)
        showEnclosures(enclosures, *facts, output);
    else
        output.failure(facts.error());
}

void listQueue(const Store &store, Output &output)
{
    const Result<QStringList> uris = EnclosureQueue(store).uris();
    if (!uris) {
        output.failure(uris.error());
        return;
    }
    if (uris->isEmpty())
        output.note(QStringLiteral("No files wait to be downloaded"));
    QList<FeedEnclosure> enclosures;
    for (const QString &uri : *uris) {
        const Result<FeedEnclosure> enclosure = Enclosures(store).get(uri);
        if (enclosure)
            enclosures.append(*enclosure);
        else
            output.failure(uri, enclosure.error());
    }
    showEnclosures(store, enclosures, output);
}

void listEnclosures(const Store &store, const Arguments &arguments, Output &output)
{
    if (arguments.names.isEmpty()) {
        listQueue(store, output);
        return;
    }
    const auto message = chooseMessage(store, arguments.names.first(), output);
    if (!message)
        return;
    const QString title = shownTitle(message->title);
    const Result<QList<FeedEnclosure>> enclosures = Enclosures(store).ofMessage(message->uri);
    if (!enclosures) {
        output.failure(title, enclosures.error());
        return;
    }
    if (enclosures->isEmpty())
        output.note(QStringLiteral("%1: the message has no enclosures").arg(title));
    showEnclosures(store, *enclosures, output);
}

} // namespace

const Command channelsCommand = {
    "channels",
    "",
    "List the channels: title, folder if there are any, numbers of unread and of all messages, link.",
    "",
    0,
    0,
    {{"uri", nullptr, "Shows the URIs of the channels."}},
    {"tidel channels"},
    listChannels};

const Command enclosuresCommand = {
    "enclosures",
    "[MESSAGE]",
    "List the files of a message, or those that wait: size, duration, type, address, local copy.",
    "A message: its number in the last list, a part of its title, its link or URI. Without one, lists the files "
    "that wait to be downloaded.",
    0,
    1,
    {},
    {"tidel enclosures https://radio.example.org/episodes/7", "tidel enclosures"},
    listEnclosures};

} // namespace Tidel
