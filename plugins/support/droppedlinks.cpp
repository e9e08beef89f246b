// SPDX-License-Identifier: LGPL-2.1-or-later
#include "droppedlinks.h"

#include "feedstore.h"
#include "sparqltext.h"

#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

namespace Tidel {

namespace {

/// \a keyword and the statements that \a links are dropped links of the channel.
QSparqlQuery update(const char *keyword, QSparqlQuery::StatementType type, const QString &channelUri,
                    const QStringList &links)
{
    QStringList literals;
    for (const QString &link : links)
        literals.append(literal(link));
    return QSparqlQuery(QLatin1String(keyword) + QLatin1String(" { ") + iri(channelUri)
                            + QLatin1String(" tidel:droppedLink ") + literals.join(QLatin1String(", "))
                            + QLatin1String(" }"),
                        type);
}

} // namespace

QSet<QString> droppedLinks(const FeedStore &store, const QString &channelUri)
{
    QSparqlQuery query(QStringLiteral("SELECT ?l WHERE { ?:channel tidel:droppedLink ?l }"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    QSet<QString> links;
    const QList<QSparqlResultRow> rows = store.rows(query);
    for (const QSparqlResultRow &row : rows)
        links.insert(row.value(0).toString());
    return links;
}

bool rememberDropped(FeedStore &store, const QString &channelUri, const QStringList &links)
{
    return links.isEmpty()
        || store.run(update("INSERT DATA", QSparqlQuery::InsertStatement, channelUri, links));
}

bool forgetDropped(FeedStore &store, const QString &channelUri, const QStringList &links)
{
    return links.isEmpty()
        || store.run(update("DELETE DATA", QSparqlQuery::DeleteStatement, channelUri, links));
}

} // namespace Tidel
