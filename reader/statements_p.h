// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STATEMENTS_P_H
#define TIDEL_STATEMENTS_P_H

#include "messagefilter.h"

#include <QDateTime>
#include <QHash>
#include <QPair>
#include <QSparqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class FeedChannel;
class FeedEnclosure;
class FeedMessage;
class QUrl;

/**
 * All statements of this library. Every value is bound or escaped here, so that no value can change the
 * structure of a statement.
 *
 * A query names a property once: if a property stands in a query twice, Tracker reads all its values.
 * Functions that return text return pieces of one update, see update().
 */
namespace Tidel::Statements {

/// \name Pieces
/// @{
/// The literal \a text.
QString literal(const QString &text);
/// The resource \a address, an absolute address.
QString iri(const QString &address);
/// The update that consists of the pieces \a text.
QSparqlQuery update(const QString &text);
/// @}

/// \name Details
/// Properties that the stock ontology does not have, by their names.
/// @{
extern const QString droppedLink; ///< Of a channel: the link of a dropped message without a key.
extern const QString droppedKey; ///< Of a channel: the key of a dropped message.
extern const QString folder; ///< Of a channel: the path of its folder.
extern const QString interval; ///< Of a channel: how often the user wants to know what is new, in seconds.
extern const QString retention; ///< Of a channel: which of its messages are dropped.
extern const QString website; ///< Of a channel: the address of its website.
extern const QString itemKey; ///< Of a message: the key of its item.
extern const QString digest; ///< Of a message: the digest of its texts.
extern const QString earlierVersionsName; ///< Of a message: its earlier versions.
/// URI, property, value of the properties \a names of \a uris; detailName() is the name of such a property.
QSparqlQuery details(const QStringList &uris, const QStringList &names);
/// The properties \a names of \a uri, each in a column of its own. Each row has one value. The text of the
/// query does not depend on \a uri.
QSparqlQuery detailsOf(const QString &uri, const QStringList &names);
QString detailName(const QString &property);
/// URI, and the properties \a names, which only channels have, each in a column of its own. Each row has one
/// value.
QSparqlQuery detailsOfChannels(const QStringList &names);
/// URI, value of the property \a name of all that have it.
QSparqlQuery everyDetail(const QString &name);
/// Gives \a uri values of properties; empty if there are none.
QString insertDetails(const QString &uri, const QVector<QPair<QString, QVariant>> &values);
/// Deletes all values of the properties \a names of \a uris.
QString deleteDetails(const QStringList &uris, const QStringList &names);
/// @}

/// \name Channels
/// @{
/// URI, title, link, type, last-modified text, time of subscription, time of the last update.
QSparqlQuery channels();
/// Channel URI, number of its parts, which are messages and images; no row for a channel without any.
QSparqlQuery partCounts();
/// Channel URI, number of its images; no row for a channel without any.
QSparqlQuery imageCounts();
/// Channel URI, remote link and local link of its images.
QSparqlQuery imagesOfChannels();
/// The URI of the channel that has \a link.
QSparqlQuery channelWithLink(const QString &link);
/// The title of the channel that has \a link.
QSparqlQuery titleOfLink(const QString &link);
/// Those of \a links that a channel has.
QSparqlQuery linksOfChannels(const QStringList &links);
/// The channel \a uri with title, type, link and image path, subscribed to now. The store refuses the update
/// if a channel has the link.
QString insertChannel(const FeedChannel &channel, const QString &uri);
QString replaceTitle(const QString &channelUri, const QString &title);
/// Makes the next refresh read the whole document.
QString forgetValidators(const QString &channelUri);
/// Gives the channel another type.
QString replaceType(const QString &channelUri, const QString &type);
/// Gives the channel another folder, or none if \a path is empty.
QString replaceFolder(const QString &channelUri, const QString &path);
/// Moves the time of subscription from \a oldLink to \a newLink, forgets the validators, which belong to the
/// old document, and keeps the first link as `nie:identifier`.
QString replaceLink(const QString &channelUri, const QString &oldLink, const QString &newLink);
/// Deletes the channel, the description of its link, and that anything belongs to the channel.
QString deleteChannel(const QString &channelUri, const QString &link);
/// Link, first link if it is another one, entity tag, last-modified text, type, last error.
QSparqlQuery feedState(const QString &channelUri);
/// Number of messages and images, note about the items, time of the last update.
QSparqlQuery itemNote(const QString &channelUri);
/// The local time as the store has it.
QString localTimeText();
/// Notes what the server said of the document that was read at \a time, and \a items about its items. Empty
/// texts delete what is stored.
QString noteReading(const QString &channelUri, const QString &entityTag, const QString &lastModified,
                    const QString &time, const QString &items);
/// Deletes the note about the items.
QString forgetItemNote(const QString &channelUri);
/// Replaces the properties \a names of the channel, if it is stored, by \a values.
QString replaceNotes(const QString &channelUri, const QStringList &names,
                     const QVector<QPair<QString, QVariant>> &values);
/// Gives the channel another interval, or none if it is 0, and makes it due.
QString replaceInterval(const QString &channelUri, int seconds);
/// Deletes values of the property \a name.
QString deleteDropped(const QString &channelUri, const QString &name, const QStringList &values);
/// @}

/// \name Messages
/// @{
/// URI, title, text, link, date of publication, time of download, whether it is a favorite, summary.
QSparqlQuery messagesOf(const QString &channelUri);
/// As messagesOf(), of the message \a messageUri alone.
QSparqlQuery messageInFull(const QString &messageUri);
/// The titles of the channels that the message belongs to.
QSparqlQuery channelTitlesOf(const QString &messageUri);
/// The URIs of the same channels, in the same order.
QSparqlQuery channelUrisOf(const QString &messageUri);
/// The URIs of all messages of the channel.
QSparqlQuery messageUrisOf(const QString &channelUri, int limit);
/// The URI of the message that has the link \a address.
QSparqlQuery messageWithLink(const QUrl &address);
/// The message \a uri, if it is stored.
QSparqlQuery message(const QUrl &uri);
/// Link, the same link, title, date of the messages \a links.
QSparqlQuery headlinesOfLinks(const QStringList &links);
/// URI, link, title, date of the messages \a uris.
QSparqlQuery headlines(const QStringList &uris);
/// Those of \a links that anything has.
QSparqlQuery usedLinks(const QStringList &links);
/// Link, and whether it belongs to a channel, to a message, and to a message of the channel \a channelUri;
/// URI, key and digest of the message.
QSparqlQuery linkUse(const QStringList &links, const QString &channelUri);
/// Those of \a keys that a message has.
QSparqlQuery usedKeys(const QStringList &keys);
/// Key, URI, link and digest of the messages \a keys of the channel.
QSparqlQuery messagesWithKeys(const QStringList &keys, const QString &channelUri);
/// Message, link, key, channel. A message with several of them is in several rows.
QSparqlQuery linksAndKeys(const QStringList &uris);
/// Message, title, text, summary, earlier versions, channel.
QSparqlQuery texts(const QStringList &uris);
/// The earlier versions of the message, as one text.
QSparqlQuery earlierVersions(const QString &messageUri);
/// \a time is the localTimeText() of the download.
QString insertMessage(const FeedMessage &message, const QString &uri, const QString &channelUri,
                      const QString &time);
/// Those of \a links that are links of messages.
QSparqlQuery knownLinks(const QStringList &links);
/// Makes the store refuse the update if a message has one of \a links.
QString refuseLinks(const QStringList &links);
/// Deletes title, text and summary of the messages \a uris.
QString deleteTexts(const QStringList &uris);
/// Gives the message \a uri title, text and summary, and replaces its date of publication if there is one.
QString insertTexts(const FeedMessage &message, const QString &uri);
/// Makes the stored messages \a links messages of the channel too.
QString linkMessages(const QStringList &links, const QString &channelUri);
/// Gives the message with the link \a link the key \a key too.
QString insertKey(const QString &link, const QString &key);
/// Makes the message a favorite or no favorite, and notes the time if this changes anything.
QString changeFavorite(const QString &messageUri, bool isFavorite, const QDateTime &time);
/// As changeFavorite(), and always notes the time if it is valid.
QString replaceFavorite(const QString &messageUri, bool isFavorite, const QDateTime &time);
/// The number of messages of the channel that are no favorites.
QSparqlQuery droppableCount(const QString &channelUri);
/// URI and time of reading of \a limit of these messages, the oldest first.
QSparqlQuery droppableMessages(const QString &channelUri, int limit);
/// As droppableMessages(), of those that were published before \a before. A message without a date counts
/// with the time of its download.
QSparqlQuery droppableBefore(const QString &channelUri, const QDateTime &before);
/// Gives the rule \a rule to the channel, or to all that have none if \a channelUri is empty. Deletes the
/// rule if it is empty.
QString replaceRetention(const QString &channelUri, const QString &rule);
/// The resource that the rule of all channels is stored with.
extern const QString everyChannel;
/// @}

/// \name Read state
/// @{
/// URI, number, mark of change, time of reading, time of marking as unread of those of \a uris that are
/// stored. Number and mark are those of the searches below.
QSparqlQuery readStates(const QStringList &uris);
/// Gives the stored messages \a uris \a time as the time of reading, or as the time of marking as unread, and
/// deletes the other one.
QString replaceReadState(const QStringList &uris, bool isRead, const QDateTime &time);
/// Channel URI, number of its messages that were read; no row for a channel without any.
QSparqlQuery readCounts();
/// The URIs of the unread messages, the oldest first: those of the channel, or all if it is empty; those that
/// are older than \a before, or all if it is invalid. The age of a message without a date is that of its
/// download.
QSparqlQuery unreadMessages(const QString &channelUri, const QDateTime &before);
/// @}

/// \name Lists
/// @{
/// Which messages a list shows.
struct ListFilter : MessageFilter
{
    Qt::SortOrder order = Qt::DescendingOrder; ///< By date, or by the time of storing without a date.
    int limit = 0; ///< Without a limit if it is 0.
    bool asksWhetherRead = false; ///< For lists of URIs.
};
/// URI, link, title, date, whether it is a message, a favorite, and read: messages with a date.
QSparqlQuery datedHeadlines(const ListFilter &filter);
/// As datedHeadlines(), but looks only at the newest \a count of all messages.
QSparqlQuery headlinesAmongNewest(const ListFilter &filter, int count);
/// As datedHeadlines(), messages without a date.
QSparqlQuery undatedHeadlines(const ListFilter &filter);
/// As datedHeadlines(), of the messages \a uris in any order.
QSparqlQuery headlinesOf(const QStringList &uris);
/// URI, number, and if it is asked whether it was read, of the messages with a date. A message can be in
/// several rows. Takes no limit.
QSparqlQuery datedUris(const ListFilter &filter);
/// As datedUris(), messages without a date.
QSparqlQuery undatedUris(const ListFilter &filter);
/// Message, channel that it belongs to.
QSparqlQuery channelsOfAllMessages();
/// Channel URI, title.
QSparqlQuery titlesOfChannels();
/// The number of messages of the channels \a channelUris and their images.
QSparqlQuery countOfParts(const QStringList &channelUris);
/// The number of messages that were read.
QSparqlQuery countOfRead();
/// URI, title of messages whose title contains \a part in any case, those first whose title is \a part.
QSparqlQuery messagesTitled(const QString &part, int limit);
/// @}

/// \name Enclosures
/// @{
/// URI, remote link, local link, group, size, default, optional, icon, MIME type.
QSparqlQuery enclosuresOf(const QString &messageUri);
QSparqlQuery enclosure(const QString &uri);
/// Message, enclosure, remote link, local link.
QSparqlQuery filesOf(const QStringList &messageUris);
/// The URIs of the enclosures of the message, in a fixed order.
QSparqlQuery enclosureUrisOf(const QString &messageUri);
/// The URIs of the enclosures with the remote link \a address.
QSparqlQuery enclosuresWithLink(const QUrl &address);
/// Those of \a links that are remote links of enclosures.
QSparqlQuery knownRemoteLinks(const QStringList &links);
/// Inserts an enclosure that belongs to nothing yet.
QString insertEnclosure(const FeedEnclosure &enclosure, const QString &uri);
/// Makes the store refuse the update if an enclosure has one of the remote \a links.
QString refuseRemoteLinks(const QStringList &links);
/// Makes stored enclosures parts of stored messages. \a pairs holds a remote link and the link of a message
/// for each.
QString linkEnclosures(const QList<QPair<QString, QString>> &pairs);
/// Makes the stored enclosure \a remoteLink a part of \a ownerUri.
QString linkEnclosure(const QString &remoteLink, const QString &ownerUri);
/// Replaces local link, size and MIME type.
QSparqlQuery replaceFile(const FeedEnclosure &enclosure);
/// The enclosures that wait to be downloaded, and when each was added.
QSparqlQuery queuedEnclosures();
/// Enclosure, time at which it was added to those, for those of \a uris that wait.
QSparqlQuery queuedTimes(const QStringList &uris);
/// Adds the enclosures \a uris that do not wait, each a millisecond after the one before; the first one at
/// \a time.
QString queueEnclosures(const QStringList &uris, QDateTime time);
/// Makes the enclosures \a uris wait no more.
QString unqueueEnclosures(const QStringList &uris);
/// @}

/// \name Archive
/// @{
/// Class, number of resources, for channels, messages and enclosures. No row for a class without resources.
QSparqlQuery archiveSize();
/// Describes all that this library stores.
QSparqlQuery archive();
enum class Kind { Channel, Message, Enclosure };
/// The prefixed name of the class of \a kind.
const char *className(Kind kind);
/// The URIs of all resources of \a kind.
QSparqlQuery resourcesOf(Kind kind);
/// Link, resource of \a kind that has it.
QSparqlQuery resourcesWithLinks(Kind kind, const QStringList &links);
/// Those of \a uris that are resources of \a kind.
QSparqlQuery resourcesAmong(Kind kind, const QStringList &uris);
/// Key, message that has it.
QSparqlQuery messagesWithKeys(const QStringList &keys);
/// @}

/// \name Removal
/// @{
/// Removes \a messages from the channel: deletes those that no other channel has.
QString removeMessages(const QStringList &messages, const QString &channelUri);
/// Which messages stay in their channel when others are dropped.
enum class Spared { Nothing, Favorites, FavoritesAndUnread };
/// As removeMessages(), and leaves \a spared in the channel.
QString dropMessages(const QStringList &messages, const QString &channelUri, Spared spared);
/// Stores under the detail \a name of the channel by what it knows dropped messages: the second text of each
/// pair. The first one is the URI of the message. Leaves \a spared out. Nothing if the channel is not stored.
QString insertDropped(const QString &channelUri, const QString &name,
                      const QVector<QPair<QString, QString>> &values, Spared spared);
/// Those of \a messages that a channel other than \a channelUri has, too.
QSparqlQuery messagesOfOthers(const QStringList &messages, const QString &channelUri);
/// Those of \a messages that are favorites.
QSparqlQuery favoritesAmong(const QStringList &messages);
/// Enclosure, owner.
QSparqlQuery ownersOf(const QStringList &enclosures);
/// Those of \a uris that are in the channel.
QSparqlQuery messagesAmong(const QStringList &uris, const QString &channelUri);
/// URI, remote link and local link of the enclosures of \a owners, which are messages or channels. An
/// enclosure of several owners or with several links is in several rows.
QSparqlQuery enclosuresOfOwners(const QStringList &owners);
/// Those of \a uris that are enclosures.
QSparqlQuery enclosuresAmong(const QStringList &uris);
/// Deletes those of \a enclosures that belong to neither a message nor a channel.
QString deleteReleased(const QStringList &enclosures);
/// Deletes that \a parts belong to \a ownerUri.
QString release(const QStringList &parts, const QString &ownerUri);
/// Deletes all that the store says of \a resources.
QString deleteResources(const QStringList &resources);
/// Messages with a link that belong to no channel and are no favorites.
QSparqlQuery orphanMessages();
/// URI, remote link and local link of the enclosures that belong to neither a message nor a channel.
QSparqlQuery orphanEnclosures();
/// @}

/// \name Search
/// The store numbers its resources. It gives the number of a deleted one to a new one.
/// @{
/// Number, mark of change, URI, title, text, summary, date of publication of the messages \a numbers.
QSparqlQuery searchable(const QVector<qlonglong> &numbers);
/// As searchable(), of the first \a limit messages after the number \a last.
QSparqlQuery searchableAfter(qlonglong last, int limit);
/// Number and mark of change of all messages. Most changes of a message change its mark.
QSparqlQuery messageStates();
/// One row of sums over all messages: 1, the number, the mark of change, the product of both.
QSparqlQuery sumsOfMessageStates();
/// Number and URI of the first \a limit messages after the number \a last that were added at \a time or
/// later, in the order of their numbers.
QSparqlQuery messagesAddedSince(const QDateTime &time, qlonglong last, int limit);
/// The numbers of all messages of the channels, or of all channels if there are none.
QSparqlQuery numbersOfMessages(const QStringList &channelUris, bool onlyFavorites);
/// Those of the messages \a numbers that were read.
QSparqlQuery readAmong(const QVector<qlonglong> &numbers);
/// The URIs of the messages \a numbers.
QSparqlQuery urisOf(const QVector<qlonglong> &numbers);
/// Message, title of a channel that it belongs to.
QSparqlQuery channelTitles(const QStringList &messageUris);
/// @}

/// \name Changes
/// Numbers and marks of change are those of the searches. A block is blockSize numbers that follow each
/// other.
/// @{
constexpr int blockSize = 1024;
/// The highest number, and the highest mark.
QSparqlQuery lastNumbers();
/// Block, number of its resources, sum of their marks, sum of number times mark.
QSparqlQuery sumsOfMarks();
/// Block, number of owners of its resources, sum of the owners' numbers, sum of number times owner's number.
QSparqlQuery sumsOfParts();
/// The blocks with resources that were added at \a time or later.
QSparqlQuery blocksAddedSince(const QDateTime &time);
/// Number, mark, URI, digest, whether it is read, whether it is a favorite, in the order of the numbers. A
/// message of several digests is in several rows.
QSparqlQuery messagesInBlocks(qlonglong first, qlonglong last);
/// Number, mark, in the order of the numbers.
QSparqlQuery enclosuresInBlocks(qlonglong first, qlonglong last);
/// Number, number of its owner, in the order of the first ones.
QSparqlQuery partsInBlocks(qlonglong first, qlonglong last);
/// URI, number, mark, title, link, type. A channel with several values is in several rows.
QSparqlQuery shownChannels();
/// @}

/// \name Check
/// These read all resources of a kind.
/// @{
/// The links that identify several resources of \a kind.
QSparqlQuery linksOfSeveral(Kind kind);
/// The resources of \a kind that have \a link, the oldest first.
QSparqlQuery resourcesWithLink(Kind kind, const QString &link);
/// The properties that a resource of \a kind has once, though the ontology allows several values.
QStringList singleProperties(Kind kind);
QSparqlQuery withSeveralValues(Kind kind, const QString &property);
QSparqlQuery withoutValue(Kind kind, const QString &property);
/// The channels whose link has no time of subscription.
QSparqlQuery channelsWithoutTime();
/// Gives empty texts to the resources without a value.
QString insertEmptyTexts(Kind kind, const QString &property);
/// Gives channels without a title their link as title.
QString insertTitlesOfChannels();
/// Makes the next refresh read all documents and write all of their messages.
QString forgetReadings();
/// Gives a time of download to the messages without one: now.
QString insertDownloadTimes();
/// Gives a time of subscription to the links of channels without one: now.
QString insertSubscriptionTimes();
QString insertLink(const QString &uri, const QString &link);
/// Resource, property and value of all that the store says of \a uris.
QSparqlQuery everythingOf(const QStringList &uris);
/// \a property is a full name, \a term a literal or a resource as it stands in a statement.
QString insertValue(const QString &uri, const QString &property, const QString &term);
/// As insertValue(), and deletes the values before.
QString replaceValue(const QString &uri, const QString &property, const QString &term);
/// Adds the resource \a uri of the class \a type, a prefixed name, with values of properties as insertValue()
/// takes them.
QString insertResource(const QString &uri, const char *type, const QHash<QString, QStringList> &values);
/// What belongs to \a fromUri belongs to \a toUri then.
QString moveParts(const QString &fromUri, const QString &toUri);
/// Enclosure and local link of the downloaded enclosures.
QSparqlQuery localFiles();
/// The remote links of the enclosures that wait to be downloaded.
QSparqlQuery queuedAddresses();
/// Leaves the enclosure without a local link.
QString forgetFile(const QString &enclosureUri);
/// @}

/// \name Copying
/// @{
/// Namespace, prefix.
QSparqlQuery namespaces();
QSparqlQuery classes();
/// Property, class or datatype of its values.
QSparqlQuery properties();
/// All resources.
QSparqlQuery resources();
/// \a uri belongs to the class.
QString typeFact(const QString &uri, const QString &className);
/// \a uri has \a value as \a property, a full name.
QString fact(const QString &uri, const QString &property, const QVariant &value);
QSparqlQuery insertFacts(const QStringList &facts);
/// The number of resources of \a kind.
QSparqlQuery countOf(Kind kind);
QSparqlQuery countOfFavorites();
/// The number of favorites that were read.
QSparqlQuery countOfReadFavorites();
/// The number of messages that belong to no channel.
QSparqlQuery countOfStrays();
/// Makes these messages belong to the channel.
QString adoptStrays(const QString &channelUri);
/// @}

/// \name Statistics
/// @{
/// The number of enclosures with a local copy.
QSparqlQuery countOfLocalCopies();
/// Channel, date of its newest message.
QSparqlQuery newestMessages();
/// The dates of all messages that were published since then.
QSparqlQuery datesSince(const QDateTime &since);
/// @}

} // namespace Tidel::Statements

#endif
