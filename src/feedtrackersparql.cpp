// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedtrackersparql.h"

#include "debuglist_p.h"
#include "qsttrace.h"
#include "statementtemplate_p.h"
#include "storeresult_p.h"

#include <QSparqlBinding>
#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <QSet>
#include <QUrl>

#include <algorithm>

// All traces of the store come from this one file: its path is part of the format that log readers know.
#define HERE QST_HERE("Tracker")
#define TRACE_DEBUG QST_DEBUG("Tracker")
#define TRACE_CRITICAL QST_CRITICAL("Tracker")

namespace {

QSparqlQuery statement(const char *text, QSparqlQuery::StatementType type)
{
    return QSparqlQuery(QString::fromLatin1(text), type);
}

/// A query with the one value that most of the reads need.
QSparqlQuery queryFor(const char *text, const char *name, const QVariant &value)
{
    QSparqlQuery query = statement(text, QSparqlQuery::SelectStatement);
    query.bindValue(QLatin1String(name), value);
    return query;
}

/// The current local time without its zone.
QString currentTimeText() { return QDateTime::currentDateTime().toString(Qt::ISODate); }

QString word(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

QStringList firstColumn(QSparqlResult *result)
{
    QStringList texts;
    while (result->next())
        texts.append(result->value(0).toString());
    return texts;
}

template <typename T> QList<T> allRows(QSparqlResult *result, T (*extract)(const QSparqlResultRow &))
{
    QList<T> values;
    while (result->next())
        values.append(extract(result->current()));
    return values;
}

QDateTime localTime(const QString &isoText)
{
    return QDateTime::fromString(isoText, Qt::ISODate).toTimeSpec(Qt::LocalTime);
}

/// Those of \a enclosures that no entry of \a stored equals; enclosures are equal when their remote URLs are.
QList<FeedEnclosure> withoutStored(QList<FeedEnclosure> enclosures, const QList<FeedEnclosure> &stored)
{
    QSet<QString> known;
    for (const FeedEnclosure &enclosure : stored)
        known.insert(enclosure.remoteUrl());
    enclosures.erase(std::remove_if(enclosures.begin(), enclosures.end(),
                                    [&known](const FeedEnclosure &enclosure) {
                                        return known.contains(enclosure.remoteUrl());
                                    }),
                     enclosures.end());
    return enclosures;
}

QString insertEnclosure(const FeedEnclosure &enclosure, const QString &urn, const QString &ownerUri)
{
    return fillTemplate(
        QLatin1String("INSERT {<%enclosureUri> a mfo:Enclosure; mfo:remoteLink <%remLink> ; "
                      "mfo:localLink <%locLink>; mfo:optional %optional; nie:contentSize %size; "
                      "nie:mimeType \"%type\"; nie:identifier %id;mfo:groupDefault %default; "
                      "mfo:image \"%image\"; nie:isLogicalPartOf <%messageUri> } "),
        {{QLatin1String("%enclosureUri"), urn},
         {QLatin1String("%remLink"), enclosure.remoteUrl()},
         {QLatin1String("%locLink"), enclosure.localUrl()},
         {QLatin1String("%optional"), word(enclosure.type() != FeedEnclosure::Essential)},
         {QLatin1String("%size"), QString::number(enclosure.length())},
         {QLatin1String("%type"), enclosure.mimeType()},
         {QLatin1String("%image"), enclosure.typeIcon()},
         {QLatin1String("%id"), QString::number(enclosure.groupId())},
         {QLatin1String("%default"), word(enclosure.isDefault())},
         {QLatin1String("%messageUri"), ownerUri}});
}

QString linkEnclosure(const QString &enclosureUri, const QString &ownerUri)
{
    return fillTemplate(
        QLatin1String("INSERT { <%enclosureUri> a mfo:Enclosure; nie:isLogicalPartOf <%messageUri> } "),
        {{QLatin1String("%enclosureUri"), enclosureUri}, {QLatin1String("%messageUri"), ownerUri}});
}

} // namespace

FeedTrackerSparql *FeedTrackerSparql::_single = nullptr;

const QString FeedTrackerSparql::LinkKey = QString::number(1);
const QString FeedTrackerSparql::TitleKey = QString::number(2);
const QString FeedTrackerSparql::LastModifiedTimeKey = QString::number(3);

FeedTrackerSparql *FeedTrackerSparql::instance()
{
    if (!_single) {
        TRACE_DEBUG << "object init";
        _single = new FeedTrackerSparql;
    }
    return _single;
}

void FeedTrackerSparql::releaseInstance()
{
    if (!_single)
        return;
    TRACE_DEBUG << "object de-init";
    delete _single;
    _single = nullptr;
}

FeedTrackerSparql::FeedTrackerSparql()
    : m_connection(
        new QSparqlConnection(QStringLiteral("QTRACKER_DIRECT"), QSparqlConnectionOptions(), nullptr))
{
    // Critical even when all is well, so that the one line that tells which store was met is in every log.
    if (m_connection->isValid())
        TRACE_CRITICAL << "QTRACKER_DIRECT : Driver found";
    else
        TRACE_CRITICAL << "QTRACKER_DIRECT : Driver not found";
}

FeedTrackerSparql::~FeedTrackerSparql()
{
    TRACE_DEBUG << "QTRACKER_DIRECT: de-init";
    m_connection->deleteLater();
}

FeedChannel extractChannel(const QSparqlResultRow &row)
{
    FeedChannel channel;
    if (row.isEmpty()) {
        TRACE_CRITICAL << "Empty row: returning empty channel";
        return channel;
    }
    channel.setUri(row.binding(0).value().toString());
    channel.setTitle(row.binding(1).value().toString());
    channel.setLink(row.binding(2).value().toString());
    channel.setType(row.binding(3).value().toString());
    channel.setLastModifiedTime(row.binding(4).value().toString());
    channel.setSubscribedTime(localTime(row.binding(5).value().toString()));
    channel.setUpdatedTime(localTime(row.binding(6).value().toString()));
    return channel;
}

FeedMessage extractMessage(const QSparqlResultRow &row)
{
    FeedMessage message;
    if (row.isEmpty()) {
        TRACE_CRITICAL << "Empty row: returning empty message";
        return message;
    }
    message.setTitle(row.binding(1).value().toString());
    message.setDescription(row.binding(2).value().toString());
    message.setLink(row.binding(3).value().toString());
    message.setPublishedDate(row.binding(4).value().toDateTime());
    message.setDownloadedTime(row.binding(5).value().toDateTime());
    message.setFavorite(row.binding(6).value().toBool());
    message.setSummary(row.binding(7).value().toString());
    return message;
}

FeedEnclosure extractEnclosure(const QSparqlResultRow &row)
{
    FeedEnclosure enclosure;
    if (row.isEmpty()) {
        TRACE_CRITICAL << "Empty row: returning empty enclosure";
        return enclosure;
    }
    const auto isTrue = [&row](int column) {
        return row.binding(column).value().toString() == QLatin1String("true");
    };
    enclosure.setUri(row.binding(0).value().toString());
    enclosure.setRemoteUrl(row.binding(1).value().toString());
    enclosure.setLocalUrl(row.binding(2).value().toString());
    enclosure.setGroupId(row.binding(3).value().toString().toInt());
    enclosure.setLength(row.binding(4).value().toString().toInt());
    enclosure.setDefault(isTrue(5));
    enclosure.setType(isTrue(6) ? FeedEnclosure::Optional : FeedEnclosure::Essential);
    enclosure.setTypeIcon(row.binding(7).value().toString());
    enclosure.setMimeType(row.binding(8).value().toString());
    return enclosure;
}

QList<FeedChannel> FeedTrackerSparql::allChannels() const
{
    const QSparqlQuery query =
        statement("select ?u ?t ?l ?n ?c ?v ?b where {?u a mfo:FeedChannel; . OPTIONAL{?u nie:title ?t.}. "
                  "OPTIONAL { ?u nie:links ?l . }. OPTIONAL{?u nie:characterSet ?n. }. "
                  "OPTIONAL {?u nie:comment ?c . }. OPTIONAL {?u nie:created ?v . }. "
                  "OPTIONAL {?u nie:contentLastModified ?b . }}",
                  QSparqlQuery::SelectStatement);
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution Failed", "Executing query failed: returning empty list"});
    return result ? allRows(result.get(), extractChannel) : QList<FeedChannel>();
}

QStringList FeedTrackerSparql::allChannelUrls() const
{
    const QSparqlQuery query =
        statement("select ?u { ?u a mfo:FeedChannel . }", QSparqlQuery::SelectStatement);
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution Failed", "Executing query failed: returning empty list"});
    if (!result)
        return {};
    const QStringList uris = firstColumn(result.get());
    writeDebugList(TRACE_DEBUG << "Channel Uris: ", uris);
    return uris;
}

FeedChannel FeedTrackerSparql::channelForUri(const QString &uri) const
{
    if (uri.isEmpty()) {
        TRACE_CRITICAL << "Empty uri: returning empty channel";
        return {};
    }
    const QSparqlQuery query =
        queryFor("select ?u ?t ?l ?n ?c ?v ?b where {?u a mfo:FeedChannel. OPTIONAL{?u nie:title ?t.}. "
                 "OPTIONAL { ?u nie:links ?l . }. OPTIONAL{?u nie:characterSet ?n . }. "
                 "OPTIONAL {?u nie:comment ?c . }. OPTIONAL {?u nie:created ?v . }. "
                 "OPTIONAL {?u nie:contentLastModified ?b . } "
                 "FILTER ((?u = ?:channel_uri)) }",
                 "channel_uri", QUrl(uri));
    TRACE_DEBUG << "Prepared Query: " << query.preparedQueryText();
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution Failed", "Result not retrieved: returning empty channel"});
    if (!result)
        return {};
    if (!result->next()) {
        TRACE_CRITICAL << "Result not retrieved: returning empty channel";
        return {};
    }
    const FeedChannel channel = extractChannel(result->current());
    TRACE_DEBUG << "channel = " << channel;
    return channel;
}

QString FeedTrackerSparql::channelType(const QString &uri) const
{
    if (uri.isEmpty()) {
        TRACE_CRITICAL << "Empty uri: returning empty channel uri";
        return {};
    }
    const QSparqlQuery query = queryFor(
        "select ?u ?t where {?u a mfo:FeedChannel; nie:characterSet ?t . FILTER (?u = ?:channel_uri) }",
        "channel_uri", QUrl(uri));
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution Failed", "Executing query failed: returning empty channel"});
    if (!result)
        return {};
    if (!result->next() || result->current().isEmpty()) {
        TRACE_CRITICAL << "Result not retrieved: returning empty channel uri";
        return {};
    }
    return result->current().binding(1).value().toString();
}

QList<FeedMessage> FeedTrackerSparql::messagesForChannel(const QString &channelUri) const
{
    const QSparqlQuery query = queryFor(
        "SELECT ?_feedMessage ?_title ?_content ?_link ?_contentCreated ?_downloadedTime ?_tag ?_summary "
        "WHERE { ?_feedMessage a mfo:FeedMessage  . ?_feedMessage nie:isLogicalPartOf ?:channelUri . "
        "?_feedMessage nie:title ?_title . ?_feedMessage nie:description ?_content . "
        "?_feedMessage nie:subject ?_summary . ?_feedMessage nie:links ?_link . "
        "?_feedMessage mfo:downloadedTime ?_downloadedTime .OPTIONAL { ?_feedMessage nie:contentCreated "
        "?_contentCreated . } OPTIONAL { ?_feedMessage nao:hasTag ?_tag . } } ORDER BY ?_downloadedTime",
        "channelUri", channelUri);
    const StoreResult result =
        execute(m_connection, query, HERE, {"Query Execution Failed", "Query Execution Failed"});
    return result ? allRows(result.get(), extractMessage) : QList<FeedMessage>();
}

QList<FeedEnclosure> FeedTrackerSparql::enclosuresForMessage(const QString &messageUri) const
{
    const QSparqlQuery query = queryFor(
        "SELECT ?_enclosure ?_remLink ?_locLink ?_id  ?_size ?_default ?_optional ?_mimeType WHERE { "
        "?_enclosure a mfo:Enclosure;  nie:isLogicalPartOf ?:messageUri; mfo:remoteLink ?_remLink; "
        "mfo:localLink ?_locLink; nie:identifier ?_id; nie:contentSize ?_size; mfo:groupDefault ?_default; "
        "mfo:optional ?_optional. OPTIONAL { ?_enclosure mfo:image ?_image. }"
        "OPTIONAL { ?_enclosure nie:mimeType ?_mimeType. } }",
        "messageUri", QUrl(messageUri));
    const StoreResult result =
        execute(m_connection, query, HERE, {"Query Execution failed", "Query Execution Failed"});
    return result ? allRows(result.get(), extractEnclosure) : QList<FeedEnclosure>();
}

FeedEnclosure FeedTrackerSparql::enclosureForUri(const QString &uri) const
{
    if (uri.isEmpty()) {
        TRACE_CRITICAL << "Empty uri: returning empty enclosure";
        return {};
    }
    const QSparqlQuery query = queryFor(
        "select ?u ?rl ?ll ?i ?s ?d ?o ?icon ?m where {?u a mfo:Enclosure. "
        "OPTIONAL {?u mfo:remoteLink ?rl.} . OPTIONAL {?u mfo:localLink ?ll.} . "
        "OPTIONAL {?u nie:identifier ?i.} . "
        "OPTIONAL {?u nie:contentSize ?s.}. OPTIONAL {?u mfo:groupDefault ?d.}. "
        "OPTIONAL {?u mfo:optional ?o.}. OPTIONAL {?u mfo:image ?icon.}. OPTIONAL {?u nie:mimeType ?m.} "
        "FILTER (?u = ?:enclosure_uri)}",
        "enclosure_uri", QUrl(uri));
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution Failed", "Executing query failed: returning empty enclosure"});
    if (!result)
        return {};
    if (!result->next()) {
        TRACE_CRITICAL << "Result not retrieved: returning empty enclosure";
        return {};
    }
    const FeedEnclosure enclosure = extractEnclosure(result->current());
    TRACE_DEBUG << enclosure.uri();
    return enclosure;
}

QStringList FeedTrackerSparql::allMessageUrls(const QString &channelUri) const
{
    const QSparqlQuery query =
        queryFor("SELECT ?message WHERE {?message a mfo:FeedMessage; nie:isLogicalPartOf ?:channelUri. }",
                 "channelUri", QUrl(channelUri));
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution failed", "Executing query failed: returning empty enclosure"});
    return result ? firstColumn(result.get()) : QStringList();
}

QStringList FeedTrackerSparql::messageLinksOfChannel(const QString &channelUri) const
{
    const QSparqlQuery query =
        queryFor("SELECT ?links WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                 "OPTIONAL {?u nie:links ?links .} }",
                 "channelUri", QUrl(channelUri));
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution failed", "Executing query failed: returning empty list "});
    return result ? firstColumn(result.get()) : QStringList();
}

