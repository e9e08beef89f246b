// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_DECODEDICON_H
#define TIDEL_DESKTOP_DECODEDICON_H

#include <QImage>

namespace Tidel {

/// The width and height to which larger icons are reduced, in pixels. Rows of lists show a quarter of it, or
/// half of it on screens of high resolution.
constexpr int iconSide = 64;

/// The icon in \a bytes, which come from a stranger. Null if it is no picture, too large to be decoded, or
/// far from square.
QImage decodedIcon(const QByteArray &bytes);

} // namespace Tidel

#endif
