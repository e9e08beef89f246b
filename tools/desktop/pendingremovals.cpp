// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pendingremovals.h"

#include "answer.h"
#include "undocommand.h"

#include <TidelReader/archive.h>
#include <TidelReader/downloadfolder.h>
#include <TidelReader/messagelist.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <QUndoStack>

namespace Tidel {

namespace {

void removeFiles(int, const QList<FeedEnclosure> &enclosures)
{
    QStringList failed;
    DownloadFolder::removeFiles(enclosures, &failed);
}

Result<void> removeChannel(const Store &store, const QString &uri, Channels::Favorites favorites)
{
    return Channels(store).all().and_then([&](const QList<FeedChannel> &channels) {
        return Channels::find(channels, uri).and_then([&](const FeedChannel &channel) {
            return Channels(store).remove(channel, removeFiles, favorites);
        });
    });
}

/// Marks \a uris as read. Puts those that were unread into \a unread.
Result<void> markRead(const Store &store, const QStringList &uris, QStringList *unread)
{
    return MessageList(store).headlines(uris).and_then([&](const QList<MessageHeadline> &messages) {
        unread->clear();
        for (const MessageHeadline &message : messages) {
            if (!message.isRead)
                unread->append(message.uri);
        }
        return ReadState(store).set(*unread, true).map([](int) {});
    });
}

} // namespace

PendingRemovals::PendingRemovals(Archive *archive, QUndoStack *undoStack, QObject *parent)
    : QObject(parent), m_archive(archive), m_undoStack(undoStack)
{
}

void PendingRemovals::removeChannel(const QString &uri, const QString &title, Channels::Favorites favorites)
{
    const auto remove = [this, uri, favorites] {
        m_channels.insert(uri, favorites);
        Q_EMIT channelsChanged();
    };
    const auto restore = [this, uri] {
        m_channels.remove(uri);
        Q_EMIT channelsChanged();
    };
    m_undoStack->push(new UndoCommand(tr("Unsubscribed from “%1”").arg(title),
                                      tr("Unsubscribe from “%1”").arg(title), remove, restore));
}

void PendingRemovals::removeMessages(const QStringList &uris)
{
    if (uris.isEmpty())
        return;
    const QSet<QString> messages(uris.cbegin(), uris.cend());
    // Only changes of the archive use it, which run one after the other.
    const auto unread = std::make_shared<QStringList>();
    const auto remove = [this, uris, messages, unread] {
        m_messages.unite(messages);
        change([uris, unread](const Store &store) { return markRead(store, uris, unread.get()); });
        Q_EMIT messagesChanged();
    };
    const auto restore = [this, messages, unread] {
        m_messages.subtract(messages);
        change([unread](const Store &store) { return ReadState(store).set(*unread, false).map([](int) {}); });
        Q_EMIT messagesChanged();
    };
    const int count = int(uris.size());
    m_undoStack->push(new UndoCommand(tr("Deleted %n message(s)", nullptr, count),
                                      tr("Delete %n Message(s)", nullptr, count), remove, restore));
}

QSet<QString> PendingRemovals::channels() const
{
    const QStringList uris = m_channels.keys();
    return {uris.cbegin(), uris.cend()};
}

void PendingRemovals::carryOut()
{
    if (!m_messages.isEmpty()) {
        const QStringList uris(m_messages.cbegin(), m_messages.cend());
        m_archive->change([uris](const Store &store) { return Messages(store).remove(uris, removeFiles); });
        m_messages.clear();
    }
    for (auto entry = m_channels.cbegin(); entry != m_channels.cend(); ++entry) {
        m_archive->change([uri = entry.key(), favorites = entry.value()](const Store &store) {
            return Tidel::removeChannel(store, uri, favorites);
        });
    }
    m_channels.clear();
}

void PendingRemovals::change(const std::function<Result<void>(const Store &)> &work)
{
    whenAnswered(m_archive->change(work), this, [this](const Result<void> &changed) {
        if (!changed)
            Q_EMIT failed(changed.error().text());
    });
}

} // namespace Tidel
