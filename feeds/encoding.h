// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCODING_H
#define TIDEL_ENCODING_H

#include <QByteArray>
#include <QStringList>

namespace Tidel {

/// A text in UTF-8.
struct DecodedText
{
    QByteArray utf8; ///< Valid UTF-8 without a byte order mark.
    QStringList notes; ///< What was mended, such as "had bytes that are not UTF-8: line 3".
};

/// Decodes \a document. The encoding is that of the byte order mark, otherwise \a charset, which the server
/// named, otherwise the one that the XML declaration names, otherwise a guess. Bytes that are invalid in that
/// encoding become U+FFFD.
DecodedText toUtf8(const QByteArray &document, const QByteArray &charset);

} // namespace Tidel

#endif