QDateTime FeedTrackerSparql::latestPostPublishedTime(const QString &channelUri)
{
    const QSparqlQuery query =
        queryFor("SELECT ?pubDate WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                 "OPTIONAL {?u nie:contentCreated ?pubDate .} }ORDER BY DESC(?pubDate) LIMIT 1",
                 "channelUri", QUrl(channelUri));
    const StoreResult result =
        execute(m_connection, query, HERE,
                {"Query Execution failed", "Executing query failed: returning empty enclosure"});
    return result && result->next() ? result->value(0).toDateTime() : QDateTime();
}

QString FeedTrackerSparql::addChannel(const FeedChannel &channel) const
{
    const QUrl link = QUrl::fromUserInput(channel.link());
    const QSparqlQuery lookup =
        queryFor("SELECT ?l WHERE { ?channel a mfo:FeedChannel; nie:links ?l .FILTER(( ?l = ?:link)).  }",
                 "link", link);
    TRACE_DEBUG << lookup.preparedQueryText();
    const StoreResult known =
        execute(m_connection, lookup, HERE, {"Query Execution failed", "Query Execution Failed"});
    if (!known)
        return {};
    // The link as given, not as it was looked up: one without a scheme never counts as stored.
    if (known->next() && known->value(0).toString() == channel.link()) {
        TRACE_CRITICAL << "Channel exists";
        return {};
    }

    const QUrl urn = m_connection->createUrn();
    QSparqlQuery insert = statement(
        "INSERT { ?:link a nie:DataObject ; nie:created ?:current_date .?:channelUrl a mfo:FeedChannel . "
        "?:channelUrl nie:title ?:title .  ?:channelUrl nie:characterSet ?:type . ?:channelUrl mfo:image "
        "?:new_image . ?:channelUrl nie:links ?:link . }",
        QSparqlQuery::InsertStatement);
    insert.bindValue(QStringLiteral("channelUrl"), urn);
    insert.bindValue(QStringLiteral("new_image"), channel.icon().localUrl());
    insert.bindValue(QStringLiteral("link"), link);
    insert.bindValue(QStringLiteral("type"), channel.type());
    insert.bindValue(QStringLiteral("title"), channel.title());
    insert.bindValue(QStringLiteral("current_date"), currentTimeText());
    TRACE_DEBUG << insert.preparedQueryText();
    if (!execute(m_connection, insert, HERE,
                 {"Query Execution failed", "Query Execution Failed - addChannel"}))
        return {};
    TRACE_DEBUG << "Channel Uri: " << urn.toString();

    if (!channel.icon().remoteUrl().isEmpty())
        addEnclosures({channel.icon()}, channel.uri());
    return urn.toString();
}

