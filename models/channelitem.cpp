// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelitem_p.h"

#include <TidelReader/channels.h>
#include <TidelReader/folders.h>
#include <TidelReader/schedule.h>

#include <QCollator>

#include <algorithm>
#include <tuple>

namespace Tidel {

namespace {

/// What the store has of all channels.
struct StoredChannels
{
    QList<FeedChannel> channels;
    QHash<QString, QString> folders;
    QHash<QString, QString> images;
    QHash<QString, MessageCounts> counts;
    Schedule schedule;
};

/// Puts the value of \a result into \a value, or its error into \a error.
template <typename T> bool take(const Result<T> &result, T *value, Result<void> *error)
{
    if (result)
        *value = *result;
    else
        *error = Failure(result.error());
    return result.has_value();
}

Result<StoredChannels> readStored(const Store &store)
{
    const Channels channels(store);
    StoredChannels stored;
    Result<void> read;
    const bool isWhole = take(channels.all(), &stored.channels, &read)
        && take(Folders(store).all(), &stored.folders, &read)
        && take(channels.images(), &stored.images, &read)
        && take(ReadState(store).counts(), &stored.counts, &read)
        && take(Schedule::read(store, QDateTime::currentDateTimeUtc()), &stored.schedule, &read);
    return isWhole ? Result<StoredChannels>(stored) : Failure(read.error());
}

ChannelItem itemOf(const FeedChannel &channel, const StoredChannels &stored)
{
    ChannelItem item;
    item.kind = ChannelModel::ChannelKind;
    item.uri = channel.uri();
    item.folder = stored.folders.value(item.uri);
    item.title = channel.title();
    item.link = channel.link();
    item.image = stored.images.value(item.uri);
    item.error = stored.schedule.notes(item.uri).error;
    item.counts = stored.counts.value(item.uri);
    return item;
}

/// The folder \a path below \a root, which is made if it is missing. Folders stand before channels.
ChannelItem *folderIn(ChannelItem *root, const QString &path)
{
    ChannelItem *folder = root;
    const QStringList names = Folders::names(path);
    for (int depth = 0; depth < names.size(); ++depth) {
        const QString inner = QStringList(names.mid(0, depth + 1)).join(QLatin1Char('/'));
        const auto isChannel = [](const ChannelItem &item) { return item.kind != ChannelModel::FolderKind; };
        const auto isInner = [&](const ChannelItem &item) { return isChannel(item) || item.folder == inner; };
        auto found = std::find_if(folder->children.begin(), folder->children.end(), isInner);
        if (found == folder->children.end() || isChannel(*found)) {
            ChannelItem item;
            item.folder = inner;
            item.title = names.at(depth);
            found = folder->children.insert(found, item);
        }
        folder = &*found;
    }
    return folder;
}

/// Sorts what is below \a folder, folders first, and counts its messages.
void finish(ChannelItem *folder, const QCollator &collator)
{
    const auto isBefore = [&collator](const ChannelItem &a, const ChannelItem &b) {
        if (a.kind != b.kind)
            return a.kind < b.kind;
        const int order = collator.compare(a.title, b.title);
        return order == 0 ? a.name() < b.name() : order < 0;
    };
    std::sort(folder->children.begin(), folder->children.end(), isBefore);
    for (ChannelItem &item : folder->children) {
        if (item.kind == ChannelModel::FolderKind)
            finish(&item, collator);
        folder->counts.all += item.counts.all;
        folder->counts.unread += item.counts.unread;
    }
}

ChannelItem list(ChannelModel::Kind kind, const QString &title, const MessageCounts &counts)
{
    ChannelItem item;
    item.kind = kind;
    item.title = title;
    item.counts = counts;
    return item;
}

Result<std::vector<ChannelItem>> readLists(const Store &store)
{
    return ReadState(store).total().and_then([&](const MessageCounts &total) {
        return ReadState(store).favorites().map([&](const MessageCounts &favorites) {
            return std::vector<ChannelItem>{
                list(ChannelModel::AllKind, ChannelModel::tr("All messages"), total),
                list(ChannelModel::UnreadKind, ChannelModel::tr("Unread"), {total.unread, total.unread}),
                list(ChannelModel::FavoritesKind, ChannelModel::tr("Favorites"), favorites)};
        });
    });
}

} // namespace

QString ChannelItem::name() const { return QString::number(kind) + (uri.isEmpty() ? folder : uri); }

bool ChannelItem::looksLike(const ChannelItem &other) const
{
    const auto shown = [](const ChannelItem &item) {
        return std::tie(item.title, item.folder, item.link, item.image, item.error, item.counts.all,
                        item.counts.unread);
    };
    return shown(*this) == shown(other);
}

Result<ChannelItem> readChannelItems(const Store &store, bool withLists)
{
    const Result<StoredChannels> stored = readStored(store);
    if (!stored)
        return Failure(stored.error());
    ChannelItem root;
    for (const FeedChannel &channel : stored->channels) {
        const ChannelItem item = itemOf(channel, *stored);
        folderIn(&root, item.folder)->children.push_back(item);
    }
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    finish(&root, collator);
    if (!withLists)
        return root;
    return readLists(store).map([&](const std::vector<ChannelItem> &lists) {
        root.children.insert(root.children.begin(), lists.begin(), lists.end());
        return root;
    });
}

} // namespace Tidel
