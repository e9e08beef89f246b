// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagewriter.h"

#include "links.h"
#include "sparqltext.h"
#include "storedlinks.h"

#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>
#include <QUrl>

#include <feedtrackersparql.h>

#include <algorithm>
#include <memory>
#include <optional>

namespace Tidel {

namespace {

// An update of more is no quicker, and the fewer there are, the fewer are held up by one that the store
// refuses.
constexpr int groupSize = 100;

bool isStorable(const FeedEnclosure &enclosure)
{
    return isEncodedLink(enclosure.remoteUrl())
        && (enclosure.localUrl().isEmpty() || isEncodedLink(enclosure.localUrl()));
}

bool isStorable(const FeedMessage &message)
{
    const QList<FeedEnclosure> enclosures = message.enclosures();
    return isEncodedLink(message.link())
        && std::all_of(enclosures.cbegin(), enclosures.cend(),
                       [](const FeedEnclosure &enclosure) { return isStorable(enclosure); });
}

/// Inserts \a enclosure as a part of nothing.
QString insertion(const FeedEnclosure &enclosure, const QUrl &urn)
{
    QSparqlQuery insert(
        QStringLiteral("INSERT { ?:enclosure a mfo:Enclosure ; mfo:remoteLink ?:remoteUrl ; "
                       "mfo:localLink ?:localUrl ; mfo:optional ?:isOptional ; nie:contentSize ?:length ; "
                       "nie:mimeType ?:mimeType ; nie:identifier ?:groupId ; mfo:groupDefault ?:isDefault ; "
                       "mfo:image ?:typeIcon } "),
        QSparqlQuery::InsertStatement);
    insert.bindValue(QStringLiteral("enclosure"), urn);
    insert.bindValue(QStringLiteral("remoteUrl"), QUrl(enclosure.remoteUrl()));
    insert.bindValue(QStringLiteral("localUrl"), QUrl(enclosure.localUrl()));
    insert.bindValue(QStringLiteral("isOptional"), enclosure.type() != FeedEnclosure::Essential);
    insert.bindValue(QStringLiteral("length"), enclosure.length());
    insert.bindValue(QStringLiteral("mimeType"), enclosure.mimeType());
    insert.bindValue(QStringLiteral("groupId"), enclosure.groupId());
    insert.bindValue(QStringLiteral("isDefault"), enclosure.isDefault());
    insert.bindValue(QStringLiteral("typeIcon"), enclosure.typeIcon());
    return insert.preparedQueryText();
}

/// The enclosures of new messages, each stored once and then given to its messages.
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

    /// What follows the insertion of the messages; nothing when the store does not tell what it has.
    std::optional<QString> update(QSparqlConnection &connection) const
    {
        if (m_enclosures.isEmpty())
            return QString();
        const auto known =
            storedLinks(connection, m_links, QStringLiteral("?e a mfo:Enclosure ; mfo:remoteLink ?l"));
        if (!known)
            return std::nullopt;
        QString update;
        for (const FeedEnclosure &enclosure : m_enclosures) {
            if (!known->contains(enclosure.remoteUrl()))
                update += insertion(enclosure, connection.createUrn());
        }
        return update + QLatin1String("INSERT { ?e nie:isLogicalPartOf ?m } WHERE { VALUES (?r ?l) { ")
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

bool MessageWriter::write(const QList<FeedMessage> &messages, const QString &channelUri)
{
    bool isComplete = true;
    for (int i = 0; i < messages.size(); i += groupSize)
        isComplete = writeGroup(messages.mid(i, groupSize), channelUri) && isComplete;
    return isComplete;
}

bool MessageWriter::writeGroup(const QList<FeedMessage> &messages, const QString &channelUri)
{
    const FeedTrackerSparql &library = *FeedTrackerSparql::instance();
    QSet<QString> links;
    for (const FeedMessage &message : messages) {
        if (isEncodedLink(message.link()))
            links.insert(message.link());
    }
    auto known = storedLinks(m_connection, links, QStringLiteral("?m a mfo:FeedMessage ; nie:links ?l"));
    if (!known || channelUri.isEmpty())
        return library.addMessages(messages, channelUri);

    QList<FeedMessage> fresh;
    QList<FeedMessage> others;
    for (const FeedMessage &message : messages) {
        const bool isFresh = isStorable(message) && !known->contains(message.link());
        known->insert(message.link());
        (isFresh ? fresh : others).append(message);
    }
    if (!fresh.isEmpty() && !insert(fresh, channelUri))
        return library.addMessages(messages, channelUri);
    return others.isEmpty() || library.addMessages(others, channelUri);
}

bool MessageWriter::insert(const QList<FeedMessage> &messages, const QString &channelUri)
{
    EnclosureGroup enclosures;
    QString update;
    for (FeedMessage message : messages) {
        enclosures.add(message.enclosures(), message.link());
        message.setEnclosures({});
        update += FeedTrackerSparql::instance()->addMessageQuery(message, channelUri);
    }
    const std::optional<QString> rest = enclosures.update(m_connection);
    if (!rest)
        return false;
    const std::unique_ptr<QSparqlResult> result(
        m_connection.exec(QSparqlQuery(update + *rest, QSparqlQuery::InsertStatement)));
    if (result)
        result->waitForFinished();
    if (result && !result->hasError())
        return true;
    m_refusal = result ? result->lastError().message() : QString();
    return false;
}

} // namespace Tidel
