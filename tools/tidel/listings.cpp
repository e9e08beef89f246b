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
#include <TidelReader/enclosures.h>
#include <TidelReader/folders.h>
#include <TidelReader/readstate.h>
#include <TidelReader/schedule.h>
#include <TidelReader/usertext.h>

#include <algorithm>

namespace Tidel {

namespace {

QString shownSize(unsigned int length)
{
    return length == 0 ? QStringLiteral("(no size)") : QStringLiteral("%1 bytes").arg(length);
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

Result<QHash<QString, EnclosureDetails>> detailsOf(const Store &store, const QList<FeedEnclosure> &enclosures)
{
    QStringList uris;
    for (const FeedEnclosure &enclosure : enclosures)
        uris.append(enclosure.uri());
    return Enclosures(store).details(uris);
}

/// Lists \a enclosures with their local copies, and with their durations if any is known.
void showEnclosures(const QList<FeedEnclosure> &enclosures, const QHash<QString, EnclosureDetails> &details,
                    Output &output)
{
    const bool showsDurations = std::any_of(details.begin(), details.end(),
                                            [](const EnclosureDetails &each) { return each.duration > 0; });
    Table table(showsDurations ? QSet<int>{0, 1} : QSet<int>{0});
    for (const FeedEnclosure &enclosure : enclosures) {
        const EnclosureDetails more = details.value(enclosure.uri());
        QStringList row{shownSize(enclosure.length())};
        if (showsDurations)
            row.append(more.duration > 0 ? shownDuration(more.duration) : QString());
        row << shownType(enclosure.mimeType()) << enclosure.remoteUrl()
            << QUrl(enclosure.localUrl()).toLocalFile();
        table.addRow(row);
        output.object(enclosureJson(enclosure, more));
    }
    output.table(table);
}

void listEnclosures(const Store &store, const Arguments &arguments, Output &output)
{
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
    const auto details = detailsOf(store, *enclosures);
    if (details)
        showEnclosures(*enclosures, *details, output);
    else
        output.failure(title, details.error());
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

const Command enclosuresCommand = {"enclosures",
                                   "MESSAGE",
                                   "List the files of a message: size, type, address.",
                                   aMessage,
                                   1,
                                   1,
                                   {},
                                   {"tidel enclosures https://radio.example.org/episodes/7"},
                                   listEnclosures};

} // namespace Tidel
