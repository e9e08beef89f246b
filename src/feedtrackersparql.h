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
 * Stores channels, messages and enclosures, and reads them back. This is the only object that uses the store.
 *
 * Channels, messages and enclosures are resources of the store, named by URIs. The store knows a channel and
 * a message by its link, and an enclosure by its remote URL. If a message or an enclosure is stored already,
 * it is linked to its new owner and not stored twice.
 *
 * \code
 * FeedTrackerSparql *store = FeedTrackerSparql::instance();
 * const QString uri = store->addChannel(channel);
 * if (!uri.isEmpty() && store->addMessages(channel.messages(), uri))
 *     show(store->messagesForChannel(uri));
 * \endcode
 *
 * An operation that fails returns its empty value and writes one critical trace in the category "Tracker". No
 * operation throws. Each operation blocks until the store has answered. Call all of them on one thread. Its
 * event loop deletes the objects that the operations release.
 *
 * Pass links as absolute, encoded URLs, because they become IRIs of a statement. If a value would end its
 * place in a statement early, the store refuses the whole statement.
 */
class TIDEL_EXPORT FeedTrackerSparql : public QObject
{
    Q_OBJECT

public:
    /// Returns the store object. The first call creates it and opens the store. The object is returned even
    /// if the store cannot be opened.
    static FeedTrackerSparql *instance();
    /// Deletes the store object if there is one. The next instance() creates a new object.
    static void releaseInstance();
    /// Closes the store when control returns to the event loop.
    ~FeedTrackerSparql() override;

    /// \name Keys of the properties that editChannel() changes
    /// @{
    // contract: "1", "2" and "3". Hosts keep these values.
    static const QString LinkKey; ///< the link
    static const QString TitleKey; ///< the title
    static const QString LastModifiedTimeKey; ///< the time of the update; ISO 8601 text, other texts fail
    /// @}

    /// \name Reading channels
    /// @{
    /// Returns all channels in the order of the store, without messages, icons and descriptions; an empty
    /// list on failure. A channel with several links is listed once for each of them.
    // contract: the time of subscription stays empty, because it is a property of the link. Hosts know this.
    QList<FeedChannel> allChannels() const;
    /// Returns the URIs of all channels; an empty list on failure.
    QStringList allChannelUrls() const;
    /// Returns the channel \a uri without messages, icon and description; a default-constructed channel if it
    /// is not stored or on failure.
    FeedChannel channelForUri(const QString &uri) const;
    /// Returns the type that the channel \a uri was added with; empty if there is no such channel or on
    /// failure.
    QString channelType(const QString &uri) const;
    /// @}

    /// \name Reading messages and enclosures
    /// @{
    /**
     * Returns the messages of the channel, sorted by the time of their download, oldest first, without id,
     * base URL and enclosures; an empty list on failure. A message without title, description, summary, link
     * or time of download is not listed.
     */
    // contract: a message is listed once for each of its tags. Hosts merge the entries.
    QList<FeedMessage> messagesForChannel(const QString &channelUri) const;
    /// Returns the enclosures of the message; an empty list on failure. Only an enclosure with all of its
    /// properties is listed; MIME type and icon may be missing.
    // contract: FeedEnclosure::typeIcon() has the MIME type, mimeType() is empty. Hosts read it there.
    QList<FeedEnclosure> enclosuresForMessage(const QString &messageUri) const;
    /// Returns the enclosure \a uri with all its fields except the namespace; a default-constructed enclosure
    /// if it is not stored or on failure.
    FeedEnclosure enclosureForUri(const QString &uri) const;
    /// Returns the URIs of the channel's messages; an empty list on failure.
    QStringList allMessageUrls(const QString &channelUri) const;
    /// Returns the links of the channel's messages; an empty list on failure. A message without a link has an
    /// empty text in the list.
    QStringList messageLinksOfChannel(const QString &channelUri) const;
    /// Returns the time when the channel's newest message was published; invalid if no message has such a
    /// time or on failure.
    // contract: not a const member. Hosts are built against this signature.
    QDateTime latestPostPublishedTime(const QString &channelUri);
    /// @}

    /// \name Retention
    /// Messages that are not tagged as favourites may be deleted.
    /// @{
    /// Returns how many of the channel's messages may be deleted; 0 on failure.
    int deletableMessageCount(const QString &channelUri) const;
    /**
     * Returns the URIs of at most \a limit messages that may be deleted; an empty list on failure. They are
     * sorted by the published date and then by the time of download, oldest first. Messages without a
     * published date come first. Messages without a time of download are counted but not listed. The store
     * refuses a negative limit.
     */
    // contract: not a const member. Hosts are built against this signature.
    QStringList deletableMessages(const QString &channelUri, int limit);
    /// @}

    /// \name Adding
    /// @{
    /**
     * Stores the channel without its messages and returns its new URI; empty if its link is stored already or
     * on failure.
     */
    // contract: an icon with a remote URL becomes an enclosure of channel.uri(), not of the new URI. Hosts
    // know this and call addEnclosures() for the new URI.
    QString addChannel(const FeedChannel &channel) const;
    /**
     * Stores the messages of the channel in one update. A message whose link is stored already is linked to
     * this channel too, and its new enclosures are stored. Returns true on success; otherwise returns false.
     */
    bool addMessages(const QList<FeedMessage> &messages, const QString &channelUri) const;
    /**
     * Stores the enclosures of \a message at once and returns the statement that stores the message itself;
     * empty if \a channelUri is empty. The message is stored when the caller executes the statement.
     */
    QString addMessageQuery(const FeedMessage &message, const QString &channelUri) const;
    /**
     * Stores the enclosures of a message in one update. An enclosure whose remote URL is stored already is
     * linked to the message. An enclosure without a remote URL is skipped. Returns true if the update
     * succeeds; otherwise returns false.
     */
    bool addEnclosures(const QList<FeedEnclosure> &enclosures, const QString &messageUri) const;
    /// Replaces MIME type, length and type icon of the stored enclosure with the remote URL of \a enclosure.
    /// Returns true if the update succeeds; otherwise returns false.
    bool updateEnclosure(const FeedEnclosure &enclosure) const;
    /// @}

