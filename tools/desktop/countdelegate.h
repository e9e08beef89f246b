// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_COUNTDELEGATE_H
#define TIDEL_DESKTOP_COUNTDELEGATE_H

#include <QStyledItemDelegate>

namespace Tidel {

/// Paints the rows of a tree of channels, with the number of unread messages at the end.
class CountDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace Tidel

#endif
