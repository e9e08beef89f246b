// SPDX-License-Identifier: LGPL-2.1-or-later
#include "countdelegate.h"

#include <TidelReader/channelmodel.h>

#include <QApplication>
#include <QPainter>

namespace Tidel {

namespace {

constexpr int margin = 6;

/// \a icon of a selected row, as sharp as the device of \a painter is.
QIcon selectedIcon(const QIcon &icon, const QSize &size, const QPainter &painter)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    QPixmap pixmap(size * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter iconPainter(&pixmap);
    icon.paint(&iconPainter, QRect(QPoint(), size), Qt::AlignCenter, QIcon::Selected);
    return pixmap;
}

} // namespace

void CountDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QStyle *style = item.widget ? item.widget->style() : QApplication::style();
    const int unread = index.data(ChannelModel::UnreadRole).toInt();
    if (unread == 0) {
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
        return;
    }
    const QString count = option.locale.toString(unread);
    const int width = item.fontMetrics.horizontalAdvance(count) + margin;
    QStyleOptionViewItem background = item;
    background.text.clear();
    background.icon = QIcon();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &background, painter, item.widget);
    const QRect countRect(item.rect.right() - width - margin + 1, item.rect.y(), width, item.rect.height());
    const bool isSelected = item.state.testFlag(QStyle::State_Selected);
    QStyleOptionViewItem name = item;
    name.rect = QStyle::visualRect(item.direction, item.rect, item.rect.adjusted(0, 0, -width - margin, 0));
    name.backgroundBrush = QBrush();
    name.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    if (isSelected) {
        name.icon = selectedIcon(name.icon, item.decorationSize, *painter);
        name.palette.setColor(QPalette::Text, item.palette.color(QPalette::HighlightedText));
    }
    style->drawControl(QStyle::CE_ItemViewItem, &name, painter, item.widget);
    painter->save();
    painter->setFont(item.font);
    painter->setPen(item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(QStyle::visualRect(item.direction, item.rect, countRect),
                      QStyle::visualAlignment(item.direction, Qt::AlignRight | Qt::AlignVCenter), count);
    painter->restore();
}

QSize CountDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width(), size.height() + 4};
}

} // namespace Tidel
