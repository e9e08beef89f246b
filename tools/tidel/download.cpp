// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloadqueue.h"
#include "downloads.h"
#include "feedstore.h"
#include "output.h"
#include "phrases.h"
#include "plugincall.h"
#include "pluginfinder.h"

#include <QDir>
#include <QFileInfo>
#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <feedplugininterface.h>
#include <feedtrackersparql.h>

namespace Tidel {

namespace {

QStringList firstColumn(const QList<QSparqlResultRow> &rows)
{
    QStringList texts;
    for (const QSparqlResultRow &row : rows)
        texts.append(row.value(0).toString());
    return texts;
}

QSparqlQuery queryOf(const char *pattern, const QUrl &name)
{
    QSparqlQuery query(QStringLiteral("SELECT DISTINCT ?e WHERE { ?e a mfo:Enclosure %1 } ORDER BY ?e")
                           .arg(QLatin1String(pattern)));
    query.bindValue(QStringLiteral("name"), name);
    return query;
}

/// The URIs of the enclosures that a user calls \a name: one by its address or URI, or those of a message.
/// None when there is no such thing, which \a output is told.
QStringList findEnclosures(const FeedStore &store, const QString &name, Output &output)
{
    const QString message = store.messageUri(name);
    if (!message.isEmpty()) {
        const QStringList files =
            firstColumn(store.rows(queryOf("; nie:isLogicalPartOf ?:name", QUrl(message))));
        if (files.isEmpty())
            output.note(QStringLiteral("%1: the message has no enclosures").arg(name));
        return files;
    }
    for (const char *pattern : {"; mfo:remoteLink ?:name", "FILTER(?e = ?:name)"}) {
        const QStringList found = firstColumn(store.rows(queryOf(pattern, QUrl(name))));
        if (!found.isEmpty())
            return found;
    }
    output.error(QStringLiteral("%1: no such message or enclosure; \"tidel messages CHANNEL\" and \"tidel "
                                "enclosures MESSAGE\" list them")
                     .arg(name));
    return {};
}

void tell(const FeedEnclosure &enclosure, const DownloadEnding &ending, Output &output)
{
    if (ending.error == FeedDownloadCanceled)
        return;
    if (!ending.isFine()) {
        output.error(shownAddress(enclosure.remoteUrl()) + QLatin1String(": ") + ending.reason);
        return;
    }
    const QString place = ending.results.value(QStringLiteral("localUrl")).toString();
    const bool wasThere = place == enclosure.localUrl() && !place.isEmpty();
    output.line(QStringLiteral("%1: %2 (%3 bytes)")
                    .arg(wasThere ? QStringLiteral("Already downloaded") : QStringLiteral("Downloaded"),
                         QUrl(place).toLocalFile(),
                         QString::number(ending.results.value(QStringLiteral("length")).toLongLong())));
}

} // namespace

void download(FeedStore &store, const Arguments &arguments, Output &output)
{
    QStringList uris;
    for (const QString &name : arguments.names)
        uris += findEnclosures(store, name, output);
    uris.removeDuplicates();
    FeedPluginInterface *plugin = uris.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;

    const QString folder =
        arguments.isSet("into") ? QFileInfo(arguments.value("into")).absoluteFilePath() : downloadFolder();
    DownloadQueue queue(*plugin);
    for (const QString &uri : qAsConst(uris)) {
        const FeedEnclosure enclosure = store.library().enclosureForUri(uri);
        queue.add(methodCall("downloadEnclosure", uri, folder),
                  [&output, enclosure](const DownloadEnding &ending) { tell(enclosure, ending, output); });
    }
    int ended = 0;
    qint64 received = 0;
    const auto show = [&] {
        output.progress(shownProgress(ended, uris.size(), "files")
                        + QStringLiteral(", %1 KiB").arg(received / 1024));
    };
    QObject::connect(&queue, &DownloadQueue::advanced, &queue, [&](int count) {
        ended = count;
        show();
    });
    QObject::connect(&queue, &DownloadQueue::progressed, &queue, [&](qint64 bytes) {
        received = bytes;
        show();
    });
    output.interrupted(queue.run());
}

QString misuseOfDownload(const Arguments &arguments)
{
    return arguments.isSet("into") && arguments.value("into").isEmpty()
        ? QStringLiteral("--into needs a folder")
        : QString();
}

} // namespace Tidel
