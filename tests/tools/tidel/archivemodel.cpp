// SPDX-License-Identifier: LGPL-2.1-or-later
#include "archivemodel.h"

#include <algorithm>

namespace {

template <typename Map, typename Condition> QSet<QString> keysOf(const Map &map, Condition condition)
{
    QSet<QString> keys;
    for (auto at = map.cbegin(); at != map.cend(); ++at) {
        if (condition(at.value()))
            keys.insert(at.key());
    }
    return keys;
}

} // namespace

void ArchiveModel::subscribe(const QString &channel, const QString &image)
{
    m_dropped.insert(channel, {});
    if (!image.isEmpty())
        m_enclosures[image].channels.insert(channel);
}

void ArchiveModel::refresh(const QString &channel, const QList<FeedItem> &items)
{
    QSet<QString> shown;
    for (const FeedItem &item : items) {
        shown.insert(item.title);
        if (m_dropped[channel].contains(item.title) || m_messages[item.title].channels.contains(channel))
            continue;
        Message &message = m_messages[item.title];
        if (message.channels.isEmpty())
            message.published = item.published;
        message.channels.insert(channel);
        for (const QString &enclosure : item.enclosures)
            m_enclosures[enclosure].messages.insert(item.title);
    }
    m_dropped[channel] &= shown;
}

void ArchiveModel::setFavorite(const QString &message, bool isFavorite)
{
    m_messages[message].isFavorite = isFavorite;
}

void ArchiveModel::prune(const QString &channel, const QSet<QString> &messages)
{
    m_dropped[channel] += messages;
    QSet<QString> own;
    for (const QString &title : messages) {
        m_messages[title].channels.remove(channel);
        if (m_messages[title].channels.isEmpty())
            own.insert(title);
    }
    removeWithEnclosures(own);
}

void ArchiveModel::unsubscribe(const QString &channel)
{
    m_dropped.remove(channel);
    QSet<QString> own;
    for (auto at = m_messages.begin(); at != m_messages.end(); ++at) {
        if (at->channels.remove(channel) && at->channels.isEmpty())
            own.insert(at.key());
    }
    removeWithEnclosures(own);
    const QSet<QString> images = keysOf(
        m_enclosures, [&](const Enclosure &enclosure) { return enclosure.channels.contains(channel); });
    for (const QString &image : images) {
        m_enclosures[image].channels.remove(channel);
        removeIfReleased(image);
    }
}

void ArchiveModel::clean()
{
    remove(keysOf(m_messages,
                  [](const Message &message) { return message.channels.isEmpty() && !message.isFavorite; }));
    const QSet<QString> orphans = keysOf(m_enclosures, [](const Enclosure &enclosure) {
        return enclosure.messages.isEmpty() && enclosure.channels.isEmpty();
    });
    for (const QString &orphan : orphans)
        m_enclosures.remove(orphan);
}

void ArchiveModel::abandonMessage(const QString &message) { m_messages[message].channels.clear(); }

void ArchiveModel::abandonEnclosure(const QString &enclosure) { m_enclosures[enclosure] = {}; }

bool ArchiveModel::areOldest(const QSet<QString> &messages, const QString &channel, int keep) const
{
    QList<qint64> dates;
    QList<qint64> dropped;
    for (auto at = m_messages.cbegin(); at != m_messages.cend(); ++at) {
        if (at->isFavorite || !at->channels.contains(channel))
            continue;
        const qint64 date = at->published.isValid() ? at->published.toMSecsSinceEpoch() : 0;
        dates.append(date);
        if (messages.contains(at.key()))
            dropped.append(date);
    }
    std::sort(dates.begin(), dates.end());
    std::sort(dropped.begin(), dropped.end());
    return dropped.size() == messages.size()
        && dropped == dates.mid(0, std::max(0, int(dates.size()) - keep));
}

QStringList ArchiveModel::facts() const
{
    QStringList facts;
    for (auto at = m_dropped.cbegin(); at != m_dropped.cend(); ++at) {
        facts.append("channel " + at.key());
        for (const QString &message : *at)
            facts.append("dropped " + message + " by " + at.key());
    }
    for (auto at = m_messages.cbegin(); at != m_messages.cend(); ++at) {
        facts.append("message " + at.key());
        if (at->isFavorite)
            facts.append("favorite " + at.key());
        for (const QString &channel : at->channels)
            facts.append("message " + at.key() + " of " + channel);
    }
    for (auto at = m_enclosures.cbegin(); at != m_enclosures.cend(); ++at) {
        facts.append("enclosure " + at.key());
        const QSet<QString> owners = at->messages + at->channels;
        for (const QString &owner : owners)
            facts.append("enclosure " + at.key() + " of " + owner);
        for (int i = 0; i < at->deletedOwners; ++i)
            facts.append("enclosure " + at.key() + " of a deleted owner");
    }
    facts.sort();
    return facts;
}

void ArchiveModel::remove(const QSet<QString> &messages)
{
    for (const QString &message : messages) {
        m_messages.remove(message);
        for (Enclosure &enclosure : m_enclosures) {
            if (enclosure.messages.remove(message))
                ++enclosure.deletedOwners;
        }
    }
}

void ArchiveModel::removeWithEnclosures(const QSet<QString> &messages)
{
    const QSet<QString> enclosures = keysOf(
        m_enclosures, [&](const Enclosure &enclosure) { return enclosure.messages.intersects(messages); });
    remove(messages);
    for (const QString &enclosure : enclosures)
        removeIfReleased(enclosure);
}

void ArchiveModel::removeIfReleased(const QString &enclosure)
{
    const Enclosure &left = m_enclosures[enclosure];
    if (left.messages.isEmpty() && left.channels.isEmpty())
        m_enclosures.remove(enclosure);
}
