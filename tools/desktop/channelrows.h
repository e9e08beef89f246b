// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_CHANNELROWS_H
#define TIDEL_DESKTOP_CHANNELROWS_H

#include <TidelReader/channelmodel.h>

#include <QIcon>
#include <QIdentityProxyModel>

namespace Tidel {

class ChannelIcons;

/// What a tree of widgets shows of a ChannelModel: icons, fonts and tool tips. Channels can be renamed in
/// their place and dragged into folders.
class ChannelRows : public QIdentityProxyModel
{
    Q_OBJECT

public:
    /// Shows \a icons, which must outlive the rows.
    explicit ChannelRows(const ChannelIcons *icons, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction; }
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

Q_SIGNALS:
    /// The user wants the channel \a uri to be called \a title.
    void renamed(const QString &uri, const QString &title);
    /// The user wants the search \a uri to be called \a title.
    void searchRenamed(const QString &uri, const QString &title);
    /// The user has dragged the channels \a uris into the folder \a path, or out of folders if it is empty.
    void moved(const QStringList &uris, const QString &path);

private:
    QIcon iconOf(const QModelIndex &index) const;

    const ChannelIcons *const m_icons;
};

} // namespace Tidel

#endif
