// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelrows.h"

#include "channelicons.h"
#include "paintedicon.h"

#include <QFont>
#include <QMimeData>

namespace Tidel {

namespace {

const QString channelType = QStringLiteral("application/x-tidel-channels");

int kindOf(const QModelIndex &index) { return index.data(ChannelModel::KindRole).toInt(); }

QString toolTipOf(const QModelIndex &index)
{
    const QString title = index.data(ChannelModel::TitleRole).toString();
    if (kindOf(index) == ChannelModel::SearchKind)
        return title.toHtmlEscaped();
    const QString counts = ChannelRows::tr("%1 of %2 unread")
                               .arg(index.data(ChannelModel::UnreadRole).toInt())
                               .arg(index.data(ChannelModel::MessagesRole).toInt());
    const QString error = index.data(ChannelModel::ErrorRole).toString();
    QStringList lines{title, counts};
    if (!error.isEmpty())
        lines.append(ChannelRows::tr("Could not be refreshed: %1").arg(error));
    return lines.join(QLatin1Char('\n')).toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

QString spokenText(const QModelIndex &index)
{
    const QString name = index.data(ChannelModel::TitleRole).toString();
    const QString title =
        kindOf(index) == ChannelModel::SearchKind ? ChannelRows::tr("Search: %1").arg(name) : name;
    const int unread = index.data(ChannelModel::UnreadRole).toInt();
    return unread == 0 ? title : ChannelRows::tr("%1, %n unread", nullptr, unread).arg(title);
}

} // namespace

ChannelRows::ChannelRows(const ChannelIcons *icons, QObject *parent)
    : QIdentityProxyModel(parent), m_icons(icons)
{
}

QIcon ChannelRows::iconOf(const QModelIndex &index) const
{
    if (!index.data(ChannelModel::ErrorRole).toString().isEmpty())
        return errorIcon();
    switch (kindOf(index)) {
    case ChannelModel::UnreadKind: return unreadIcon();
    case ChannelModel::FavoritesKind: return starIcon(true);
    case ChannelModel::SearchKind: return searchIcon();
    case ChannelModel::FolderKind: return folderIcon();
    case ChannelModel::ChannelKind: break;
    default: return listIcon();
    }
    const QString uri = index.data(ChannelModel::UriRole).toString();
    const QIcon icon = m_icons->icon(uri);
    return icon.isNull() ? letterIcon(index.data(ChannelModel::TitleRole).toString(), uri) : icon;
}

QVariant ChannelRows::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::EditRole: return QIdentityProxyModel::data(index, ChannelModel::TitleRole);
    case Qt::DecorationRole: return iconOf(index);
    case Qt::ToolTipRole: return toolTipOf(index);
    case Qt::AccessibleTextRole: return spokenText(index);
    case Qt::FontRole: {
        QFont font;
        font.setBold(index.data(ChannelModel::UnreadRole).toInt() > 0);
        return font;
    }
    default: return QIdentityProxyModel::data(index, role);
    }
}

bool ChannelRows::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const QString title = value.toString().simplified();
    if (role != Qt::EditRole || title.isEmpty() || title == index.data(ChannelModel::TitleRole).toString())
        return false;
    const QString uri = index.data(ChannelModel::UriRole).toString();
    if (kindOf(index) == ChannelModel::SearchKind)
        Q_EMIT searchRenamed(uri, title);
    else
        Q_EMIT renamed(uri, title);
    return true;
}

Qt::ItemFlags ChannelRows::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    switch (kindOf(index)) {
    case ChannelModel::SearchKind: return flags | Qt::ItemIsEditable;
    case ChannelModel::FolderKind: return flags | Qt::ItemIsDropEnabled;
    case ChannelModel::ChannelKind:
        // What is dropped on a channel goes to its folder.
        return flags | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled | Qt::ItemIsEditable;
    default: return flags;
    }
}

QStringList ChannelRows::mimeTypes() const { return {channelType}; }

QMimeData *ChannelRows::mimeData(const QModelIndexList &indexes) const
{
    QStringList uris;
    for (const QModelIndex &index : indexes)
        uris.append(index.data(ChannelModel::UriRole).toString());
    auto *data = new QMimeData;
    data->setData(channelType, uris.join(QLatin1Char('\n')).toUtf8());
    return data;
}

bool ChannelRows::canDropMimeData(const QMimeData *data, Qt::DropAction, int, int, const QModelIndex &) const
{
    return data->hasFormat(channelType);
}

bool ChannelRows::dropMimeData(const QMimeData *data, Qt::DropAction, int, int, const QModelIndex &parent)
{
    if (!data->hasFormat(channelType))
        return false;
    const QString uris = QString::fromUtf8(data->data(channelType));
    Q_EMIT moved(uris.split(QLatin1Char('\n')), parent.data(ChannelModel::FolderRole).toString());
    // False, because the view would remove the dragged rows otherwise. The model moves them.
    return false;
}

} // namespace Tidel
