// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelview.h"

#include "channelicons.h"
#include "channelrows.h"
#include "countdelegate.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QSettings>

namespace Tidel {

namespace {

const QString noChannel = QStringLiteral("urn:tidel:no-channel");
const QString currentKey = QStringLiteral("channels/current");
const QString closedKey = QStringLiteral("channels/closedFolders");

ChannelModel::Kind kindOf(const QModelIndex &index)
{
    return ChannelModel::Kind(index.data(ChannelModel::KindRole).toInt());
}

} // namespace

ChannelView::ChannelView(Archive *archive, QWidget *parent)
    : QTreeView(parent), m_channels(new ChannelModel(archive, this)),
      m_icons(new ChannelIcons(archive, this)), m_rows(new ChannelRows(m_icons, this))
{
    m_channels->setShowsLists(true);
    m_rows->setSourceModel(m_channels);
    setModel(m_rows);
    setItemDelegate(new CountDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setIndentation(16);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setAccessibleName(tr("Channels"));
    // The rows come after this signal.
    connect(m_channels, &ChannelModel::loadingChanged, this, &ChannelView::arrange, Qt::QueuedConnection);
    connect(m_icons, &ChannelIcons::changed, viewport(), qOverload<>(&QWidget::update));
    m_change.setSingleShot(true);
    connect(&m_change, &QTimer::timeout, this, [this] {
        if (channelsOfRow() != m_toldChannels)
            tellRow();
    });
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_rows, change, &m_change, QOverload<>::of(&QTimer::start));
    connect(m_rows, &QAbstractItemModel::rowsMoved, &m_change, QOverload<>::of(&QTimer::start));
    connect(m_rows, &ChannelRows::renamed, this, &ChannelView::renamed);
    connect(m_rows, &ChannelRows::searchRenamed, this, &ChannelView::searchRenamed);
    connect(m_rows, &ChannelRows::moved, this, &ChannelView::moved);
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex &index) {
        if (!m_isArranging)
            m_closedFolders.insert(nameOf(index));
    });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        if (!m_isArranging)
            m_closedFolders.remove(nameOf(index));
    });
}

template <typename Visit> void ChannelView::visitRows(const QModelIndex &parent, const Visit &visit) const
{
    for (int row = 0; row < m_rows->rowCount(parent); ++row) {
        const QModelIndex index = m_rows->index(row, 0, parent);
        visit(index);
        visitRows(index, visit);
    }
}

MessageQuery ChannelView::query() const
{
    MessageQuery query = m_channels->query(m_rows->mapToSource(currentIndex()));
    if (m_hidden.isEmpty())
        return query;
    const QStringList wanted = query.channelUris;
    query.channelUris.clear();
    visitRows({}, [&](const QModelIndex &index) {
        const QString uri = index.data(ChannelModel::UriRole).toString();
        const bool isWanted =
            kindOf(index) == ChannelModel::ChannelKind && (wanted.isEmpty() || wanted.contains(uri));
        if (isWanted && !m_hidden.contains(uri))
            query.channelUris.append(uri);
    });
    if (query.channelUris.isEmpty())
        query.channelUris.append(noChannel); // Without any, all would be shown.
    return query;
}

QString ChannelView::title() const { return currentIndex().data(ChannelModel::TitleRole).toString(); }

QString ChannelView::channel() const { return uriOf(ChannelModel::ChannelKind); }

QString ChannelView::search() const { return uriOf(ChannelModel::SearchKind); }

ChannelModel::Kind ChannelView::kind() const { return kindOf(currentIndex()); }

/// The URI of the current row if that is \a wanted; otherwise empty.
QString ChannelView::uriOf(ChannelModel::Kind wanted) const
{
    return kind() == wanted ? currentIndex().data(ChannelModel::UriRole).toString() : QString();
}

QString ChannelView::folder() const { return currentIndex().data(ChannelModel::FolderRole).toString(); }

QStringList ChannelView::folders() const
{
    QStringList paths;
    visitRows({}, [&paths](const QModelIndex &index) {
        if (kindOf(index) == ChannelModel::FolderKind)
            paths.append(index.data(ChannelModel::FolderRole).toString());
    });
    return paths;
}

