// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MIMETYPE_H
#define TIDEL_MIMETYPE_H

#include <QByteArray>
#include <QString>

namespace Tidel {

/// Returns \a text as "type/subtype", without parameters; empty if it is not a media type.
QString cleanMimeType(const QString &text);

/// Returns the character set that the Content-Type header \a header names; empty if it names none.
QByteArray charsetOf(const QString &header);

} // namespace Tidel

#endif
