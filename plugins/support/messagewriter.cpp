// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagewriter.h"

#include "links.h"

#include <QSet>
#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>

#include <feedtrackersparql.h>

#include <algorithm>
#include <memory>
#include <optional>

namespace Tidel {

namespace {

// What a question about many links costs grows faster than their number.
constexpr int groupSize = 100;

std::unique_ptr<QSparqlResult> execute(QSparqlConnection &connection, const QString &text,
                                       QSparqlQuery::StatementType type)
{
    std::unique_ptr<QSparqlResult> result(connection.exec(QSparqlQuery(text, type)));
    if (result)
        result->waitForFinished();
    return result && !result->hasError() ? std::move(result) : nullptr;
}

QString iri(const QString &link) { return QLatin1Char('<') + link + QLatin1Char('>'); }

/// Those of \a links that \a pattern finds as its ?l; none when the store does not tell.
std::optional<QSet<QString>> stored(QSparqlConnection &connection, const QSet<QString> &links,
                                    QLatin1String pattern)
{
    QString question = QStringLiteral("SELECT ?l WHERE { VALUES ?l { ");
    for (const QString &link : links)
        question += iri(link);
    question += QLatin1String(" } ") + pattern + QLatin1String(" }");
    const auto result = execute(connection, question, QSparqlQuery::SelectStatement);
    if (!result)
        return std::nullopt;
    QSet<QString> found;
    while (result->next())
        found.insert(result->value(0).toString());
    return found;
}

bool hasEncodedLinks(const FeedMessage &message)
{
    const QList<FeedEnclosure> enclosures = message.enclosures();
    return isEncodedLink(message.link())
        && std::all_of(enclosures.cbegin(), enclosures.cend(),
                       [](const FeedEnclosure &enclosure) { return isEncodedLink(enclosure.remoteUrl()); });
}

/// The enclosures of new messages, stored once each and then given to their messages.
class EnclosureGroup
{
public:
    void add(const QList<FeedEnclosure> &enclosures, const QString &messageLink)
    {
        for (const FeedEnclosure &enclosure : enclosures) {
            m_owners += QLatin1Char('(') + iri(enclosure.remoteUrl()) + iri(messageLink) + QLatin1Char(')');
            if (m_links.contains(enclosure.remoteUrl()))
                continue;
            m_links.insert(enclosure.remoteUrl());
            m_enclosures.append(enclosure);
        }
    }

    /// Stores the enclosures, for now as parts of nothing. True when all of them are stored.
    bool store(QSparqlConnection &connection) const
    {
        return m_enclosures.isEmpty()
            || (FeedTrackerSparql::instance()->addEnclosures(m_enclosures, QString())
                && stored(connection, m_links, QLatin1String("?e a mfo:Enclosure ; mfo:remoteLink ?l"))
                    == m_links);
    }

    /// Makes them parts of their messages.
    QString handOver() const
    {
        if (m_enclosures.isEmpty())
            return QString();
        return QLatin1String("DELETE { ?e nie:isLogicalPartOf <> } INSERT { ?e nie:isLogicalPartOf ?m } "
                             "WHERE { VALUES (?r ?l) { ")
            + m_owners
            + QLatin1String(" } ?e a mfo:Enclosure ; mfo:remoteLink ?r . "
                            "?m a mfo:FeedMessage ; nie:links ?l }");
    }

private:
    QList<FeedEnclosure> m_enclosures;
    QSet<QString> m_links; // their remote URLs
    QString m_owners; // pairs of remote URLs and the links of their messages
};

} // namespace

MessageWriter::MessageWriter(QSparqlConnection &connection) : m_connection(connection) { }

bool MessageWriter::write(const QList<FeedMessage> &messages, const QString &channelUri) const
{
    bool isComplete = true;
    for (int i = 0; i < messages.size(); i += groupSize)
        isComplete = writeGroup(messages.mid(i, groupSize), channelUri) && isComplete;
    return isComplete;
}

bool MessageWriter::writeGroup(const QList<FeedMessage> &messages, const QString &channelUri) const
{
    const FeedTrackerSparql &library = *FeedTrackerSparql::instance();
    QSet<QString> links;
    for (const FeedMessage &message : messages) {
        if (isEncodedLink(message.link()))
            links.insert(message.link());
    }
    auto known = stored(m_connection, links, QLatin1String("?m a mfo:FeedMessage ; nie:links ?l"));
    if (!known || channelUri.isEmpty())
        return library.addMessages(messages, channelUri);

    QList<FeedMessage> fresh;
    QList<FeedMessage> others;
    for (const FeedMessage &message : messages) {
        const bool isFresh = hasEncodedLinks(message) && !known->contains(message.link());
        known->insert(message.link());
        (isFresh ? fresh : others).append(message);
    }
    if (!fresh.isEmpty() && !insert(fresh, channelUri))
        return library.addMessages(messages, channelUri);
    return others.isEmpty() || library.addMessages(others, channelUri);
}

bool MessageWriter::insert(const QList<FeedMessage> &messages, const QString &channelUri) const
{
    EnclosureGroup enclosures;
    QString update;
    for (FeedMessage message : messages) {
        enclosures.add(message.enclosures(), message.link());
        message.setEnclosures({});
        update += FeedTrackerSparql::instance()->addMessageQuery(message, channelUri);
    }
    // Before the messages: one that is stored is never looked at again for what it lacks.
    return enclosures.store(m_connection)
        && execute(m_connection, update + enclosures.handOver(), QSparqlQuery::InsertStatement);
}

} // namespace Tidel
