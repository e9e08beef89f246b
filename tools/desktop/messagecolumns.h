// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_MESSAGECOLUMNS_H
#define TIDEL_DESKTOP_MESSAGECOLUMNS_H

#include <QIdentityProxyModel>

namespace Tidel {

/// What a table of widgets shows of a MessageModel.
class MessageColumns : public QIdentityProxyModel
{
    Q_OBJECT

public:
    enum Column { ReadColumn, FavoriteColumn, TitleColumn, ChannelColumn, DateColumn, ColumnCount };

    using QIdentityProxyModel::QIdentityProxyModel;

    void setSourceModel(QAbstractItemModel *model) override;
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    QModelIndex mapToSource(const QModelIndex &index) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
};

} // namespace Tidel

#endif
