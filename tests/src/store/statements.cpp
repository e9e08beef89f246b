// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"

namespace {

QString iri(const QString &text) { return '<' + text + '>'; }

QString literal(const QString &text) { return '"' + text + '"'; }

QString word(bool value) { return value ? "true" : "false"; }

/// Returns \a text with \a value in the place of \a name.
QString bound(QString text, const QString &name, const QString &value)
{
    return text.replace("?:" + name, value);
}

QString bound(QString text, const std::initializer_list<QPair<QString, QString>> &values)
{
    for (const auto &[name, value] : values)
        text = bound(text, name, value);
    return text;
}

} // namespace

namespace Statements {

QString allChannels()
{
    return "select ?u ?t ?l ?n ?c ?v ?b where {?u a mfo:FeedChannel; . OPTIONAL{?u nie:title ?t.}. "
           "OPTIONAL { ?u nie:links ?l . }. OPTIONAL{?u nie:characterSet ?n. }. "
           "OPTIONAL {?u nie:comment ?c . }. OPTIONAL {?u nie:created ?v . }. "
           "OPTIONAL {?u nie:contentLastModified ?b . }}";
}

QString allChannelUrls() { return "select ?u { ?u a mfo:FeedChannel . }"; }

QString channelForUri(const QString &uri)
{
    return bound("select ?u ?t ?l ?n ?c ?v ?b where {?u a mfo:FeedChannel. OPTIONAL{?u nie:title ?t.}. "
                 "OPTIONAL { ?u nie:links ?l . }. OPTIONAL{?u nie:characterSet ?n . }. "
                 "OPTIONAL {?u nie:comment ?c . }. OPTIONAL {?u nie:created ?v . }. "
                 "OPTIONAL {?u nie:contentLastModified ?b . } FILTER ((?u = ?:channel_uri)) }",
                 "channel_uri", iri(uri));
}

QString channelType(const QString &uri)
{
    return bound(
        "select ?u ?t where {?u a mfo:FeedChannel; nie:characterSet ?t . FILTER (?u = ?:channel_uri) }",
        "channel_uri", iri(uri));
}

QString messagesForChannel(const QString &channelUri)
{
    return bound("SELECT ?_feedMessage ?_title ?_content ?_link ?_contentCreated ?_downloadedTime ?_tag "
                 "?_summary WHERE { ?_feedMessage a mfo:FeedMessage  . "
                 "?_feedMessage nie:isLogicalPartOf ?:channelUri . ?_feedMessage nie:title ?_title . "
                 "?_feedMessage nie:description ?_content . ?_feedMessage nie:subject ?_summary . "
                 "?_feedMessage nie:links ?_link . ?_feedMessage mfo:downloadedTime ?_downloadedTime ."
                 "OPTIONAL { ?_feedMessage nie:contentCreated ?_contentCreated . } "
                 "OPTIONAL { ?_feedMessage nao:hasTag ?_tag . } } ORDER BY ?_downloadedTime",
                 "channelUri", literal(channelUri));
}

QString enclosuresForMessage(const QString &messageUri)
{
    return bound("SELECT ?_enclosure ?_remLink ?_locLink ?_id  ?_size ?_default ?_optional ?_mimeType "
                 "WHERE { ?_enclosure a mfo:Enclosure;  nie:isLogicalPartOf ?:messageUri; "
                 "mfo:remoteLink ?_remLink; mfo:localLink ?_locLink; nie:identifier ?_id; "
                 "nie:contentSize ?_size; mfo:groupDefault ?_default; mfo:optional ?_optional. "
                 "OPTIONAL { ?_enclosure mfo:image ?_image. }"
                 "OPTIONAL { ?_enclosure nie:mimeType ?_mimeType. } }",
                 "messageUri", iri(messageUri));
}

QString enclosureForUri(const QString &uri)
{
    return bound("select ?u ?rl ?ll ?i ?s ?d ?o ?icon ?m where {?u a mfo:Enclosure. "
                 "OPTIONAL {?u mfo:remoteLink ?rl.} . OPTIONAL {?u mfo:localLink ?ll.} . "
                 "OPTIONAL {?u nie:identifier ?i.} . OPTIONAL {?u nie:contentSize ?s.}. "
                 "OPTIONAL {?u mfo:groupDefault ?d.}. OPTIONAL {?u mfo:optional ?o.}. "
                 "OPTIONAL {?u mfo:image ?icon.}. OPTIONAL {?u nie:mimeType ?m.} "
                 "FILTER (?u = ?:enclosure_uri)}",
                 "enclosure_uri", iri(uri));
}

QString allMessageUrls(const QString &channelUri)
{
    return bound("SELECT ?message WHERE {?message a mfo:FeedMessage; nie:isLogicalPartOf ?:channelUri. }",
                 "channelUri", iri(channelUri));
}

QString messageLinksOfChannel(const QString &channelUri)
{
    return bound("SELECT ?links WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                 "OPTIONAL {?u nie:links ?links .} }",
                 "channelUri", iri(channelUri));
}

