// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDTRACKERSPARQL_H
#define FEEDTRACKERSPARQL_H

#include "feedchannel.h"
#include "feedenclosure.h"
#include "feedmessage.h"
#include "tidelglobal.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <optional>

class QSparqlConnection;
class QSparqlResultRow;
struct QstTraceOrigin;

/**
 * The one gateway between the feed model and the store.
 *
 * Channels, messages and enclosures are resources of the store, named by URIs. A channel is known by its
 * link, a message by its link and an enclosure by its remote URL: what is stored already is linked to its new
 * owner instead of being stored twice.
 *
 * \code
 * FeedTrackerSparql *store = FeedTrackerSparql::instance();
 * const QString uri = store->addChannel(channel);
 * if (!uri.isEmpty() && store->addMessages(channel.messages(), uri))
 *     show(store->messagesForChannel(uri));
 * \endcode
 *
 * An operation that fails returns its empty value and writes one critical trace in the category "Tracker";
 * nothing is thrown. Every operation blocks until the store has answered. All calls belong to one thread,
 * whose event loop frees what the operations release.
 *
 * Links are pasted or bound as IRIs: hand over absolute, encoded URLs. A value that would end its place in a
 * statement early makes the store refuse the whole statement.
 */
class TIDEL_EXPORT FeedTrackerSparql : public QObject
{
    Q_OBJECT

public:
    /// The store object, made and connected by the first call. It is returned even when the store cannot be
    /// opened.
    static FeedTrackerSparql *instance();
    /// Deletes the store object; the next instance() makes a new one.
    static void releaseInstance();
    ~FeedTrackerSparql() override;

    /// Keys of the properties that a channel can be edited by.
    static const QString LinkKey;
    static const QString TitleKey;
    static const QString LastModifiedTimeKey;

    /// \name Reading channels
    /// @{
    /// All channels, in the store's order, without their messages, icons and descriptions.
    QList<FeedChannel> allChannels() const;
    /// The URIs of all channels.
    QStringList allChannelUrls() const;
    /// The channel \a uri; a default channel when there is none.
    FeedChannel channelForUri(const QString &uri) const;
    /// The type that the channel \a uri was added with; empty when there is none.
    QString channelType(const QString &uri) const;
    /// @}

    /// \name Reading messages and enclosures
    /// @{
    /**
     * The messages of the channel, the first downloaded first, without id, base URL and enclosures. A message
     * is listed once for each of its tags.
     */
    QList<FeedMessage> messagesForChannel(const QString &channelUri) const;
    /// The enclosures of the message. Their MIME type is in FeedEnclosure::typeIcon().
    QList<FeedEnclosure> enclosuresForMessage(const QString &messageUri) const;
    /// The enclosure \a uri with all its fields; a default enclosure when there is none.
    FeedEnclosure enclosureForUri(const QString &uri) const;
    /// The URIs of the channel's messages.
    QStringList allMessageUrls(const QString &channelUri) const;
    /// The links of the channel's messages, an empty text for a message without one.
    QStringList messageLinksOfChannel(const QString &channelUri) const;
    /// When the channel's newest message was published; invalid when no message says so.
    QDateTime latestPostPublishedTime(const QString &channelUri);
    /// @}

    /// \name Retention
    /// A message may be dropped unless it is tagged as a favourite.
    /// @{
    /// How many of the channel's messages may be dropped.
    int deletableMessageCount(const QString &channelUri) const;
    /**
     * The URIs of at most \a limit messages that may be dropped, the first published first and, of the same
     * date, the first downloaded; those without a date come before all others. Messages without a time of
     * download are counted but not listed. The store refuses a negative limit.
     */
    QStringList deletableMessages(const QString &channelUri, int limit);
    /// @}

    /// \name Adding
    /// @{
    /**
     * Stores the channel without its messages and returns its new URI; empty when that fails or when its link
     * is stored already. An icon with a remote URL becomes an enclosure of \a channel's own URI, not of the
     * new one.
     */
    QString addChannel(const FeedChannel &channel) const;
    /**
     * Stores the messages under the channel in one update; a message whose link is stored already becomes a
     * message of this channel too, and its new enclosures are stored. True when all of that was done.
     */
    bool addMessages(const QList<FeedMessage> &messages, const QString &channelUri) const;
    /**
     * The statement that stores \a message under the channel; empty when \a channelUri is. The message's
     * enclosures are stored at once, the message itself only when the statement is run.
     */
    QString addMessageQuery(const FeedMessage &message, const QString &channelUri) const;
    /**
     * Stores the enclosures of a message in one update; those whose remote URL is stored already are linked
     * to it. One without a remote URL is left out. True when the update succeeded.
     */
    bool addEnclosures(const QList<FeedEnclosure> &enclosures, const QString &messageUri) const;
    /// Replaces MIME type, length and type icon of the stored enclosure with this remote URL.
    bool updateEnclosure(const FeedEnclosure &enclosure) const;
    /// @}

