// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDMESSAGE_H
#define FEEDMESSAGE_H

#include "feedenclosure.h"

#include <QDateTime>
#include <QList>
#include <QUrl>

class FeedMessagePrivate;

/// One item of a channel, with the files that it refers to.
///
/// \code
/// FeedMessage message;
/// message.setTitle("Episode 1");
/// message.setLink("https://example.org/1");
/// message.setPublishedDate(QDateTime::currentDateTimeUtc());
/// message.addEnclosure(episode);
/// \endcode
///
/// Copies share one record until one of them is changed. Different threads may copy, read and destroy copies
/// of one message. While one thread changes an object, no other thread may use that same object.
///
/// Hosts may derive from this class. The destructor is not virtual: destroy an object as its own type.
class TIDEL_EXPORT FeedMessage : public FeedNode
{
public:
    /// Creates a message with empty texts, null dates and no enclosures, which is not a favourite.
    FeedMessage();
    /// Creates a message with these values, stored as given. Other fields are as in an empty message.
    // contract: the constructors do not trim the link, setLink() does. Hosts know links as they gave them.
    FeedMessage(const QString &title, const QString &link, const QString &description,
                const QDateTime &downloadedTime);
    /// Creates a message with these values, stored as given. baseUrl() is empty.
    FeedMessage(const QString &title, const QString &link, const QString &id, const QString &description,
                const QString &summary, const QDateTime &publishedDate,
                const QList<FeedEnclosure> &enclosures, const QDateTime &downloadedTime, bool favorite);
    /// Creates a copy that shares the record of \a other.
    FeedMessage(const FeedMessage &other);
    /// Releases the record of this object and shares the record of \a other.
    FeedMessage &operator=(const FeedMessage &other);
    /// Releases the record. The last owner deletes it.
    ~FeedMessage();

    /// Returns the title; empty if there is none.
    QString title() const;
    /// Returns the address of the item, which identifies it in the store; empty if it is unknown.
    QString link() const;
    /// Returns the identifier of the item in its feed; empty if the feed gives none.
    QString id() const;
    /// Returns the text of the item; empty if there is none.
    QString description() const;
    /// Returns the short text of the item; empty if there is none.
    QString summary() const;
    /// Returns the base of relative addresses in the texts; empty if it is unknown.
    QUrl baseUrl() const;
    /// Returns the time when the item was published, which orders it in its channel; invalid if it is
    /// unknown.
    QDateTime publishedDate() const;
    /// Returns the time when the item was fetched; invalid if it is unknown.
    QDateTime downloadedTime() const;
    /// Returns true if the item is a favourite of the user; otherwise returns false.
    bool isFavorite() const;
    /// Returns the enclosures in the order in which they were added.
    QList<FeedEnclosure> enclosures() const;

    /// Sets title(), stored as given.
    void setTitle(const QString &title);
    /// Sets link() to \a link without white space at its start and end.
    void setLink(const QString &link);
    /// Sets id(), stored as given.
    void setId(const QString &id);
    /// Sets description(), stored as given.
    void setDescription(const QString &description);
    /// Sets summary(), stored as given.
    void setSummary(const QString &summary);
    /// Sets baseUrl().
    void setBaseUrl(const QUrl &baseUrl);
    /// Sets publishedDate().
    void setPublishedDate(const QDateTime &publishedDate);
    /// Sets downloadedTime().
    void setDownloadedTime(const QDateTime &downloadedTime);
    /// Sets isFavorite().
    void setFavorite(bool favorite);

    /// Appends \a enclosure, even if the list already contains it. addChild() merges instead.
    void addEnclosure(const FeedEnclosure &enclosure);
    /// Appends all of \a enclosures in their order.
    void addEnclosure(const QList<FeedEnclosure> &enclosures);
    /// Replaces the enclosures by \a enclosures.
    void setEnclosures(QList<FeedEnclosure> enclosures);

    /// Makes sure that this object shares its record with no other object. Every function that changes it
    /// calls it.
    void detach();

    /// Merges \a node, which is a FeedEnclosure, into the list. It replaces the first enclosure with the same
    /// remoteUrl(). If that enclosure has a sourceNamespace(), the list stays as it is. If there is no such
    /// enclosure, \a node is appended. Ignores a null pointer and nodes of other types.
    void addChild(FeedNode *node) override;

private:
    friend TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedMessage &message);

    QExplicitlySharedDataPointer<FeedMessagePrivate> d;
};

/// Writes all fields of \a message except baseUrl() as readable text of several lines, in the spacing mode of
/// \a debug. The stream is in spacing mode afterwards.
TIDEL_EXPORT QDebug operator<<(QDebug debug, const FeedMessage &message);

/// Writes the fields of \a message and its enclosures in the version and byte order of \a stream.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedMessage &message);

/// Reads a message that was written in the same version and byte order. Copies that share the record change
/// too, see operator>>(QDataStream &, FeedEnclosure &). The enclosures are replaced by new objects.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedMessage &message);

/// Replaces \a messages by the list that QDataStream has written. Reading stops as in
/// operator>>(QDataStream &, QList<FeedEnclosure> &).
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, QList<FeedMessage> &messages);

#endif
