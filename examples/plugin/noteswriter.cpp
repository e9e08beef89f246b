// SPDX-License-Identifier: LGPL-2.1-or-later
#include "noteswriter.h"

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/writeturn.h>

#include <QFileInfo>

using namespace Tidel;

namespace {

FeedChannel channelOf(const QUrl &address)
{
    FeedChannel channel;
    channel.setLink(Link::encoded(address));
    channel.setTitle(QFileInfo(address.path()).completeBaseName());
    channel.setType(QStringLiteral("notes"));
    return channel;
}

// Everything is asked in the turn in which it is used: before, another program may have deleted the channel
// or pruned its messages.
Result<void> writeGroup(const Store &store, const QString &channelUri, const QList<StorableMessage> &messages,
                        QStringList *newMessages)
{
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    const Result<FeedMemory> memory = Feeds(store).state(channelUri).and_then([&](const FeedState &) {
        return Feeds(store).memory(channelUri);
    });
    if (!memory)
        return Failure(memory.error());
    QList<StorableMessage> wanted;
    QList<Link> links;
    for (const StorableMessage &message : messages) {
        if (memory->droppedLinks.contains(message.link().toString()))
            continue;
        wanted.append(message);
        links.append(message.link());
    }
    return LinkUse::of(store, links, channelUri).and_then([&](const LinkUse &use) {
        WrittenMessages written;
        const Result<void> done = MessageWriter(store).write(wanted, channelUri, use, {}, &written);
        *newMessages += written.added;
        return done;
    });
}

/// Notes that the file was read, and forgets the dropped links that are not among those of \a messages.
Result<void> noteReading(const Store &store, const QString &channelUri,
                         const QList<StorableMessage> &messages)
{
    Feeds feeds(store);
    return feeds.memory(channelUri)
        .and_then([&](const FeedMemory &memory) {
            QSet<QString> gone = memory.droppedLinks;
            for (const StorableMessage &message : messages)
                gone.remove(message.link().toString());
            return feeds.forgetDropped(channelUri, gone.values());
        })
        .and_then([&] { return feeds.plan(channelUri); })
        .and_then([&](const FeedPlan &plan) {
            Reading reading;
            reading.plan = plan;
            return feeds.noteReading(channelUri, reading);
        });
}

/// Stores \a messages, all that the file has, under the channel.
Outcome write(const Store &store, const QString &channelUri, const QList<StorableMessage> &messages,
              QStringList *newMessages)
{
    for (int from = 0; from < messages.size();) {
        const int size = MessageWriter::groupSize(messages, from);
        const Result<void> written = writeGroup(store, channelUri, messages.mid(from, size), newMessages);
        if (!written)
            return storeFailed(written.error());
        from += size;
    }
    const Result<void> noted = noteReading(store, channelUri, messages);
    return noted ? Outcome() : storeFailed(noted.error());
}

} // namespace

Outcome addNotes(const Store &store, const QUrl &address, QStringList *newMessages)
{
    QList<StorableMessage> messages;
    const Outcome outcome = readNotes(address, Link::encoded(address), &messages);
    if (outcome.error != FeedDownloadNoError)
        return outcome;
    const Result<QString> uri = WriteTurn::take().and_then(
        [&](const WriteTurn &) { return Channels(store).add(channelOf(address)); });
    return uri ? write(store, *uri, messages, newMessages) : storeFailed(uri.error());
}

Outcome refreshNotes(const Store &store, const QString &channelUri, QStringList *newMessages)
{
    const Result<FeedState> state = Feeds(store).state(channelUri);
    if (!state)
        return storeFailed(state.error());
    const QUrl address(state->link());
    QList<StorableMessage> messages;
    const Outcome outcome = readNotes(address, state->itemBase(), &messages);
    if (outcome.error != FeedDownloadNoError) {
        const FeedAnswer answer = {outcome.error, outcome.reason, 0, {}, {}};
        const Result<void> noted =
            Feeds(store).noteAnswer(channelUri, answer, QDateTime::currentDateTimeUtc());
        return noted ? outcome : storeFailed(noted.error());
    }
    // Others store channels whose files nobody has read yet.
    const Result<void> described =
        state->wasRead() ? Result<void>() : WriteTurn::take().and_then([&](const WriteTurn &) {
            return Channels(store).describe(channelUri, channelOf(address));
        });
    return described ? write(store, channelUri, messages, newMessages) : storeFailed(described.error());
}

Outcome storeFailed(const Error &error)
{
    switch (error.kind()) {
    case Error::NotFound: return {FeedDownloadNotFound, error.text()};
    case Error::AlreadyStored: return {FeedDownloadAlreadyStored, error.text()};
    default: return {FeedDownloadStoreFailed, error.text()};
    }
}
