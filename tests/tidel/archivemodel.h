// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ARCHIVEMODEL_H
#define ARCHIVEMODEL_H

#include <QDateTime>
#include <QMap>
#include <QSet>
#include <QStringList>

/// What a feed says of an item.
struct FeedItem
{
    QString title;
    QDateTime published; ///< invalid where the feed does not say
    QStringList enclosures;
};

/**
 * A simple model of what a store must hold after each operation. Channels, messages and enclosures are
 * identified by their names.
 */
class ArchiveModel
{
public:
    void subscribe(const QString &channel, const QString &image);
    /// The feed shows \a items.
    void refresh(const QString &channel, const QList<FeedItem> &items);
    void setFavorite(const QString &message, bool isFavorite);
    void prune(const QString &channel, const QSet<QString> &messages);
    void unsubscribe(const QString &channel);
    void clean();
    /// The message or enclosure belongs to nothing from now on.
    void abandonMessage(const QString &message);
    void abandonEnclosure(const QString &enclosure);

    bool hasChannel(const QString &channel) const { return m_dropped.contains(channel); }
    QStringList channels() const { return m_dropped.keys(); }
    QStringList messages() const { return m_messages.keys(); }
    QStringList enclosures() const { return m_enclosures.keys(); }
    /// The number of resources. A channel has two: itself and its link.
    int resources() const { return 2 * m_dropped.size() + m_messages.size() + m_enclosures.size(); }
    /// Returns true if \a messages may be dropped so that \a keep messages stay in the channel; otherwise
    /// returns false.
    bool areOldest(const QSet<QString> &messages, const QString &channel, int keep) const;
    /// Everything that the store holds, one fact in each line, sorted.
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
        int goneOwners = 0; ///< deleted owners that it still names
    };

    void remove(const QSet<QString> &messages);
    void removeWithEnclosures(const QSet<QString> &messages);
    void removeIfReleased(const QString &enclosure);

    QMap<QString, QSet<QString>>
        m_dropped; // the messages that each channel has dropped and its feed may still show
    QMap<QString, Message> m_messages;
    QMap<QString, Enclosure> m_enclosures;
};

#endif
