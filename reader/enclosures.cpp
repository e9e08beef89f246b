// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosures.h"

#include "detailfields_p.h"
#include "messagelist.h"
#include "messages.h"
#include "shownaddress_p.h"
#include "statements_p.h"
#include "store_p.h"

#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

QList<FeedEnclosure> enclosuresIn(const Answer &answer)
{
    QList<FeedEnclosure> enclosures;
    while (answer->next())
        enclosures.append(extractEnclosure(answer->current()));
    return enclosures;
}

/// Those enclosures of the messages \a messageUris that were never downloaded, in the order of the messages.
Result<QStringList> missingFiles(StorePrivate &store, const QStringList &messageUris)
{
    QHash<QString, QStringList> missing; // by their messages
    const Result<void> read = inChunks(messageUris, [&](const QStringList &some) {
        return store.run(Statements::filesOf(some), "look up the enclosures in the store")
            .map([&](const Answer &answer) {
                while (answer->next()) {
                    if (answer->value(3).toString().isEmpty())
                        missing[answer->value(0).toString()].append(answer->value(1).toString());
                }
            });
    });
    if (!read)
        return Failure(read.error());
    QStringList uris;
    for (const QString &message : messageUris)
        uris += missing.value(message);
    return uris;
}

} // namespace

Enclosures::Enclosures(const Store &store) : m_store(store) { }

Result<QList<FeedEnclosure>> Enclosures::ofMessage(const QString &messageUri) const
{
    return StorePrivate::of(m_store)
        .run(Statements::enclosuresOf(messageUri), "read the enclosures from the store")
        .map(enclosuresIn);
}

Result<FeedEnclosure> Enclosures::get(const QString &uri) const
{
    const auto found = StorePrivate::of(m_store)
                           .run(Statements::enclosure(uri), "read the enclosure from the store")
                           .map(enclosuresIn);
    if (!found)
        return Failure(found.error());
    if (found->isEmpty())
        return Failure(Error(Error::NotFound, {}, QStringLiteral("no such enclosure")));
    return found->first();
}

Result<QHash<QString, EnclosureDetails>> Enclosures::details(const QStringList &uris) const
{
    return readDetails<EnclosureDetails>(StorePrivate::of(m_store), uris,
                                         "read the details of enclosures from the store");
}

Result<QStringList> Enclosures::uris(const QString &name) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    const char *const attempt = "look up the enclosures in the store";
    const Result<QString> message = Messages(m_store).uri(name);
    if (message)
        return store.texts(Statements::enclosureUrisOf(*message), attempt);
    if (message.error().kind() != Error::NotFound)
        return Failure(message.error());
    const auto addresses = addressesShownAs(m_store, QUrl(name));
    if (!addresses)
        return Failure(addresses.error());
    for (const QUrl &address : *addresses) {
        const Result<QStringList> found = store.texts(Statements::enclosuresWithLink(address), attempt);
        if (!found || !found->isEmpty())
            return found;
    }
    const Result<QStringList> found = store.texts(Statements::enclosure(name), attempt);
    if (!found || !found->isEmpty())
        return found;
    return Failure(Error(Error::NotFound, {}, QStringLiteral("no such message or enclosure")));
}

// Most messages may have no enclosures. Each list is four times as long as the one before, so that few are
// needed.
Result<QStringList> Enclosures::newest(int count, const QStringList &channelUris) const
{
    MessageQuery query;
    query.channelUris = channelUris;
    QStringList uris;
    int seen = 0;
    for (query.limit = 100; uris.size() < count; query.limit *= 4) {
        const auto messages = MessageList(m_store).find(query);
        if (!messages)
            return Failure(messages.error());
        QStringList messageUris;
        for (const MessageHeadline &message : messages->mid(seen))
            messageUris.append(message.uri);
        const Result<QStringList> missing = missingFiles(StorePrivate::of(m_store), messageUris);
        if (!missing)
            return missing;
        uris += *missing;
        uris.removeDuplicates();
        seen = int(messages->size());
        if (seen < query.limit)
            break;
    }
    return uris.mid(0, count);
}

Result<void> Enclosures::setFile(const FeedEnclosure &enclosure)
{
    return StorePrivate::of(m_store).update(Statements::replaceFile(enclosure), "note the file in the store");
}

} // namespace Tidel
