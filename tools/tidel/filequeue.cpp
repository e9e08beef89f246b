// SPDX-License-Identifier: LGPL-2.1-or-later
#include "filequeue.h"

#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"

#include <QFileInfo>
#include <QUrl>

#include <TidelReader/enclosurequeue.h>
#include <TidelReader/enclosures.h>

namespace Tidel {

QStringList queuedEnclosures(const Store &store, Output &output)
{
    const Result<QStringList> uris = EnclosureQueue(store).uris();
    if (!uris)
        output.failure(uris.error());
    else if (uris->isEmpty())
        output.note(QStringLiteral("No files wait to be downloaded; \"tidel download --queue\" adds some"));
    return uris.value_or(QStringList());
}

void queue(const Store &store, const QStringList &uris, Output &output)
{
    QList<FeedEnclosure> added;
    for (const QString &uri : uris) {
        const Result<FeedEnclosure> enclosure = Enclosures(store).get(uri);
        const QFileInfo file(enclosure ? QUrl(enclosure->localUrl()).toLocalFile() : QString());
        if (!enclosure)
            output.failure(uri, enclosure.error());
        else if (file.isFile())
            output.report(shownFile("Already downloaded", file.filePath(), file.size()),
                          enclosureJson(*enclosure));
        else
            added.append(*enclosure);
    }
    QStringList addedUris;
    for (const FeedEnclosure &enclosure : qAsConst(added))
        addedUris.append(enclosure.uri());
    EnclosureQueue waiting(store);
    const auto times = waiting.add(addedUris).and_then([&] { return waiting.times(addedUris); });
    if (!times) {
        output.failure(times.error());
        return;
    }
    for (const FeedEnclosure &enclosure : qAsConst(added))
        output.report(QLatin1String("Waits to be downloaded: ") + enclosure.remoteUrl(),
                      enclosureJson(enclosure, {}, times->value(enclosure.uri())));
}

bool unqueue(const Store &store, const QString &uri, Output &output)
{
    const Result<void> removed = EnclosureQueue(store).remove({uri});
    if (!removed)
        output.failure(removed.error());
    return removed.has_value();
}

void unqueue(const Store &store, const QStringList &uris, Output &output)
{
    const auto queued = EnclosureQueue(store).times(uris);
    if (!queued) {
        output.failure(queued.error());
        return;
    }
    if (queued->isEmpty() && !uris.isEmpty())
        output.note(QStringLiteral("None of the files waits to be downloaded"));
    for (const QString &uri : uris) {
        const Result<FeedEnclosure> enclosure = Enclosures(store).get(uri);
        if (!enclosure)
            output.failure(uri, enclosure.error());
        else if (queued->contains(uri) && unqueue(store, uri, output))
            output.report(QLatin1String("Does not wait any more: ") + enclosure->remoteUrl(),
                          enclosureJson(*enclosure));
    }
}

} // namespace Tidel