QString latestPostPublishedTime(const QString &channelUri)
{
    return bound("SELECT ?pubDate WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                 "OPTIONAL {?u nie:contentCreated ?pubDate .} }ORDER BY DESC(?pubDate) LIMIT 1",
                 "channelUri", iri(channelUri));
}

QString channelLookup(const QString &link)
{
    return bound("SELECT ?l WHERE { ?channel a mfo:FeedChannel; nie:links ?l .FILTER(( ?l = ?:link)).  }",
                 "link", iri(link));
}

QString channelInsert(const FeedChannel &channel, const QString &link, const QString &urn)
{
    QString text = "INSERT { ?:link a nie:DataObject ; nie:created ?:current_date .?:channelUrl a "
                   "mfo:FeedChannel . ?:channelUrl nie:title ?:title .  ?:channelUrl nie:characterSet "
                   "?:type . ?:channelUrl mfo:image ?:new_image . ?:channelUrl nie:links ?:link . }";
    text = bound(text, "link", iri(link));
    text = bound(text, "current_date", literal("NOW"));
    text = bound(text, "channelUrl", iri(urn));
    text = bound(text, "title", literal(channel.title()));
    text = bound(text, "type", literal(channel.type()));
    return bound(text, "new_image", literal(channel.icon().localUrl()));
}

QString messageLookup(const QString &link)
{
    return bound("SELECT ?message ?l WHERE { ?message a mfo:FeedMessage; nie:links ?l .FILTER(( ?l = "
                 "?:link)).  } ",
                 "link", iri(link));
}

QString messageInsert(const FeedMessage &message, const QString &publishedDate, const QString &channelUri,
                      const QString &urn)
{
    QString text = QString("INSERT { <%1> a mfo:FeedMessage ; nie:isLogicalPartOf <%2>; nie:title %3; "
                           "nie:description %4; nie:subject %5 ; "
                           "mfo:downloadedTime \"NOWZ\"^^xsd:dateTime ")
                       .arg(urn, channelUri, literal(message.title()), literal(message.description()),
                            literal(message.summary()));
    if (!publishedDate.isEmpty())
        text += "; nie:contentCreated \"" + publishedDate + "\"^^xsd:dateTime ";
    if (!message.link().isEmpty())
        text += "; nie:links " + literal(message.link());
    return text + " } ";
}

QString association(const QString &link, const QString &channelUri)
{
    return QString("INSERT {?u a mfo:FeedMessage; nie:isLogicalPartOf <%1>} WHERE {?u nie:links <%2> }")
        .arg(channelUri, link);
}

QString enclosureLookup(const QString &remoteUrl)
{
    return bound("SELECT ?enclosureUri ?remLink WHERE { ?enclosureUri a mfo:Enclosure; mfo:remoteLink "
                 "?remLink . FILTER ((?remLink = ?:remLink)) } ",
                 "remLink", iri(remoteUrl));
}

