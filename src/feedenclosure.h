// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDENCLOSURE_H
#define FEEDENCLOSURE_H

#include "feednode.h"

#include <QExplicitlySharedDataPointer>
#include <QList>
#include <QString>

QT_FORWARD_DECLARE_CLASS(QDataStream)
QT_FORWARD_DECLARE_CLASS(QDebug)
class FeedEnclosurePrivate;

/// A file that a message refers to, or the image of a channel.
///
/// \code
/// FeedEnclosure episode;
/// episode.setRemoteUrl("https://example.org/episode-1.ogg");
/// episode.setMimeType("audio/ogg");
/// episode.setLength(4812345);
/// \endcode
///
/// Copies share one record until one of them is changed. Different threads may copy, read and destroy copies
/// of one enclosure. While one thread changes an object, no other thread may use that same object.
///
/// Hosts may derive from this class. The destructor is not virtual: destroy an object as its own type.
class TIDEL_EXPORT FeedEnclosure : public FeedNode
{
public:
    /// Tells whether the message needs the file. Every value except Essential counts as optional.
    enum Type : int {
        Essential = 1, ///< the message is incomplete without the file
        Optional = 2 ///< the message makes sense without the file
    };

    /// Creates an optional enclosure with empty texts, length 0 and group 0, which is not the default one.
    FeedEnclosure();
    /// Creates an enclosure with these values, stored as given. mimeType() and typeIcon() are empty.
    FeedEnclosure(const QString &uri, const QString &remoteUrl, const QString &localUrl,
                  const QString &sourceNamespace, unsigned int length, FeedEnclosure::Type type,
                  unsigned int groupId, bool isDefault);
    /// Creates a copy that shares the record of \a other.
    FeedEnclosure(const FeedEnclosure &other);
    /// Releases the record of this object and shares the record of \a other.
    FeedEnclosure &operator=(const FeedEnclosure &other);
    /// Releases the record. The last owner deletes it.
    ~FeedEnclosure();

    /// Returns true if both have the same remoteUrl(); otherwise returns false. Other fields are not
    /// compared.
    // contract: not a const member. Hosts are built against this signature.
    bool operator==(const FeedEnclosure &other);

    /// Returns the URI of the enclosure in the store; empty if it is not stored.
    QString uri() const;
    /// Returns the URL of the file on the network; empty if it is unknown.
    QString remoteUrl() const;
    /// Returns the location of the downloaded copy; empty if there is none.
    QString localUrl() const;
    /// Returns the namespace of the feed element that named the file; empty if the element has none. An
    /// enclosure with a namespace is never replaced in its message, see FeedMessage::addChild().
    QString sourceNamespace() const;
    /// Returns the size in bytes; 0 if it is unknown.
    unsigned int length() const;
    /// Returns the type. A value that is neither Essential nor Optional is returned as it was set.
    FeedEnclosure::Type type() const;
    /// Returns the number of the group that the file belongs to; 0 if it belongs to none.
    unsigned int groupId() const;
    /// Returns true if the file is the default one of its group; otherwise returns false.
    bool isDefault() const;
    /// Returns the MIME type, such as "audio/ogg"; empty if it is unknown.
    QString mimeType() const;
    /// Returns the icon of the type; empty if there is none.
    QString typeIcon() const;

    /// Sets uri(), stored as given.
    void setUri(const QString &uri);
    /// Sets remoteUrl(), stored as given.
    void setRemoteUrl(const QString &remoteUrl);
    /// Sets localUrl(), stored as given.
    void setLocalUrl(const QString &localUrl);
    /// Sets sourceNamespace(), stored as given.
    // contract: the name has a lower-case s. Hosts call it by this name.
    void setsourceNamespace(const QString &sourceNamespace);
    /// Sets length(), in bytes.
    void setLength(unsigned int length);
    /// Sets type(). The value is not checked.
    void setType(FeedEnclosure::Type type);
    /// Sets groupId().
    void setGroupId(unsigned int groupId);
    /// Sets isDefault().
    void setDefault(bool isDefault);
    /// Sets mimeType(), stored as given.
    void setMimeType(const QString &mimeType);
    /// Sets typeIcon(), stored as given.
    void setTypeIcon(const QString &typeIcon);

    /// Makes sure that this object shares its record with no other object. Every setter calls it.
    void detach();

    /// Does nothing, because an enclosure has no children.
    void addChild(FeedNode *node) override;

private:
    friend TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedEnclosure &enclosure);

    QExplicitlySharedDataPointer<FeedEnclosurePrivate> d;
};

/// Writes all fields of \a enclosure as readable text of several lines, in the spacing mode of \a debug.
TIDEL_EXPORT QDebug operator<<(QDebug debug, const FeedEnclosure &enclosure);

/// Writes the fields of \a enclosure in the version and byte order of \a stream.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedEnclosure &enclosure);

/// Reads an enclosure that was written in the same version and byte order.
///
/// The fields are read into the record of \a enclosure without a call of detach(), so copies that share the
/// record change too. To leave copies unchanged, read into a new object.
///
/// No field is checked. If the stream ends early or is corrupt, its status reports that, and the fields that
/// could not be read are empty, 0 or false.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedEnclosure &enclosure);

/// Replaces \a enclosures by the list that QDataStream has written. Reading stops when the count of the
/// stream is reached, or when the stream is at its end behind an element.
///
/// A broken element is appended too, and so are the elements behind it; the status of the stream tells that
/// one was broken. A list that ends behind an element before its count is reached leaves the status Ok. A
/// count with nothing behind it gives an empty list and the status ReadPastEnd. Memory is used only for
/// elements that the stream holds. Within a transaction of the device, reading stops at the first failure.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, QList<FeedEnclosure> &enclosures);

#endif
