// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeds.h"

#include "statements_p.h"
#include "store_p.h"

namespace Tidel {

class FeedStatePrivate : public QSharedData
{
public:
    QString link;
    QString firstLink;
    QString entityTag;
    QString lastModified;
};

FeedState::FeedState(FeedStatePrivate *state) : d(state) { }
FeedState::FeedState(const FeedState &other) = default;
FeedState::FeedState(FeedState &&other) noexcept = default;
FeedState &FeedState::operator=(const FeedState &other) = default;
FeedState &FeedState::operator=(FeedState &&other) noexcept = default;
FeedState::~FeedState() = default;

QString FeedState::link() const { return d->link; }

QString FeedState::itemBase() const { return d->firstLink.isEmpty() ? d->link : d->firstLink; }

QString FeedState::entityTag() const { return d->entityTag; }

QString FeedState::lastModified() const { return d->lastModified; }

Feeds::Feeds(const Store &store) : m_store(store) { }

Result<FeedState> Feeds::state(const QString &channelUri) const
{
    const auto answer =
        StorePrivate::of(m_store).run(Statements::feedState(channelUri), "read the channel from the store");
    if (!answer)
        return Failure(answer.error());
    if (!(*answer)->next())
        return Failure(Error(Error::NotFound, {}, QStringLiteral("no such channel")));
    FeedState state(new FeedStatePrivate);
    state.d->link = (*answer)->value(0).toString();
    state.d->firstLink = (*answer)->value(1).toString();
    state.d->entityTag = (*answer)->value(2).toString();
    state.d->lastModified = (*answer)->value(3).toString();
    return state;
}

Result<void> Feeds::noteReading(const QString &channelUri, const QString &entityTag,
                                const QString &lastModified)
{
    return StorePrivate::of(m_store).update(Statements::noteReading(channelUri, entityTag, lastModified),
                                            "note the download in the store");
}

Result<QSet<QString>> Feeds::droppedLinks(const QString &channelUri) const
{
    return StorePrivate::of(m_store)
        .texts(Statements::droppedLinks(channelUri), "read the links of deleted messages from the store")
        .map([](const QStringList &links) { return QSet<QString>(links.begin(), links.end()); });
}

Result<void> Feeds::forgetDropped(const QString &channelUri, const QStringList &links)
{
    return inChunks(links, [&](const QStringList &some) {
        return StorePrivate::of(m_store).update(Statements::deleteDroppedLinks(channelUri, some),
                                                "forget the links of deleted messages in the store");
    });
}

} // namespace Tidel