QString enclosureInsert(const FeedEnclosure &enclosure, const QString &ownerUri, const QString &urn)
{
    return QString("INSERT {<%1> a mfo:Enclosure; mfo:remoteLink <%2> ; mfo:localLink <%3>; "
                   "mfo:optional %4; nie:contentSize %5; nie:mimeType \"%6\"; nie:identifier %7;"
                   "mfo:groupDefault %8; mfo:image \"%9\"; nie:isLogicalPartOf <")
               .arg(urn, enclosure.remoteUrl(), enclosure.localUrl(),
                    word(enclosure.type() != FeedEnclosure::Essential), QString::number(enclosure.length()),
                    enclosure.mimeType(), QString::number(enclosure.groupId()), word(enclosure.isDefault()),
                    enclosure.typeIcon())
        + ownerUri + "> } ";
}

QString enclosureLink(const QString &enclosureUri, const QString &ownerUri)
{
    return QString("INSERT { <%1> a mfo:Enclosure; nie:isLogicalPartOf <%2> } ").arg(enclosureUri, ownerUri);
}

QString enclosureToUpdate(const QString &remoteUrl)
{
    return bound("SELECT ?u WHERE {?u a mfo:Enclosure; mfo:remoteLink ?:remLink }", "remLink",
                 iri(remoteUrl));
}

QString enclosureUpdate(const FeedEnclosure &enclosure, const QString &uri)
{
    QString text = "DELETE {?:enclosureUri nie:mimeType ?mime } WHERE {?:enclosureUri nie:mimeType ?mime } "
                   "INSERT {?:enclosureUri nie:mimeType ?:mime } "
                   "DELETE {?:enclosureUri nie:contentSize ?size} WHERE {?:enclosureUri nie:contentSize "
                   "?size} INSERT {?:enclosureUri nie:contentSize ?:size} "
                   "DELETE {?:enclosureUri mfo:image ?icon} WHERE {?:enclosureUri mfo:image ?icon} "
                   "INSERT {?:enclosureUri mfo:image ?:icon} ";
    text = bound(text, "enclosureUri", iri(uri));
    text = bound(text, "mime", literal(enclosure.mimeType()));
    text = bound(text, "size", QString::number(enclosure.length()));
    return bound(text, "icon", literal(enclosure.typeIcon()));
}

QString deletableMessageCount(const QString &channelUri)
{
    return bound("SELECT COUNT(?u) WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri.  "
                 "OPTIONAL {?u nao:hasTag ?tag . FILTER((?tag = nao:predefined-tag-favorite)) .} "
                 "FILTER(!BOUND(?tag)) .} ",
                 {{"channelUri", iri(channelUri)}});
}

QString deletableMessages(const QString &channelUri, int limit)
{
    return bound("SELECT ?u WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf ?:channelUri. ?u "
                 "mfo:downloadedTime ?downloadedTime .  OPTIONAL {?u nao:hasTag ?tag . FILTER((?tag = "
                 "nao:predefined-tag-favorite)) .} OPTIONAL { ?u nie:contentCreated ?pubDate . } "
                 "FILTER(!BOUND(?tag)) .} ORDER BY ?pubDate ?downloadedTime LIMIT ?:limit",
                 {{"channelUri", iri(channelUri)}, {"limit", QString::number(limit)}});
}

QString channelToUpdate(const QString &channelUri)
{
    return bound("SELECT ?channel WHERE { ?channel a mfo:FeedChannel . FILTER(( ?channel = "
                 "?:channelUri)).  }",
                 {{"channelUri", iri(channelUri)}});
}

