// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ARCHIVEMODEL_H
#define ARCHIVEMODEL_H

#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QStringList>

/// An item of a feed.
struct FeedItem
{
    QString title; ///< The title, which identifies the item.
    QDateTime published; ///< Invalid if the feed has no date.
    QStringList enclosures; ///< The names of the enclosures.
};

/// A simple model of the content of a store. Channels, messages and enclosures are identified by their names.
class ArchiveModel
{
public:
    /// Adds a channel. \a image may be empty.
    void subscribe(const QString &channel, const QString &image);
    /// Adds the new messages among \a items, the present items of the feed.
    void refresh(const QString &channel, const QList<FeedItem> &items);
    /// Marks or unmarks a message.
    void setFavorite(const QString &message, bool isFavorite);
    /// Drops \a messages from the channel.
    void prune(const QString &channel, const QSet<QString> &messages);
    /// Deletes a channel.
    void unsubscribe(const QString &channel);
    /// Deletes messages and enclosures without an owner.
    void clean();
    /// Removes the message from its channels without deleting it.
    void abandonMessage(const QString &message);
    /// Removes the enclosure from its owners without deleting it.
    void abandonEnclosure(const QString &enclosure);

    /// Returns true if there is a channel \a channel; otherwise returns false.
    bool hasChannel(const QString &channel) const { return m_dropped.contains(channel); }
    /// The names of all channels.
    QStringList channels() const { return m_dropped.keys(); }
    /// The names of all messages.
    QStringList messages() const { return m_messages.keys(); }
    /// The names of all enclosures.
    QStringList enclosures() const { return m_enclosures.keys(); }
    /// The number of resources in the store. A channel has two: itself and its link.
    int resources() const { return 2 * m_dropped.size() + m_messages.size() + m_enclosures.size(); }
    /// Returns true if \a messages may be dropped so that \a keep messages stay in the channel; otherwise
    /// returns false.
    bool areOldest(const QSet<QString> &messages, const QString &channel, int keep) const;
    /// The content of the store, one fact in each line, sorted.
    QStringList facts() const;

private:
    struct Message
    {
        QDateTime published;
        bool isFavorite = false;
        QSet<QString> channels = {};
    };
    struct Enclosure
    {
        QSet<QString> messages = {};
        QSet<QString> channels = {};
        int deletedOwners = 0; ///< The number of deleted messages that the enclosure still names.
    };

    /// Deletes messages. Their enclosures still name them.
    void remove(const QSet<QString> &messages);
    /// Deletes messages and the enclosures without another owner.
    void removeWithEnclosures(const QSet<QString> &messages);
    /// Deletes an enclosure if it has no owner.
    void removeIfReleased(const QString &enclosure);

    // The dropped messages of each channel that its feed may still contain.
    QMap<QString, QSet<QString>> m_dropped;
    QMap<QString, Message> m_messages;
    QMap<QString, Enclosure> m_enclosures;
};

#endif
