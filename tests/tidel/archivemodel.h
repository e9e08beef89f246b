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
 * What a store has to hold after each operation, in the simplest form that there is. Channels, messages and
 * enclosures are known by their names.
 */
class ArchiveModel
{
public:
    void subscribe(const QString &channel, const QString &image);
    /// \a items is what the feed shows.
    void refresh(const QString &channel, const QList<FeedItem> &items);
    void setFavorite(const QString &message, bool isFavorite);
    void prune(const QString &channel, const QSet<QString> &messages);
    void unsubscribe(const QString &channel);
    void clean();
    /// Nobody owns it any more.
    void abandonMessage(const QString &message);
    void abandonEnclosure(const QString &enclosure);

    bool hasChannel(const QString &channel) const { return m_dropped.contains(channel); }
    QStringList channels() const { return m_dropped.keys(); }
    QStringList messages() const { return m_messages.keys(); }
    QStringList enclosures() const { return m_enclosures.keys(); }
    /// How many resources there are; a channel has two, itself and its link.
    int resources() const { return 2 * m_dropped.size() + m_messages.size() + m_enclosures.size(); }
    /// Whether \a messages may be what is dropped for \a keep messages to stay in the channel.
    bool areOldest(const QSet<QString> &messages, const QString &channel, int keep) const;
    /// All that there is, each line a fact, sorted.
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
        int goneOwners = 0; ///< deleted ones that it still names
    };

    /// Whether enclosures that are images of channels go with their messages.
    enum Images { SparedImages, LostImages };

    void remove(const QSet<QString> &messages);
    void removeWithEnclosures(const QSet<QString> &messages, Images images);

    QMap<QString, QSet<QString>> m_dropped; // what each channel has dropped and its feed may still show
    QMap<QString, Message> m_messages;
    QMap<QString, Enclosure> m_enclosures;
};

#endif
