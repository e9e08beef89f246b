// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDCHANNEL_H
#define FEEDCHANNEL_H

#include "feedmessage.h"

class FeedChannelPrivate;

/// One subscribed feed. It keeps its messages newest first.
///
/// \code
/// FeedChannel channel;
/// channel.setLink("https://example.org/feed.xml");
/// channel.setTitle("Example");
/// channel.addChild(&message);
/// \endcode
///
/// Copies share one record until one of them is changed. Different threads may copy, read and destroy copies
/// of one channel. While one thread changes an object, no other thread may use that same object.
///
/// Hosts may derive from this class. The destructor is not virtual: destroy an object as its own type.
class TIDEL_EXPORT FeedChannel : public FeedNode
{
public:
    /// Creates a channel with empty texts, a default icon, null times and no messages.
    FeedChannel();
    /// Creates a channel with these values, stored as given: the title is not simplified and the messages are
    /// not sorted.
    // contract: type comes before description, unlike their order in the class. Hosts pass them in this
    // order.
    FeedChannel(const QString &uri, const QString &link, const QString &title, const FeedEnclosure &icon,
                const QString &type, const QString &description, const QDateTime &subscribedTime,
                const QDateTime &updatedTime, const QString &lastModifiedTime, QList<FeedMessage> messages);
    /// Creates a copy that shares the record of \a other.
    FeedChannel(const FeedChannel &other);
    /// Releases the record of this object and shares the record of \a other.
    FeedChannel &operator=(const FeedChannel &other);
    /// Releases the record. The last owner deletes it.
    ~FeedChannel();

    /// Returns the URI of the channel in the store; empty if it is not stored.
    QString uri() const;
    /// Returns the address of the feed, which identifies it in the store; empty if it is unknown.
    QString link() const;
    /// Returns the title; empty if there is none.
    QString title() const;
    /// Returns the image; a default-constructed enclosure if there is none.
    FeedEnclosure icon() const;
    /// Returns the text about the feed; empty if there is none.
    QString description() const;
    /// Returns the kind of channel as free text; empty if there is none.
    QString type() const;
    /// Returns the time when the user subscribed; invalid if it is unknown.
    QDateTime subscribedTime() const;
    /// Returns the time when the feed was last fetched; invalid if it is unknown.
    QDateTime updatedTime() const;
    /// Returns the time when the feed last changed, as the text that its server gave; empty if it is unknown.
    QString lastModifiedTime() const;
    /// Returns the messages, newest first unless the caller has set them in another order.
    QList<FeedMessage> messages() const;

    /// Sets uri(), stored as given.
    void setUri(const QString &uri);
    /// Sets link(), stored as given.
    void setLink(const QString &link);
    /// Sets title() to \a title without white space at its start and end, and with one blank for each run of
    /// white space in it.
    void setTitle(const QString &title);
    /// Sets icon().
    void setIcon(const FeedEnclosure &icon);
    /// Sets description(), stored as given.
    void setDescription(const QString &description);
    /// Sets type(), stored as given.
    void setType(const QString &type);
    /// Sets subscribedTime().
    void setSubscribedTime(const QDateTime &subscribedTime);
    /// Sets updatedTime().
    void setUpdatedTime(const QDateTime &updatedTime);
    /// Sets lastModifiedTime(). The text is not parsed.
    void setLastModifiedTime(const QString &lastModifiedTime);
    /// Replaces the messages by \a messages in their order. Does not change the given list.
    // contract: takes a reference that is not const. Hosts are built against this signature.
    void setMessages(QList<FeedMessage> &messages);

    /// Inserts \a message before the first message that is not newer. A message without a valid published
    /// date, or not newer than the last message, is appended. A message that the channel already holds is
    /// held twice.
    // contract: does not detach, so copies that share the record get the message too. Hosts call addChild()
    // to detach first.
    void insertMessage(const FeedMessage &message);

    /// Makes sure that this object shares its record with no other object. Every setter and addChild() call
    /// it.
    void detach();

    /// Detaches and inserts \a node, which is a FeedMessage, see insertMessage(). Ignores a null pointer and
    /// nodes of other types.
    void addChild(FeedNode *node) override;

private:
    friend TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedChannel &channel);

    QExplicitlySharedDataPointer<FeedChannelPrivate> d;
};

/// Writes all fields of \a channel as readable text of several lines, in the spacing mode of \a debug. The
/// stream is in spacing mode afterwards.
TIDEL_EXPORT QDebug operator<<(QDebug debug, const FeedChannel &channel);

/// Writes the fields of \a channel and its messages in the version and byte order of \a stream.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedChannel &channel);

/// Reads a channel that was written in the same version and byte order. Copies that share the record of the
/// channel or of its icon() change too, even the enclosure that was given to setIcon(), see
/// operator>>(QDataStream &, FeedEnclosure &). The messages are replaced by new objects in the order of the
/// stream.
///
/// A stream that ends behind a message or an enclosure leaves the status Ok, even if its count promises more
/// of them. Where the bytes arrive piece by piece, as from a socket, send them as one QByteArray, whose size
/// comes first, and read that in a transaction:
/// \code
/// stream.startTransaction();
/// QByteArray bytes;
/// stream >> bytes;
/// if (stream.commitTransaction()) {
///     QDataStream record(bytes);
///     FeedChannel channel;
///     record >> channel;
///     show(channel);
/// }
/// \endcode
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedChannel &channel);

#endif
