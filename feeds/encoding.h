// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCODING_H
#define TIDEL_ENCODING_H

#include <QByteArray>
#include <QStringList>

namespace Tidel {

/// A text in UTF-8.
struct DecodedText
{
    QByteArray utf8; ///< Valid UTF-8 without a byte order mark and without U+0000.
    QStringList notes; ///< What was mended, such as "had bytes that are not UTF-8: line 3".
};

/// Decodes \a document. The encoding is, in this order,
///
/// - that of the byte order mark, or the UTF-16 or UTF-32 that the first bytes show;
/// - UTF-8 if \a charset, which the server named, or the XML declaration names it and the document is valid;
/// - \a charset, otherwise what the declaration names. One that names another encoding than UTF-8 wins over
///   one that names UTF-8 in vain;
/// - UTF-8 if nothing is named and the document is valid or JSON, otherwise a guess.
///
/// "us-ascii" and "iso-8859-1" mean windows-1252, and an unknown name means UTF-8. Each sequence of bytes
/// that is invalid becomes U+FFFD. A document in valid UTF-8 is not copied.
DecodedText toUtf8(const QByteArray &document, const QByteArray &charset);

} // namespace Tidel

#endif
