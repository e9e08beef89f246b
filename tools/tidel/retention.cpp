// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retention.h"

#include "droppedlinks.h"
#include "feedstore.h"
#include "sparqltext.h"

#include <QHash>
#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

/// Deletes that each of \a messages has the value \a value of \a property.
bool deleteStatements(FeedStore &store, const QStringList &messages, const char *property,
                      const QString &value)
{
    if (messages.isEmpty())
        return true;
    QString update = QStringLiteral("DELETE DATA { ");
    for (const QString &message : messages)
        update += QStringLiteral("%1 %2 %3 . ").arg(iri(message), QLatin1String(property), value);
    return store.run(QSparqlQuery(update + QLatin1Char('}'), QSparqlQuery::DeleteStatement));
}

/// Deletes messages that no other channel holds. The library asks the whole store for the enclosures of each,
/// which those that have none are spared.
bool deleteMessages(FeedStore &store, const QStringList &withEnclosures, const QStringList &others)
{
    if (!withEnclosures.isEmpty())
        store.library().deleteMessages(QUrl::fromStringList(withEnclosures));
    return deleteStatements(store, others, "a", QStringLiteral("rdfs:Resource"));
}

} // namespace

bool hasDroppableMessages(const FeedStore &store, const QString &channelUri)
{
    QSparqlQuery query(
        QStringLiteral("SELECT ?m WHERE { ?m a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel "
                       "FILTER NOT EXISTS { ?m nao:hasTag nao:predefined-tag-favorite } } LIMIT 1"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    return !store.rows(query).isEmpty();
}

QList<DroppableMessage> droppableMessages(const FeedStore &store, const QString &channelUri,
                                          const QStringList &uris)
{
    QSparqlQuery query(QStringLiteral("SELECT ?m ?link ?title ?date ?other ?enclosure WHERE { ")
                       + valuesOf("m", uris)
                       + QStringLiteral("?m a mfo:FeedMessage . OPTIONAL { ?m nie:links ?link } "
                                        "OPTIONAL { ?m nie:title ?title } "
                                        "OPTIONAL { ?m nie:contentCreated ?date } "
                                        "OPTIONAL { ?m nie:isLogicalPartOf ?other . ?other a mfo:FeedChannel "
                                        "FILTER(?other != ?:channel) } "
                                        "OPTIONAL { ?enclosure nie:isLogicalPartOf ?m } }"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    QHash<QString, DroppableMessage> found;
    const QList<QSparqlResultRow> rows = store.rows(query);
    for (const QSparqlResultRow &row : rows) {
        DroppableMessage &message = found[row.value(0).toString()];
        message.uri = row.value(0).toString();
        message.link = row.value(1).toString();
        message.title = row.value(2).toString();
        message.date = row.value(3).toDateTime();
        message.isShared = message.isShared || row.value(4).isValid();
        message.hasEnclosures = message.hasEnclosures || row.value(5).isValid();
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
    QStringList links;
    QStringList shared;
    QStringList withEnclosures;
    QStringList others;
    for (const DroppableMessage &message : messages) {
        if (!message.link.isEmpty())
            links.append(message.link);
        (message.isShared ? shared : message.hasEnclosures ? withEnclosures : others).append(message.uri);
    }
    return rememberDropped(store, channelUri, links)
        && deleteStatements(store, shared, "nie:isLogicalPartOf", iri(channelUri))
        && deleteMessages(store, withEnclosures, others);
}

} // namespace Tidel
