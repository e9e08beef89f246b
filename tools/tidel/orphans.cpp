// SPDX-License-Identifier: LGPL-2.1-or-later
#include "orphans.h"

#include "feedstore.h"

#include <QSparqlQuery>
#include <QSparqlResultRow>

namespace Tidel {

namespace {

int count(const FeedStore &store, const QString &query)
{
    const QList<QSparqlResultRow> rows = store.rows(QSparqlQuery(query));
    return rows.isEmpty() ? 0 : rows.first().value(0).toInt();
}

} // namespace

int orphanMessages(const FeedStore &store)
{
    return count(
        store,
        QStringLiteral("SELECT (COUNT(DISTINCT ?m) AS ?n) WHERE { ?m a mfo:FeedMessage ; nie:links ?l . "
                       "FILTER NOT EXISTS { ?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel } }"));
}

int orphanEnclosures(const FeedStore &store)
{
    return count(store,
                 QStringLiteral("SELECT (COUNT(DISTINCT ?e) AS ?n) WHERE { "
                                "?e a mfo:Enclosure ; mfo:remoteLink ?r ; mfo:localLink ?l . "
                                "FILTER NOT EXISTS { ?e nie:isLogicalPartOf ?m . ?m a mfo:FeedMessage } "
                                "FILTER NOT EXISTS { ?e nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel } }"));
}

} // namespace Tidel
