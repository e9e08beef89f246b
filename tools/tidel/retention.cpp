// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retention.h"

#include "droppedlinks.h"
#include "feedstore.h"
#include "messageremoval.h"
#include "sparqltext.h"
#include "writeturn.h"

#include <QHash>
#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

namespace Tidel {

bool hasDroppableMessages(const FeedStore &store, const QString &channelUri)
{
    QSparqlQuery query(
        QStringLiteral("SELECT ?m WHERE { ?m a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel "
                       "FILTER NOT EXISTS { ?m nao:hasTag nao:predefined-tag-favorite } } LIMIT 1"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    return !store.rows(query).isEmpty();
}

QList<DroppableMessage> droppableMessages(const FeedStore &store, const QStringList &uris)
{
    const QSparqlQuery query(QStringLiteral("SELECT ?m ?link ?title ?date WHERE { ") + valuesOf("m", uris)
                             + QStringLiteral("?m a mfo:FeedMessage . OPTIONAL { ?m nie:links ?link } "
                                              "OPTIONAL { ?m nie:title ?title } "
                                              "OPTIONAL { ?m nie:contentCreated ?date } }"));
    QHash<QString, DroppableMessage> found;
    const QList<QSparqlResultRow> rows = store.rows(query);
    for (const QSparqlResultRow &row : rows) {
        DroppableMessage &message = found[row.value(0).toString()];
        message.uri = row.value(0).toString();
        message.link = row.value(1).toString();
        message.title = row.value(2).toString();
        message.date = row.value(3).toDateTime();
    }
    QList<DroppableMessage> ordered;
    for (const QString &uri : uris) {
        if (found.contains(uri))
            ordered.append(found.value(uri));
    }
    return ordered;
}

int messagesOf(const FeedStore &store, const QString &channelUri, const QStringList &uris)
{
    QSparqlQuery query(QStringLiteral("SELECT (COUNT(DISTINCT ?m) AS ?n) WHERE { ") + valuesOf("m", uris)
                       + QStringLiteral("?m a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel }"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    const QList<QSparqlResultRow> rows = store.rows(query);
    return rows.isEmpty() ? int(uris.size()) : rows.first().value(0).toInt();
}

// Remembered before it is deleted: cut short in between, a message is still there and nothing is lost.
bool dropMessages(FeedStore &store, const QString &channelUri, const QList<DroppableMessage> &messages)
{
    QStringList uris;
    QStringList links;
    for (const DroppableMessage &message : messages) {
        uris.append(message.uri);
        if (!message.link.isEmpty())
            links.append(message.link);
    }
    const WriteTurn turn;
    return rememberDropped(store, channelUri, links) && removeMessages(store, channelUri, uris);
}

} // namespace Tidel
