// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeds.h"

#include "detailfields_p.h"
#include "readingnote_p.h"
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
    QString type;
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

bool FeedState::wasRead() const { return !d->type.isEmpty(); }

namespace {

void remember(const QString &name, const QVariant &value, FeedMemory *memory)
{
    if (name == Statements::droppedLink)
        memory->droppedLinks.insert(value.toString());
    else if (name == Statements::droppedKey)
        memory->droppedKeys.insert(value.toString());
    else
        addDetail(memory->details, name, value);
}

} // namespace

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
    state.d->type = (*answer)->value(4).toString();
    return state;
}

Result<ItemNote> Feeds::itemNote(const QString &channelUri) const
{
    return StorePrivate::of(m_store)
        .run(Statements::itemNote(channelUri), "read what is noted of the items from the store")
        .map([](const Answer &answer) {
            if (!answer->next())
                return ItemNote();
            const int parts = answer->value(0).toInt();
            const QString note = answer->value(1).toString();
            const QString conditions = itemNoteStamp(parts, answer->value(2).toString());
            return ItemNote{note.startsWith(conditions) ? note.mid(conditions.size()) : QString(), parts};
        });
}

Result<FeedMemory> Feeds::memory(const QString &channelUri) const
{
    const QStringList names =
        detailNames<ChannelDetails>() + QStringList{Statements::droppedLink, Statements::droppedKey};
    return StorePrivate::of(m_store)
        .run(Statements::detailsOf(channelUri, names), "read what is known of the feed from the store")
        .map([&names](const Answer &answer) {
            FeedMemory memory;
            while (answer->next()) {
                for (int i = 0; i < names.size(); ++i) {
                    if (answer->value(i).isValid())
                        remember(names.at(i), answer->value(i), &memory);
                }
            }
            return memory;
        });
}

Result<void> Feeds::noteReading(const QString &channelUri, const Reading &reading)
{
    return StorePrivate::of(m_store).updateLoosely(Statements::update(noteOf(reading, channelUri)),
                                                   "note the download in the store");
}

Result<void> Feeds::forgetDropped(const QString &channelUri, const QStringList &links,
                                  const QStringList &keys)
{
    const auto forget = [&](const QString &name, const QStringList &values) {
        return inChunks(values, [&](const QStringList &some) {
            return StorePrivate::of(m_store).updateLoosely(
                Statements::update(Statements::deleteDropped(channelUri, name, some)),
                "forget the links of deleted messages in the store");
        });
    };
    return forget(Statements::droppedLink, links).and_then([&] {
        return forget(Statements::droppedKey, keys);
    });
}

} // namespace Tidel