bool FeedTrackerSparql::addMessages(const QList<FeedMessage> &messages, const QString &channelUri) const
{
    if (channelUri.isEmpty()) {
        TRACE_CRITICAL << "ChannelUri empty, not able to add messages";
        return false;
    }
    QString update;
    for (const FeedMessage &message : messages) {
        const QSparqlQuery lookup = queryFor("SELECT ?message ?l WHERE { ?message a mfo:FeedMessage; "
                                             "nie:links ?l .FILTER(( ?l = ?:link)).  } ",
                                             "link", QUrl::fromUserInput(message.link()));
        const StoreResult known =
            execute(m_connection, lookup, HERE, {"Query Execution failed", "Query Execution Failed"});
        if (!known)
            return false;
        if (known->next()) {
            addMissingEnclosures(message, known->value(0).toString());
            update += createAssociation(message, channelUri);
        } else {
            update += addMessageQuery(message, channelUri);
        }
    }
    return execute(m_connection, QSparqlQuery(update, QSparqlQuery::InsertStatement), HERE,
                   {"Query Execution failed", "Failed: ", FailureTexts::LastError})
        != nullptr;
}

void FeedTrackerSparql::addMissingEnclosures(const FeedMessage &message, const QString &messageUri) const
{
    const QList<FeedEnclosure> missing =
        withoutStored(message.enclosures(), enclosuresForMessage(messageUri));
    if (!missing.isEmpty())
        addEnclosures(missing, messageUri);
}

