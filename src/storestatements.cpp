// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storestatements_p.h"

#include "feedchannel.h"
#include "feedenclosure.h"
#include "feedmessage.h"
#include "statementtemplate_p.h"

#include <QSparqlBinding>

#include <QDateTime>
#include <QUrl>

namespace StoreStatements {

namespace {

using Values = std::initializer_list<QPair<const char *, QVariant>>;

QSparqlQuery statement(const char *text, QSparqlQuery::StatementType type, const Values &values)
{
    QSparqlQuery query(QString::fromLatin1(text), type);
    for (const auto &[name, value] : values)
        query.bindValue(QLatin1String(name), value);
    return query;
}

QSparqlQuery select(const char *text, const Values &values = {})
{
    return statement(text, QSparqlQuery::SelectStatement, values);
}

QSparqlQuery insert(const char *text, const Values &values)
{
    return statement(text, QSparqlQuery::InsertStatement, values);
}

QSparqlQuery remove(const char *text, const Values &values)
{
    return statement(text, QSparqlQuery::DeleteStatement, values);
}

/// Returns the current local time without its zone.
QString currentTimeText() { return QDateTime::currentDateTime().toString(Qt::ISODate); }

QString word(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

QString literal(const char *name, const QString &text)
{
    return QSparqlBinding(QString::fromLatin1(name), text).toString();
}

} // namespace

// contract: the channel's type is nie:characterSet and its last-modified text is nie:comment. Stores have
// them there.
// contract: reads nie:created of the channel, although insertChannel() writes it to the link, so the time of
// subscription stays empty. Hosts know the columns.
QSparqlQuery allChannels()
{
    return select("select ?u ?t ?l ?n ?c ?v ?b where {?u a mfo:FeedChannel; . OPTIONAL{?u nie:title ?t.}. "
                  "OPTIONAL { ?u nie:links ?l . }. OPTIONAL{?u nie:characterSet ?n. }. "
                  "OPTIONAL {?u nie:comment ?c . }. OPTIONAL {?u nie:created ?v . }. "
                  "OPTIONAL {?u nie:contentLastModified ?b . }}");
}

QSparqlQuery allChannelUrls() { return select("select ?u { ?u a mfo:FeedChannel . }"); }

QSparqlQuery channelForUri(const QString &uri)
{
    return select("select ?u ?t ?l ?n ?c ?v ?b where {?u a mfo:FeedChannel. OPTIONAL{?u nie:title ?t.}. "
                  "OPTIONAL { ?u nie:links ?l . }. OPTIONAL{?u nie:characterSet ?n . }. "
                  "OPTIONAL {?u nie:comment ?c . }. OPTIONAL {?u nie:created ?v . }. "
                  "OPTIONAL {?u nie:contentLastModified ?b . } "
                  "FILTER ((?u = ?:channel_uri)) }",
                  {{"channel_uri", QUrl(uri)}});
}

QSparqlQuery channelType(const QString &uri)
{
    return select(
        "select ?u ?t where {?u a mfo:FeedChannel; nie:characterSet ?t . FILTER (?u = ?:channel_uri) }",
        {{"channel_uri", QUrl(uri)}});
}

QSparqlQuery messagesForChannel(const QString &channelUri)
{
    // contract: the URI is bound as a text, unlike in the other statements. Stores know the statement so.
    return select(
        "SELECT ?_feedMessage ?_title ?_content ?_link ?_contentCreated ?_downloadedTime ?_tag ?_summary "
        "WHERE { ?_feedMessage a mfo:FeedMessage  . ?_feedMessage nie:isLogicalPartOf ?:channelUri . "
        "?_feedMessage nie:title ?_title . ?_feedMessage nie:description ?_content . "
        "?_feedMessage nie:subject ?_summary . ?_feedMessage nie:links ?_link . "
        "?_feedMessage mfo:downloadedTime ?_downloadedTime .OPTIONAL { ?_feedMessage nie:contentCreated "
        "?_contentCreated . } OPTIONAL { ?_feedMessage nao:hasTag ?_tag . } } ORDER BY ?_downloadedTime",
        {{"channelUri", channelUri}});
}

QSparqlQuery enclosuresForMessage(const QString &messageUri)
{
    // contract: ?_image is not selected, so the MIME type is in column 7. Hosts know the columns.
    return select(
        "SELECT ?_enclosure ?_remLink ?_locLink ?_id  ?_size ?_default ?_optional ?_mimeType WHERE { "
        "?_enclosure a mfo:Enclosure;  nie:isLogicalPartOf ?:messageUri; mfo:remoteLink ?_remLink; "
        "mfo:localLink ?_locLink; nie:identifier ?_id; nie:contentSize ?_size; mfo:groupDefault ?_default; "
        "mfo:optional ?_optional. OPTIONAL { ?_enclosure mfo:image ?_image. }"
        "OPTIONAL { ?_enclosure nie:mimeType ?_mimeType. } }",
        {{"messageUri", QUrl(messageUri)}});
}

QSparqlQuery enclosureForUri(const QString &uri)
{
    return select(
        "select ?u ?rl ?ll ?i ?s ?d ?o ?icon ?m where {?u a mfo:Enclosure. "
        "OPTIONAL {?u mfo:remoteLink ?rl.} . OPTIONAL {?u mfo:localLink ?ll.} . "
        "OPTIONAL {?u nie:identifier ?i.} . "
        "OPTIONAL {?u nie:contentSize ?s.}. OPTIONAL {?u mfo:groupDefault ?d.}. "
        "OPTIONAL {?u mfo:optional ?o.}. OPTIONAL {?u mfo:image ?icon.}. OPTIONAL {?u nie:mimeType ?m.} "
        "FILTER (?u = ?:enclosure_uri)}",
        {{"enclosure_uri", QUrl(uri)}});
}

QSparqlQuery allMessageUrls(const QString &channelUri)
{
    return select("SELECT ?message WHERE {?message a mfo:FeedMessage; nie:isLogicalPartOf ?:channelUri. }",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery messageLinksOfChannel(const QString &channelUri)
{
    return select("SELECT ?links WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                  "OPTIONAL {?u nie:links ?links .} }",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery latestPostPublishedTime(const QString &channelUri)
{
    return select("SELECT ?pubDate WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                  "OPTIONAL {?u nie:contentCreated ?pubDate .} }ORDER BY DESC(?pubDate) LIMIT 1",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery deletableMessageCount(const QString &channelUri)
{
    return select("SELECT COUNT(?u) WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                  "OPTIONAL {?u nao:hasTag ?tag . FILTER((?tag = nao:predefined-tag-favorite)) .} "
                  "FILTER(!BOUND(?tag)) .} ",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery deletableMessages(const QString &channelUri, int limit)
{
    return select("SELECT ?u WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri. "
                  "?u mfo:downloadedTime ?downloadedTime .  "
                  "OPTIONAL {?u nao:hasTag ?tag . FILTER((?tag = nao:predefined-tag-favorite)) .} "
                  "OPTIONAL { ?u nie:contentCreated ?pubDate . } FILTER(!BOUND(?tag)) .} "
                  "ORDER BY ?pubDate ?downloadedTime LIMIT ?:limit",
                  {{"channelUri", QUrl(channelUri)}, {"limit", limit}});
}

QSparqlQuery channelWithLink(const QUrl &link)
{
    return select("SELECT ?l WHERE { ?channel a mfo:FeedChannel; nie:links ?l .FILTER(( ?l = ?:link)).  }",
                  {{"link", link}});
}

QSparqlQuery insertChannel(const FeedChannel &channel, const QUrl &urn)
{
    // contract: the time of subscription is a property of the link, an untyped local time without a zone.
    // Stores have it so.
    return insert(
        "INSERT { ?:link a nie:DataObject ; nie:created ?:current_date .?:channelUrl a mfo:FeedChannel . "
        "?:channelUrl nie:title ?:title .  ?:channelUrl nie:characterSet ?:type . ?:channelUrl mfo:image "
        "?:new_image . ?:channelUrl nie:links ?:link . }",
        {{"channelUrl", urn},
         {"new_image", channel.icon().localUrl()},
         {"link", QUrl::fromUserInput(channel.link())},
         {"type", channel.type()},
         {"title", channel.title()},
         {"current_date", currentTimeText()}});
}

// contract: looks for the link as fromUserInput() writes it, but it is stored as given. Stores have it so.
QSparqlQuery messageWithLink(const QString &link)
{
    return select("SELECT ?message ?l WHERE { ?message a mfo:FeedMessage; "
                  "nie:links ?l .FILTER(( ?l = ?:link)).  } ",
                  {{"link", QUrl::fromUserInput(link)}});
}

QString insertMessage(const FeedMessage &message, const QString &urn, const QString &channelUri)
{
    // contract: the time of download is local, but "Z" labels it as UTC. Readers of the store expect it.
    // contract: the summary is nie:subject, and the link is a literal. Stores have them so.
    QString insert = fillTemplate(
        QLatin1String("INSERT { <%2> a mfo:FeedMessage ; nie:isLogicalPartOf <%3>; nie:title %4; "
                      "nie:description %5; nie:subject %6 ; mfo:downloadedTime \"%7Z\"^^xsd:dateTime "),
        {{QLatin1String("%2"), urn},
         {QLatin1String("%3"), channelUri},
         {QLatin1String("%4"), literal("title", message.title())},
         {QLatin1String("%5"), literal("desc", message.description())},
         {QLatin1String("%6"), literal("summary", message.summary())},
         {QLatin1String("%7"), currentTimeText()}});
    // contract: the published date is written as it is, a local one without a zone. Stores have it so.
    if (message.publishedDate().isValid()) {
        insert += QLatin1String("; nie:contentCreated \"") + message.publishedDate().toString(Qt::ISODate)
            + QLatin1String("\"^^xsd:dateTime ");
    }
    if (!message.link().isEmpty())
        insert += QLatin1String("; nie:links ") + literal("link", message.link());
    return insert + QLatin1String(" } ");
}

// contract: the link is pasted without escaping. Other programs know the statement so.
QString linkMessage(const QString &link, const QString &channelUri)
{
    return fillTemplate(QLatin1String("INSERT {?u a mfo:FeedMessage; nie:isLogicalPartOf <%channelUri>} "
                                      "WHERE {?u nie:links <%link> }"),
                        {{QLatin1String("%channelUri"), channelUri}, {QLatin1String("%link"), link}});
}

QSparqlQuery enclosureWithLink(const QString &remoteUrl)
{
    return select(
        "SELECT ?enclosureUri ?remLink WHERE { ?enclosureUri a mfo:Enclosure; mfo:remoteLink ?remLink . "
        "FILTER ((?remLink = ?:remLink)) } ",
        {{"remLink", QUrl(remoteUrl)}});
}

// contract: the values are pasted without escaping, and the group is nie:identifier. Stores have them so.
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

QSparqlQuery insertion(const QString &text) { return QSparqlQuery(text, QSparqlQuery::InsertStatement); }

QSparqlQuery enclosureToUpdate(const QString &remoteUrl)
{
    return select("SELECT ?u WHERE {?u a mfo:Enclosure; mfo:remoteLink ?:remLink }",
                  {{"remLink", QUrl(remoteUrl)}});
}

QSparqlQuery updateEnclosure(const FeedEnclosure &enclosure, const QString &uri)
{
    return insert(
        "DELETE {?:enclosureUri nie:mimeType ?mime } WHERE {?:enclosureUri nie:mimeType ?mime } "
        "INSERT {?:enclosureUri nie:mimeType ?:mime } "
        "DELETE {?:enclosureUri nie:contentSize ?size} WHERE {?:enclosureUri nie:contentSize ?size} "
        "INSERT {?:enclosureUri nie:contentSize ?:size} "
        "DELETE {?:enclosureUri mfo:image ?icon} WHERE {?:enclosureUri mfo:image ?icon} "
        "INSERT {?:enclosureUri mfo:image ?:icon} ",
        {{"enclosureUri", QUrl(uri)},
         {"mime", enclosure.mimeType()},
         {"size", enclosure.length()},
         {"icon", enclosure.typeIcon()}});
}

QSparqlQuery channelToUpdate(const QString &channelUri)
{
    return select("SELECT ?channel WHERE { ?channel a mfo:FeedChannel . "
                  "FILTER(( ?channel = ?:channelUri)).  }",
                  {{"channelUri", QUrl(channelUri)}});
}

// contract: nie:contentLastModified is the time of the update and nie:comment the last-modified text. Stores
// have them so.
QSparqlQuery updateChannel(const FeedChannel &channel)
{
    return insert("DELETE { ?:channelUri nie:title ?title } WHERE {?:channelUri nie:title ?title .} "
                  "INSERT {?:channelUri nie:title ?:new_title} "
                  "DELETE {?:channelUri mfo:image ?image } WHERE {?:channelUri mfo:image ?image .} "
                  "INSERT {?:channelUri mfo:image ?:new_image} "
                  "DELETE {?:channelUri nie:contentLastModified ?updatedTime } "
                  "WHERE {?:channelUri nie:contentLastModified ?updatedTime } "
                  "INSERT {?:channelUri nie:contentLastModified ?:updatedTime } "
                  "DELETE {?:channelUri nie:comment ?contentUpdatedTime } "
                  "WHERE {?:channelUri nie:comment ?contentUpdatedTime } "
                  "INSERT {?:channelUri nie:comment ?:contentUpdatedTime } ",
                  {{"channelUri", QUrl(channel.uri())},
                   {"new_title", channel.title()},
                   {"new_image", channel.icon().localUrl()},
                   {"updatedTime", currentTimeText()},
                   {"contentUpdatedTime", channel.lastModifiedTime()}});
}

QSparqlQuery channelToEdit(const QString &channelUri)
{
    return select("SELECT ?channelUri WHERE { ?channelUri a mfo:FeedChannel ."
                  "FILTER((?channelUri = ?:channelUri)) . } ",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery linkOfChannel(const QString &channelUri)
{
    return select("SELECT ?l ?c WHERE { ?:channelUri nie:links ?l .?l nie:created ?c }",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery editLink(const QString &channelUri, const QString &oldLink, const QString &newLink,
                      const QDateTime &created)
{
    return insert(
        "DELETE {?:link nie:created ?c } WHERE { ?:link nie:created ?c } "
        "DELETE { ?:channelUri nie:links ?:link . ?:link a rdfs:Resource } "
        "INSERT { ?:new_link a nie:DataObject ; nie:created ?:created .?:channelUri nie:links ?:new_link .}",
        {{"link", QUrl::fromUserInput(oldLink)},
         {"new_link", QUrl::fromUserInput(newLink)},
         {"created", created},
         {"channelUri", QUrl(channelUri)}});
}

QSparqlQuery editTitle(const QString &channelUri, const QString &title)
{
    return insert("DELETE { ?:channelUri nie:title ?title } WHERE {?:channelUri nie:title ?title .} "
                  "INSERT {?:channelUri nie:title ?:new_title}",
                  {{"channelUri", QUrl(channelUri)}, {"new_title", title}});
}

// contract: changes nie:contentLastModified, not nie:comment. Stores have it so.
QSparqlQuery editLastModifiedTime(const QString &channelUri, const QString &time)
{
    return insert("DELETE {?:channelUri nie:contentLastModified ?lastModified } "
                  "WHERE {?:channelUri nie:contentLastModified ?lastModified .} "
                  "INSERT {?:channelUri nie:contentLastModified ?:time }",
                  {{"channelUri", QUrl(channelUri)}, {"time", time}});
}

QSparqlQuery channelToDelete(const QString &channelUri)
{
    return select("SELECT ?c ?l ?i WHERE {?c a mfo:FeedChannel; nie:links ?l . "
                  "OPTIONAL{?c mfo:image ?i.} FILTER ((?c = ?:channelUri))}",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery deleteChannel(const QString &channelUri, const QUrl &link)
{
    return remove("DELETE { ?:link a rdfs:Resource } WHERE { ?:link a nie:DataObject } "
                  "DELETE {?:channelUri a rdfs:Resource } WHERE {?:channelUri a mfo:FeedChannel }",
                  {{"channelUri", QUrl(channelUri)}, {"link", link}});
}

QSparqlQuery messageToDelete(const QString &messageUri, const QString &channelUri)
{
    return select("SELECT ?u  ?l WHERE {?u a mfo:FeedMessage; nie:links ?l FILTER ((?u = ?:msg)) . "
                  "OPTIONAL {?u nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel . "
                  "FILTER (( ?c != ?:channelUri )) . }FILTER (!bound(?c)) . }",
                  {{"msg", QUrl(messageUri)}, {"channelUri", QUrl(channelUri)}});
}

QSparqlQuery deleteMessage(const QString &messageUri, const QUrl &link)
{
    return remove("DELETE { ?:link a rdfs:Resource } WHERE { ?:link a nie:DataObject } "
                  "DELETE {?:messageUri a rdfs:Resource } WHERE {?:messageUri a mfo:FeedMessage}",
                  {{"messageUri", QUrl(messageUri)}, {"link", link}});
}

// contract: also selects messages of no channel. Hosts rely on this clean-up.
QSparqlQuery messagesToDelete(const QString &channelUri)
{
    return select("SELECT ?u WHERE {?u a mfo:FeedMessage. OPTIONAL {?u nie:isLogicalPartOf ?c . "
                  "?c a mfo:FeedChannel . FILTER (( ?c != ?:channelUri )) . }FILTER (!bound(?c)) . }",
                  {{"channelUri", QUrl(channelUri)}});
}

// contract: keeps the link's resource, unlike deleteMessage() of one message. Stores know the statement so.
QString deleteMessage(const QString &messageUri)
{
    return fillTemplate(
        QLatin1String(
            "DELETE {<%messageUri> nie:links ?l } WHERE {<%messageUri> a mfo:FeedMessage; nie:links ?l } "
            "DELETE {<%messageUri> a rdfs:Resource } WHERE {<%messageUri> a mfo:FeedMessage }"),
        {{QLatin1String("%messageUri"), messageUri}});
}

QSparqlQuery enclosuresToDelete(const QString &messageUri)
{
    return select("SELECT ?u  WHERE {?u a mfo:Enclosure; nie:isLogicalPartOf ?:messageUri. "
                  "OPTIONAL {?u nie:isLogicalPartOf ?c . ?c a mfo:FeedMessage . "
                  "FILTER (( ?c != ?:messageUri )) . }FILTER (!bound(?c)) . }",
                  {{"messageUri", QUrl(messageUri)}});
}

QSparqlQuery enclosureToDelete(const QUrl &enclosureUri)
{
    return select("SELECT ?u ?rl ?ll WHERE { ?u a mfo:Enclosure; mfo:remoteLink ?rl; mfo:localLink ?ll "
                  "FILTER (( ?u = ?:enclosureUri)) }",
                  {{"enclosureUri", enclosureUri}});
}

QString deleteEnclosure(const QString &enclosureUri)
{
    // contract: "?remlink" is not the "?remLink" of its pattern. Other programs know the text so.
    return fillTemplate(
        QLatin1String("DELETE {<%enclosureUri> mfo:remoteLink ?remlink } "
                      "WHERE {<%enclosureUri> mfo:remoteLink ?remLink } "
                      "DELETE {<%enclosureUri> mfo:localLink ?locLink } "
                      "WHERE {<%enclosureUri> mfo:localLink ?locLink } "
                      "DELETE {<%enclosureUri> a rdfs:Resource } WHERE {<%enclosureUri> a mfo:Enclosure } "),
        {{QLatin1String("%enclosureUri"), enclosureUri}});
}

QSparqlQuery deletion(const QString &text) { return QSparqlQuery(text, QSparqlQuery::DeleteStatement); }

QSparqlQuery channelImageFile(const QString &channelUri)
{
    return select("SELECT ?localLink WHERE { ?uri a mfo:Enclosure ."
                  "?uri nie:isLogicalPartOf ?:channelUri .?uri mfo:localLink ?localLink .}",
                  {{"channelUri", QUrl(channelUri)}});
}

QSparqlQuery deleteChannelImage(const QString &channelUri)
{
    QString update;
    for (const char *node : {"?localLink", "?remoteLink", "?uri"}) {
        update += QStringLiteral("DELETE {%1 a rdfs:Resource } WHERE {?uri a mfo:Enclosure ."
                                 "?uri nie:isLogicalPartOf ?:channelUri .?uri mfo:remoteLink ?remoteLink . "
                                 "?uri mfo:localLink ?localLink .} ")
                      .arg(QLatin1String(node));
    }
    QSparqlQuery query = deletion(update);
    query.bindValue(QStringLiteral("channelUri"), QUrl(channelUri));
    return query;
}

// contract: the image is bound as a text, not as a URL. Stores have it so.
QSparqlQuery channelsWithImage(const QString &image)
{
    return select("select ?u ?i where {?u a mfo:FeedChannel. ?u mfo:image ?i FILTER ((?i = ?:image)) }",
                  {{"image", image}});
}

// contract: does not find messages without a link. Other programs know the statement so.
QSparqlQuery deleteOrphanMessages()
{
    return deletion(
        QLatin1String("DELETE  { ?_links  a rdfs:Resource } WHERE { ?_feedMessage a mfo:FeedMessage . "
                      "?_feedMessage nie:links ?_links . OPTIONAL { ?_channel a mfo:FeedChannel . "
                      "?_feedMessage nie:isLogicalPartOf ?_channel .} FILTER(!bound(?_channel)) .} "
                      "DELETE  { ?_feedMessage  a rdfs:Resource } WHERE { ?_feedMessage a mfo:FeedMessage . "
                      "?_feedMessage nie:links ?_links . OPTIONAL { ?_channel a mfo:FeedChannel . "
                      "?_feedMessage nie:isLogicalPartOf ?_channel .} FILTER(!bound(?_channel)) . }"));
}

QSparqlQuery orphanEnclosures()
{
    return select(
        "SELECT ?_feedEnclosure ?_remoteLink ?_localLink WHERE { ?_feedEnclosure a mfo:Enclosure . "
        "?_feedEnclosure mfo:remoteLink ?_remoteLink . ?_feedEnclosure mfo:localLink ?_localLink . "
        "OPTIONAL { ?_message a mfo:FeedMessage .?_feedEnclosure nie:isLogicalPartOf ?_message .} ."
        "OPTIONAL { ?_channel a mfo:FeedChannel .?_feedEnclosure nie:isLogicalPartOf ?_channel . } ."
        "FILTER(!bound(?_message) && !bound(?_channel)) . }");
}

QSparqlQuery deleteOrphanEnclosures()
{
    QString update;
    for (const char *node : {"?_remoteLink", "?_localLink", "?_feedEnclosure"}) {
        update +=
            QStringLiteral(
                "DELETE  { %1  a rdfs:Resource } WHERE { ?_feedEnclosure a mfo:Enclosure . "
                "?_feedEnclosure mfo:remoteLink ?_remoteLink . ?_feedEnclosure mfo:localLink ?_localLink . "
                "OPTIONAL { ?_message a mfo:FeedMessage . ?_feedEnclosure nie:isLogicalPartOf ?_message .}. "
                "OPTIONAL {?_channel a mfo:FeedChannel . ?_feedEnclosure nie:isLogicalPartOf ?_channel. }. "
                "FILTER(!bound(?_message) && !bound(?_channel)) } ")
                .arg(QLatin1String(node));
    }
    return deletion(update);
}

} // namespace StoreStatements
