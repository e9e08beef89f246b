// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STATEMENTS_H
#define STATEMENTS_H

#include <feedchannel.h>
#include <feedenclosure.h>
#include <feedmessage.h>

#include <QString>

/**
 * The exact texts of the statements that the store must get.
 *
 * Resources are given as they stand between angle brackets, so each test states their encoding. Statements
 * that write take the URN that they create, such as URN1, see patterned().
 */
namespace Statements {

QString allChannels();
QString allChannelUrls();
QString channelForUri(const QString &uri);
QString channelType(const QString &uri);

QString messagesForChannel(const QString &channelUri);
QString enclosuresForMessage(const QString &messageUri);
QString enclosureForUri(const QString &uri);
QString allMessageUrls(const QString &channelUri);
QString messageLinksOfChannel(const QString &channelUri);
QString latestPostPublishedTime(const QString &channelUri);

QString channelLookup(const QString &link);
QString channelInsert(const FeedChannel &channel, const QString &link, const QString &urn);

QString messageLookup(const QString &link);
/// The texts must not need escaping. The date is given as it is written.
QString messageInsert(const FeedMessage &message, const QString &publishedDate, const QString &channelUri,
                      const QString &urn);
QString association(const QString &link, const QString &channelUri);

QString enclosureLookup(const QString &remoteUrl);
QString enclosureInsert(const FeedEnclosure &enclosure, const QString &ownerUri, const QString &urn);
QString enclosureLink(const QString &enclosureUri, const QString &ownerUri);
QString enclosureToUpdate(const QString &remoteUrl);
QString enclosureUpdate(const FeedEnclosure &enclosure, const QString &uri);

QString deletableMessageCount(const QString &channelUri);
QString deletableMessages(const QString &channelUri, int limit);

QString channelToUpdate(const QString &channelUri);
QString channelUpdate(const FeedChannel &channel);
QString channelToEdit(const QString &channelUri);
QString linkOfChannel(const QString &channelUri);
QString linkEdit(const QString &channelUri, const QString &oldLink, const QString &newLink,
                 const QString &created);
QString titleEdit(const QString &channelUri, const QString &title);
QString lastModifiedTimeEdit(const QString &channelUri, const QString &time);

QString channelToDelete(const QString &channelUri);
QString channelDeletion(const QString &channelUri, const QString &link);
QString messageToDelete(const QString &messageUri, const QString &channelUri);
QString messageDeletion(const QString &messageUri, const QString &link);
QString messagesToDelete(const QString &channelUri);
QString messagePiece(const QString &messageUri);

QString enclosuresToDelete(const QString &messageUri);
QString enclosureToDelete(const QString &enclosureUri);
QString enclosurePiece(const QString &enclosureUri);
QString imageFile(const QString &channelUri);
QString imageDeletion(const QString &channelUri);
QString imageUsers(const QString &image);

QString orphanMessageDeletion();
QString orphanEnclosures();
QString orphanEnclosureDeletion();

} // namespace Statements

#endif