QString FeedTrackerSparql::addMessageQuery(const FeedMessage &message, const QString &channelUri) const
{
    if (channelUri.isEmpty()) {
        TRACE_CRITICAL << "Invalied input, cannot proceed";
        return {};
    }
    const QString urn = m_connection->createUrn().toString();
    // The time is local and labelled as UTC; readers of the store know it so.
    QString insert = fillTemplate(
        QLatin1String("INSERT { <%2> a mfo:FeedMessage ; nie:isLogicalPartOf <%3>; nie:title %4; "
                      "nie:description %5; nie:subject %6 ; mfo:downloadedTime \"%7Z\"^^xsd:dateTime "),
        {{QLatin1String("%2"), urn},
         {QLatin1String("%3"), channelUri},
         {QLatin1String("%4"), QSparqlBinding(QStringLiteral("title"), message.title()).toString()},
         {QLatin1String("%5"), QSparqlBinding(QStringLiteral("desc"), message.description()).toString()},
         {QLatin1String("%6"), QSparqlBinding(QStringLiteral("summary"), message.summary()).toString()},
         {QLatin1String("%7"), currentTimeText()}});
    if (message.publishedDate().isValid()) {
        insert += QLatin1String("; nie:contentCreated \"") + message.publishedDate().toString(Qt::ISODate)
            + QLatin1String("\"^^xsd:dateTime ");
    }
    if (!message.link().isEmpty()) {
        insert +=
            QLatin1String("; nie:links ") + QSparqlBinding(QStringLiteral("link"), message.link()).toString();
    }
    insert += QLatin1String(" } ");

    if (!message.enclosures().isEmpty())
        addEnclosures(message.enclosures(), urn);
    return insert;
}