QString channelUpdate(const FeedChannel &channel)
{
    return bound("DELETE { ?:channelUri nie:title ?title } WHERE {?:channelUri nie:title ?title .} "
                 "INSERT {?:channelUri nie:title ?:new_title} DELETE {?:channelUri mfo:image ?image } "
                 "WHERE {?:channelUri mfo:image ?image .} INSERT {?:channelUri mfo:image ?:new_image} "
                 "DELETE {?:channelUri nie:contentLastModified ?updatedTime } WHERE {?:channelUri "
                 "nie:contentLastModified ?updatedTime } INSERT {?:channelUri nie:contentLastModified "
                 "?:updatedTime } DELETE {?:channelUri nie:comment ?contentUpdatedTime } WHERE "
                 "{?:channelUri nie:comment ?contentUpdatedTime } INSERT {?:channelUri nie:comment "
                 "?:contentUpdatedTime } ",
                 {{"channelUri", iri(channel.uri())},
                  {"new_title", literal(channel.title())},
                  {"new_image", literal(channel.icon().localUrl())},
                  {"updatedTime", literal("NOW")},
                  {"contentUpdatedTime", literal(channel.lastModifiedTime())}});
}

QString channelToEdit(const QString &channelUri)
{
    return bound("SELECT ?channelUri WHERE { ?channelUri a mfo:FeedChannel .FILTER((?channelUri = "
                 "?:channelUri)) . } ",
                 {{"channelUri", iri(channelUri)}});
}

QString linkOfChannel(const QString &channelUri)
{
    return bound("SELECT ?l ?c WHERE { ?:channelUri nie:links ?l .?l nie:created ?c }",
                 {{"channelUri", iri(channelUri)}});
}

QString linkEdit(const QString &channelUri, const QString &oldLink, const QString &newLink,
                 const QString &created)
{
    return bound("DELETE {?:link nie:created ?c } WHERE { ?:link nie:created ?c } DELETE { ?:channelUri "
                 "nie:links ?:link . ?:link a rdfs:Resource } INSERT { ?:new_link a nie:DataObject ; "
                 "nie:created ?:created .?:channelUri nie:links ?:new_link .}",
                 {{"link", iri(oldLink)},
                  {"new_link", iri(newLink)},
                  {"created", literal(created) + "^^xsd:dateTime"},
                  {"channelUri", iri(channelUri)}});
}

QString titleEdit(const QString &channelUri, const QString &title)
{
    return bound("DELETE { ?:channelUri nie:title ?title } WHERE {?:channelUri nie:title ?title .} "
                 "INSERT {?:channelUri nie:title ?:new_title}",
                 {{"channelUri", iri(channelUri)}, {"new_title", literal(title)}});
}

QString lastModifiedTimeEdit(const QString &channelUri, const QString &time)
{
    return bound("DELETE {?:channelUri nie:contentLastModified ?lastModified } WHERE {?:channelUri "
                 "nie:contentLastModified ?lastModified .} INSERT {?:channelUri nie:contentLastModified "
                 "?:time }",
                 {{"channelUri", iri(channelUri)}, {"time", literal(time)}});
}

QString channelToDelete(const QString &channelUri)
{
    return bound("SELECT ?c ?l ?i WHERE {?c a mfo:FeedChannel; nie:links ?l . OPTIONAL{?c mfo:image "
                 "?i.} FILTER ((?c = ?:channelUri))}",
                 {{"channelUri", iri(channelUri)}});
}

QString channelDeletion(const QString &channelUri, const QString &link)
{
    return bound("DELETE { ?:link a rdfs:Resource } WHERE { ?:link a nie:DataObject } DELETE "
                 "{?:channelUri a rdfs:Resource } WHERE {?:channelUri a mfo:FeedChannel }",
                 {{"channelUri", iri(channelUri)}, {"link", iri(link)}});
}

