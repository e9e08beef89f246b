// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDCHANNEL_H
#define FEEDCHANNEL_H

#include "feedmessage.h"

class FeedChannelPrivate;

/// One subscribed feed, with its messages kept newest first.
///
/// \code
/// FeedChannel channel;
/// channel.setLink("https://example.org/feed.xml");
/// channel.setTitle("Example");
/// channel.addChild(&message);
/// \endcode
///
/// Copies share one record until one of them is written to. They may be copied, read and destroyed in
/// different threads; one object must not be written to while another thread uses that same object.
class TIDEL_EXPORT FeedChannel : public FeedNode
{
public:
    /// A channel with empty texts, a default icon, null times and no messages.
    FeedChannel();
    /// A channel with these values, stored as given: the title is not simplified, the messages are not
    /// sorted. Mind that \a type comes before \a description.
    FeedChannel(const QString &uri, const QString &link, const QString &title, const FeedEnclosure &icon,
                const QString &type, const QString &description, const QDateTime &subscribedTime,
                const QDateTime &updatedTime, const QString &lastModifiedTime, QList<FeedMessage> messages);
    /// Shares the record of \a other.
    FeedChannel(const FeedChannel &other);
    /// Shares the record of \a other and lets go of this object's own.
    FeedChannel &operator=(const FeedChannel &other);
    /// Deletes the record with its last owner.
    ~FeedChannel();

    /// Identifier in the store; empty when not stored.
    QString uri() const;
    /// Address of the feed, which identifies it in the store; empty when unknown.
    QString link() const;
    /// Title; may be empty.
    QString title() const;
    /// The image; a default enclosure when there is none.
    FeedEnclosure icon() const;
    /// Text about the feed; may be empty.
    QString description() const;
    /// Kind of channel, as free text; may be empty.
    QString type() const;
    /// When the user subscribed; invalid when unknown.
    QDateTime subscribedTime() const;
    /// When the feed was last fetched; invalid when unknown.
    QDateTime updatedTime() const;
    /// When the feed last changed, as the text that its server gave; empty when unknown.
    QString lastModifiedTime() const;
    /// The messages, newest first unless they were set in another order.
    QList<FeedMessage> messages() const;

    /// Sets uri(), stored as given.
    void setUri(const QString &uri);
    /// Sets link(), stored as given.
    void setLink(const QString &link);
    /// Sets title() without white space around it and with one blank for each run of white space in it.
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
    /// Sets lastModifiedTime(), unparsed.
    void setLastModifiedTime(const QString &lastModifiedTime);
    /// Replaces the messages by \a messages, in their order. The list itself is not changed.
    void setMessages(QList<FeedMessage> &messages);

    /// Puts \a message before the first one that is not newer; one without a valid published date, or not
    /// newer than the last one, goes to the end. A message that is held already is held twice.
    ///
    /// Unlike all else that writes, this does not detach(): copies that share the record get the message too.
    void insertMessage(const FeedMessage &message);

    /// Gives this object a record of its own. Every setter and addChild() call it.
    void detach();

    /// Detaches and inserts a message, see insertMessage(). Null and other kinds of node are ignored.
    void addChild(FeedNode *node) override;

private:
    friend TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedChannel &channel);

    QExplicitlySharedDataPointer<FeedChannelPrivate> d;
};

/// Writes a readable dump of \a channel, several lines long, in the spacing mode of \a debug, which is in
/// spacing mode afterwards.
TIDEL_EXPORT QDebug operator<<(QDebug debug, const FeedChannel &channel);

/// Writes the fields of \a channel and its messages, in the version and byte order of \a stream.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedChannel &channel);

/// Reads what was written in the same version and byte order, straight into the record of \a channel and into
/// that of its icon(): copies that share one of them change too, even an enclosure that was given to
/// setIcon(), see operator>>(QDataStream &, FeedEnclosure &). The messages are replaced by new ones, in the
/// order of the stream.
///
/// A stream that ends behind a message or an enclosure leaves the status Ok, even if its count promises more
/// of them. Where the bytes arrive piece by piece, as from a socket, send them as one QByteArray, whose size
/// comes first, and read that in a transaction: \code stream.startTransaction(); QByteArray bytes; stream >>
/// bytes; if (stream.commitTransaction()) {
///     QDataStream record(bytes);
///     FeedChannel channel;
///     record >> channel;
///     show(channel);
/// }
/// \endcode
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedChannel &channel);

#endif