QString createAssociation(const FeedMessage &message, const QString &channelUri)
{
    return fillTemplate(
        QLatin1String("INSERT {?u a mfo:FeedMessage; nie:isLogicalPartOf <%channelUri>} "
                      "WHERE {?u nie:links <%link> }"),
        {{QLatin1String("%channelUri"), channelUri}, {QLatin1String("%link"), message.link()}});
}

bool FeedTrackerSparql::addEnclosures(const QList<FeedEnclosure> &enclosures, const QString &messageUri) const
{
    QString update;
    for (const FeedEnclosure &enclosure : enclosures) {
        if (enclosure.remoteUrl().isEmpty()) {
            TRACE_CRITICAL << "remoteLink empty for message " << messageUri;
            continue;
        }
        const QSparqlQuery lookup = queryFor(
            "SELECT ?enclosureUri ?remLink WHERE { ?enclosureUri a mfo:Enclosure; mfo:remoteLink ?remLink . "
            "FILTER ((?remLink = ?:remLink)) } ",
            "remLink", QUrl(enclosure.remoteUrl()));
        const StoreResult known =
            execute(m_connection, lookup, HERE, {"Query Execution failed", "Query Execution Failed"});
        if (!known)
            continue;
        if (!known->next())
            update += insertEnclosure(enclosure, m_connection->createUrn().toString(), messageUri);
        else if (known->value(1).toString() == enclosure.remoteUrl())
            update += linkEnclosure(known->value(0).toString(), messageUri);
    }
    return execute(m_connection, QSparqlQuery(update, QSparqlQuery::InsertStatement), HERE,
                   {"Query Execution failed", "Query Execution failed"})
        != nullptr;
}

