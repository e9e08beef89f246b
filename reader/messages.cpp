// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messages.h"

#include "messageorder.h"
#include "statements_p.h"
#include "store_p.h"

#include <QHash>
#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

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

Result<QList<FeedMessage>> Messages::headlines(const QStringList &links) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    QHash<QString, FeedMessage> found;
    const Result<void> read = inChunks(links, [&](const QStringList &some) {
        return store.run(Statements::headlinesOfLinks(some), "read the new messages from the store")
            .map([&](const Answer &answer) {
                while (answer->next()) {
                    FeedMessage &message = found[answer->value(0).toString()];
                    message.setLink(answer->value(0).toString());
                    message.setTitle(answer->value(1).toString());
                    message.setPublishedDate(answer->value(2).toDateTime());
                }
            });
    });
    return read.map([&] {
        QList<FeedMessage> messages;
        for (const QString &link : links) {
            if (found.contains(link))
                messages.append(found.value(link));
        }
        sortNewestFirst(messages);
        return messages;
    });
}

Result<QString> Messages::uri(const QString &name) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    const QUrl address = QUrl::fromUserInput(name);
    for (const QSparqlQuery &query : {Statements::messageWithLink(address), Statements::message(address)}) {
        const Result<QStringList> found = store.texts(query, "look up the message in the store");
        if (!found)
            return Failure(found.error());
        if (!found->isEmpty())
            return found->first();
    }
    return Failure(Error(Error::NotFound, {}, QStringLiteral("no such message")));
}

Result<void> Messages::setFavorite(const QString &messageUri, bool isFavorite)
{
    return StorePrivate::of(m_store).update(isFavorite ? Statements::insertFavorite(messageUri)
                                                       : Statements::deleteFavorite(messageUri),
                                            "change the message in the store");
}

} // namespace Tidel
