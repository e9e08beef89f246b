// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelmodel.h"

#include "channeltree_p.h"
#include "watching_p.h"

#include <QPointer>

#include <algorithm>

namespace Tidel {

namespace {

/// Puts rows for \a searches between the lists and the folders of \a root.
void addSearches(const QList<ChannelSearch> &searches, ChannelItem *root)
{
    const auto isBelow = [](const ChannelItem &item) { return item.kind > ChannelModel::SearchKind; };
    const auto place = std::find_if(root->children.begin(), root->children.end(), isBelow);
    std::vector<ChannelItem> items;
    for (const ChannelSearch &search : searches) {
        ChannelItem item;
        item.kind = ChannelModel::SearchKind;
        item.uri = search.uri;
        item.title = search.title;
        items.push_back(item);
    }
    root->children.insert(place, items.begin(), items.end());
}

} // namespace

class ChannelModelPrivate
{
public:
    ChannelModelPrivate(ChannelModel *model, Archive *archive);

    void setArchive(Archive *source);
    /// Reads the channels again, as soon as a reading that is under way has ended.
    void readAgain();
    const ChannelNode &nodeOf(const QModelIndex &index) const;

    MessageQuery searchQuery(const QString &uri) const;

    QPointer<Archive> archive;
    ChannelTree tree;
    QList<ChannelSearch> searches;
    bool showsLists = false;
    bool isLoading = false;
    std::optional<Error> error;

private:
    void connectTo(Archive *source);
    void read();
    void take();
    void setLoading(bool isTrue);
    void setError(const std::optional<Error> &newError);

