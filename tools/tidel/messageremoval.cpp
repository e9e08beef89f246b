// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageremoval.h"

#include "feedstore.h"
#include "sparqltext.h"

#include <QSet>
#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

// Each question names nie:isLogicalPartOf once: where it stands twice, Tracker reads all there is of it.

/// The values of ?result that \a pattern gives for the resources \a uris, its ?x; nothing when the store
/// fails.
std::optional<QStringList> found(const FeedStore &store, const char *result, const QStringList &uris,
                                 const QString &pattern)
{
    QStringList values;
    if (uris.isEmpty())
        return values;
    const auto rows =
        store.answer(QSparqlQuery(QStringLiteral("SELECT DISTINCT ?%1 WHERE { %2%3 }")
                                      .arg(QLatin1String(result), valuesOf("x", uris), pattern)));
    if (!rows)
        return std::nullopt;
    for (const QSparqlResultRow &row : *rows)
        values.append(row.value(0).toString());
    return values;
}

std::optional<QStringList> messagesOfOthers(const FeedStore &store, const QString &channelUri,
                                            const QStringList &messages)
{
    return found(store, "x", messages,
                 QStringLiteral("?x nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel FILTER(?c != ")
                     + iri(channelUri) + QLatin1Char(')'));
}

std::optional<QStringList> enclosuresOf(const FeedStore &store, const QStringList &messages)
{
    return found(store, "e", messages, QStringLiteral("?e nie:isLogicalPartOf ?x ; a mfo:Enclosure"));
}

/// Those of \a enclosures that are in the store and belong to nothing.
std::optional<QStringList> releasedEnclosures(const FeedStore &store, const QStringList &enclosures)
{
    return found(store, "x", enclosures,
                 QStringLiteral("?x a mfo:Enclosure . FILTER NOT EXISTS { "
                                "?x nie:isLogicalPartOf ?owner . ?owner a mfo:FeedElement }"));
}

/// Deletes that each of \a subjects has the value \a value of \a property.
bool deleteStatements(FeedStore &store, const QStringList &subjects, const char *property,
                      const QString &value)
{
    if (subjects.isEmpty())
        return true;
    QString update = QStringLiteral("DELETE DATA { ");
    for (const QString &subject : subjects)
        update += QStringLiteral("%1 %2 %3 . ").arg(iri(subject), QLatin1String(property), value);
    return store.run(QSparqlQuery(update + QLatin1Char('}'), QSparqlQuery::DeleteStatement));
}

bool deleteMessages(FeedStore &store, const QStringList &messages)
{
    const auto enclosures = enclosuresOf(store, messages);
    if (!enclosures || !deleteStatements(store, messages, "a", QStringLiteral("rdfs:Resource")))
        return false;
    const auto released = releasedEnclosures(store, *enclosures);
    if (!released)
        return false;
    if (!released->isEmpty())
        store.library().deleteEnclosures(QUrl::fromStringList(*released));
    // The library does not say whether the store let it.
    const auto left = releasedEnclosures(store, *released);
    return left && left->isEmpty();
}

} // namespace

bool removeMessages(FeedStore &store, const QString &channelUri, const QStringList &messages)
{
    const auto shared = messagesOfOthers(store, channelUri, messages);
    if (!shared)
        return false;
    const QSet<QString> kept(shared->begin(), shared->end());
    QStringList own;
    for (const QString &message : messages) {
        if (!kept.contains(message))
            own.append(message);
    }
    return deleteStatements(store, *shared, "nie:isLogicalPartOf", iri(channelUri))
        && deleteMessages(store, own);
}

} // namespace Tidel