bool FeedTrackerSparql::updateEnclosure(const FeedEnclosure &enclosure) const
{
    if (enclosure.remoteUrl().isEmpty()) {
        TRACE_CRITICAL << "mfo:remoteLink is empty";
        return false;
    }
    const QSparqlQuery lookup = queryFor("SELECT ?u WHERE {?u a mfo:Enclosure; mfo:remoteLink ?:remLink }",
                                         "remLink", QUrl(enclosure.remoteUrl()));
    TRACE_DEBUG << lookup.preparedQueryText();
    const StoreResult known =
        execute(m_connection, lookup, HERE, {"Query Execution failed", "Invalid mfo:remoteLink"});
    if (!known)
        return false;

    // Without a row the URI is empty: what becomes of the update then is for the store to say.
    const QUrl uri = known->next() ? QUrl(known->value(0).toString()) : QUrl();
    QSparqlQuery update = statement(
        "DELETE {?:enclosureUri nie:mimeType ?mime } WHERE {?:enclosureUri nie:mimeType ?mime } "
        "INSERT {?:enclosureUri nie:mimeType ?:mime } "
        "DELETE {?:enclosureUri nie:contentSize ?size} WHERE {?:enclosureUri nie:contentSize ?size} "
        "INSERT {?:enclosureUri nie:contentSize ?:size} "
        "DELETE {?:enclosureUri mfo:image ?icon} WHERE {?:enclosureUri mfo:image ?icon} "
        "INSERT {?:enclosureUri mfo:image ?:icon} ",
        QSparqlQuery::InsertStatement);
    update.bindValue(QStringLiteral("enclosureUri"), uri);
    update.bindValue(QStringLiteral("mime"), enclosure.mimeType());
    update.bindValue(QStringLiteral("size"), enclosure.length());
    update.bindValue(QStringLiteral("icon"), enclosure.typeIcon());
    TRACE_DEBUG << update.preparedQueryText();
    return execute(m_connection, update, HERE, {"Query Execution failed", "mfo:Enclosure updation failed"})
        != nullptr;
}