bool ChannelView::hasChannels() const
{
    // Folders and channels come last.
    const QModelIndex last = m_rows->index(m_rows->rowCount() - 1, 0);
    return last.isValid() && last.data(ChannelModel::KindRole).toInt() >= ChannelModel::FolderKind;
}

void ChannelView::select(const QString &uri)
{
    m_wanted = uri;
    arrange();
}

bool ChannelView::selectNextUnread()
{
    QModelIndex before;
    QModelIndex after;
    bool isAfter = false;
    visitRows({}, [&](const QModelIndex &index) {
        const bool isUnread = kindOf(index) == ChannelModel::ChannelKind
            && index.data(ChannelModel::UnreadRole).toInt() > 0 && index != currentIndex();
        QModelIndex &found = isAfter ? after : before;
        if (isUnread && !found.isValid())
            found = index;
        isAfter |= index == currentIndex();
    });
    const QModelIndex next = after.isValid() ? after : before;
    if (next.isValid())
        setCurrentIndex(next);
    return next.isValid();
}

void ChannelView::setHidden(const QSet<QString> &uris)
{
    const QSet<QString> restored = m_hidden - uris;
    const QModelIndex below = indexBelow(currentIndex());
    const QModelIndex neighbor = below.isValid() ? below : indexAbove(currentIndex());
    m_hidden = uris;
    if (m_hidden.contains(channel()))
        setCurrentIndex(neighbor);
    else
        tellRow(); // It may have other messages now.
    arrange();
    if (restored.size() == 1)
        select(*restored.begin());
}

/// The URI of a channel or a search, the path of a folder, or the number of a list.
QString ChannelView::nameOf(const QModelIndex &index) const
{
    switch (const ChannelModel::Kind kind = kindOf(index)) {
    case ChannelModel::SearchKind:
    case ChannelModel::ChannelKind: return index.data(ChannelModel::UriRole).toString();
    case ChannelModel::FolderKind: return index.data(ChannelModel::FolderRole).toString();
    default: return QString::number(kind);
    }
}

/// Opens and hides rows, and makes the wanted one the current one.
void ChannelView::arrange()
{
    const QScopedValueRollback<bool> isArranging(m_isArranging, true);
    visitRows({}, [this](const QModelIndex &index) {
        const QString name = nameOf(index);
        setRowHidden(index.row(), index.parent(), m_hidden.contains(name));
        setExpanded(index, !m_closedFolders.contains(name));
        // What a search in a folder finds is not known before the channels are there.
        const bool isReady = kindOf(index) != ChannelModel::SearchKind || !m_channels->isLoading();
        if (name == m_wanted && isReady) {
            m_wanted.clear();
            setCurrentIndex(index);
        }
    });
    if (!currentIndex().isValid() && !m_channels->isLoading())
        setCurrentIndex(m_rows->index(0, 0));
}

void ChannelView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    tellRow();
}

void ChannelView::tellRow()
{
    m_toldChannels = channelsOfRow();
    Q_EMIT currentRowChanged();
}

QSet<QString> ChannelView::channelsOfRow() const
{
    const QStringList uris = query().channelUris;
    return QSet<QString>(uris.cbegin(), uris.cend());
}

void ChannelView::rowsInserted(const QModelIndex &parent, int start, int end)
{
    QTreeView::rowsInserted(parent, start, end);
    arrange();
}

void ChannelView::save(QSettings *settings) const
{
    settings->setValue(currentKey, nameOf(currentIndex()));
    settings->setValue(closedKey, QStringList(m_closedFolders.cbegin(), m_closedFolders.cend()));
}

void ChannelView::restore(const QSettings &settings)
{
    const QStringList closed = settings.value(closedKey).toStringList();
    m_closedFolders = QSet<QString>(closed.cbegin(), closed.cend());
    select(settings.value(currentKey, QString::number(ChannelModel::AllKind)).toString());
}

} // namespace Tidel
