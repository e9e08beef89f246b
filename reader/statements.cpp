// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements_p.h"

#include <QDateTime>
#include <QSparqlBinding>
#include <QUrl>

#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <algorithm>

namespace Tidel::Statements {

namespace {

using Values = std::initializer_list<QPair<const char *, QVariant>>;

QSparqlQuery bound(const QString &text, QSparqlQuery::StatementType type, const Values &values)
{
    QSparqlQuery query(text, type);
    for (const auto &[name, value] : values)
        query.bindValue(QString::fromLatin1(name), value);
    return query;
}

QSparqlQuery select(const QString &text, const Values &values = {})
{
    return bound(text, QSparqlQuery::SelectStatement, values);
}

QString piece(const QString &text, const Values &values)
{
    return bound(text, QSparqlQuery::InsertStatement, values).preparedQueryText();
}

/// "VALUES ?variable { ... } ": \a variable is one of the resources \a addresses.
QString valuesOf(const char *variable, const QStringList &addresses)
{
    QString text = QLatin1String("VALUES ?") + QLatin1String(variable) + QLatin1String(" { ");
    for (const QString &address : addresses)
        text += iri(address) + QLatin1Char(' ');
    return text + QLatin1String("} ");
}

/// Makes the store refuse the update if \a pattern, which names ?x, matches anything. The property has at
/// most one value. Tracker reads the pattern in the transaction that it writes in.
QString refusalIf(const QString &pattern)
{
    return QLatin1String("INSERT { ?x nie:comment 'known' , 'new' } WHERE { ") + pattern
        + QLatin1String("} ");
}

QString term(const QVariant &value) { return QSparqlBinding(QString(), value).toString(); }

/// "FILTER(?variable IN (...)) ". For texts this is fast, while VALUES makes Tracker read all of them.
QString isIn(const char *variable, const QStringList &terms)
{
    return QLatin1String("FILTER(?") + QLatin1String(variable) + QLatin1String(" IN (")
        + terms.join(QLatin1String(", ")) + QLatin1String(")) ");
}

QStringList each(const QStringList &texts, QString (*toTerm)(const QString &))
{
    QStringList terms;
    for (const QString &text : texts)
        terms.append(toTerm(text));
    return terms;
}

QString detail(const QString &name) { return QLatin1String("tidel:") + name; }

/// The properties and values \a values as they follow a subject.
QString valuesOfDetails(const QVector<QPair<QString, QVariant>> &values)
{
    QStringList pairs;
    for (const auto &[name, value] : values)
        pairs.append(QLatin1Char(' ') + detail(name) + QLatin1Char(' ') + term(value));
    return pairs.join(QLatin1String(" ;"));
}

/// "?s ?p ?v" where ?s is one of \a uris and ?p one of \a properties.
QString valuesOfAll(const QStringList &uris, const QStringList &properties)
{
    return QLatin1String("WHERE { ?s ?p ?v ") + isIn("s", each(uris, iri)) + isIn("p", properties)
        + QLatin1String("} ");
}

/// " WHERE { ... }": a row for each value of the properties \a names of \a subject, each in a column of its
/// own.
QString alternatives(const QString &subject, const QStringList &names)
{
    QStringList branches;
    for (const QString &name : names)
        branches.append(QLatin1String("{ ") + subject + QLatin1Char(' ') + detail(name) + QLatin1String(" ?")
                        + name + QLatin1String(" } "));
    return QLatin1String(" WHERE { ") + branches.join(QLatin1String("UNION ")) + QLatin1Char('}');
}

/// Replaces the values of \a property of \a subject by \a value, or deletes them if it is empty.
QString replacement(const QString &subject, const char *property, const QString &value)
{
    const QString values = iri(subject) + QLatin1Char(' ') + QLatin1String(property) + QLatin1Char(' ');
    const QString deletion = QLatin1String("DELETE { ") + values + QLatin1String("?value } WHERE { ") + values
        + QLatin1String("?value } ");
    return value.isEmpty() ? deletion
                           : deletion + QLatin1String("INSERT { ") + values + value + QLatin1String(" } ");
}

/// Replaces the values of properties of the channel by one text each, or deletes them if it is empty. One
/// operation costs less than one for each property, and does nothing if there is no such channel.
QString replacements(const QString &channelUri, const QVector<QPair<QString, QString>> &texts)
{
    const QString channel = iri(channelUri) + QLatin1Char(' ');
    QString deletion;
    QString insertion;
    QString pattern = channel + QLatin1String("a mfo:FeedChannel ");
    for (const auto &[property, text] : texts) {
        const QString name = channel + property + QLatin1Char(' ');
        const QString value = name + QLatin1Char('?') + property.section(QLatin1Char(':'), 1);
        deletion += value + QLatin1String(" . ");
        pattern += QLatin1String("OPTIONAL { ") + value + QLatin1String(" } ");
        if (!text.isEmpty())
            insertion += name + literal(text) + QLatin1String(" . ");
    }
    return QLatin1String("DELETE { ") + deletion + QLatin1String("} INSERT { ") + insertion
        + QLatin1String("} WHERE { ") + pattern + QLatin1String("} ");
}

const QString enclosureColumns =
    QStringLiteral("SELECT ?e ?remote ?local ?group ?size ?default ?optional ?icon ?type WHERE { %1 "
                   "OPTIONAL { ?e mfo:remoteLink ?remote } OPTIONAL { ?e mfo:localLink ?local } "
                   "OPTIONAL { ?e nie:identifier ?group } OPTIONAL { ?e nie:contentSize ?size } "
                   "OPTIONAL { ?e mfo:groupDefault ?default } OPTIONAL { ?e mfo:optional ?optional } "
                   "OPTIONAL { ?e mfo:image ?icon } OPTIONAL { ?e nie:mimeType ?type } }");

QString timeTerm(const QDateTime &time)
{
    return QLatin1Char('"') + time.toUTC().toString(Qt::ISODateWithMs) + QLatin1String("\"^^xsd:dateTime");
}

/// The local time of \a time, labelled as UTC.
QDateTime localAsUtc(const QDateTime &time)
{
    const QDateTime local = time.toLocalTime();
    return QDateTime(local.date(), local.time(), Qt::UTC);
}

/// Favorites are marked at any time, so that this stands in each statement that chooses or drops messages.
const QString isNoFavorite =
    QStringLiteral("FILTER NOT EXISTS { ?m nao:hasTag nao:predefined-tag-favorite } ");

/// Returns true if \a address certainly is a URI that createUrn() has made; otherwise returns false.
bool isUrn(const QString &address)
{
    const QLatin1String scheme("urn:uuid:");
    return address.startsWith(scheme)
        && std::all_of(address.begin() + scheme.size(), address.end(), [](QChar c) {
               return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || c == u'-';
           });
}

QString isNot(Spared spared)
{
    switch (spared) {
    case Spared::Favorites: return isNoFavorite;
    case Spared::FavoritesAndUnread: return QLatin1String("; tidel:readTime ?read ") + isNoFavorite;
    default: return {};
    }
}

/// "FILTER(...) ", which ?published, or if there is none ?downloaded, passes if it is before \a time.
QString isBefore(const QDateTime &time)
{
    // The time of download is local time labelled as UTC.
    return QLatin1String("FILTER(?published < ") + timeTerm(time)
        + QLatin1String(" || (!bound(?published) && ?downloaded < ") + timeTerm(localAsUtc(time))
        + QLatin1String(")) ");
}

} // namespace

// contract: the store holds local times without their zone, and the time of download labelled as UTC.
QString localTimeText() { return QDateTime::currentDateTime().toString(Qt::ISODate); }

const QString droppedLink = QStringLiteral("droppedLink");
const QString droppedKey = QStringLiteral("droppedKey");
const QString folder = QStringLiteral("folder");
const QString interval = QStringLiteral("interval");
const QString retention = QStringLiteral("retention");
const QString everyChannel = QStringLiteral("urn:tidel:every-channel");
const QString website = QStringLiteral("website");
const QString itemKey = QStringLiteral("itemKey");
const QString digest = QStringLiteral("digest");
const QString earlierVersionsName = QStringLiteral("earlierVersions");

QString literal(const QString &text) { return QSparqlBinding(QString(), text).toString(); }

QString iri(const QString &address)
{
    // QUrl leaves the URIs of the store as they are, which takes long to find out.
    return isUrn(address) ? QLatin1Char('<') + address + QLatin1Char('>')
                          : QSparqlBinding(QString(), QUrl(address)).toString();
}

QSparqlQuery update(const QString &text) { return QSparqlQuery(text, QSparqlQuery::InsertStatement); }

QSparqlQuery details(const QStringList &uris, const QStringList &names)
{
    return select(QLatin1String("SELECT ?s ?p ?v ") + valuesOfAll(uris, each(names, detail)));
}

// Tracker makes texts of a column of several types. It looks at every property for a variable one.
QSparqlQuery detailsOf(const QString &uri, const QStringList &names)
{
    return select(QLatin1String("SELECT ?") + names.join(QLatin1String(" ?"))
                      + alternatives(QStringLiteral("?:uri"), names),
                  {{"uri", QUrl(uri)}});
}

QSparqlQuery detailsOfChannels(const QStringList &names)
{
    return select(QLatin1String("SELECT ?s ?") + names.join(QLatin1String(" ?"))
                  + alternatives(QStringLiteral("?s"), names));
}

QSparqlQuery everyDetail(const QString &name)
{
    return select(QLatin1String("SELECT ?s ?v WHERE { ?s ") + detail(name) + QLatin1String(" ?v }"));
}

QString detailName(const QString &property) { return property.section(QLatin1Char('#'), -1); }

QString insertDetails(const QString &uri, const QVector<QPair<QString, QVariant>> &values)
{
    return values.isEmpty()
        ? QString()
        : QLatin1String("INSERT DATA { ") + iri(uri) + valuesOfDetails(values) + QLatin1String(" } ");
}

QString deleteDetails(const QStringList &uris, const QStringList &names)
{
    return QLatin1String("DELETE { ?s ?p ?v } ") + valuesOfAll(uris, each(names, detail));
}

// An OPTIONAL within the one of the link would make Tracker read the links of all messages.
QSparqlQuery channels()
{
    return select(
        QStringLiteral("SELECT ?c ?title ?link ?type ?modified ?subscribed ?updated WHERE { "
                       "?c a mfo:FeedChannel OPTIONAL { ?c nie:title ?title } "
                       "OPTIONAL { ?c nie:links ?link } "
                       "OPTIONAL { ?link nie:created ?subscribed FILTER(bound(?link)) } "
                       "OPTIONAL { ?c nie:characterSet ?type } OPTIONAL { ?c nie:comment ?modified } "
                       "OPTIONAL { ?c nie:contentLastModified ?updated } }"));
}

QSparqlQuery partCounts()
{
    return select(QStringLiteral("SELECT ?c (COUNT(*) AS ?n) WHERE { ?c a mfo:FeedChannel . "
                                 "?x nie:isLogicalPartOf ?c } GROUP BY ?c"));
}

QSparqlQuery imageCounts()
{
    return select(QStringLiteral("SELECT ?c (COUNT(*) AS ?n) WHERE { ?c a mfo:FeedChannel . "
                                 "?x a mfo:Enclosure ; nie:isLogicalPartOf ?c } GROUP BY ?c"));
}

QSparqlQuery imagesOfChannels()
{
    return select(
        QStringLiteral("SELECT ?c ?remote ?local WHERE { "
                       "?x a mfo:Enclosure ; nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel "
                       "OPTIONAL { ?x mfo:remoteLink ?remote } OPTIONAL { ?x mfo:localLink ?local } }"));
}

QSparqlQuery channelWithLink(const QString &link)
{
    return select(QStringLiteral("SELECT ?c WHERE { ?c a mfo:FeedChannel ; nie:links ?:link }"),
                  {{"link", QUrl(link)}});
}

QSparqlQuery titleOfLink(const QString &link)
{
    return select(QStringLiteral("SELECT ?title WHERE { ?c a mfo:FeedChannel ; nie:links ?:link "
                                 "OPTIONAL { ?c nie:title ?title } }"),
                  {{"link", QUrl(link)}});
}

QSparqlQuery linksOfChannels(const QStringList &links)
{
    return select(QLatin1String("SELECT ?link WHERE { ") + valuesOf("link", links)
                  + QLatin1String("?c nie:links ?link ; a mfo:FeedChannel }"));
}

QString insertChannel(const FeedChannel &channel, const QString &uri)
{
    return refusalIf(QLatin1String("?x a mfo:FeedChannel ; nie:links ") + iri(channel.link())
                     + QLatin1Char(' '))
        + piece(QStringLiteral("INSERT { ?:link a nie:DataObject ; nie:created ?:now . "
                               "?:channel a mfo:FeedChannel ; nie:title ?:title ; nie:characterSet ?:type ; "
                               "mfo:image ?:image ; nie:links ?:link } "),
                {{"link", QUrl(channel.link())},
                 {"now", localTimeText()},
                 {"channel", QUrl(uri)},
                 {"title", channel.title()},
                 {"type", channel.type()},
                 {"image", channel.icon().localUrl()}});
}

QString replaceTitle(const QString &channelUri, const QString &title)
{
    return replacement(channelUri, "nie:title", literal(title));
}

QString replaceType(const QString &channelUri, const QString &type)
{
    return replacement(channelUri, "nie:characterSet", literal(type));
}

QString replaceFolder(const QString &channelUri, const QString &path)
{
    return replacement(channelUri, "tidel:folder", path.isEmpty() ? QString() : literal(path));
}

QString forgetValidators(const QString &channelUri)
{
    return replacement(channelUri, "tidel:entityTag", QString())
        + replacement(channelUri, "tidel:lastModified", QString());
}

QString replaceLink(const QString &channelUri, const QString &oldLink, const QString &newLink)
{
    return forgetValidators(channelUri)
        + piece(QStringLiteral(
                    "INSERT { ?:channel nie:identifier ?:first } WHERE { ?:channel a mfo:FeedChannel "
                    "FILTER NOT EXISTS { ?:channel nie:identifier ?known } } "
                    "INSERT { ?:new a nie:DataObject ; nie:created ?time } WHERE { ?:old nie:created ?time } "
                    "DELETE { ?:old a rdfs:Resource } WHERE { ?:old a nie:DataObject } "
                    "DELETE { ?:channel nie:links ?:old } INSERT { ?:channel nie:links ?:new } "),
                {{"channel", QUrl(channelUri)},
                 {"first", oldLink},
                 {"old", QUrl(oldLink)},
                 {"new", QUrl(newLink)}});
}

QString deleteChannel(const QString &channelUri, const QString &link)
{
    return piece(QStringLiteral("DELETE { ?:link a rdfs:Resource } WHERE { ?:link a nie:DataObject } "
                                "DELETE { ?part nie:isLogicalPartOf ?:channel } "
                                "WHERE { ?part nie:isLogicalPartOf ?:channel } "),
                 {{"link", QUrl(link)}, {"channel", QUrl(channelUri)}})
        + deleteResources({channelUri});
}

QSparqlQuery feedState(const QString &channelUri)
{
    return select(QStringLiteral("SELECT ?link ?first ?tag ?modified ?type ?error WHERE { "
                                 "?:channel a mfo:FeedChannel ; "
                                 "nie:links ?link OPTIONAL { ?:channel nie:identifier ?first } "
                                 "OPTIONAL { ?:channel tidel:entityTag ?tag } "
                                 "OPTIONAL { ?:channel tidel:lastModified ?modified } "
                                 "OPTIONAL { ?:channel nie:characterSet ?type } "
                                 "OPTIONAL { ?:channel tidel:error ?error } }"),
                  {{"channel", QUrl(channelUri)}});
}

QSparqlQuery itemNote(const QString &channelUri)
{
    return select(
        QStringLiteral("SELECT ?parts ?note ?updated WHERE { ?:channel a mfo:FeedChannel "
                       "OPTIONAL { ?:channel tidel:itemDigests ?note } "
                       "OPTIONAL { ?:channel nie:contentLastModified ?updated } "
                       "{ SELECT (COUNT(?part) AS ?parts) WHERE { ?part nie:isLogicalPartOf ?:channel } } }"),
        {{"channel", QUrl(channelUri)}});
}

QString noteReading(const QString &channelUri, const QString &entityTag, const QString &lastModified,
                    const QString &time, const QString &items)
{
    return replacements(channelUri,
                        {{"tidel:entityTag", entityTag},
                         {"tidel:lastModified", lastModified},
                         {"nie:comment", lastModified},
                         {"nie:contentLastModified", time},
                         {"tidel:itemDigests", items}});
}

QString forgetItemNote(const QString &channelUri)
{
    return replacement(channelUri, "tidel:itemDigests", QString());
}

QString replaceNotes(const QString &channelUri, const QStringList &names,
                     const QVector<QPair<QString, QVariant>> &values)
{
    const QString insertion = QLatin1String("INSERT { ") + iri(channelUri) + valuesOfDetails(values)
        + QLatin1String(" } WHERE { ") + iri(channelUri) + QLatin1String(" a mfo:FeedChannel } ");
    return deleteDetails({channelUri}, names) + (values.isEmpty() ? QString() : insertion);
}

QString replaceInterval(const QString &channelUri, int seconds)
{
    return replacement(channelUri, "tidel:notBefore", QString())
        + replacement(channelUri, "tidel:interval", seconds == 0 ? QString() : term(seconds));
}

QString deleteDropped(const QString &channelUri, const QString &name, const QStringList &values)
{
    return QLatin1String("DELETE DATA { ") + iri(channelUri) + QLatin1Char(' ') + detail(name)
        + QLatin1Char(' ') + each(values, literal).join(QLatin1String(", ")) + QLatin1String(" } ");
}

namespace {

/// The columns of queries for whole messages.
const QString wholeMessages =
    QStringLiteral("SELECT ?m ?title ?text ?link ?published ?downloaded "
                   "(EXISTS { ?m nao:hasTag nao:predefined-tag-favorite } AS ?isFavorite) ?summary WHERE { ");

} // namespace

QSparqlQuery messagesOf(const QString &channelUri)
{
    return select(
        wholeMessages
            + QLatin1String("?m a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel ; nie:title ?title ; "
                            "nie:description ?text ; nie:subject ?summary ; nie:links ?link ; "
                            "mfo:downloadedTime ?downloaded OPTIONAL { ?m nie:contentCreated ?published } } "
                            "ORDER BY ?downloaded"),
        {{"channel", QUrl(channelUri)}});
}

QSparqlQuery messageInFull(const QString &messageUri)
{
    return select(
        wholeMessages
            + QLatin1String("?m a mfo:FeedMessage FILTER(?m = ?:message) OPTIONAL { ?m nie:title ?title } "
                            "OPTIONAL { ?m nie:description ?text } OPTIONAL { ?m nie:subject ?summary } "
                            "OPTIONAL { ?m nie:links ?link } OPTIONAL { ?m mfo:downloadedTime ?downloaded } "
                            "OPTIONAL { ?m nie:contentCreated ?published } } LIMIT 1"),
        {{"message", QUrl(messageUri)}});
}

QSparqlQuery channelTitlesOf(const QString &messageUri)
{
    return select(QStringLiteral("SELECT ?title WHERE { ?:message nie:isLogicalPartOf ?c . "
                                 "?c a mfo:FeedChannel ; nie:title ?title } ORDER BY ?title"),
                  {{"message", QUrl(messageUri)}});
}

QSparqlQuery channelUrisOf(const QString &messageUri)
{
    return select(QStringLiteral("SELECT ?c WHERE { ?:message nie:isLogicalPartOf ?c . "
                                 "?c a mfo:FeedChannel ; nie:title ?title } ORDER BY ?title"),
                  {{"message", QUrl(messageUri)}});
}

QSparqlQuery messageUrisOf(const QString &channelUri, int limit)
{
    return select(QStringLiteral("SELECT ?m WHERE { ?m a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel } "
                                 "LIMIT ?:limit"),
                  {{"channel", QUrl(channelUri)}, {"limit", limit}});
}

QSparqlQuery messageWithLink(const QUrl &address)
{
    return select(QStringLiteral("SELECT ?m WHERE { ?m a mfo:FeedMessage ; nie:links ?:address }"),
                  {{"address", address}});
}

QSparqlQuery message(const QUrl &uri)
{
    return select(QStringLiteral("SELECT ?m WHERE { ?m a mfo:FeedMessage FILTER(?m = ?:message) }"),
                  {{"message", uri}});
}

QSparqlQuery headlinesOfLinks(const QStringList &links)
{
    return select(QLatin1String("SELECT ?link (?link AS ?address) ?title ?date WHERE { ")
                  + valuesOf("link", links)
                  + QLatin1String("?m nie:links ?link ; a mfo:FeedMessage ; nie:title ?title "
                                  "OPTIONAL { ?m nie:contentCreated ?date } }"));
}

QSparqlQuery headlines(const QStringList &uris)
{
    return select(QLatin1String("SELECT ?m ?link ?title ?date WHERE { ") + valuesOf("m", uris)
                  + QLatin1String("?m a mfo:FeedMessage OPTIONAL { ?m nie:links ?link } "
                                  "OPTIONAL { ?m nie:title ?title } "
                                  "OPTIONAL { ?m nie:contentCreated ?date } }"));
}

QSparqlQuery usedLinks(const QStringList &links)
{
    return select(QLatin1String("SELECT DISTINCT ?link WHERE { ") + valuesOf("link", links)
                  + QLatin1String("?x nie:links ?link }"));
}

QSparqlQuery linkUse(const QStringList &links, const QString &channelUri)
{
    return select(QLatin1String("SELECT ?link (EXISTS { ?x a mfo:FeedChannel } AS ?isOfChannel) "
                                "(EXISTS { ?x a mfo:FeedMessage } AS ?isOfMessage) "
                                "(EXISTS { ?x nie:isLogicalPartOf ")
                  + iri(channelUri) + QLatin1String(" } AS ?isInChannel) ?x ?key ?digest WHERE { ")
                  + valuesOf("link", links)
                  + QLatin1String("?x nie:links ?link OPTIONAL { ?x tidel:itemKey ?key } "
                                  "OPTIONAL { ?x tidel:digest ?digest } }"));
}

QSparqlQuery usedKeys(const QStringList &keys)
{
    return select(QLatin1String("SELECT DISTINCT ?key WHERE { ?m tidel:itemKey ?key ")
                  + isIn("key", each(keys, literal)) + QLatin1Char('}'));
}

QSparqlQuery messagesWithKeys(const QStringList &keys, const QString &channelUri)
{
    return select(QLatin1String("SELECT ?key ?m ?link ?digest WHERE { ?m tidel:itemKey ?key ; "
                                "nie:isLogicalPartOf ")
                  + iri(channelUri)
                  + QLatin1String(" ; nie:links ?link OPTIONAL { ?m tidel:digest ?digest } ")
                  + isIn("key", each(keys, literal)) + QLatin1Char('}'));
}

QSparqlQuery linksAndKeys(const QStringList &uris)
{
    return select(
        QLatin1String("SELECT ?m ?link ?key ?c WHERE { ") + valuesOf("m", uris)
        + QLatin1String("?m nie:links ?link ; nie:isLogicalPartOf ?c OPTIONAL { ?m tidel:itemKey ?key } }"));
}

QSparqlQuery texts(const QStringList &uris)
{
    return select(
        QLatin1String("SELECT ?m ?title ?text ?summary ?earlier ?channel WHERE { ") + valuesOf("m", uris)
        + QLatin1String("?m nie:isLogicalPartOf ?channel ; nie:title ?title ; nie:description ?text ; "
                        "nie:subject ?summary OPTIONAL { ?m tidel:earlierVersions ?earlier } }"));
}

QSparqlQuery earlierVersions(const QString &messageUri)
{
    return select(QStringLiteral("SELECT ?versions WHERE { ?:message tidel:earlierVersions ?versions }"),
                  {{"message", QUrl(messageUri)}});
}

namespace {

QString textsOf(const FeedMessage &message)
{
    return QLatin1String(" ; nie:title ") + literal(message.title()) + QLatin1String(" ; nie:description ")
        + literal(message.description()) + QLatin1String(" ; nie:subject ") + literal(message.summary());
}

QString publishedTerm(const FeedMessage &message)
{
    return QLatin1Char('"') + message.publishedDate().toString(Qt::ISODate)
        + QLatin1String("\"^^xsd:dateTime");
}

} // namespace

QString insertMessage(const FeedMessage &message, const QString &uri, const QString &channelUri,
                      const QString &time)
{
    QString insert = QLatin1String("INSERT { ") + iri(uri)
        + QLatin1String(" a mfo:FeedMessage ; nie:isLogicalPartOf ") + iri(channelUri) + textsOf(message)
        + QLatin1String(" ; nie:links ") + iri(message.link()) + QLatin1String(" ; mfo:downloadedTime \"")
        + time + QLatin1String("Z\"^^xsd:dateTime");
    if (message.publishedDate().isValid())
        insert += QLatin1String(" ; nie:contentCreated ") + publishedTerm(message);
    return insert + QLatin1String(" } ");
}

QSparqlQuery knownLinks(const QStringList &links)
{
    return select(QLatin1String("SELECT ?link WHERE { ") + valuesOf("link", links)
                  + QLatin1String("?m nie:links ?link ; a mfo:FeedMessage }"));
}

QString refuseLinks(const QStringList &links)
{
    return refusalIf(valuesOf("link", links) + QLatin1String("?x nie:links ?link ; a mfo:FeedMessage "));
}

QString deleteTexts(const QStringList &uris)
{
    return QLatin1String("DELETE { ?s ?p ?v } ")
        + valuesOfAll(uris,
                      {QStringLiteral("nie:title"), QStringLiteral("nie:description"),
                       QStringLiteral("nie:subject")});
}

QString insertTexts(const FeedMessage &message, const QString &uri)
{
    const QString date = message.publishedDate().isValid()
        ? replacement(uri, "nie:contentCreated", publishedTerm(message))
        : QString();
    return date + QLatin1String("INSERT { ") + iri(uri) + QLatin1String(" a mfo:FeedMessage")
        + textsOf(message) + QLatin1String(" } ");
}

QString linkMessages(const QStringList &links, const QString &channelUri)
{
    return QLatin1String("INSERT { ?m nie:isLogicalPartOf ") + iri(channelUri) + QLatin1String(" } WHERE { ")
        + valuesOf("link", links) + QLatin1String("?m a mfo:FeedMessage ; nie:links ?link } ");
}

QString insertKey(const QString &link, const QString &key)
{
    return QLatin1String("INSERT { ?m tidel:itemKey ") + literal(key)
        + QLatin1String(" } WHERE { ?m a mfo:FeedMessage ; nie:links ") + iri(link) + QLatin1String(" } ");
}

namespace {

/// Makes the message a favorite or no favorite, and notes the time if it is valid and the message passes
/// \a filter, which names ?m.
QString favoriteMark(const QString &messageUri, bool isFavorite, const QDateTime &time, const QString &filter)
{
    const QString chosen = valuesOf("m", {messageUri});
    const QString isStored = chosen + QLatin1String("?m a mfo:FeedMessage ");
    const QString tag = QLatin1String(" { ?m nao:hasTag nao:predefined-tag-favorite } WHERE { ");
    const QString noted = QLatin1String("DELETE { ?m tidel:favoriteTime ?time } WHERE { ") + chosen
        + QLatin1String("?m tidel:favoriteTime ?time ") + filter
        + QLatin1String("} INSERT { ?m tidel:favoriteTime ") + timeTerm(time) + QLatin1String(" } WHERE { ")
        + isStored + filter + QLatin1String("} ");
    return (time.isValid() ? noted : QString()) + QLatin1String(isFavorite ? "INSERT" : "DELETE") + tag
        + isStored + QLatin1String("} ");
}

} // namespace

QString changeFavorite(const QString &messageUri, bool isFavorite, const QDateTime &time)
{
    return favoriteMark(messageUri, isFavorite, time,
                        isFavorite
                            ? isNoFavorite
                            : QStringLiteral("FILTER EXISTS { ?m nao:hasTag nao:predefined-tag-favorite } "));
}

QString replaceFavorite(const QString &messageUri, bool isFavorite, const QDateTime &time)
{
    return favoriteMark(messageUri, isFavorite, time, QString());
}

QSparqlQuery droppableCount(const QString &channelUri)
{
    return select(QStringLiteral("SELECT (COUNT(DISTINCT ?m) AS ?n) WHERE { ?m a mfo:FeedMessage ; "
                                 "nie:isLogicalPartOf ?:channel ; mfo:downloadedTime ?downloaded ")
                      + isNoFavorite + QLatin1Char('}'),
                  {{"channel", QUrl(channelUri)}});
}

namespace {

/// The droppable messages that pass \a filter, in the order that droppableMessages() has.
QString droppable(const QString &filter)
{
    return QLatin1String("SELECT ?m ?read WHERE { ?m a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel ; "
                         "mfo:downloadedTime ?downloaded OPTIONAL { ?m nie:contentCreated ?published } "
                         "OPTIONAL { ?m tidel:readTime ?read } ")
        + filter + isNoFavorite + QLatin1String("} ORDER BY ?published ?downloaded");
}

} // namespace

QSparqlQuery droppableMessages(const QString &channelUri, int limit)
{
    return select(droppable(QString()) + QLatin1String(" LIMIT ?:limit"),
                  {{"channel", QUrl(channelUri)}, {"limit", limit}});
}

QSparqlQuery droppableBefore(const QString &channelUri, const QDateTime &before)
{
    return select(droppable(isBefore(before)), {{"channel", QUrl(channelUri)}});
}

QString replaceRetention(const QString &channelUri, const QString &rule)
{
    const QString subject = channelUri.isEmpty() ? everyChannel : channelUri;
    const QString deletion = replacement(subject, "tidel:retention", QString());
    if (rule.isEmpty())
        return deletion;
    const QString insertion =
        iri(subject) + QLatin1String(" tidel:retention ") + literal(rule) + QLatin1String(" } ");
    return channelUri.isEmpty() ? deletion + QLatin1String("INSERT DATA { ") + iri(subject)
            + QLatin1String(" a nie:DataObject . ") + insertion
                                : deletion + QLatin1String("INSERT { ") + insertion
            + QLatin1String("WHERE { ") + iri(subject) + QLatin1String(" a mfo:FeedChannel } ");
}

QString insertDropped(const QString &channelUri, const QString &name,
                      const QVector<QPair<QString, QString>> &values, Spared spared)
{
    if (values.isEmpty())
        return {};
    QString pairs;
    for (const auto &[uri, value] : values)
        pairs += QLatin1Char('(') + iri(uri) + literal(value) + QLatin1Char(')');
    const QString channel = iri(channelUri);
    return QLatin1String("INSERT { ") + channel + QLatin1Char(' ') + detail(name)
        + QLatin1String(" ?name } WHERE { VALUES (?m ?name) { ") + pairs + QLatin1String(" } ") + channel
        + QLatin1String(" a mfo:FeedChannel . ?m a mfo:FeedMessage ") + isNot(spared) + QLatin1String("} ");
}

namespace {

/// Deletes those of \a messages that no other channel has, and takes the others out of the channel. Leaves
/// those that do not pass \a filter.
QString removal(const QStringList &messages, const QString &channelUri, const QString &filter)
{
    const QString chosen =
        QLatin1String("WHERE { ") + valuesOf("m", messages) + QLatin1String("?m a mfo:FeedMessage ") + filter;
    const QString channel = iri(channelUri);
    return QLatin1String("DELETE { ?m a rdfs:Resource } ") + chosen
        + QLatin1String("FILTER NOT EXISTS { ?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel FILTER(?c != ")
        + channel + QLatin1String(") } } DELETE { ?m nie:isLogicalPartOf ") + channel + QLatin1String(" } ")
        + chosen + QLatin1String("} ");
}

} // namespace

QSparqlQuery readStates(const QStringList &uris)
{
    return select(QLatin1String("SELECT ?m tracker:id(?m) ?mark ?read ?unread WHERE { ") + valuesOf("m", uris)
                  + QLatin1String("?m a mfo:FeedMessage ; nrl:modified ?mark "
                                  "OPTIONAL { ?m tidel:readTime ?read } "
                                  "OPTIONAL { ?m tidel:unreadTime ?unread } }"));
}

QString replaceReadState(const QStringList &uris, bool isRead, const QDateTime &time)
{
    const QString messages = valuesOf("m", uris);
    const QString value = timeTerm(time) + QLatin1String(" } WHERE { ") + messages;
    const QLatin1String gained(isRead ? "tidel:readTime " : "tidel:unreadTime ");
    const QLatin1String lost(isRead ? "tidel:unreadTime " : "tidel:readTime ");
    return QLatin1String("DELETE { ?m ") + lost + QLatin1String("?time } WHERE { ") + messages
        + QLatin1String("?m ") + lost + QLatin1String("?time } INSERT { ?m ") + gained + value
        + QLatin1String("?m a mfo:FeedMessage } ");
}

QSparqlQuery countOfParts(const QStringList &channelUris)
{
    return select(QLatin1String("SELECT (COUNT(*) AS ?n) WHERE { ") + valuesOf("c", channelUris)
                  + QLatin1String("?x nie:isLogicalPartOf ?c }"));
}

QSparqlQuery readCounts()
{
    return select(QStringLiteral("SELECT ?c (COUNT(*) AS ?n) WHERE { ?c a mfo:FeedChannel . "
                                 "?m tidel:readTime ?time ; nie:isLogicalPartOf ?c } GROUP BY ?c"));
}

QSparqlQuery unreadMessages(const QString &channelUri, const QDateTime &before)
{
    QString text = QStringLiteral("SELECT DISTINCT ?m WHERE { ?m a mfo:FeedMessage ");
    if (!channelUri.isEmpty())
        text += QLatin1String("; nie:isLogicalPartOf ") + iri(channelUri) + QLatin1Char(' ');
    text += QLatin1String("FILTER NOT EXISTS { ?m tidel:readTime ?read } ");
    if (before.isValid())
        text += QLatin1String("OPTIONAL { ?m nie:contentCreated ?published } "
                              "OPTIONAL { ?m mfo:downloadedTime ?downloaded } ")
            + isBefore(before);
    return select(text + QLatin1String("} ORDER BY tracker:id(?m)"));
}

namespace {

/// What is true of all messages that a pattern finds. A query need not ask for it again. That would be slow:
/// SQLite reads a whole table if a query names it twice.
struct Certainties
{
    bool areMessages = false;
    bool areFavorites = false;
    bool areUnread = false;
};

/// A query for the headlines of those that match \a pattern.
QSparqlQuery headlines(const QString &pattern, const Certainties &certain)
{
    const QLatin1String isMessage(certain.areMessages ? "true" : "EXISTS { ?m a mfo:FeedMessage }");
    const QLatin1String isFavorite(
        certain.areFavorites ? "true" : "EXISTS { ?m nao:hasTag nao:predefined-tag-favorite }");
    const QLatin1String isRead(certain.areUnread ? "false" : "EXISTS { ?m tidel:readTime ?read }");
    return select(QLatin1String("SELECT ?m ?link ?title ?date (") + isMessage
                  + QLatin1String(" AS ?isMessage) (") + isFavorite + QLatin1String(" AS ?isFavorite) (")
                  + isRead + QLatin1String(" AS ?isRead) (tracker:id(?m) AS ?number) WHERE { ") + pattern
                  + QLatin1String(" OPTIONAL { ?m nie:links ?link } OPTIONAL { ?m nie:title ?title } }"));
}

/// What \a filter demands of ?m, but no dates.
QString demands(const ListFilter &filter)
{
    QString text;
    if (!filter.channelUris.isEmpty())
        text += valuesOf("c", filter.channelUris) + QLatin1String("?m nie:isLogicalPartOf ?c . ");
    if (filter.onlyFavorites)
        text += QLatin1String("?m nao:hasTag nao:predefined-tag-favorite . ");
    return text;
}

QString without(bool isAsked, const char *property)
{
    return isAsked ? QStringLiteral("FILTER NOT EXISTS { ?m %1 ?none } ").arg(QLatin1String(property))
                   : QString();
}

/// What \a filter demands of ?m with the date ?date in addition to a date.
QString furtherDemandsOfDated(const ListFilter &filter)
{
    QString pattern = demands(filter);
    if (filter.since.isValid())
        pattern += QLatin1String("FILTER(?date >= ") + timeTerm(filter.since) + QLatin1String(") ");
    if (filter.until.isValid())
        pattern += QLatin1String("FILTER(?date < ") + timeTerm(filter.until) + QLatin1String(") ");
    return pattern + without(filter.onlyUnread, "tidel:readTime");
}

/// What \a filter demands of ?m with the date ?date. To ask for the class here would make Tracker look up
/// each message before it chooses.
QString demandsOfDated(const ListFilter &filter)
{
    return QLatin1String("?m nie:contentCreated ?date . ") + furtherDemandsOfDated(filter);
}

/// What \a filter demands of ?m without a date.
QString demandsOfUndated(const ListFilter &filter)
{
    return demands(filter) + QLatin1String("?m a mfo:FeedMessage ") + without(true, "nie:contentCreated")
        + without(filter.onlyUnread, "tidel:readTime");
}

QString orderOfDated(const ListFilter &filter)
{
    return filter.order == Qt::DescendingOrder ? QStringLiteral("DESC(?date) DESC(tracker:id(?m))")
                                               : QStringLiteral("ASC(?date) ASC(tracker:id(?m))");
}

QString orderOfUndated(const ListFilter &filter)
{
    return filter.order == Qt::DescendingOrder ? QStringLiteral("DESC(tracker:id(?m))")
                                               : QStringLiteral("ASC(tracker:id(?m))");
}

/// The messages that match \a pattern, those first that \a order puts first. They are chosen before anything
/// else is read of them.
QSparqlQuery chosenHeadlines(const QString &pattern, const QString &columns, const QString &order,
                             const ListFilter &filter, bool areMessages)
{
    // Each message once, which takes as long as all else. Only messages of several channels are found twice.
    const QLatin1String once(filter.channelUris.size() > 1 ? "DISTINCT " : "");
    const QString bound = filter.limit > 0 ? QStringLiteral(" LIMIT %1").arg(filter.limit) : QString();
    return headlines(QLatin1String("{ SELECT ") + once + columns + QLatin1String(" WHERE { ") + pattern
                         + QLatin1String("} ORDER BY ") + order + bound + QLatin1String(" }"),
                     {areMessages, filter.onlyFavorites, filter.onlyUnread});
}

QSparqlQuery orderedUris(const QString &pattern, const QString &order, const ListFilter &filter)
{
    const QLatin1String isRead(filter.asksWhetherRead ? " (EXISTS { ?m tidel:readTime ?read } AS ?isRead)"
                                                      : "");
    return select(QLatin1String("SELECT ?m (tracker:id(?m) AS ?number)") + isRead + QLatin1String(" WHERE { ")
                  + pattern + QLatin1String("} ORDER BY ") + order);
}

} // namespace

QSparqlQuery datedHeadlines(const ListFilter &filter)
{
    return chosenHeadlines(demandsOfDated(filter), QStringLiteral("?m ?date"), orderOfDated(filter), filter,
                           false);
}

QSparqlQuery headlinesAmongNewest(const ListFilter &filter, int count)
{
    const QString newest = QStringLiteral("{ SELECT ?m ?date WHERE { ?m nie:contentCreated ?date } "
                                          "ORDER BY DESC(?date) DESC(tracker:id(?m)) LIMIT %1 } ")
                               .arg(count);
    return chosenHeadlines(newest + furtherDemandsOfDated(filter), QStringLiteral("?m ?date"),
                           orderOfDated(filter), filter, false);
}

QSparqlQuery undatedHeadlines(const ListFilter &filter)
{
    return chosenHeadlines(demandsOfUndated(filter), QStringLiteral("?m"), orderOfUndated(filter), filter,
                           true);
}

QSparqlQuery datedUris(const ListFilter &filter)
{
    return orderedUris(QLatin1String("?m a mfo:FeedMessage . ") + demandsOfDated(filter),
                       orderOfDated(filter), filter);
}

QSparqlQuery undatedUris(const ListFilter &filter)
{
    return orderedUris(demandsOfUndated(filter), orderOfUndated(filter), filter);
}

QSparqlQuery headlinesOf(const QStringList &uris)
{
    return headlines(valuesOf("m", uris) + QLatin1String("OPTIONAL { ?m nie:contentCreated ?date }"), {});
}

QSparqlQuery channelsOfAllMessages()
{
    return select(QStringLiteral("SELECT ?m ?c WHERE { ?m a mfo:FeedMessage ; nie:isLogicalPartOf ?c }"));
}

QSparqlQuery titlesOfChannels()
{
    return select(QStringLiteral("SELECT ?c ?title WHERE { ?c a mfo:FeedChannel ; nie:title ?title }"));
}

QSparqlQuery countOfRead()
{
    return select(QStringLiteral("SELECT (COUNT(*) AS ?n) WHERE { ?m tidel:readTime ?time }"));
}

QSparqlQuery messagesTitled(const QString &part, int limit)
{
    return select(QStringLiteral("SELECT ?m ?title WHERE { ?m a mfo:FeedMessage ; nie:title ?title "
                                 "FILTER(CONTAINS(LCASE(?title), LCASE(?:part))) } "
                                 "ORDER BY DESC(LCASE(?title) = LCASE(?:part)) DESC(tracker:id(?m)) "
                                 "LIMIT ?:limit"),
                  {{"part", part}, {"limit", limit}});
}

QSparqlQuery enclosuresOf(const QString &messageUri)
{
    return select(enclosureColumns.arg(QStringLiteral("?e a mfo:Enclosure ; nie:isLogicalPartOf ?:message")),
                  {{"message", QUrl(messageUri)}});
}

QSparqlQuery enclosure(const QString &uri)
{
    return select(enclosureColumns.arg(QStringLiteral("?e a mfo:Enclosure FILTER(?e = ?:enclosure)")),
                  {{"enclosure", QUrl(uri)}});
}

QSparqlQuery filesOf(const QStringList &messageUris)
{
    return select(QLatin1String("SELECT ?m ?e ?remote ?local WHERE { ") + valuesOf("m", messageUris)
                  + QLatin1String("?e nie:isLogicalPartOf ?m ; mfo:remoteLink ?remote "
                                  "OPTIONAL { ?e mfo:localLink ?local } }"));
}

QSparqlQuery enclosureUrisOf(const QString &messageUri)
{
    return select(QStringLiteral("SELECT DISTINCT ?e WHERE { ?e a mfo:Enclosure ; "
                                 "nie:isLogicalPartOf ?:message } ORDER BY ?e"),
                  {{"message", QUrl(messageUri)}});
}

QSparqlQuery enclosuresWithLink(const QUrl &address)
{
    return select(QStringLiteral("SELECT DISTINCT ?e WHERE { ?e a mfo:Enclosure ; mfo:remoteLink ?:address } "
                                 "ORDER BY ?e"),
                  {{"address", address}});
}

QSparqlQuery knownRemoteLinks(const QStringList &links)
{
    return select(QLatin1String("SELECT ?link WHERE { ") + valuesOf("link", links)
                  + QLatin1String("?e a mfo:Enclosure ; mfo:remoteLink ?link }"));
}

QString insertEnclosure(const FeedEnclosure &enclosure, const QString &uri)
{
    return piece(QStringLiteral("INSERT { ?:enclosure a mfo:Enclosure ; mfo:remoteLink ?:remoteUrl ; "
                                "mfo:localLink ?:localUrl ; mfo:optional ?:isOptional ; "
                                "nie:contentSize ?:length ; nie:mimeType ?:mimeType ; "
                                "nie:identifier ?:groupId ; mfo:groupDefault ?:isDefault ; "
                                "mfo:image ?:typeIcon } "),
                 {{"enclosure", QUrl(uri)},
                  {"remoteUrl", QUrl(enclosure.remoteUrl())},
                  {"localUrl", QUrl(enclosure.localUrl())},
                  {"isOptional", enclosure.type() != FeedEnclosure::Essential},
                  {"length", enclosure.length()},
                  {"mimeType", enclosure.mimeType()},
                  {"groupId", enclosure.groupId()},
                  {"isDefault", enclosure.isDefault()},
                  {"typeIcon", enclosure.typeIcon()}});
}

QString refuseRemoteLinks(const QStringList &links)
{
    return refusalIf(valuesOf("link", links) + QLatin1String("?x mfo:remoteLink ?link ; a mfo:Enclosure "));
}

QString linkEnclosures(const QList<QPair<QString, QString>> &pairs)
{
    QString values;
    for (const auto &[remoteLink, messageLink] : pairs)
        values += QLatin1Char('(') + iri(remoteLink) + iri(messageLink) + QLatin1Char(')');
    return QLatin1String("INSERT { ?e nie:isLogicalPartOf ?m } WHERE { VALUES (?remote ?link) { ") + values
        + QLatin1String(" } ?e a mfo:Enclosure ; mfo:remoteLink ?remote . "
                        "?m a mfo:FeedMessage ; nie:links ?link } ");
}

QString linkEnclosure(const QString &remoteLink, const QString &ownerUri)
{
    return QLatin1String("INSERT { ?e nie:isLogicalPartOf ") + iri(ownerUri)
        + QLatin1String(" } WHERE { ?e a mfo:Enclosure ; mfo:remoteLink ") + iri(remoteLink)
        + QLatin1String(" } ");
}

QSparqlQuery replaceFile(const FeedEnclosure &enclosure)
{
    return update(replacement(enclosure.uri(), "mfo:localLink", iri(enclosure.localUrl()))
                  + replacement(enclosure.uri(), "nie:contentSize", QString::number(enclosure.length()))
                  + replacement(enclosure.uri(), "nie:mimeType", literal(enclosure.mimeType())));
}

QSparqlQuery queuedEnclosures()
{
    return select(QStringLiteral("SELECT ?e ?time WHERE { ?e tidel:queuedTime ?time }"));
}

QSparqlQuery queuedTimes(const QStringList &uris)
{
    return select(QLatin1String("SELECT ?e ?time WHERE { ") + valuesOf("e", uris)
                  + QLatin1String("?e tidel:queuedTime ?time }"));
}

QString queueEnclosures(const QStringList &uris, QDateTime time)
{
    QString text;
    for (const QString &uri : uris) {
        const QString enclosure = iri(uri) + QLatin1Char(' ');
        text += QLatin1String("INSERT { ") + enclosure + QLatin1String("tidel:queuedTime ") + timeTerm(time)
            + QLatin1String(" } WHERE { ") + enclosure + QLatin1String("a mfo:Enclosure FILTER NOT EXISTS { ")
            + enclosure + QLatin1String("tidel:queuedTime ?before } } ");
        time = time.addMSecs(1);
    }
    return text;
}

QString unqueueEnclosures(const QStringList &uris)
{
    return QLatin1String("DELETE { ?e tidel:queuedTime ?time } WHERE { ") + valuesOf("e", uris)
        + QLatin1String("?e tidel:queuedTime ?time } ");
}

QString removeMessages(const QStringList &messages, const QString &channelUri)
{
    return removal(messages, channelUri, QString());
}

QString dropMessages(const QStringList &messages, const QString &channelUri, Spared spared)
{
    return removal(messages, channelUri, isNot(spared));
}

QSparqlQuery messagesOfOthers(const QStringList &messages, const QString &channelUri)
{
    return select(QLatin1String("SELECT DISTINCT ?m WHERE { ") + valuesOf("m", messages)
                  + QLatin1String("?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel FILTER(?c != ")
                  + iri(channelUri) + QLatin1String(") }"));
}

QSparqlQuery favoritesAmong(const QStringList &messages)
{
    return select(QLatin1String("SELECT ?m WHERE { ") + valuesOf("m", messages)
                  + QLatin1String("?m nao:hasTag nao:predefined-tag-favorite }"));
}

QSparqlQuery ownersOf(const QStringList &enclosures)
{
    return select(QLatin1String("SELECT ?e ?owner WHERE { ") + valuesOf("e", enclosures)
                  + QLatin1String("?e nie:isLogicalPartOf ?owner . ?owner a mfo:FeedElement }"));
}

QSparqlQuery messagesAmong(const QStringList &uris, const QString &channelUri)
{
    return select(QLatin1String("SELECT ?m WHERE { ") + valuesOf("m", uris)
                  + QLatin1String("?m nie:isLogicalPartOf ") + iri(channelUri) + QLatin1String(" }"));
}

QSparqlQuery enclosuresOfOwners(const QStringList &owners)
{
    return select(QLatin1String("SELECT DISTINCT ?e ?remote ?local WHERE { ") + valuesOf("owner", owners)
                  + QLatin1String("?e nie:isLogicalPartOf ?owner ; a mfo:Enclosure "
                                  "OPTIONAL { ?e mfo:remoteLink ?remote } "
                                  "OPTIONAL { ?e mfo:localLink ?local } }"));
}

QSparqlQuery enclosuresAmong(const QStringList &uris)
{
    return select(QLatin1String("SELECT ?e WHERE { ") + valuesOf("e", uris)
                  + QLatin1String("?e a mfo:Enclosure }"));
}

QString deleteReleased(const QStringList &enclosures)
{
    return QLatin1String("DELETE { ?e a rdfs:Resource } WHERE { ") + valuesOf("e", enclosures)
        + QLatin1String("?e a mfo:Enclosure FILTER NOT EXISTS { "
                        "?e nie:isLogicalPartOf ?owner . ?owner a mfo:FeedElement } } ");
}

QString release(const QStringList &parts, const QString &ownerUri)
{
    QString deletion = QStringLiteral("DELETE DATA { ");
    for (const QString &part : parts)
        deletion += iri(part) + QLatin1String(" nie:isLogicalPartOf ") + iri(ownerUri) + QLatin1String(" . ");
    return deletion + QLatin1String("} ");
}

QString deleteResources(const QStringList &resources)
{
    QString deletion = QStringLiteral("DELETE DATA { ");
    for (const QString &resource : resources)
        deletion += iri(resource) + QLatin1String(" a rdfs:Resource . ");
    return deletion + QLatin1String("} ");
}

QSparqlQuery orphanMessages()
{
    return select(QStringLiteral("SELECT DISTINCT ?m WHERE { ?m a mfo:FeedMessage ; nie:links ?link "
                                 "FILTER NOT EXISTS { ?m nao:hasTag nao:predefined-tag-favorite } "
                                 "FILTER NOT EXISTS { ?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel } }"));
}

QSparqlQuery orphanEnclosures()
{
    return select(
        QStringLiteral("SELECT ?e ?remote ?local WHERE { ?e a mfo:Enclosure ; mfo:remoteLink ?remote ; "
                       "mfo:localLink ?local FILTER NOT EXISTS { "
                       "?e nie:isLogicalPartOf ?owner . ?owner a mfo:FeedElement } }"));
}

QSparqlQuery archiveSize()
{
    return select(QStringLiteral("SELECT ?class COUNT(?r) WHERE { ?r a ?class "
                                 "FILTER(?class IN (mfo:FeedChannel, mfo:FeedMessage, mfo:Enclosure)) } "
                                 "GROUP BY ?class"));
}

QSparqlQuery archive()
{
    return QSparqlQuery(
        QStringLiteral("DESCRIBE ?r { ?r a ?class FILTER(?class IN "
                       "(mfo:FeedChannel, mfo:FeedMessage, mfo:Enclosure, nie:DataObject)) }"),
        QSparqlQuery::DescribeStatement);
}

namespace {

/// The class of a kind, and the property that identifies its resources.
struct KindTerms
{
    const char *className;
    const char *link;
};

KindTerms termsOf(Kind kind)
{
    static const KindTerms terms[] = {{"mfo:FeedChannel", "nie:links"},
                                      {"mfo:FeedMessage", "nie:links"},
                                      {"mfo:Enclosure", "mfo:remoteLink"}};
    return terms[int(kind)];
}

/// "?x a CLASS ".
QString isOf(Kind kind)
{
    return QLatin1String("?x a ") + QLatin1String(termsOf(kind).className) + QLatin1Char(' ');
}

QString lacks(const QString &property)
{
    return QStringLiteral("FILTER NOT EXISTS { ?x %1 ?value } ").arg(property);
}

const QString isLinkWithoutTime =
    QStringLiteral("?x a mfo:FeedChannel ; nie:links ?link FILTER NOT EXISTS { ?link nie:created ?time } ");

} // namespace

const char *className(Kind kind) { return termsOf(kind).className; }

QSparqlQuery resourcesOf(Kind kind)
{
    return select(QLatin1String("SELECT ?x WHERE { ") + isOf(kind)
                  + QLatin1String("} ORDER BY tracker:id(?x)"));
}

QSparqlQuery resourcesWithLinks(Kind kind, const QStringList &links)
{
    return select(QLatin1String("SELECT ?link ?x WHERE { ") + valuesOf("link", links) + QLatin1String("?x ")
                  + QLatin1String(termsOf(kind).link) + QLatin1String(" ?link ; a ")
                  + QLatin1String(className(kind)) + QLatin1String(" }"));
}

QSparqlQuery resourcesAmong(Kind kind, const QStringList &uris)
{
    return select(QLatin1String("SELECT ?x WHERE { ") + valuesOf("x", uris) + isOf(kind) + QLatin1Char('}'));
}

QSparqlQuery messagesWithKeys(const QStringList &keys)
{
    return select(QLatin1String("SELECT ?key ?m WHERE { ?m tidel:itemKey ?key ")
                  + isIn("key", each(keys, literal)) + QLatin1Char('}'));
}

QStringList singleProperties(Kind kind)
{
    static const char *const names[] = {
        "nie:title nie:links nie:characterSet nie:identifier nie:contentLastModified tidel:entityTag tidel:lastModified",
        "nie:title nie:subject nie:links nie:contentCreated mfo:downloadedTime tidel:digest",
        "mfo:remoteLink mfo:localLink nie:identifier nie:contentSize mfo:optional mfo:groupDefault"};
    return QString::fromLatin1(names[int(kind)]).split(QLatin1Char(' '));
}

QSparqlQuery linksOfSeveral(Kind kind)
{
    return select(
        QLatin1String("SELECT ?link WHERE { ") + isOf(kind) + QLatin1String("; ")
        + QLatin1String(termsOf(kind).link)
        + QLatin1String(" ?link FILTER(?link != <>) } GROUP BY ?link HAVING(COUNT(DISTINCT ?x) > 1)"));
}

QSparqlQuery resourcesWithLink(Kind kind, const QString &link)
{
    return select(QLatin1String("SELECT ?x WHERE { ") + isOf(kind) + QLatin1String("; ")
                  + QLatin1String(termsOf(kind).link) + QLatin1Char(' ') + iri(link)
                  + QLatin1String(" } ORDER BY tracker:id(?x)"));
}

QSparqlQuery withSeveralValues(Kind kind, const QString &property)
{
    return select(QLatin1String("SELECT ?x WHERE { ") + isOf(kind) + QLatin1String("; ") + property
                  + QLatin1String(" ?value } GROUP BY ?x HAVING(COUNT(?value) > 1)"));
}

QSparqlQuery withoutValue(Kind kind, const QString &property)
{
    return select(QLatin1String("SELECT ?x WHERE { ") + isOf(kind) + lacks(property) + QLatin1Char('}'));
}

QSparqlQuery channelsWithoutTime()
{
    return select(QLatin1String("SELECT ?x WHERE { ") + isLinkWithoutTime + QLatin1Char('}'));
}

QString insertEmptyTexts(Kind kind, const QString &property)
{
    return QLatin1String("INSERT { ?x ") + property + QLatin1String(" '' } WHERE { ") + isOf(kind)
        + lacks(property) + QLatin1String("} ");
}

QString insertTitlesOfChannels()
{
    return QLatin1String("INSERT { ?x nie:title ?text } WHERE { ") + isOf(Kind::Channel)
        + QLatin1String("; nie:links ?link ") + lacks(QStringLiteral("nie:title"))
        + QLatin1String("BIND(STR(?link) AS ?text) } ");
}

QString forgetReadings()
{
    QString text;
    for (const char *property :
         {"tidel:entityTag", "tidel:lastModified", "tidel:itemDigests", "tidel:digest"})
        text += QStringLiteral("DELETE { ?x %1 ?v } WHERE { ?x %1 ?v } ").arg(QLatin1String(property));
    return text;
}

QString insertDownloadTimes()
{
    return QLatin1String("INSERT { ?x mfo:downloadedTime \"") + localTimeText()
        + QLatin1String("Z\"^^xsd:dateTime } WHERE { ") + isOf(Kind::Message)
        + lacks(QStringLiteral("mfo:downloadedTime")) + QLatin1String("} ");
}

QString insertSubscriptionTimes()
{
    return QLatin1String("INSERT { ?link a nie:DataObject ; nie:created \"") + localTimeText()
        + QLatin1String("\"^^xsd:dateTime } WHERE { ") + isLinkWithoutTime + QLatin1String("} ");
}

QString insertLink(const QString &uri, const QString &link)
{
    return QLatin1String("INSERT DATA { ") + iri(uri) + QLatin1String(" nie:links ") + iri(link)
        + QLatin1String(" } ");
}

QSparqlQuery everythingOf(const QStringList &uris)
{
    return select(QLatin1String("SELECT ?s ?p ?v WHERE { ") + valuesOf("s", uris)
                  + QLatin1String("?s ?p ?v }"));
}

QString insertValue(const QString &uri, const QString &property, const QString &term)
{
    return QLatin1String("INSERT DATA { ") + iri(uri) + QLatin1Char(' ') + iri(property) + QLatin1Char(' ')
        + term + QLatin1String(" } ");
}

QString replaceValue(const QString &uri, const QString &property, const QString &term)
{
    return replacement(uri, iri(property).toLatin1().constData(), term);
}

QString insertResource(const QString &uri, const char *type, const QHash<QString, QStringList> &values)
{
    QString text = QLatin1String("INSERT DATA { ") + iri(uri) + QLatin1String(" a ") + QLatin1String(type);
    for (auto property = values.cbegin(); property != values.cend(); ++property) {
        for (const QString &term : property.value())
            text += QLatin1String(" ; ") + iri(property.key()) + QLatin1Char(' ') + term;
    }
    return text + QLatin1String(" } ");
}

QString moveParts(const QString &fromUri, const QString &toUri)
{
    return piece(
        QStringLiteral("INSERT { ?x nie:isLogicalPartOf ?:to } WHERE { ?x nie:isLogicalPartOf ?:from } "
                       "DELETE { ?x nie:isLogicalPartOf ?:from } "
                       "WHERE { ?x nie:isLogicalPartOf ?:from } "),
        {{"from", QUrl(fromUri)}, {"to", QUrl(toUri)}});
}

QSparqlQuery localFiles()
{
    return select(QStringLiteral("SELECT ?e ?local WHERE { ?e a mfo:Enclosure ; mfo:localLink ?local "
                                 "FILTER(?local != <>) }"));
}

QSparqlQuery queuedAddresses()
{
    return select(
        QStringLiteral("SELECT ?remote WHERE { ?e tidel:queuedTime ?time ; mfo:remoteLink ?remote }"));
}

QString forgetFile(const QString &enclosureUri)
{
    return replacement(enclosureUri, "mfo:localLink", iri(QString()));
}

QSparqlQuery namespaces()
{
    return select(QStringLiteral("SELECT ?n ?prefix WHERE { ?n a nrl:Namespace ; nrl:prefix ?prefix }"));
}

QSparqlQuery classes() { return select(QStringLiteral("SELECT ?c WHERE { ?c a rdfs:Class }")); }

QSparqlQuery properties()
{
    return select(QStringLiteral("SELECT ?p ?range WHERE { ?p a rdf:Property ; rdfs:range ?range }"));
}

QSparqlQuery resources() { return select(QStringLiteral("SELECT ?x WHERE { ?x a rdfs:Resource }")); }

QString typeFact(const QString &uri, const QString &className)
{
    return iri(uri) + QLatin1String(" a ") + iri(className) + QLatin1String(" . ");
}

QString fact(const QString &uri, const QString &property, const QVariant &value)
{
    return iri(uri) + QLatin1Char(' ') + iri(property) + QLatin1Char(' ') + term(value)
        + QLatin1String(" . ");
}

QSparqlQuery insertFacts(const QStringList &facts)
{
    return update(QLatin1String("INSERT DATA { ") + facts.join(QString()) + QLatin1Char('}'));
}

QSparqlQuery countOf(Kind kind)
{
    return select(QLatin1String("SELECT (COUNT(?x) AS ?n) WHERE { ") + isOf(kind) + QLatin1Char('}'));
}

QSparqlQuery countOfFavorites()
{
    return select(QLatin1String("SELECT (COUNT(?x) AS ?n) WHERE { ") + isOf(Kind::Message)
                  + QLatin1String("; nao:hasTag nao:predefined-tag-favorite }"));
}

QSparqlQuery countOfReadFavorites()
{
    return select(QStringLiteral("SELECT (COUNT(?x) AS ?n) WHERE { "
                                 "?x nao:hasTag nao:predefined-tag-favorite ; tidel:readTime ?time }"));
}

namespace {

const QString isStray = QStringLiteral(
    "?x a mfo:FeedMessage FILTER NOT EXISTS { ?x nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel } ");

} // namespace

QSparqlQuery countOfStrays()
{
    return select(QLatin1String("SELECT (COUNT(?x) AS ?n) WHERE { ") + isStray + QLatin1Char('}'));
}

QString adoptStrays(const QString &channelUri)
{
    return QLatin1String("INSERT { ?x nie:isLogicalPartOf ") + iri(channelUri) + QLatin1String(" } WHERE { ")
        + isStray + QLatin1String("} ");
}

namespace {

/// "IN (...)".
QString amongNumbers(const QVector<qlonglong> &numbers)
{
    QStringList list;
    for (qlonglong number : numbers)
        list.append(QString::number(number));
    return QLatin1String("IN (") + list.join(QLatin1String(", ")) + QLatin1Char(')');
}

/// The columns of searchable() of those messages that \a filter lets through.
QString searchableIf(const QString &filter)
{
    return QLatin1String(
               "SELECT (tracker:id(?m) AS ?number) ?state ?m ?title ?text ?summary ?published WHERE { "
               "?m a mfo:FeedMessage ; nrl:modified ?state FILTER(tracker:id(?m) ")
        + filter
        + QLatin1String(") OPTIONAL { ?m nie:title ?title } OPTIONAL { ?m nie:description ?text } "
                        "OPTIONAL { ?m nie:subject ?summary } "
                        "OPTIONAL { ?m nie:contentCreated ?published } } ORDER BY tracker:id(?m)");
}

} // namespace

QSparqlQuery searchable(const QVector<qlonglong> &numbers)
{
    return select(searchableIf(amongNumbers(numbers)));
}

QSparqlQuery searchableAfter(qlonglong last, int limit)
{
    return select(searchableIf(QLatin1String("> ") + QString::number(last)) + QLatin1String(" LIMIT ")
                  + QString::number(limit));
}

QSparqlQuery messageStates()
{
    return select(
        QStringLiteral("SELECT tracker:id(?m) ?state WHERE { ?m a mfo:FeedMessage ; nrl:modified ?state }"));
}

QSparqlQuery sumsOfMessageStates()
{
    return select(QStringLiteral(
        "SELECT (COUNT(?m) AS ?count) (SUM(tracker:id(?m)) AS ?numbers) (SUM(?state) AS ?states) "
        "(SUM(tracker:id(?m) * ?state) AS ?products) WHERE { ?m a mfo:FeedMessage ; nrl:modified ?state }"));
}

QSparqlQuery messagesAddedSince(const QDateTime &time, qlonglong last, int limit)
{
    return select(QStringLiteral("SELECT (tracker:id(?m) AS ?number) ?m WHERE { "
                                 "?m a mfo:FeedMessage ; nrl:added ?added "
                                 "FILTER(?added >= ?:time) FILTER(tracker:id(?m) > %1) } "
                                 "ORDER BY tracker:id(?m) LIMIT %2")
                      .arg(last)
                      .arg(limit),
                  {{"time", time}});
}

QSparqlQuery numbersOfMessages(const QStringList &channelUris, bool onlyFavorites)
{
    QString text = QStringLiteral("SELECT tracker:id(?m) WHERE { ");
    if (!channelUris.isEmpty())
        text += valuesOf("c", channelUris) + QLatin1String("?m nie:isLogicalPartOf ?c . ");
    text += QLatin1String("?m a mfo:FeedMessage ");
    if (onlyFavorites)
        text += QLatin1String("; nao:hasTag nao:predefined-tag-favorite ");
    return select(text + QLatin1Char('}'));
}

QSparqlQuery readAmong(const QVector<qlonglong> &numbers)
{
    return select(
        QLatin1String("SELECT tracker:id(?m) WHERE { ?m tidel:readTime ?time FILTER(tracker:id(?m) ")
        + amongNumbers(numbers) + QLatin1String(") }"));
}

QSparqlQuery urisOf(const QVector<qlonglong> &numbers)
{
    return select(QLatin1String("SELECT ?m WHERE { ?m a mfo:FeedMessage FILTER(tracker:id(?m) ")
                  + amongNumbers(numbers) + QLatin1String(") }"));
}

QSparqlQuery channelTitles(const QStringList &messageUris)
{
    return select(QLatin1String("SELECT ?m ?title WHERE { ") + valuesOf("m", messageUris)
                  + QLatin1String("?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel ; nie:title ?title }"));
}

namespace {

/// A row for each block of numbers in which \a pattern, which names ?x and \a value, matches: block, number
/// of matches, sum of the values, sum of their products with the numbers.
QSparqlQuery sumsByBlocks(const QString &pattern, const QString &value)
{
    const QString block = QStringLiteral("(tracker:id(?x) / %1").arg(blockSize);
    return select(QStringLiteral("SELECT %1 AS ?block) (COUNT(*) AS ?count) (SUM(%2) AS ?sum) "
                                 "(SUM(tracker:id(?x) * %2) AS ?products) WHERE { %3 } GROUP BY %1)")
                      .arg(block, value, pattern));
}

/// "FILTER(...) ", which ?x passes if its number is in the blocks.
QString isInBlocks(qlonglong first, qlonglong last)
{
    return QStringLiteral("FILTER(tracker:id(?x) >= %1 && tracker:id(?x) < %2) ")
        .arg(first * blockSize)
        .arg((last + 1) * blockSize);
}

} // namespace

QSparqlQuery lastNumbers()
{
    return select(QStringLiteral(
        "SELECT (MAX(tracker:id(?x)) AS ?number) (MAX(?mark) AS ?last) WHERE { ?x nrl:modified ?mark }"));
}

QSparqlQuery sumsOfMarks()
{
    return sumsByBlocks(QStringLiteral("?x nrl:modified ?mark"), QStringLiteral("?mark"));
}

QSparqlQuery sumsOfParts()
{
    return sumsByBlocks(QStringLiteral("?x nie:isLogicalPartOf ?owner"),
                        QStringLiteral("tracker:id(?owner)"));
}

QSparqlQuery blocksAddedSince(const QDateTime &time)
{
    return select(
        QStringLiteral("SELECT DISTINCT (tracker:id(?x) / %1 AS ?block) WHERE { ?x nrl:added ?added "
                       "FILTER(?added >= ?:time) }")
            .arg(blockSize),
        {{"time", time}});
}

QSparqlQuery messagesInBlocks(qlonglong first, qlonglong last)
{
    return select(QLatin1String("SELECT (tracker:id(?x) AS ?number) ?mark ?x ?digest "
                                "(EXISTS { ?x tidel:readTime ?read } AS ?isRead) "
                                "(EXISTS { ?x nao:hasTag nao:predefined-tag-favorite } AS ?isFavorite) "
                                "WHERE { ?x a mfo:FeedMessage ; nrl:modified ?mark ")
                  + isInBlocks(first, last)
                  + QLatin1String("OPTIONAL { ?x tidel:digest ?digest } } ORDER BY tracker:id(?x)"));
}

QSparqlQuery enclosuresInBlocks(qlonglong first, qlonglong last)
{
    return select(QLatin1String("SELECT (tracker:id(?x) AS ?number) ?mark WHERE { "
                                "?x a mfo:Enclosure ; nrl:modified ?mark ")
                  + isInBlocks(first, last) + QLatin1String("} ORDER BY tracker:id(?x)"));
}

QSparqlQuery partsInBlocks(qlonglong first, qlonglong last)
{
    return select(QLatin1String("SELECT (tracker:id(?x) AS ?number) (tracker:id(?owner) AS ?ownerNumber) "
                                "WHERE { ?x nie:isLogicalPartOf ?owner ")
                  + isInBlocks(first, last) + QLatin1String("} ORDER BY tracker:id(?x)"));
}

QSparqlQuery shownChannels()
{
    return select(QStringLiteral("SELECT ?c (tracker:id(?c) AS ?number) ?mark ?title ?link ?type WHERE { "
                                 "?c a mfo:FeedChannel ; nrl:modified ?mark "
                                 "OPTIONAL { ?c nie:title ?title } OPTIONAL { ?c nie:links ?link } "
                                 "OPTIONAL { ?c nie:characterSet ?type } }"));
}

QSparqlQuery countOfLocalCopies()
{
    return select(QStringLiteral("SELECT (COUNT(?e) AS ?n) WHERE { ?e mfo:localLink ?file "
                                 "FILTER(?file != <>) }"));
}

QSparqlQuery newestMessages()
{
    return select(QStringLiteral("SELECT ?c (MAX(?published) AS ?newest) WHERE { ?c a mfo:FeedChannel . "
                                 "?m nie:isLogicalPartOf ?c ; nie:contentCreated ?published } GROUP BY ?c"));
}

QSparqlQuery datesSince(const QDateTime &since)
{
    return select(QStringLiteral("SELECT ?published WHERE { ?m nie:contentCreated ?published . "
                                 "FILTER(?published >= ?:since) }"),
                  {{"since", since}});
}

} // namespace Tidel::Statements
