// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WEBADDRESS_H
#define TIDEL_WEBADDRESS_H

#include <QString>

namespace Tidel {

/// Returns true if \a text is an http or https address; otherwise returns false.
inline bool isWebAddress(const QString &text)
{
    return text.startsWith(QLatin1String("http://"), Qt::CaseInsensitive)
        || text.startsWith(QLatin1String("https://"), Qt::CaseInsensitive);
}

} // namespace Tidel

#endif
