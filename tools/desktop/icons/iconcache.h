// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ICONCACHE_H
#define TIDEL_DESKTOP_ICONCACHE_H

#include <QImage>

namespace Tidel {

/// The icons of channels, as files in `tidel/icons` below the user's cache folder. A channel without an icon
/// has an empty file, which says when its icon was looked for. Nothing is lost with the files.
namespace IconCache {

/// The icon of the channel \a uri; null if there is none.
QImage icon(const QString &uri);
/// Returns true if the icon of the channel \a uri was not looked for in the last week; otherwise returns
/// false.
bool isDue(const QString &uri);
/// Notes that \a icon was found now for the channel \a uri. If it is null, the earlier one stays.
void keep(const QString &uri, const QImage &icon);
/// Removes what is kept of the channel \a uri.
void remove(const QString &uri);

} // namespace IconCache

} // namespace Tidel

#endif
