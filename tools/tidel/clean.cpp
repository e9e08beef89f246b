// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "feedstore.h"
#include "output.h"
#include "phrases.h"

#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

/// How many messages belong to no channel.
int orphanMessages(const FeedStore &store)
{
    const QList<QSparqlResultRow> rows = store.rows(QSparqlQuery(
        QStringLiteral("SELECT (COUNT(?m) AS ?n) WHERE { ?m a mfo:FeedMessage ; nie:links ?l . "
                       "FILTER NOT EXISTS { ?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel } }")));
    return rows.isEmpty() ? 0 : rows.first().value(0).toInt();
}

/// Whether an enclosure belongs to nothing.
bool hasOrphanEnclosures(const FeedStore &store)
{
    const QList<QSparqlResultRow> rows = store.rows(QSparqlQuery(
        QStringLiteral("SELECT ?e WHERE { ?e a mfo:Enclosure ; mfo:remoteLink ?r ; mfo:localLink ?l . "
                       "FILTER NOT EXISTS { ?e nie:isLogicalPartOf ?o . ?o a mfo:FeedElement } } LIMIT 1")));
    return !rows.isEmpty();
}

} // namespace

void clean(FeedStore &store, const Arguments &, Output &output)
{
    const int before = orphanMessages(store);
    const DownloadRemover remover(store, output);
    store.library().deleteOrphans();
    const int left = orphanMessages(store);
    if (left > 0 || hasOrphanEnclosures(store))
        output.error(QStringLiteral("the store did not delete all that belongs to nothing"));
    if (before == left && remover.enclosures() == 0) {
        output.line(QStringLiteral("Nothing to clean"));
        return;
    }
    output.line(QStringLiteral("Deleted: %1, %2, %3")
                    .arg(countedMessages(before - left), countedEnclosures(remover.enclosures()),
                         countedFiles(remover.files())));
}

} // namespace Tidel
