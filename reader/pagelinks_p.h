// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PAGELINKS_P_H
#define TIDEL_PAGELINKS_P_H

#include "tidelreaderglobal.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrl>
#include <QVector>

namespace Tidel {

/// The attributes of a link in a page or a header, by name. "href" is the address.
using LinkAttributes = QHash<QString, QString>;

/// The tags `<link>` of a web page.
struct PageLinks
{
    QVector<LinkAttributes> links; ///< In the order of the page.
    QUrl base; ///< What their addresses are relative to.

    /// Reads \a html, which is in UTF-8. \a page is its address.
    TIDELREADER_EXPORT static PageLinks of(const QByteArray &html, const QUrl &page);
};

} // namespace Tidel

#endif