QString messageToDelete(const QString &messageUri, const QString &channelUri)
{
    return bound("SELECT ?u  ?l WHERE {?u a mfo:FeedMessage; nie:links ?l FILTER ((?u = ?:msg)) . "
                 "OPTIONAL {?u nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel . FILTER (( ?c != "
                 "?:channelUri )) . }FILTER (!bound(?c)) . }",
                 {{"msg", iri(messageUri)}, {"channelUri", iri(channelUri)}});
}

QString messageDeletion(const QString &messageUri, const QString &link)
{
    return bound("DELETE { ?:link a rdfs:Resource } WHERE { ?:link a nie:DataObject } DELETE "
                 "{?:messageUri a rdfs:Resource } WHERE {?:messageUri a mfo:FeedMessage}",
                 {{"messageUri", iri(messageUri)}, {"link", iri(link)}});
}

QString messagesToDelete(const QString &channelUri)
{
    return bound("SELECT ?u WHERE {?u a mfo:FeedMessage. OPTIONAL {?u nie:isLogicalPartOf ?c . ?c a "
                 "mfo:FeedChannel . FILTER (( ?c != ?:channelUri )) . }FILTER (!bound(?c)) . }",
                 {{"channelUri", iri(channelUri)}});
}

QString messagePiece(const QString &messageUri)
{
    return QString("DELETE {<%messageUri> nie:links ?l } WHERE {<%messageUri> a mfo:FeedMessage; "
                   "nie:links ?l } DELETE {<%messageUri> a rdfs:Resource } WHERE {<%messageUri> a "
                   "mfo:FeedMessage }")
        .replace("%messageUri", messageUri);
}

QString enclosuresToDelete(const QString &messageUri)
{
    return bound("SELECT ?u  WHERE {?u a mfo:Enclosure; nie:isLogicalPartOf ?:messageUri. OPTIONAL {?u "
                 "nie:isLogicalPartOf ?c . ?c a mfo:FeedMessage . FILTER (( ?c != ?:messageUri )) . "
                 "}FILTER (!bound(?c)) . }",
                 {{"messageUri", iri(messageUri)}});
}

QString enclosureToDelete(const QString &enclosureUri)
{
    return bound("SELECT ?u ?rl ?ll WHERE { ?u a mfo:Enclosure; mfo:remoteLink ?rl; mfo:localLink ?ll "
                 "FILTER (( ?u = ?:enclosureUri)) }",
                 {{"enclosureUri", iri(enclosureUri)}});
}

QString enclosurePiece(const QString &enclosureUri)
{
    return QString("DELETE {<%enclosureUri> mfo:remoteLink ?remlink } WHERE {<%enclosureUri> "
                   "mfo:remoteLink ?remLink } DELETE {<%enclosureUri> mfo:localLink ?locLink } WHERE "
                   "{<%enclosureUri> mfo:localLink ?locLink } DELETE {<%enclosureUri> a rdfs:Resource } "
                   "WHERE {<%enclosureUri> a mfo:Enclosure } ")
        .replace("%enclosureUri", enclosureUri);
}

QString imageFile(const QString &channelUri)
{
    return bound("SELECT ?localLink WHERE { ?uri a mfo:Enclosure .?uri nie:isLogicalPartOf ?:channelUri "
                 ".?uri mfo:localLink ?localLink .}",
                 {{"channelUri", iri(channelUri)}});
}

QString imageDeletion(const QString &channelUri)
{
    return bound("DELETE {?localLink a rdfs:Resource } WHERE {?uri a mfo:Enclosure .?uri "
                 "nie:isLogicalPartOf ?:channelUri .?uri mfo:remoteLink ?remoteLink . ?uri "
                 "mfo:localLink ?localLink .} DELETE {?remoteLink a rdfs:Resource } WHERE {?uri a "
                 "mfo:Enclosure .?uri nie:isLogicalPartOf ?:channelUri .?uri mfo:remoteLink ?remoteLink "
                 ". ?uri mfo:localLink ?localLink .} DELETE {?uri a rdfs:Resource } WHERE {?uri a "
                 "mfo:Enclosure .?uri nie:isLogicalPartOf ?:channelUri .?uri mfo:remoteLink ?remoteLink "
                 ". ?uri mfo:localLink ?localLink .} ",
                 {{"channelUri", iri(channelUri)}});
}

