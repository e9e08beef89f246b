// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeds.h"

#include "detailfields_p.h"
#include "statements_p.h"
#include "store_p.h"

#include <algorithm>

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

/// \a values in an order that does not depend on that of the document.
QVector<DetailValue> sorted(QVector<DetailValue> values)
{
    std::sort(values.begin(), values.end(), [](const DetailValue &a, const DetailValue &b) {
        return a.first != b.first ? a.first < b.first : a.second.toString() < b.second.toString();
    });
    return values;
}

/// What an item note is stored with. It counts only as long as nobody else changes the channel.
QString stampOf(int parts, const QString &time)
{
    return QString::number(parts) + QLatin1Char(' ') + time.left(19) + QLatin1Char(' ');
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
            const QString conditions = stampOf(parts, answer->value(2).toString());
            return ItemNote{note.startsWith(conditions) ? note.mid(conditions.size()) : QString(), parts};
        });
}

Result<FeedMemory> Feeds::memory(const QString &channelUri) const
{
    const QStringList names =
        detailNames<ChannelDetails>() + QStringList{Statements::droppedLink, Statements::droppedKey};
    return StorePrivate::of(m_store)
        .run(Statements::detailsOf(channelUri, names), "read what is known of the feed from the store")
        .map([](const Answer &answer) {
            FeedMemory memory;
            while (answer->next()) {
                const QString name = Statements::detailName(answer->value(0).toString());
                if (name == Statements::droppedLink)
                    memory.droppedLinks.insert(answer->value(1).toString());
                else if (name == Statements::droppedKey)
                    memory.droppedKeys.insert(answer->value(1).toString());
                else
                    addDetail(memory.details, name, answer->value(1));
            }
            return memory;
        });
}

Result<void> Feeds::noteReading(const QString &channelUri, const QString &entityTag,
                                const QString &lastModified, const ChannelDetails &details,
                                const FeedMemory &memory, const ItemNote &items)
{
    const QString time = Statements::localTimeText();
    const QString note = items.text.isEmpty() ? QString() : stampOf(items.parts, time) + items.text;
    QString text = Statements::noteReading(channelUri, entityTag, lastModified, time)
        + Statements::replaceItemNote(channelUri, note);
    if (sorted(detailValues(details)) != sorted(detailValues(memory.details)))
        text += Statements::deleteDetails({channelUri}, detailNames<ChannelDetails>())
            + Statements::insertDetails(channelUri, detailValues(details));
    return StorePrivate::of(m_store).updateLoosely(Statements::update(text),
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
