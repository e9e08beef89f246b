// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PAGEICONS_H
#define TIDEL_PAGEICONS_H

#include "tidelreaderglobal.h"

#include <QByteArray>
#include <QUrl>
#include <QVector>

namespace Tidel {

/// The addresses of the icons that the web page \a html names in `<link rel="icon">`, each once, three at
/// most. \a page is its address. The icon whose size comes next to \a size pixels is the first one. Icons
/// that are no pictures of pixels are left out. \a html may be the beginning of a page.
TIDELREADER_EXPORT QVector<QUrl> iconsOfPage(const QByteArray &html, const QUrl &page, int size);

} // namespace Tidel

#endif
