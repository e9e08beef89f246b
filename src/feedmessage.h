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
/// Copies share one record until one of them is written to. They may be copied, read and destroyed in
/// different threads; one object must not be written to while another thread uses that same object.
class TIDEL_EXPORT FeedMessage : public FeedNode
{
public:
    /// A message that is not a favourite, with empty texts, null dates and no enclosures.
    FeedMessage();
    /// A message with these values, stored as given: the link is not trimmed. The rest is as in an empty one.
    FeedMessage(const QString &title, const QString &link, const QString &description,
                const QDateTime &downloadedTime);
    /// A message with these values, stored as given; baseUrl() is empty.
    FeedMessage(const QString &title, const QString &link, const QString &id, const QString &description,
                const QString &summary, const QDateTime &publishedDate,
                const QList<FeedEnclosure> &enclosures, const QDateTime &downloadedTime, bool favorite);
    /// Shares the record of \a other.
    FeedMessage(const FeedMessage &other);
    /// Shares the record of \a other and lets go of this object's own.
    FeedMessage &operator=(const FeedMessage &other);
    /// Deletes the record with its last owner.
    ~FeedMessage();

    /// Title; may be empty.
    QString title() const;
    /// Address of the item, which identifies it in the store; empty when unknown.
    QString link() const;
    /// Identifier of the item in its feed; empty when the feed gives none.
    QString id() const;
    /// Text of the item; may be empty.
    QString description() const;
    /// Short text of the item; may be empty.
    QString summary() const;
    /// Address that relative addresses in the texts start from; empty when unknown.
    QUrl baseUrl() const;
    /// When the item was published, which orders it in its channel; invalid when unknown.
    QDateTime publishedDate() const;
    /// When the item was fetched; invalid when unknown.
    QDateTime downloadedTime() const;
    /// Whether the user marked the item.
    bool isFavorite() const;
    /// The enclosures, in the order in which they were added.
    QList<FeedEnclosure> enclosures() const;

    /// Sets title(), stored as given.
    void setTitle(const QString &title);
    /// Sets link() without the white space around it.
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

    /// Appends \a enclosure, even when it is in the list already; addChild() merges.
    void addEnclosure(const FeedEnclosure &enclosure);
    /// Appends all of \a enclosures, in their order.
    void addEnclosure(const QList<FeedEnclosure> &enclosures);
    /// Replaces the list by \a enclosures.
    void setEnclosures(QList<FeedEnclosure> enclosures);

    /// Gives this object a record of its own. Every function that writes calls it.
    void detach();

    /// Merges an enclosure into the list: it takes the place of the first one with the same remoteUrl(),
    /// unless that one has a sourceNamespace(), which then stays; without such a one it is appended.
    /// Null and other kinds of node are ignored.
    void addChild(FeedNode *node) override;

private:
    friend TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedMessage &message);

    QExplicitlySharedDataPointer<FeedMessagePrivate> d;
};

/// Writes a readable dump of \a message, several lines long, in the spacing mode of \a debug, which is in
/// spacing mode afterwards.
TIDEL_EXPORT QDebug operator<<(QDebug debug, const FeedMessage &message);

/// Writes the fields of \a message and its enclosures, in the version and byte order of \a stream.
TIDEL_EXPORT QDataStream &operator<<(QDataStream &stream, const FeedMessage &message);

/// Reads what was written in the same version and byte order, straight into the record of \a message: copies
/// that share the record change too, see operator>>(QDataStream &, FeedEnclosure &). The enclosures are
/// replaced by new ones.
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, FeedMessage &message);

/// Replaces \a messages by the list that QDataStream has written. Reading stops as in
/// operator>>(QDataStream &, QList<FeedEnclosure> &).
TIDEL_EXPORT QDataStream &operator>>(QDataStream &stream, QList<FeedMessage> &messages);

#endif
