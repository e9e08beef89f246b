// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagecolumns.h"

#include "paintedicon.h"

#include <TidelReader/messagemodel.h>

#include <QDateTime>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLocale>
#include <QSize>

namespace Tidel {

namespace {

/// The time of a message of today, otherwise the date.
QString shownDate(const QDateTime &published)
{
    if (!published.isValid())
        return {};
    const QDateTime local = published.toLocalTime();
    return local.date() == QDate::currentDate() ? QLocale().toString(local.time(), QLocale::ShortFormat)
                                                : QLocale().toString(local.date(), QLocale::ShortFormat);
}

QString textOf(const QModelIndex &message, int column)
{
    switch (column) {
    case MessageColumns::TitleColumn: {
        const QString title = message.data(MessageModel::TitleRole).toString();
        return title.isEmpty() ? MessageColumns::tr("Untitled") : title;
    }
    case MessageColumns::ChannelColumn:
        return message.data(MessageModel::ChannelsRole).toStringList().join(QLatin1String(", "));
    case MessageColumns::DateColumn: return shownDate(message.data(MessageModel::PublishedRole).toDateTime());
    default: return {};
    }
}

QVariant iconOf(const QModelIndex &message, int column)
{
    if (column == MessageColumns::FavoriteColumn)
        return starIcon(message.data(MessageModel::IsFavoriteRole).toBool());
    if (column == MessageColumns::ReadColumn && !message.data(MessageModel::IsReadRole).toBool())
        return unreadIcon();
    return {};
}

QString spokenText(const QModelIndex &message, int column)
{
    if (column == MessageColumns::ReadColumn)
        return message.data(MessageModel::IsReadRole).toBool() ? MessageColumns::tr("read")
                                                               : MessageColumns::tr("unread");
    if (column == MessageColumns::FavoriteColumn)
        return message.data(MessageModel::IsFavoriteRole).toBool() ? MessageColumns::tr("favorite")
                                                                   : MessageColumns::tr("no favorite");
    return textOf(message, column);
}

QFont fontOf(const QModelIndex &message)
{
    QFont font;
    font.setBold(!message.data(MessageModel::IsReadRole).toBool());
    return font;
}

} // namespace

void MessageColumns::setSourceModel(QAbstractItemModel *model)
{
    QIdentityProxyModel::setSourceModel(model);
    // The base tells the views of the first column only.
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last) {
                Q_EMIT dataChanged(index(first.row(), FavoriteColumn), index(last.row(), DateColumn));
            });
}

QModelIndex MessageColumns::index(int row, int column, const QModelIndex &parent) const
{
    const bool isThere =
        !parent.isValid() && row >= 0 && row < rowCount() && column >= 0 && column < ColumnCount;
    return isThere ? createIndex(row, column) : QModelIndex();
}

QModelIndex MessageColumns::parent(const QModelIndex &) const { return {}; }

QModelIndex MessageColumns::sibling(int row, int column, const QModelIndex &) const
{
    return index(row, column);
}

QModelIndex MessageColumns::mapToSource(const QModelIndex &index) const
{
    return index.isValid() ? sourceModel()->index(index.row(), 0) : QModelIndex();
}

int MessageColumns::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

bool MessageColumns::hasChildren(const QModelIndex &parent) const
{
    return !parent.isValid() && rowCount() > 0;
}

QVariant MessageColumns::data(const QModelIndex &index, int role) const
{
    const QModelIndex message = mapToSource(index);
    switch (role) {
    case Qt::DisplayRole: return textOf(message, index.column());
    case Qt::DecorationRole: return iconOf(message, index.column());
    case Qt::FontRole: return index.column() == TitleColumn ? fontOf(message) : QFont();
    case Qt::SizeHintRole: return QSize(0, QFontMetrics(QGuiApplication::font()).height() + 8);
    case Qt::AccessibleTextRole: return spokenText(message, index.column());
    case Qt::ToolTipRole: return textOf(message, index.column()).toHtmlEscaped();
    default: return message.data(role);
    }
}

QVariant MessageColumns::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    switch (section) {
    case ReadColumn: return role == Qt::ToolTipRole ? tr("Unread") : QString();
    case FavoriteColumn: return role == Qt::ToolTipRole ? tr("Favorite") : QString();
    case TitleColumn: return tr("Title");
    case ChannelColumn: return tr("Channel");
    case DateColumn: return tr("Date");
    default: return {};
    }
}

Qt::ItemFlags MessageColumns::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren
                           : Qt::ItemFlags(Qt::NoItemFlags);
}

} // namespace Tidel
