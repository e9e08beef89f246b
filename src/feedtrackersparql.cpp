// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedtrackersparql.h"

#include "debuglist_p.h"
#include "qsttrace.h"
#include "storeresult_p.h"
#include "storestatements_p.h"

#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <QFile>
#include <QSet>
#include <QUrl>

#include <algorithm>

// contract: every trace of the store names this file, the category "Tracker" and the public function. Log
// readers look for them. That is why functions in other files get HERE from their caller.
// contract: all trace texts, also the misspelt ones and those that name the wrong value, such as "returning
// empty enclosure" where a list is returned. Log readers compare them.
#define HERE QST_HERE("Tracker")
#define TRACE_DEBUG QST_DEBUG("Tracker")
#define TRACE_CRITICAL QST_CRITICAL("Tracker")

namespace {

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

/// Returns the enclosures whose remote URL no enclosure in \a stored has.
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

/// Returns the first column of the first row; empty if there is no row.
QString firstText(QSparqlResult *result) { return result->next() ? result->value(0).toString() : QString(); }

QList<QUrl> firstColumnUrls(QSparqlResult *result)
{
    QList<QUrl> urls;
    while (result->next())
        urls.append(QUrl(result->value(0).toString()));
    return urls;
}

/// Returns an enclosure for each row of URI, remote link and local link.
QList<FeedEnclosure> fileRows(QSparqlResult *result)
{
    QList<FeedEnclosure> enclosures;
    while (result->next()) {
        FeedEnclosure enclosure;
        enclosure.setUri(result->value(0).toString());
        enclosure.setRemoteUrl(result->value(1).toString());
        enclosure.setLocalUrl(result->value(2).toString());
        enclosures.append(enclosure);
    }
    return enclosures;
}

} // namespace

FeedTrackerSparql *FeedTrackerSparql::_single = nullptr;

// contract: these values, link before title. Hosts keep them in property maps.
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
    // contract: critical even on success, and with blanks on both sides of the colon, unlike the trace of the
    // destructor. Log readers look for this line, which is in every log.
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
    // contract: the URI in column 0 is not kept, a message has no field for it. Hosts read URIs with
    // allMessageUrls().
    message.setTitle(row.binding(1).value().toString());
    message.setDescription(row.binding(2).value().toString());
    message.setLink(row.binding(3).value().toString());
    message.setPublishedDate(row.binding(4).value().toDateTime());
    message.setDownloadedTime(row.binding(5).value().toDateTime());
    // contract: any tag makes a favourite, since column 6 has the tag. Hosts know favourites from this flag.
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
    // contract: only the exact text "true" counts. Stores have these texts.
    const auto isTrue = [&row](int column) {
        return row.binding(column).value().toString() == QLatin1String("true");
    };
    enclosure.setUri(row.binding(0).value().toString());
    enclosure.setRemoteUrl(row.binding(1).value().toString());
    enclosure.setLocalUrl(row.binding(2).value().toString());
    // contract: numbers are read as signed ones, so 2^31 and more become 0. Hosts take 0 as unknown.
    enclosure.setGroupId(row.binding(3).value().toString().toInt());
    enclosure.setLength(row.binding(4).value().toString().toInt());
    enclosure.setDefault(isTrue(5));
    enclosure.setType(isTrue(6) ? FeedEnclosure::Optional : FeedEnclosure::Essential);
    // contract: enclosuresForMessage() has the MIME type in column 7 and no column 8. Hosts read it from
    // typeIcon().
    enclosure.setTypeIcon(row.binding(7).value().toString());
    enclosure.setMimeType(row.binding(8).value().toString());
    return enclosure;
}

QList<FeedChannel> FeedTrackerSparql::allChannels() const
{
    const StoreResult result =
        execute(m_connection, StoreStatements::allChannels(), HERE,
                {"Query Execution Failed", "Executing query failed: returning empty list"});
    return result ? allRows(result.get(), extractChannel) : QList<FeedChannel>();
}