    /// \name Changing channels
    /// @{
    /**
     * Replaces title, image path and last-modified text of the stored channel of the same URI, also by empty
     * ones, and sets the time of its update to now. An icon with a remote URL is added to its enclosures.
     */
    bool updateChannel(const FeedChannel &channel) const;
    /**
     * Replaces what \a properties name by LinkKey, TitleKey and LastModifiedTimeKey, in this order and each
     * by itself: after a failure the earlier ones stay. The last is the time of the channel's update, ISO
     * 8601 text; any other text fails. Other keys are ignored; with no key at all nothing is done and false
     * returned.
     */
    bool editChannel(const QString &channelUri, const QVariantMap &properties) const;
    /// @}

    /// \name Deleting
    /// What several owners hold stays until the last of them goes. A step that fails leaves the earlier ones.
    /// @{
    /// Deletes the channel, its image, and all messages that no other channel holds, orphans included. One
    /// without a link is not found.
    void deleteChannel(const QString &channelUri);
    void deleteAllChannels();
    /// Deletes the message and those of its enclosures that no other message holds, unless a channel other
    /// than \a channelUri holds it. One without a link is not found.
    void deleteMessage(const QString &messageUri, const QString &channelUri);
    /// Deletes all messages that no channel other than \a channelUri holds, orphans included. False when the
    /// store could not be asked for them.
    bool deleteMessages(const QString &channelUri);
    /// Deletes the messages in one update, whoever holds them, and those of their enclosures that no other
    /// message holds.
    void deleteMessages(QList<QUrl> messageUris);
    /// Deletes the enclosures of the message that no other message holds, as the list of them.
    void deleteEnclosures(const QString &messageUri);
    /// Deletes the enclosures in one update, whoever holds them, and emits enclosuresToBeDeleted(). One
    /// without a remote or a local link stays.
    void deleteEnclosures(QList<QUrl> enclosureUris);
    /// Deletes the enclosures of the channel, which are its image, whoever else holds them, and the file that
    /// the first of them names, a path. A `file:` URL is no path: such a file stays.
    void deleteChannelImage(const QString &channelUri) const;
    /// The same, but the file stays while a channel's image is \a image, a path as FeedEnclosure::localUrl().
    void deleteChannelImageIfNotInUse(const QString &channelUri, const QString &image) const;
    /// @}

    /// \name Clean-up
    /// @{
    /// Both of the following, in this order.
    void deleteOrphans();
    /// Deletes the messages that belong to no channel; one without a link stays.
    void deleteOrphanMessages();
    /// Deletes the enclosures that belong to neither a message nor a channel, and emits
    /// enclosuresToBeDeleted(). One without a remote or a local link stays.
    void deleteOrphanEnclosures();
    /// @}

Q_SIGNALS:
    /// These enclosures are gone from the store; their downloaded files may be removed. URI, remote URL and
    /// local URL are set. The list is the receiver's to change.
    void enclosuresToBeDeleted(QList<FeedEnclosure> &enclosureList);

private:
    FeedTrackerSparql();
    Q_DISABLE_COPY(FeedTrackerSparql)
    void addMissingEnclosures(const FeedMessage &message, const QString &messageUri) const;
    std::optional<QString> forgetChannelImage(const QString &channelUri, const QstTraceOrigin &origin) const;

    static FeedTrackerSparql *_single;

    QSparqlConnection *const m_connection;
};

/// \name Rows of the store's queries as model values
/// An empty row yields a default value. Columns are read by position.
/// @{
TIDEL_EXPORT FeedChannel extractChannel(const QSparqlResultRow &row);
TIDEL_EXPORT FeedMessage extractMessage(const QSparqlResultRow &row);
TIDEL_EXPORT FeedEnclosure extractEnclosure(const QSparqlResultRow &row);
/// @}

/// The statement that makes the stored message with \a message's link a message of the channel too.
TIDEL_EXPORT QString createAssociation(const FeedMessage &message, const QString &channelUri);

#endif