    /// \name Changing channels
    /// @{
    /**
     * Replaces title, image path and last-modified text of the stored channel with the same URI, also if the
     * new ones are empty, and sets the time of its update to now. Adds an icon with a remote URL to its
     * enclosures. Returns true on success; false if the channel is not stored or on failure.
     */
    bool updateChannel(const FeedChannel &channel) const;
    /**
     * Replaces the properties that \a properties contains under LinkKey, TitleKey and LastModifiedTimeKey, in
     * this order and each in its own update. After a failure the earlier changes stay. Other keys are
     * ignored. Returns true on success; false if \a properties is empty, if the channel is not stored or on
     * failure.
     */
    bool editChannel(const QString &channelUri, const QVariantMap &properties) const;
    /// @}

    /// \name Deleting
    /// A resource with several owners stays until the last owner is deleted, unless a function says
    /// otherwise. If a step fails, the operation stops and earlier deletions stay.
    /// @{
    /// Deletes the channel, its image, and all messages that no other channel holds. A channel without a link
    /// is not found.
    // contract: deletes messages of no channel too. Hosts rely on this clean-up.
    void deleteChannel(const QString &channelUri);
    /// Deletes every channel as deleteChannel() does.
    void deleteAllChannels();
    /// Deletes the message, and its enclosures that no other message holds. Does nothing if a channel other
    /// than \a channelUri holds the message. A message without a link is not found.
    void deleteMessage(const QString &messageUri, const QString &channelUri);
    /// Deletes all messages that no channel other than \a channelUri holds. Returns true if the store has
    /// listed these messages; otherwise returns false.
    // contract: deletes messages of no channel too. Hosts rely on this clean-up.
    bool deleteMessages(const QString &channelUri);
    /// Deletes the messages in one update, even if other channels hold them, and their enclosures that no
    /// other message holds.
    void deleteMessages(QList<QUrl> messageUris);
    /// Deletes the enclosures of the message that no other message holds, see deleteEnclosures(QList<QUrl>).
    void deleteEnclosures(const QString &messageUri);
    /// Deletes the enclosures in one update, even if others hold them, and emits enclosuresToBeDeleted(). An
    /// enclosure without a remote or a local link stays.
    void deleteEnclosures(QList<QUrl> enclosureUris);
    /// Deletes the enclosures of the channel, which are its image, even if others hold them. Also deletes the
    /// file that the first of them names. A name that is a `file:` URL is not recognized as a path, so that
    /// file stays.
    void deleteChannelImage(const QString &channelUri) const;
    /// Does the same, but keeps the file if \a image is still the image of a stored channel. \a image is a
    /// path like FeedEnclosure::localUrl().
    void deleteChannelImageIfNotInUse(const QString &channelUri, const QString &image) const;
    /// @}

    /// \name Clean-up
    /// @{
    /// Calls deleteOrphanMessages() and then deleteOrphanEnclosures(), also if the first one fails.
    void deleteOrphans();
    /// Deletes the messages that belong to no channel. A message without a link stays.
    void deleteOrphanMessages();
    /// Deletes the enclosures that belong to neither a message nor a channel, and emits
    /// enclosuresToBeDeleted(). An enclosure without a remote or a local link stays.
    void deleteOrphanEnclosures();
    /// @}

Q_SIGNALS:
    /// Emitted when these enclosures have been deleted from the store, so that the host can delete their
    /// downloaded files. Only URI, remote URL and local URL are set.
    // contract: passes a reference that is not const. Receivers may change the list.
    void enclosuresToBeDeleted(QList<FeedEnclosure> &enclosureList);

private:
    FeedTrackerSparql();
    Q_DISABLE_COPY(FeedTrackerSparql)
    void addMissingEnclosures(const FeedMessage &message, const QString &messageUri) const;
    std::optional<QString> forgetChannelImage(const QString &channelUri, const QstTraceOrigin &origin) const;

    static FeedTrackerSparql *_single;

    QSparqlConnection *const m_connection;
};

/// \name Conversion of the store's result rows
/// Columns are read by their position. A missing or unusable value gives an empty field.
/// @{
/// Returns the channel in \a row; a default-constructed channel if the row is empty.
TIDEL_EXPORT FeedChannel extractChannel(const QSparqlResultRow &row);
/// Returns the message in \a row; a default-constructed message if the row is empty.
TIDEL_EXPORT FeedMessage extractMessage(const QSparqlResultRow &row);
/// Returns the enclosure in \a row; a default-constructed enclosure if the row is empty.
TIDEL_EXPORT FeedEnclosure extractEnclosure(const QSparqlResultRow &row);
/// @}

/// Returns the statement that links the stored message with the link of \a message to the channel too.
TIDEL_EXPORT QString createAssociation(const FeedMessage &message, const QString &channelUri);

#endif
