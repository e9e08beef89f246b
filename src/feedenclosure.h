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
/// Copies share one record until one of them is written to. They may be copied, read and destroyed in
/// different threads; one object must not be written to while another thread uses that same object.
class TIDEL_EXPORT FeedEnclosure : public FeedNode
{
public:
    /// Whether the message makes sense without the file. Any value but Essential counts as optional.
    enum Type : int { Essential = 1, Optional = 2 };

    /// An optional enclosure of length 0 and group 0 with empty texts that is not the default one.
    FeedEnclosure();
    /// An enclosure with these values, stored as given; mimeType() and typeIcon() are empty.
    FeedEnclosure(const QString &uri, const QString &remoteUrl, const QString &localUrl,
                  const QString &sourceNamespace, unsigned int length, FeedEnclosure::Type type,
                  unsigned int groupId, bool isDefault);
    /// Shares the record of \a other.
    FeedEnclosure(const FeedEnclosure &other);
    /// Shares the record of \a other and lets go of this object's own.
    FeedEnclosure &operator=(const FeedEnclosure &other);
    /// Deletes the record with its last owner.
    ~FeedEnclosure();

    /// Whether both are the same file on the network: only remoteUrl() is compared.
    bool operator==(const FeedEnclosure &other);

    /// Identifier in the store; empty when not stored.
    QString uri() const;
    /// Where the file is on the network; empty when unknown.
    QString remoteUrl() const;
    /// Where the downloaded copy is; empty when there is none.
    QString localUrl() const;
    /// Namespace of the feed element that named the file. One that is not empty keeps the enclosure from
    /// being replaced in its message, see FeedMessage::addChild().
    QString sourceNamespace() const;
    /// Size in bytes; 0 when unknown.
    unsigned int length() const;
    /// Essential or optional; a value set from elsewhere is returned as it is.
    FeedEnclosure::Type type() const;
    /// Number of the group that the file belongs to; 0 when there is none.
    unsigned int groupId() const;
    /// Whether the file is marked as the default one.
    bool isDefault() const;
    /// MIME type, such as "audio/ogg"; empty when unknown.
    QString mimeType() const;
    /// Icon for the type; empty when there is none.
    QString typeIcon() const;

    /// Sets uri(), stored as given.
    void setUri(const QString &uri);
    /// Sets remoteUrl(), stored as given.
    void setRemoteUrl(const QString &remoteUrl);
    /// Sets localUrl(), stored as given.
    void setLocalUrl(const QString &localUrl);
    /// Sets sourceNamespace(), stored as given. The lower-case s is part of the name.
    void setsourceNamespace(const QString &sourceNamespace);
    /// Sets length(), in bytes.
    void setLength(unsigned int length);
    /// Sets type(), unchecked.
    void setType(FeedEnclosure::Type type);
    /// Sets groupId().
    void setGroupId(unsigned int groupId);
    /// Sets isDefault().
    void setDefault(bool isDefault);
    /// Sets mimeType(), stored as given.
    void setMimeType(const QString &mimeType);
    /// Sets typeIcon(), stored as given.
    void setTypeIcon(const QString &typeIcon);

    /// Gives this object a record of its own. Every setter calls it.
    void detach();

    /// Does nothing: an enclosure has no children.
    void addChild(FeedNode *node) override;

private:
    friend TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedEnclosure &enclosure);

    QExplicitlySharedDataPointer<FeedEnclosurePrivate> d;
};

/// Writes a readable dump of \a enclosure, several lines long, in the spacing mode of \a debug.
TIDEL_EXPORT QDebug operator<<(QDebug debug, const FeedEnclosure &enclosure);

/// Writes the fields of \a enclosure, in the version and byte order of \a stream.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedEnclosure &enclosure);

/// Reads what was written in the same version and byte order, straight into the record of \a enclosure:
/// unlike a setter this does not detach(), and copies that share the record change too. Read into a new
/// object where they must not.
///
/// No field is checked. Where the stream ends or is broken, the fields up to there are read and the others
/// are left empty, 0 or false; the stream's status says so.
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