    ChannelModel *const q;
    QFutureWatcher<Result<ChannelItem>> answer;
    bool isReading = false;
    bool isStale = false; // Something has changed since the reading began.
};

ChannelModelPrivate::ChannelModelPrivate(ChannelModel *model, Archive *source)
    : archive(source), tree(model), q(model)
{
    QObject::connect(&answer, &QFutureWatcherBase::finished, q, [this] { take(); });
    if (!source)
        return;
    connectTo(source);
    isLoading = true;
    read();
}

void ChannelModelPrivate::setArchive(Archive *source)
{
    if (archive)
        QObject::disconnect(archive, nullptr, q, nullptr);
    archive = source;
    // What the other archive answers is not for this one.
    answer.cancel();
    answer.setFuture(QFuture<Result<ChannelItem>>());
    isReading = false;
    tree.become({});
    setError({});
    setLoading(source != nullptr);
    if (source)
        connectTo(source);
    read();
}

void ChannelModelPrivate::connectTo(Archive *source)
{
    for (const auto signal : {&Archive::channelsAdded, &Archive::channelsChanged, &Archive::channelsRemoved,
                              &Archive::messagesAdded, &Archive::messagesChanged, &Archive::messagesRemoved})
        QObject::connect(source, signal, q, [this] { readAgain(); });
    for (const auto signal : {&Archive::readStateChanged, &Archive::favoritesChanged})
        QObject::connect(source, signal, q, [this] { readAgain(); });
    whenWatching(source, q, [this] { readAgain(); });
}

void ChannelModelPrivate::readAgain()
{
    if (isReading)
        isStale = true;
    else
        read();
}

void ChannelModelPrivate::read()
{
    isStale = false;
    if (!archive)
        return;
    isReading = true;
    answer.setFuture(archive->read(
        [withLists = showsLists](const Store &store) { return readChannelItems(store, withLists); },
        Archive::LongRead));
}

void ChannelModelPrivate::take()
{
    isReading = false;
    // There is no result if the archive was closed.
    if (answer.future().resultCount() > 0) {
        Result<ChannelItem> root = answer.result();
        setError(root ? std::optional<Error>() : root.error());
        if (root) {
            addSearches(searches, &*root);
            tree.become(*root);
        }
    }
    setLoading(false);
    if (isStale)
        read();
}

void ChannelModelPrivate::setLoading(bool isTrue)
{
    if (isLoading == isTrue)
        return;
    isLoading = isTrue;
    Q_EMIT q->loadingChanged();
}

void ChannelModelPrivate::setError(const std::optional<Error> &newError)
{
    const QString before = q->errorText();
    error = newError;
    if (q->errorText() != before)
        Q_EMIT q->errorChanged();
}

const ChannelNode &ChannelModelPrivate::nodeOf(const QModelIndex &index) const
{
    return index.isValid() ? *static_cast<const ChannelNode *>(index.internalPointer()) : tree.root();
}

ChannelModel::ChannelModel(Archive *archive, QObject *parent)
    : QAbstractItemModel(parent), d(new ChannelModelPrivate(this, archive))
{
}

ChannelModel::~ChannelModel() = default;

Archive *ChannelModel::archive() const { return d->archive; }

void ChannelModel::setArchive(Archive *archive)
{
    if (d->archive == archive)
        return;
    d->setArchive(archive);
    Q_EMIT archiveChanged();
}

bool ChannelModel::showsLists() const { return d->showsLists; }

void ChannelModel::setShowsLists(bool showsLists)
{
    if (d->showsLists == showsLists)
        return;
    d->showsLists = showsLists;
    d->readAgain();
    Q_EMIT showsListsChanged();
}

void ChannelModel::setSearches(const QList<ChannelSearch> &searches)
{
    d->searches = searches;
    d->readAgain();
}

bool ChannelModel::isLoading() const { return d->isLoading; }

std::optional<Error> ChannelModel::error() const { return d->error; }

QString ChannelModel::errorText() const { return d->error ? d->error->text() : QString(); }

namespace {

void addChannels(const ChannelNode &node, QStringList *uris)
{
    if (node.item.kind == ChannelModel::ChannelKind)
        uris->append(node.item.uri);
    for (const std::unique_ptr<ChannelNode> &child : node.children)
        addChannels(*child, uris);
}

QVariant value(const ChannelItem &item, int role)
{
    switch (role) {
    case ChannelModel::KindRole: return item.kind;
    case ChannelModel::UriRole: return item.uri;
    case Qt::DisplayRole:
    case ChannelModel::TitleRole: return item.title;
    case ChannelModel::FolderRole: return item.folder;
    case ChannelModel::LinkRole: return item.link;
    case ChannelModel::UnreadRole: return item.counts.unread;
    case ChannelModel::MessagesRole: return item.counts.all;
    case ChannelModel::IconRole: return item.image;
    case ChannelModel::ErrorRole: return item.error;
    default: return {};
    }
}

} // namespace

MessageQuery ChannelModel::query(const QModelIndex &index) const
{
    MessageQuery query;
    if (!checkIndex(index) || !index.isValid())
        return query;
    const ChannelNode &node = d->nodeOf(index);
    if (node.item.kind == SearchKind)
        return d->searchQuery(node.item.uri);
    query.onlyUnread = node.item.kind == UnreadKind;
    query.onlyFavorites = node.item.kind == FavoritesKind;
    addChannels(node, &query.channelUris);
    // Its channels come after it. Without any, all messages would be found.
    if (node.item.kind == FolderKind && query.channelUris.isEmpty())
        query.channelUris.append(QStringLiteral("urn:tidel:no-channel"));
    return query;
}

MessageQuery ChannelModelPrivate::searchQuery(const QString &uri) const
{
    const auto isThis = [&uri](const ChannelSearch &search) { return search.uri == uri; };
    const auto search = std::find_if(searches.begin(), searches.end(), isThis);
    MessageQuery query;
    if (search == searches.end())
        return query;
    query.onlyUnread = search->placeKind == ChannelModel::UnreadKind;
    query.onlyFavorites = search->placeKind == ChannelModel::FavoritesKind;
    if (!search->place.isEmpty()) {
        ChannelItem place;
        place.kind = search->placeKind;
        (place.kind == ChannelModel::ChannelKind ? place.uri : place.folder) = search->place;
        if (const ChannelNode *node = tree.node(place.name()))
            addChannels(*node, &query.channelUris);
        else
            query.channelUris.append(uri); // No channel has it.
    }
    query.words = search->words;
    return query;
}

QModelIndex ChannelModel::indexOf(const QString &uri) const
{
    ChannelItem channel;
    channel.kind = ChannelKind;
    channel.uri = uri;
    return d->tree.indexOf(d->tree.node(channel.name()));
}

QModelIndex ChannelModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, d->nodeOf(parent).children[size_t(row)].get());
}

QModelIndex ChannelModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? d->tree.indexOf(d->nodeOf(index).parent) : QModelIndex();
}

int ChannelModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : int(d->nodeOf(parent).children.size());
}

int ChannelModel::columnCount(const QModelIndex &) const { return 1; }

QVariant ChannelModel::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid) ? value(d->nodeOf(index).item, role)
                                                             : QVariant();
}

QHash<int, QByteArray> ChannelModel::roleNames() const
{
    return {{Qt::DisplayRole, "display"}, {KindRole, "kind"},         {UriRole, "uri"},
            {TitleRole, "title"},         {FolderRole, "folder"},     {LinkRole, "link"},
            {UnreadRole, "unread"},       {MessagesRole, "messages"}, {IconRole, "icon"},
            {ErrorRole, "error"}};
}

} // namespace Tidel
