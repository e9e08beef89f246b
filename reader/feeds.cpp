// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeds.h"

#include "channels.h"
#include "detailfields_p.h"
#include "feednotes_p.h"
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
    QString lastError;
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

QString FeedState::lastError() const { return d->lastError; }

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
    state.d->lastError = (*answer)->value(5).toString();
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

Result<FeedPlan> Feeds::plan(const QString &channelUri) const
{
    const QStringList names = detailNames<FeedNotes>()
        + QStringList{Statements::interval, QStringLiteral("minutesToLive"), QStringLiteral("updatePeriod"),
                      QStringLiteral("updateFrequency")};
    return StorePrivate::of(m_store)
        .run(Statements::detailsOf(channelUri, names), "read from the store when the feed is asked for")
        .map([&names](const Answer &answer) {
            FeedPlan plan;
            while (answer->next()) {
                for (int i = 0; i < names.size(); ++i) {
                    const QVariant value = answer->value(i);
                    if (!value.isValid())
                        continue;
                    if (names.at(i) == Statements::interval)
                        plan.interval = value.toInt();
                    else if (!addDetail(plan.notes, names.at(i), value))
                        addDetail(plan.details, names.at(i), value);
                }
            }
            return plan;
        });
}

Result<void> Feeds::noteAnswer(const QString &channelUri, const FeedAnswer &answer, const QDateTime &now)
{
    return plan(channelUri).and_then([&](const FeedPlan &plan) {
        const QString text = noteOfAnswer(channelUri, answer, plan, now.toUTC());
        return text.isEmpty() ? Result<void>()
                              : StorePrivate::of(m_store).updateLoosely(Statements::update(text),
                                                                        "note the answer in the store");
    });
}

Result<QString> Feeds::followMove(const QString &channelUri)
{
    const Result<FeedPlan> known = plan(channelUri);
    if (!known)
        return Failure(known.error());
    if (known->notes.timesMoved != movesToFollow)
        return QString();
    Channels channels(m_store);
    const Result<QList<FeedChannel>> all = channels.all();
    if (!all)
        return Failure(all.error());
    return Channels::find(*all, channelUri).and_then([&](const FeedChannel &channel) -> Result<QString> {
        const QString link = known->notes.movedTo.toString();
        const QString move = QStringLiteral("the feed has moved permanently to %1").arg(link);
        const Result<void> edited = channels.edit(channel, channel.title(), link);
        if (edited)
            return move + QStringLiteral(", which is the link of the channel now");
        if (edited.error().kind() == Error::LinkInUse)
            return move + QStringLiteral(", but this ") + edited.error().reason();
        return Failure(edited.error());
    });
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
