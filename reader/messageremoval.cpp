// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageremoval_p.h"

#include "itemkey_p.h"

#include <QHash>
#include <QMap>

namespace Tidel {

namespace {

QList<FeedEnclosure> files(const Answer &answer)
{
    QList<FeedEnclosure> enclosures;
    while (answer->next()) {
        FeedEnclosure enclosure;
        enclosure.setUri(answer->value(0).toString());
        enclosure.setRemoteUrl(answer->value(1).toString());
        enclosure.setLocalUrl(answer->value(2).toString());
        enclosures.append(enclosure);
    }
    return enclosures;
}

QStringList urisOf(const QList<FeedEnclosure> &enclosures)
{
    QStringList uris;
    for (const FeedEnclosure &enclosure : enclosures)
        uris.append(enclosure.uri());
    uris.removeDuplicates();
    return uris;
}

/// By what a channel knows messages. Each pair has the URI of a message first.
struct Names
{
    QVector<QPair<QString, QString>> keys;
    QHash<QString, QString> links; // Of messages without a key.
};

/// By what the channels in the rows of \a answer know the messages.
QMap<QString, Names> namesByChannel(const Answer &answer)
{
    QMap<QString, Names> channels;
    while (answer->next()) {
        const QString uri = answer->value(0).toString();
        const QString key = answer->value(2).toString();
        const QString channel = answer->value(3).toString();
        Names &names = channels[channel];
        names.links.insert(uri, answer->value(1).toString());
        if (key.startsWith(itemKeyPrefix(channel)))
            names.keys.append({uri, key});
    }
    for (Names &names : channels) {
        for (const auto &[uri, key] : qAsConst(names.keys))
            names.links.remove(uri);
    }
    return channels;
}

/// Lets the channels in the rows of \a answer remember the messages, or only \a channelUri if that is not
/// empty.
QString rememberDropped(const Answer &answer, const QString &channelUri, Statements::Spared spared)
{
    QString text;
    const QMap<QString, Names> channels = namesByChannel(answer);
    for (auto entry = channels.cbegin(); entry != channels.cend(); ++entry) {
        if (!channelUri.isEmpty() && entry.key() != channelUri)
            continue;
        QVector<QPair<QString, QString>> links;
        for (auto link = entry->links.cbegin(); link != entry->links.cend(); ++link)
            links.append({link.key(), link.value()});
        text += Statements::insertDropped(entry.key(), Statements::droppedKey, entry->keys, spared)
            + Statements::insertDropped(entry.key(), Statements::droppedLink, links, spared);
    }
    return text;
}

const char *const attemptToRemove = "delete messages from the store";

} // namespace

Result<QList<FeedEnclosure>> readFiles(StorePrivate &store, const QSparqlQuery &question, const char *attempt)
{
    return store.run(question, attempt).map(files);
}

QString deletionOfReleased(const QStringList &enclosures)
{
    QString text;
    for (int from = 0; from < enclosures.size(); from += chunkSize)
        text += Statements::deleteReleased(enclosures.mid(from, chunkSize));
    return text;
}

Result<QList<FeedEnclosure>> updateAndRelease(StorePrivate &store, const QString &change,
                                              const QList<FeedEnclosure> &enclosures, const char *attempt)
{
    const QStringList uris = urisOf(enclosures);
    const Result<void> updated = store.update(Statements::update(change + deletionOfReleased(uris)), attempt);
    if (!updated)
        return Failure(updated.error());
    QSet<QString> left;
    const Result<void> asked = inChunks(uris, [&](const QStringList &some) {
        return store.texts(Statements::enclosuresAmong(some), attempt).map([&](const QStringList &found) {
            left.unite(QSet<QString>(found.begin(), found.end()));
        });
    });
    return asked.map([&] {
        QList<FeedEnclosure> deleted;
        for (const FeedEnclosure &enclosure : enclosures) {
            if (!left.contains(enclosure.uri()))
                deleted.append(enclosure);
        }
        return deleted;
    });
}

Result<void> removeMessages(StorePrivate &store, const QString &channelUri, const QStringList &messages,
                            const QString &removal, const RemovalStep &step)
{
    // The question comes before the update, which deletes what connects enclosures with their messages.
    const auto enclosures = readFiles(store, Statements::enclosuresOfOwners(messages), attemptToRemove);
    if (!enclosures)
        return Failure(enclosures.error());
    const auto deleted = updateAndRelease(store, removal, *enclosures, attemptToRemove);
    if (!deleted)
        return Failure(deleted.error());
    const QSparqlQuery others = channelUri.isEmpty()
        ? Statements::resourcesAmong(Statements::Kind::Message, messages)
        : Statements::messagesAmong(messages, channelUri);
    return store.texts(others, attemptToRemove).map([&](const QStringList &left) {
        step(int(messages.size() - left.size()), *deleted);
    });
}

Result<void> dropMessages(StorePrivate &store, const QString &channelUri, const QStringList &messages,
                          Statements::Spared spared, const RemovalStep &step)
{
    const QString removal = channelUri.isEmpty() ? Statements::deleteResources(messages)
                                                 : Statements::dropMessages(messages, channelUri, spared);
    return store.run(Statements::linksAndKeys(messages), attemptToRemove).and_then([&](const Answer &answer) {
        return removeMessages(store, channelUri, messages,
                              rememberDropped(answer, channelUri, spared) + removal, step);
    });
}

} // namespace Tidel
