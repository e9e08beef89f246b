// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageloading.h"

#include <TidelReader/downloadfolder.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/messages.h>

#include <QFile>
#include <QFileInfo>

namespace Tidel {

namespace {

/// How much of \a enclosure an interrupted download has left.
qint64 partSize(const FeedEnclosure &enclosure)
{
    const QString part =
        DownloadFolder::path() + QLatin1Char('/') + DownloadFolder::partName(enclosure.remoteUrl());
    return QFile::exists(DownloadFolder::noteOfPart(part)) ? QFileInfo(part).size() : 0;
}

Result<void> loadEnclosures(const Store &store, ShownMessage *loaded)
{
    const Enclosures enclosures(store);
    return enclosures.ofMessage(loaded->uri).and_then([&](const QList<FeedEnclosure> &files) {
        QStringList uris;
        for (const FeedEnclosure &file : files) {
            uris.append(file.uri());
            loaded->partSizes.insert(file.uri(), partSize(file));
        }
        loaded->enclosures = files;
        return enclosures.details(uris).map(
            [&](const QHash<QString, EnclosureDetails> &details) { loaded->enclosureDetails = details; });
    });
}

} // namespace

Result<ShownMessage> loadMessage(const Store &store, const QString &uri)
{
    const Messages messages(store);
    ShownMessage loaded;
    loaded.uri = uri;
    const Result<void> isLoaded =
        messages.get(uri)
            .map([&](const FeedMessage &message) { loaded.message = message; })
            .and_then([&] { return messages.channelTitles(uri); })
            .map([&](const QStringList &titles) { loaded.channelTitles = titles; })
            .and_then([&] { return messages.channelUris(uri); })
            .map([&](const QStringList &uris) { loaded.channelUri = uris.value(0); })
            .and_then([&] { return messages.details({uri}); })
            .map([&](const QHash<QString, MessageDetails> &details) { loaded.details = details.value(uri); })
            .and_then([&] { return loadEnclosures(store, &loaded); });
    if (!isLoaded)
        return Failure(isLoaded.error());
    return loaded;
}

} // namespace Tidel
