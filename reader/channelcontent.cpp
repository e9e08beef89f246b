// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelcontent.h"

#include "downloadfolder.h"
#include "messageremoval_p.h"
#include "statements_p.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <limits>

namespace Tidel {

namespace {

const char *const attempt = "read what the channel holds from the store";

/// Returns what \a query says of \a uris, a group at a time.
Result<QSet<QString>> those(StorePrivate &store, const QStringList &uris,
                            const std::function<QSparqlQuery(const QStringList &)> &query)
{
    QSet<QString> found;
    return inChunks(uris,
                    [&](const QStringList &some) {
                        return store.texts(query(some), attempt).map([&](const QStringList &texts) {
                            found.unite(QSet<QString>(texts.begin(), texts.end()));
                        });
                    })
        .map([&] { return found; });
}

/// The downloaded files of enclosures of \a messages by the URIs of the enclosures.
Result<QHash<QString, QString>> filesOf(StorePrivate &store, const QStringList &messages)
{
    QHash<QString, QString> files;
    const Result<void> read = inChunks(messages, [&](const QStringList &some) {
        return readFiles(store, Statements::enclosuresOfOwners(some), attempt)
            .map([&](const QList<FeedEnclosure> &enclosures) {
                for (const FeedEnclosure &enclosure : enclosures) {
                    const QString path = DownloadFolder::fileOf(enclosure);
                    if (!path.isEmpty())
                        files.insert(enclosure.uri(), path);
                }
            });
    });
    return read.map([&] { return files; });
}

/// The owners of \a enclosures by their URIs.
Result<QHash<QString, QStringList>> ownersOf(StorePrivate &store, const QStringList &enclosures)
{
    QHash<QString, QStringList> owners;
    const Result<void> read = inChunks(enclosures, [&](const QStringList &some) {
        return store.run(Statements::ownersOf(some), attempt).map([&](const Answer &answer) {
            while (answer->next())
                owners[answer->value(0).toString()].append(answer->value(1).toString());
        });
    });
    return read.map([&] { return owners; });
}

/// Adds the files that belong to none but \a messages to \a content.
Result<void> addFiles(StorePrivate &store, const QStringList &messages, const QSet<QString> &favorites,
                      ChannelContent *content)
{
    const auto files = filesOf(store, messages);
    if (!files)
        return Failure(files.error());
    const auto owners = ownersOf(store, files->keys());
    if (!owners)
        return Failure(owners.error());
    const QSet<QString> going(messages.begin(), messages.end());
    for (auto file = files->cbegin(); file != files->cend(); ++file) {
        const QStringList list = owners->value(file.key());
        const QSet<QString> all(list.begin(), list.end());
        if (!going.contains(all))
            continue;
        content->files.append(file.value());
        if (favorites.intersects(all))
            content->filesOfFavorites.append(file.value());
    }
    content->files.sort();
    content->filesOfFavorites.sort();
    return {};
}

} // namespace

Result<ChannelContent> ChannelContent::of(const Store &handle, const QString &channelUri)
{
    StorePrivate &store = StorePrivate::of(handle);
    auto messages =
        store.texts(Statements::messageUrisOf(channelUri, std::numeric_limits<int>::max()), attempt);
    if (!messages)
        return Failure(messages.error());
    const auto shared = those(store, *messages, [&](const QStringList &some) {
        return Statements::messagesOfOthers(some, channelUri);
    });
    if (!shared)
        return Failure(shared.error());
    QStringList own;
    for (const QString &message : *messages) {
        if (!shared->contains(message))
            own.append(message);
    }
    const auto favorites = those(store, own, Statements::favoritesAmong);
    if (!favorites)
        return Failure(favorites.error());
    ChannelContent content;
    content.messages = int(own.size());
    content.favorites = int(favorites->size());
    content.shared = int(shared->size());
    return addFiles(store, own, *favorites, &content).map([&] { return content; });
}

} // namespace Tidel
