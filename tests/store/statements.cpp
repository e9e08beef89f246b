// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"

namespace {

QString iri(const QString &text) { return '<' + text + '>'; }

QString literal(const QString &text) { return '"' + text + '"'; }

QString word(bool value) { return value ? "true" : "false"; }

/// \a text with what is bound to \a name.
QString bound(QString text, const QString &name, const QString &value)
{
    return text.replace("?:" + name, value);
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

} // namespace Statements
