// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PAINTEDICON_H
#define TIDEL_DESKTOP_PAINTEDICON_H

#include <QIcon>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QPainter)

namespace Tidel {

/// Paints an icon into a square of the size 1, in the colour of the pen.
using IconPainting = std::function<void(QPainter &)>;

/// An icon that \a painting paints in any size, in the colour of texts.
QIcon paintedIcon(const IconPainting &painting);

/// \name Painted icons
/// @{
QIcon unreadIcon(); ///< A dot.
QIcon starIcon(bool isFilled);
QIcon listIcon(); ///< Lines of a list.
QIcon folderIcon();
QIcon searchIcon(); ///< A magnifying glass.
QIcon errorIcon(); ///< A sign of warning.
/// The first letter of \a title on a colour that \a key chooses.
QIcon letterIcon(const QString &title, const QString &key);
/// \a picture, on a tile if it could not be told from the background of lists. Null if \a picture is null.
QIcon pictureIcon(const QImage &picture);
/// @}

} // namespace Tidel

#endif
