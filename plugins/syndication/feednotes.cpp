// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feednotes.h"

#include "feedstore.h"

#include <QDateTime>
#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

namespace Tidel {

namespace {

/// Deletes the values of \a property and, unless it is empty, writes the one bound as \a name.
QString replacement(const char *property, const char *name, bool isEmpty)
{
    const QString deletion = QStringLiteral("DELETE { ?:channel %1 ?%2 } WHERE { ?:channel %1 ?%2 } ")
                                 .arg(QLatin1String(property), QLatin1String(name));
    const QString insertion =
        QStringLiteral("INSERT { ?:channel %1 ?:%2 } ").arg(QLatin1String(property), QLatin1String(name));
    return isEmpty ? deletion : deletion + insertion;
}

} // namespace

std::optional<FeedNotes> feedNotes(const FeedStore &store, const QString &channelUri)
{
    QSparqlQuery query(QStringLiteral("SELECT ?l ?i ?e ?m WHERE { ?:channel a mfo:FeedChannel ; nie:links ?l "
                                      "OPTIONAL { ?:channel nie:identifier ?i } "
                                      "OPTIONAL { ?:channel tidel:entityTag ?e } "
                                      "OPTIONAL { ?:channel tidel:lastModified ?m } }"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    const QList<QSparqlResultRow> found = store.rows(query);
    if (found.isEmpty())
        return std::nullopt;
    const QSparqlResultRow &row = found.first();
    const QString link = row.value(0).toString();
    const QString first = row.value(1).toString();
    return FeedNotes{
        link, first.isEmpty() ? link : first, {row.value(2).toString(), row.value(3).toString()}};
}

bool noteReading(FeedStore &store, const QString &channelUri, const Validators &validators)
{
    const QString &entityTag = validators.entityTag;
    const QString &lastModified = validators.lastModified;
    QSparqlQuery update(replacement("tidel:entityTag", "entityTag", entityTag.isEmpty())
                            + replacement("tidel:lastModified", "lastModified", lastModified.isEmpty())
                            + replacement("nie:comment", "lastModified", lastModified.isEmpty())
                            + replacement("nie:contentLastModified", "now", false),
                        QSparqlQuery::InsertStatement);
    update.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    if (!entityTag.isEmpty())
        update.bindValue(QStringLiteral("entityTag"), entityTag);
    if (!lastModified.isEmpty())
        update.bindValue(QStringLiteral("lastModified"), lastModified);
    update.bindValue(QStringLiteral("now"), QDateTime::currentDateTime().toString(Qt::ISODate));
    return store.run(update);
}

} // namespace Tidel
