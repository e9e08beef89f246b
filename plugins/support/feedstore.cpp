// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedstore.h"

#include "links.h"
#include "messagewriter.h"
#include "sparqltext.h"
#include "storedlinks.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>
#include <QSparqlResultRow>
#include <QUrl>

#include <feedtrackersparql.h>

#include <algorithm>

namespace Tidel {

FeedStore::FeedStore(std::unique_ptr<QSparqlConnection> connection) : m_connection(std::move(connection)) { }

FeedStore::~FeedStore() = default;

// The library does not say whether its store is open, so a connection of our own is asked first.
std::unique_ptr<FeedStore> FeedStore::open(QString *error)
{
    auto connection = std::make_unique<QSparqlConnection>(QStringLiteral("QTRACKER_DIRECT"));
    if (!connection->isValid()) {
        *error = connection->lastError().message();
        return nullptr;
    }
    return std::unique_ptr<FeedStore>(new FeedStore(std::move(connection)));
}

FeedTrackerSparql &FeedStore::library() const { return *FeedTrackerSparql::instance(); }

QList<FeedChannel> FeedStore::channels() const
{
    QList<FeedChannel> channels;
    QSet<QString> uris;
    const QList<FeedChannel> stored = library().allChannels();
    for (const FeedChannel &channel : stored) {
        if (uris.contains(channel.uri()))
            continue;
        uris.insert(channel.uri());
        channels.append(channel);
    }
    // The library lists nothing, too, where the store fails.
    if (channels.isEmpty()
        && !rows(QSparqlQuery(QStringLiteral("SELECT ?c WHERE { ?c a mfo:FeedChannel } LIMIT 1"))).isEmpty())
        noteFailure(QStringLiteral("it does not list its channels"));
    std::sort(channels.begin(), channels.end(), [](const FeedChannel &a, const FeedChannel &b) {
        const int order = QString::compare(a.title(), b.title(), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.link() < b.link();
    });
    return channels;
}

bool FeedStore::hasChannel(const QUrl &address) const
{
    QSparqlQuery query(QStringLiteral("SELECT ?c WHERE { ?c a mfo:FeedChannel ; nie:links ?:link }"));
    query.bindValue(QStringLiteral("link"), QUrl(encodedUrl(address)));
    return !rows(query).isEmpty();
}

QSet<QString> FeedStore::channelLinks(const QSet<QString> &links) const
{
    return found(links, QStringLiteral("?c a mfo:FeedChannel ; nie:links ?l"));
}

QSet<QString> FeedStore::messageLinks(const QSet<QString> &links, const QString &channelUri) const
{
    return found(links,
                 QStringLiteral("?m a mfo:FeedMessage ; nie:links ?l ; nie:isLogicalPartOf ")
                     + iri(channelUri));
}

QHash<QString, int> FeedStore::messageCounts() const
{
    const QSparqlQuery query(QStringLiteral("SELECT ?c (COUNT(?m) AS ?n) WHERE { ?c a mfo:FeedChannel . "
                                            "?m a mfo:FeedMessage ; nie:isLogicalPartOf ?c } GROUP BY ?c"));
    QHash<QString, int> counts;
    const QList<QSparqlResultRow> found = rows(query);
    for (const QSparqlResultRow &row : found)
        counts.insert(row.value(0).toString(), row.value(1).toInt());
    return counts;
}

QString FeedStore::messageUri(const QString &name) const
{
    const QUrl address = QUrl::fromUserInput(name);
    for (const QString &pattern : {QStringLiteral("?m a mfo:FeedMessage ; nie:links ?:address"),
                                   QStringLiteral("?m a mfo:FeedMessage FILTER(?m = ?:address)")}) {
        QSparqlQuery query(QStringLiteral("SELECT ?m WHERE { ") + pattern + QStringLiteral(" }"));
        query.bindValue(QStringLiteral("address"), address);
        const QList<QSparqlResultRow> found = rows(query);
        if (!found.isEmpty())
            return found.first().value(0).toString();
    }
    return QString();
}

bool FeedStore::addMessages(const QList<FeedMessage> &messages, const QString &channelUri) const
{
    MessageWriter writer(*m_connection);
    const bool areStored = writer.write(messages, channelUri);
    if (!areStored)
        noteFailure(writer.refusal());
    return areStored;
}

void FeedStore::collectGarbage() const
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::optional<QList<QSparqlResultRow>> FeedStore::answer(const QSparqlQuery &query) const
{
    const auto result = finished(query);
    if (!result)
        return std::nullopt;
    QList<QSparqlResultRow> rows;
    while (result->next())
        rows.append(result->current());
    return rows;
}

QList<QSparqlResultRow> FeedStore::rows(const QSparqlQuery &query) const
{
    return answer(query).value_or(QList<QSparqlResultRow>());
}

bool FeedStore::isStored(const char *pattern, const QString &uri) const
{
    QSparqlQuery query(QStringLiteral("SELECT ?x WHERE { %1 } LIMIT 1").arg(QLatin1String(pattern)));
    query.bindValue(QStringLiteral("it"), QUrl(uri));
    return !rows(query).isEmpty() || !m_failure.isEmpty();
}

bool FeedStore::run(const QSparqlQuery &update) { return finished(update) != nullptr; }

/// Those of \a links that \a pattern finds as its ?l.
QSet<QString> FeedStore::found(const QSet<QString> &links, const QString &pattern) const
{
    const auto stored = storedLinks(*m_connection, links, pattern);
    if (!stored)
        noteFailure(QStringLiteral("it does not tell what it has"));
    return stored.value_or(QSet<QString>());
}

/// The result of \a query; null when it failed.
std::unique_ptr<QSparqlResult> FeedStore::finished(const QSparqlQuery &query) const
{
    std::unique_ptr<QSparqlResult> result(m_connection->exec(query));
    if (result)
        result->waitForFinished();
    if (result && !result->hasError())
        return result;
    noteFailure(result ? result->lastError().message() : QStringLiteral("it does not answer"));
    return nullptr;
}

void FeedStore::noteFailure(const QString &text) const
{
    if (m_failure.isEmpty())
        m_failure = text;
}

} // namespace Tidel
