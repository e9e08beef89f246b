// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STORESTATEMENTS_P_H
#define STORESTATEMENTS_P_H

#include <QSparqlQuery>

#include <QString>

class FeedChannel;
class FeedEnclosure;
class FeedMessage;
class QDateTime;
class QUrl;

/**
 * The statements of the store's operations.
 *
 * A statement that is returned as text is a piece of an update; insertion() and deletion() make the query.
 * Values are bound, or pasted by fillTemplate().
 */
// contract: every text, also double blanks, missing blanks and unused variables. Other programs and stores
// know them.
namespace StoreStatements {

/// \name Reading
/// @{
QSparqlQuery allChannels();
QSparqlQuery allChannelUrls();
QSparqlQuery channelForUri(const QString &uri);
QSparqlQuery channelType(const QString &uri);
QSparqlQuery messagesForChannel(const QString &channelUri);
QSparqlQuery enclosuresForMessage(const QString &messageUri);
QSparqlQuery enclosureForUri(const QString &uri);
QSparqlQuery allMessageUrls(const QString &channelUri);
QSparqlQuery messageLinksOfChannel(const QString &channelUri);
QSparqlQuery latestPostPublishedTime(const QString &channelUri);
QSparqlQuery deletableMessageCount(const QString &channelUri);
QSparqlQuery deletableMessages(const QString &channelUri, int limit);
/// @}

/// \name Adding
/// @{
QSparqlQuery channelWithLink(const QUrl &link);
QSparqlQuery insertChannel(const FeedChannel &channel, const QUrl &urn);
QSparqlQuery messageWithLink(const QString &link);
QString insertMessage(const FeedMessage &message, const QString &urn, const QString &channelUri);
QString linkMessage(const QString &link, const QString &channelUri);
QSparqlQuery enclosureWithLink(const QString &remoteUrl);
QString insertEnclosure(const FeedEnclosure &enclosure, const QString &urn, const QString &ownerUri);
QString linkEnclosure(const QString &enclosureUri, const QString &ownerUri);
/// Returns the update whose pieces are joined in \a text.
QSparqlQuery insertion(const QString &text);
/// @}

/// \name Changing
/// @{
QSparqlQuery enclosureToUpdate(const QString &remoteUrl);
QSparqlQuery updateEnclosure(const FeedEnclosure &enclosure, const QString &uri);
QSparqlQuery channelToUpdate(const QString &channelUri);
QSparqlQuery updateChannel(const FeedChannel &channel);
QSparqlQuery channelToEdit(const QString &channelUri);
QSparqlQuery linkOfChannel(const QString &channelUri);
QSparqlQuery editLink(const QString &channelUri, const QString &oldLink, const QString &newLink,
                      const QDateTime &created);
QSparqlQuery editTitle(const QString &channelUri, const QString &title);
QSparqlQuery editLastModifiedTime(const QString &channelUri, const QString &time);
/// @}

/// \name Deleting
/// @{
QSparqlQuery channelToDelete(const QString &channelUri);
QSparqlQuery deleteChannel(const QString &channelUri, const QUrl &link);
QSparqlQuery messageToDelete(const QString &messageUri, const QString &channelUri);
QSparqlQuery deleteMessage(const QString &messageUri, const QUrl &link);
QSparqlQuery messagesToDelete(const QString &channelUri);
QString deleteMessage(const QString &messageUri);
QSparqlQuery enclosuresToDelete(const QString &messageUri);
QSparqlQuery enclosureToDelete(const QUrl &enclosureUri);
QString deleteEnclosure(const QString &enclosureUri);
/// Returns the update whose pieces are joined in \a text.
QSparqlQuery deletion(const QString &text);
QSparqlQuery channelImageFile(const QString &channelUri);
QSparqlQuery deleteChannelImage(const QString &channelUri);
QSparqlQuery channelsWithImage(const QString &image);
QSparqlQuery deleteOrphanMessages();
QSparqlQuery orphanEnclosures();
QSparqlQuery deleteOrphanEnclosures();
/// @}

} // namespace StoreStatements

#endif