QStringList FeedTrackerSparql::allChannelUrls() const
{
    const StoreResult result =
        execute(m_connection, StoreStatements::allChannelUrls(), HERE,
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
    const QSparqlQuery query = StoreStatements::channelForUri(uri);
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
    const StoreResult result =
        execute(m_connection, StoreStatements::channelType(uri), HERE,
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
    const StoreResult result = execute(m_connection, StoreStatements::messagesForChannel(channelUri), HERE,
                                       {"Query Execution Failed", "Query Execution Failed"});
    return result ? allRows(result.get(), extractMessage) : QList<FeedMessage>();
}

QList<FeedEnclosure> FeedTrackerSparql::enclosuresForMessage(const QString &messageUri) const
{
    const StoreResult result = execute(m_connection, StoreStatements::enclosuresForMessage(messageUri), HERE,
                                       {"Query Execution failed", "Query Execution Failed"});
    return result ? allRows(result.get(), extractEnclosure) : QList<FeedEnclosure>();
}

FeedEnclosure FeedTrackerSparql::enclosureForUri(const QString &uri) const
{
    if (uri.isEmpty()) {
        TRACE_CRITICAL << "Empty uri: returning empty enclosure";
        return {};
    }
    const StoreResult result =
        execute(m_connection, StoreStatements::enclosureForUri(uri), HERE,
                {"Query Execution Failed", "Executing query failed: returning empty enclosure"});
    if (!result)
        return {};
    if (!result->next()) {
        TRACE_CRITICAL << "Result not retrieved: returning empty enclosure";
        return {};
    }
    const FeedEnclosure enclosure = extractEnclosure(result->current());
    TRACE_DEBUG << enclosure.uri(); // contract: without a text. Log readers know it so.
    return enclosure;
}

QStringList FeedTrackerSparql::allMessageUrls(const QString &channelUri) const
{
    const StoreResult result =
        execute(m_connection, StoreStatements::allMessageUrls(channelUri), HERE,
                {"Query Execution failed", "Executing query failed: returning empty enclosure"});
    return result ? firstColumn(result.get()) : QStringList();
}

QStringList FeedTrackerSparql::messageLinksOfChannel(const QString &channelUri) const
{
    const StoreResult result =
        execute(m_connection, StoreStatements::messageLinksOfChannel(channelUri), HERE,
                {"Query Execution failed", "Executing query failed: returning empty list "});
    return result ? firstColumn(result.get()) : QStringList();
}

QDateTime FeedTrackerSparql::latestPostPublishedTime(const QString &channelUri)
{
    const StoreResult result =
        execute(m_connection, StoreStatements::latestPostPublishedTime(channelUri), HERE,
                {"Query Execution failed", "Executing query failed: returning empty enclosure"});
    return result && result->next() ? result->value(0).toDateTime() : QDateTime();
}

int FeedTrackerSparql::deletableMessageCount(const QString &channelUri) const
{
    const StoreResult result =
        execute(m_connection, StoreStatements::deletableMessageCount(channelUri), HERE,
                {"Query Execution Failed", "Executing query failed: returning empty enclosure"});
    if (!result || !result->next())
        return 0;
    const int count = result->value(0).toInt();
    TRACE_DEBUG << count; // contract: without a text. Log readers know it so.
    return count;
}

QStringList FeedTrackerSparql::deletableMessages(const QString &channelUri, int limit)
{
    const StoreResult result =
        execute(m_connection, StoreStatements::deletableMessages(channelUri, limit), HERE,
                {"Query Execution failed", "Executing query failed: returning empty enclosure"});
    return result ? firstColumn(result.get()) : QStringList();
}

QString FeedTrackerSparql::addChannel(const FeedChannel &channel) const
{
    const StoreResult known =
        executeTraced(m_connection, StoreStatements::channelWithLink(QUrl::fromUserInput(channel.link())),
                      HERE, {"Query Execution failed", "Query Execution Failed"});
    if (!known)
        return {};
    // contract: compares the link as the caller gave it, so a link without a scheme never counts as stored.
    // Hosts rely on the rule.
    if (known->next() && known->value(0).toString() == channel.link()) {
        TRACE_CRITICAL << "Channel exists";
        return {};
    }

    const QUrl urn = m_connection->createUrn();
    if (!executeTraced(m_connection, StoreStatements::insertChannel(channel, urn), HERE,
                       {"Query Execution failed", "Query Execution Failed - addChannel"}))
        return {};
    TRACE_DEBUG << "Channel Uri: " << urn.toString();

    // contract: the owner is the URI of the given channel, not the new one. Hosts rely on it.
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
        const StoreResult known = execute(m_connection, StoreStatements::messageWithLink(message.link()),
                                          HERE, {"Query Execution failed", "Query Execution Failed"});
        if (!known)
            return false;
        if (known->next()) {
            addMissingEnclosures(message, known->value(0).toString());
            update += createAssociation(message, channelUri);
        } else {
            update += addMessageQuery(message, channelUri);
        }
    }
    // contract: executed even if it is empty. The store decides the result.
    return execute(m_connection, StoreStatements::insertion(update), HERE,
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
        // contract: "Invalied" is misspelt. Log readers look for it.
        TRACE_CRITICAL << "Invalied input, cannot proceed";
        return {};
    }
    // contract: stores the enclosures before the message. Hosts execute the returned statement later.
    const QString urn = m_connection->createUrn().toString();
    const QString insert = StoreStatements::insertMessage(message, urn, channelUri);
    if (!message.enclosures().isEmpty())
        addEnclosures(message.enclosures(), urn);
    return insert;
}

QString createAssociation(const FeedMessage &message, const QString &channelUri)
{
    return StoreStatements::linkMessage(message.link(), channelUri);
}

bool FeedTrackerSparql::addEnclosures(const QList<FeedEnclosure> &enclosures, const QString &messageUri) const
{
    QString update;
    for (const FeedEnclosure &enclosure : enclosures) {
        if (enclosure.remoteUrl().isEmpty()) {
            TRACE_CRITICAL << "remoteLink empty for message " << messageUri;
            continue;
        }
        const StoreResult known =
            execute(m_connection, StoreStatements::enclosureWithLink(enclosure.remoteUrl()), HERE,
                    {"Query Execution failed", "Query Execution Failed"});
        if (!known)
            continue;
        if (!known->next()) {
            update +=
                StoreStatements::insertEnclosure(enclosure, m_connection->createUrn().toString(), messageUri);
        } else if (known->value(1).toString() == enclosure.remoteUrl()) {
            // contract: a link in another spelling is neither stored nor linked. Stores know the rule.
            update += StoreStatements::linkEnclosure(known->value(0).toString(), messageUri);
        }
    }
    // contract: executed even if it is empty. The store decides the result.
    return execute(m_connection, StoreStatements::insertion(update), HERE,
                   {"Query Execution failed", "Query Execution failed"})
        != nullptr;
}

bool FeedTrackerSparql::updateEnclosure(const FeedEnclosure &enclosure) const
{
    if (enclosure.remoteUrl().isEmpty()) {
        TRACE_CRITICAL << "mfo:remoteLink is empty";
        return false;
    }
    const StoreResult known =
        executeTraced(m_connection, StoreStatements::enclosureToUpdate(enclosure.remoteUrl()), HERE,
                      {"Query Execution failed", "Invalid mfo:remoteLink"});
    if (!known)
        return false;
    // contract: executed with an empty URI if there is no row. The store decides the result.
    // contract: "updation" is misspelt. Log readers look for it.
    return executeTraced(m_connection, StoreStatements::updateEnclosure(enclosure, firstText(known.get())),
                         HERE, {"Query Execution failed", "mfo:Enclosure updation failed"})
        != nullptr;
}

bool FeedTrackerSparql::updateChannel(const FeedChannel &channel) const
{
    const StoreResult known = execute(m_connection, StoreStatements::channelToUpdate(channel.uri()), HERE,
                                      {"Query Execution failed", "Query Execution Failed - get Channel"});
    if (!known)
        return false;
    if (!known->next() || known->value(0).toString() != channel.uri()) {
        TRACE_CRITICAL << "Channel not found, unable to update";
        return false;
    }
    if (!executeTraced(m_connection, StoreStatements::updateChannel(channel), HERE,
                       {"Query Execution Failed", "Query Execution Failed - update Channel"}))
        return false;
    if (!channel.icon().remoteUrl().isEmpty())
        addEnclosures({channel.icon()}, channel.uri());
    return true;
}

bool FeedTrackerSparql::editChannel(const QString &channelUri, const QVariantMap &properties) const
{
    if (properties.isEmpty()) {
        TRACE_CRITICAL << "No Properties to Update";
        return false;
    }
    const StoreResult known = executeTraced(m_connection, StoreStatements::channelToEdit(channelUri), HERE,
                                            {"Query Execution failed", "Query Execution Failed"});
    if (!known)
        return false;
    if (!known->next() || known->value(0).toString() != channelUri) {
        TRACE_CRITICAL << "Channel not found";
        return false;
    }

    if (properties.contains(LinkKey)) {
        const StoreResult old =
            executeTraced(m_connection, StoreStatements::linkOfChannel(channelUri), HERE,
                          {"Query Execution failed", "Query Execution Failed - getCreated"});
        if (!old)
            return false;
        // The time of subscription is a property of the link, so the new link must keep it.
        // contract: executed with an empty old link if there is no row. The store decides the result.
        const QString oldLink = firstText(old.get());
        const QDateTime created = QDateTime::fromString(old->value(1).toString(), Qt::ISODate);
        if (!executeTraced(
                m_connection,
                StoreStatements::editLink(channelUri, oldLink, properties.value(LinkKey).toString(), created),
                HERE, {"Query Execution failed", "Query Execution Failed - link Query"}))
            return false;
    }
    if (properties.contains(TitleKey)
        && !executeTraced(m_connection,
                          StoreStatements::editTitle(channelUri, properties.value(TitleKey).toString()), HERE,
                          {"Query Execution failed", "Query Execution Failed!!!"}))
        return false;
    // contract: "Updation" is misspelt. Log readers look for it.
    return !properties.contains(LastModifiedTimeKey)
        || executeTraced(m_connection,
                         StoreStatements::editLastModifiedTime(
                             channelUri, properties.value(LastModifiedTimeKey).toString()),
                         HERE, {"Query Execution failed", "Updation of Last Modified time failed"});
}

void FeedTrackerSparql::deleteChannel(const QString &channelUri)
{
    if (channelUri.isEmpty()) {
        TRACE_CRITICAL << "channelUri empty";
        return;
    }
    const StoreResult known = executeTraced(m_connection, StoreStatements::channelToDelete(channelUri), HERE,
                                            {"Query Execution failed", "Query Execution Failed"});
    if (!known)
        return;
    if (!known->next()) {
        TRACE_CRITICAL << "Channel not found for given channelUri";
        return;
    }
    const QUrl link(known->value(1).toString());
    const QString image = known->value(2).toString();
    if (!execute(m_connection, StoreStatements::deleteChannel(channelUri, link), HERE,
                 {"Query Execution failed", "Query Execution Failed "}))
        return;
    // The channel must be gone first, because both functions ask whether another channel uses the image or
    // the messages.
    deleteChannelImageIfNotInUse(channelUri, image);
    deleteMessages(channelUri);
}

void FeedTrackerSparql::deleteAllChannels()
{
    const QStringList uris = allChannelUrls();
    for (const QString &uri : uris)
        deleteChannel(uri);
}

void FeedTrackerSparql::deleteMessage(const QString &messageUri, const QString &channelUri)
{
    const StoreResult known =
        executeTraced(m_connection, StoreStatements::messageToDelete(messageUri, channelUri), HERE,
                      // contract: lower case. Log readers look for it.
                      {"query execution failed", "query execution failed"});
    if (!known)
        return;
    QUrl link;
    if (known->next()) {
        deleteEnclosures(known->value(0).toString()); // contract: before the message. Stores know this order.
        link = QUrl(known->value(1).toString());
    }
    if (link.isEmpty()) {
        TRACE_CRITICAL << "Message not found";
        return;
    }
    execute(m_connection, StoreStatements::deleteMessage(messageUri, link), HERE,
            {"Query Execution failed", "Query Execution failed", FailureTexts::PreparedTextAlways});
}

bool FeedTrackerSparql::deleteMessages(const QString &channelUri)
{
    if (channelUri.isEmpty()) {
        TRACE_CRITICAL << "Channel uri empty";
        return false;
    }
    const StoreResult result = execute(m_connection, StoreStatements::messagesToDelete(channelUri), HERE,
                                       {"Query Execution failed", "Query execution failed "});
    if (!result)
        return false;
    deleteMessages(firstColumnUrls(result.get()));
    return true;
}

void FeedTrackerSparql::deleteMessages(QList<QUrl> messageUris)
{
    if (messageUris.isEmpty()) {
        TRACE_CRITICAL << "Nothing to delete";
        return;
    }
    QString update;
    for (const QUrl &uri : qAsConst(messageUris))
        update += StoreStatements::deleteMessage(uri.toString());
    if (!execute(m_connection, StoreStatements::deletion(update), HERE,
                 {"Query Execution failed", "Delete Query Failed", FailureTexts::LastError}))
        return;
    for (const QUrl &uri : qAsConst(messageUris))
        deleteEnclosures(uri.toString());
}

void FeedTrackerSparql::deleteEnclosures(const QString &messageUri)
{
    if (messageUri.isEmpty()) {
        TRACE_CRITICAL << "messageUri empty";
        return;
    }
    const StoreResult result = execute(m_connection, StoreStatements::enclosuresToDelete(messageUri), HERE,
                                       {"Query Execution failed", "Query execution failed "});
    if (!result)
        return;
    const QList<QUrl> uris = firstColumnUrls(result.get());
    if (uris.isEmpty())
        TRACE_DEBUG << "No enclosures found";
    else
        deleteEnclosures(uris);
}

void FeedTrackerSparql::deleteEnclosures(QList<QUrl> enclosureUris)
{
    if (enclosureUris.isEmpty()) {
        TRACE_CRITICAL << "Nothing to delete";
        return;
    }
    QList<FeedEnclosure> enclosures;
    for (const QUrl &uri : qAsConst(enclosureUris)) {
        const StoreResult result =
            execute(m_connection, StoreStatements::enclosureToDelete(uri), HERE,
                    {"Query Execution failed", "Not able to find enclosure information"});
        if (result)
            enclosures += fileRows(result.get());
    }
    if (enclosures.isEmpty()) {
        TRACE_DEBUG << "No enclosures found";
        return;
    }
    QString update;
    for (const FeedEnclosure &enclosure : qAsConst(enclosures))
        update += StoreStatements::deleteEnclosure(enclosure.uri());
    if (execute(m_connection, StoreStatements::deletion(update), HERE,
                {"Query Execution failed", "Delete Query Failed", FailureTexts::LastError}))
        Q_EMIT enclosuresToBeDeleted(enclosures);
}

void FeedTrackerSparql::deleteChannelImage(const QString &channelUri) const
{
    if (const auto file = forgetChannelImage(channelUri, HERE))
        QFile::remove(*file); // contract: also called with an empty path, whose warning log readers know
}

void FeedTrackerSparql::deleteChannelImageIfNotInUse(const QString &channelUri, const QString &image) const
{
    const auto file = forgetChannelImage(channelUri, HERE);
    if (!file)
        return;
    const StoreResult users = execute(m_connection, StoreStatements::channelsWithImage(image), HERE,
                                      {"Query Execution failed", "Query Execution Failed"});
    if (users && users->size() == 0)
        QFile::remove(*file);
}

// contract: the delete statement is executed even if the channel has no image. Stores know both statements.
std::optional<QString> FeedTrackerSparql::forgetChannelImage(const QString &channelUri,
                                                             const QstTraceOrigin &origin) const
{
    const FailureTexts texts = {"Query Execution failed", "Query Execution Failed"};
    const StoreResult result =
        execute(m_connection, StoreStatements::channelImageFile(channelUri), origin, texts);
    if (!result || !execute(m_connection, StoreStatements::deleteChannelImage(channelUri), origin, texts))
        return std::nullopt;
    return firstText(result.get());
}

void FeedTrackerSparql::deleteOrphans()
{
    deleteOrphanMessages();
    deleteOrphanEnclosures();
}

void FeedTrackerSparql::deleteOrphanMessages()
{
    if (execute(m_connection, StoreStatements::deleteOrphanMessages(), HERE,
                {"Query execution failed", "Error in query execution: "}))
        TRACE_DEBUG << "deleted orphan messages";
}

void FeedTrackerSparql::deleteOrphanEnclosures()
{
    // contract: "preparation" after the first statement, "preperation" after the second. Log readers tell
    // them apart.
    const StoreResult result = execute(m_connection, StoreStatements::orphanEnclosures(), HERE,
                                       {"Query execution failed", "Query preparation failed: "});
    if (!result)
        return;
    QList<FeedEnclosure> enclosures = fileRows(result.get());
    if (enclosures.isEmpty()) {
        TRACE_DEBUG << "No orphan nodes present";
        return;
    }
    TRACE_DEBUG << "enclosure deletion count: " << enclosures.size();
    if (execute(m_connection, StoreStatements::deleteOrphanEnclosures(), HERE,
                {"Query execution failed", "Query preperation failed: "}))
        Q_EMIT enclosuresToBeDeleted(enclosures);
}
