// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDS_H
#define TIDEL_FEEDS_H

#include "details.h"
#include "error.h"
#include "feedanswer.h"
#include "store.h"

#include <QSet>
#include <QSharedDataPointer>
#include <QString>

#include <optional>

namespace Tidel {

class FeedStatePrivate;

/// What the store knows of the document of a channel, for the next download.
class TIDELREADER_EXPORT FeedState
{
public:
    /// Shares the value of \a other.
    FeedState(const FeedState &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    FeedState(FeedState &&other) noexcept;
    /// Shares the value of \a other.
    FeedState &operator=(const FeedState &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    FeedState &operator=(FeedState &&other) noexcept;
    /// Releases the value.
    ~FeedState();

    /// The address of the document.
    QString link() const;
    /// The address that items without a link are named after: the first one that the channel had.
    QString itemBase() const;
    /// The entity tag of the last download, as its server sent it; empty if there was none.
    QString entityTag() const;
    /// Returns true if the feed was read before, so that its type is known; otherwise returns false.
    bool wasRead() const;
    /// Why the last attempt to read it failed; empty if it did not.
    QString lastError() const;
    /// The Last-Modified header of the last download, as its server sent it; empty if there was none.
    QString lastModified() const;

private:
    friend class Feeds;
    Q_DECL_HIDDEN explicit FeedState(FeedStatePrivate *d);

    QSharedDataPointer<FeedStatePrivate> d;
};

/// What a plug-in notes of the items of a document, by which it recognizes them in the next one.
struct ItemNote
{
    QString text; ///< Empty if nothing is noted.
    int parts = 0; ///< How many messages and images the channel has.
};

/// What a plug-in notes of a document that it has read.
struct Reading
{
    QString entityTag; ///< As its server sent it. A file has one of the plug-in's choice.
    QString lastModified; ///< As its server sent it.
    ChannelDetails details; ///< What the feed says of itself.
    ItemNote items; ///< Has the number of parts that the channel has according to the plug-in.
    std::optional<ChannelDetails> before; ///< What the store has of the feed; nothing if that is not known.
    FeedAnswer answer = {}; ///< How the document came.
    FeedPlan plan = {}; ///< What the store has of the answers before. Empty for a new channel.
};

/// What the store remembers of the items of a channel and of the document that was read last.
struct FeedMemory
{
    ChannelDetails details; ///< What the feed said of itself.
    QSet<QString> droppedLinks; ///< The links of messages that were dropped while the feed still showed them.
    QSet<QString> droppedKeys; ///< The keys of such messages, which have no dropped link.
};

/// What download plug-ins keep with the channels of a store.
class TIDELREADER_EXPORT Feeds
{
public:
    /// Works on \a store.
    explicit Feeds(const Store &store);

    /// The state of the channel \a channelUri. Fails with Error::NotFound if it is not stored.
    Result<FeedState> state(const QString &channelUri) const;
    /// What was noted of the items at the last reading. The text is empty if nothing was, or if messages were
    /// added to the channel, changed or taken from it since.
    Result<ItemNote> itemNote(const QString &channelUri) const;
    /// What the store remembers of the channel. A refresh does not store dropped messages again.
    Result<FeedMemory> memory(const QString &channelUri) const;
    /// Notes that the document was read now, and \a reading in the place of what was noted before.
    Result<void> noteReading(const QString &channelUri, const Reading &reading);
    /// What decides when the channel is asked for again.
    Result<FeedPlan> plan(const QString &channelUri) const;
    /// Notes \a answer, which came at \a now and brought no document. Writes nothing if all is as before.
    Result<void> noteAnswer(const QString &channelUri, const FeedAnswer &answer, const QDateTime &now);
    /// Gives the channel the address to which it has moved, if three answers in a row have said so. Returns
    /// what the user should know of it; empty if nothing has happened.
    Result<QString> followMove(const QString &channelUri);
    /// Forgets the dropped \a links and \a keys, because the feed does not show them any more.
    Result<void> forgetDropped(const QString &channelUri, const QStringList &links,
                               const QStringList &keys = {});

private:
    Store m_store;
};

} // namespace Tidel

#endif