QString imageUsers(const QString &image)
{
    return bound("select ?u ?i where {?u a mfo:FeedChannel. ?u mfo:image ?i FILTER ((?i = ?:image)) }",
                 {{"image", literal(image)}});
}

QString orphanMessageDeletion()
{
    return "DELETE  { ?_links  a rdfs:Resource } WHERE { ?_feedMessage a mfo:FeedMessage . "
           "?_feedMessage nie:links ?_links . OPTIONAL { ?_channel a mfo:FeedChannel . ?_feedMessage "
           "nie:isLogicalPartOf ?_channel .} FILTER(!bound(?_channel)) .} DELETE  { ?_feedMessage  a "
           "rdfs:Resource } WHERE { ?_feedMessage a mfo:FeedMessage . ?_feedMessage nie:links ?_links . "
           "OPTIONAL { ?_channel a mfo:FeedChannel . ?_feedMessage nie:isLogicalPartOf ?_channel .} "
           "FILTER(!bound(?_channel)) . }";
}

QString orphanEnclosures()
{
    return "SELECT ?_feedEnclosure ?_remoteLink ?_localLink WHERE { ?_feedEnclosure a mfo:Enclosure . "
           "?_feedEnclosure mfo:remoteLink ?_remoteLink . ?_feedEnclosure mfo:localLink ?_localLink . "
           "OPTIONAL { ?_message a mfo:FeedMessage .?_feedEnclosure nie:isLogicalPartOf ?_message .} "
           ".OPTIONAL { ?_channel a mfo:FeedChannel .?_feedEnclosure nie:isLogicalPartOf ?_channel . } "
           ".FILTER(!bound(?_message) && !bound(?_channel)) . }";
}

QString orphanEnclosureDeletion()
{
    return "DELETE  { ?_remoteLink  a rdfs:Resource } WHERE { ?_feedEnclosure a mfo:Enclosure . "
           "?_feedEnclosure mfo:remoteLink ?_remoteLink . ?_feedEnclosure mfo:localLink ?_localLink . "
           "OPTIONAL { ?_message a mfo:FeedMessage . ?_feedEnclosure nie:isLogicalPartOf ?_message .}. "
           "OPTIONAL {?_channel a mfo:FeedChannel . ?_feedEnclosure nie:isLogicalPartOf ?_channel. }. "
           "FILTER(!bound(?_message) && !bound(?_channel)) } DELETE  { ?_localLink  a rdfs:Resource } "
           "WHERE { ?_feedEnclosure a mfo:Enclosure . ?_feedEnclosure mfo:remoteLink ?_remoteLink . "
           "?_feedEnclosure mfo:localLink ?_localLink . OPTIONAL { ?_message a mfo:FeedMessage . "
           "?_feedEnclosure nie:isLogicalPartOf ?_message .}. OPTIONAL {?_channel a mfo:FeedChannel . "
           "?_feedEnclosure nie:isLogicalPartOf ?_channel. }. FILTER(!bound(?_message) && "
           "!bound(?_channel)) } DELETE  { ?_feedEnclosure  a rdfs:Resource } WHERE { ?_feedEnclosure a "
           "mfo:Enclosure . ?_feedEnclosure mfo:remoteLink ?_remoteLink . ?_feedEnclosure mfo:localLink "
           "?_localLink . OPTIONAL { ?_message a mfo:FeedMessage . ?_feedEnclosure nie:isLogicalPartOf "
           "?_message .}. OPTIONAL {?_channel a mfo:FeedChannel . ?_feedEnclosure nie:isLogicalPartOf "
           "?_channel. }. FILTER(!bound(?_message) && !bound(?_channel)) } ";
}

} // namespace Statements
