// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messages.h"

#include "detailfields_p.h"
#include "earlierversions_p.h"
#include "headlines_p.h"
#include "messageorder.h"
#include "messageremoval_p.h"
#include "shownaddress_p.h"
#include "statements_p.h"
#include "writeturn.h"

#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

Error noSuchMessage() { return Error(Error::NotFound, {}, QStringLiteral("no such message")); }

} // namespace

Messages::Messages(const Store &store) : m_store(store) { }

Result<QList<FeedMessage>> Messages::ofChannel(const QString &channelUri) const
{
    return StorePrivate::of(m_store)
        .run(Statements::messagesOf(channelUri), "read its messages from the store")
        .map([](const Answer &answer) {
            QList<FeedMessage> messages = eachOnce(answer, extractMessage);
            sortNewestFirst(messages);
            return messages;
        });
}

Result<FeedMessage> Messages::get(const QString &messageUri) const
{
    const Result<Answer> answer = StorePrivate::of(m_store).run(Statements::messageInFull(messageUri),
                                                                "read the message from the store");
    if (!answer)
        return Failure(answer.error());
    if (!(*answer)->next())
        return Failure(noSuchMessage());
    return extractMessage((*answer)->current());
}

Result<QStringList> Messages::channelTitles(const QString &messageUri) const
{
    return StorePrivate::of(m_store).texts(Statements::channelTitlesOf(messageUri),
                                           "read the channels of the message from the store");
}

Result<QStringList> Messages::channelUris(const QString &messageUri) const
{
    return StorePrivate::of(m_store).texts(Statements::channelUrisOf(messageUri),
                                           "read the channels of the message from the store");
}

Result<QList<FeedMessage>> Messages::headlines(const QStringList &links) const
{
    return readHeadlines(StorePrivate::of(m_store), links, Statements::headlinesOfLinks,
                         "read the new messages from the store")
        .map([](QList<FeedMessage> messages) {
            sortNewestFirst(messages);
            return messages;
        });
}

Result<QHash<QString, MessageDetails>> Messages::details(const QStringList &uris) const
{
    return readDetails<MessageDetails>(StorePrivate::of(m_store), uris,
                                       "read the details of messages from the store");
}

Result<QList<EarlierVersion>> Messages::earlierVersions(const QString &messageUri) const
{
    return StorePrivate::of(m_store)
        .texts(Statements::earlierVersions(messageUri),
               "read the earlier texts of the message from the store")
        .map([](const QStringList &texts) { return versionsIn(texts.value(0)); });
}

Result<QString> Messages::uri(const QString &name) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    const auto addresses = addressesShownAs(m_store, QUrl::fromUserInput(name));
    if (!addresses)
        return Failure(addresses.error());
    for (const QUrl &address : *addresses) {
        for (const QSparqlQuery &query :
             {Statements::messageWithLink(address), Statements::message(address)}) {
            const Result<QStringList> found = store.texts(query, "look up the message in the store");
            if (!found)
                return Failure(found.error());
            if (!found->isEmpty())
                return found->first();
        }
    }
    return Failure(noSuchMessage());
}

Result<void> Messages::setFavorite(const QString &messageUri, bool isFavorite)
{
    StorePrivate &store = StorePrivate::of(m_store);
    const QString change =
        Statements::changeFavorite(messageUri, isFavorite, QDateTime::currentDateTimeUtc());
    const Result<void> changed = store.update(Statements::update(change), "change the message in the store");
    if (!changed || !isFavorite)
        return changed;
    // Another program may have deleted the message since it was looked up. A favorite stays.
    const Result<QStringList> marked =
        store.texts(Statements::message(QUrl(messageUri)), "look up the message in the store");
    if (!marked)
        return Failure(marked.error());
    return marked->isEmpty() ? Failure(noSuchMessage()) : changed;
}

Result<void> Messages::remove(const QStringList &uris, const RemovalStep &step)
{
    StorePrivate &store = StorePrivate::of(m_store);
    return inChunks(uris, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return store
            .texts(Statements::resourcesAmong(Statements::Kind::Message, some),
                   "look up the messages in the store")
            .and_then([&](const QStringList &stored) {
                return stored.isEmpty() ? Result<void>()
                                        : dropMessages(store, {}, stored, Statements::Spared::Nothing, step);
            });
    });
}

} // namespace Tidel
