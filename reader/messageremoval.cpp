// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageremoval_p.h"

#include "statements_p.h"

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
    const char *const attempt = "delete messages from the store";
    // The question comes before the update, which deletes what connects enclosures with their messages.
    const auto enclosures = readFiles(store, Statements::enclosuresOfOwners(messages), attempt);
    if (!enclosures)
        return Failure(enclosures.error());
    const auto deleted = updateAndRelease(store, removal, *enclosures, attempt);
    if (!deleted)
        return Failure(deleted.error());
    return store.texts(Statements::messagesAmong(messages, channelUri), attempt)
        .map([&](const QStringList &left) { step(int(messages.size() - left.size()), *deleted); });
}

} // namespace Tidel
