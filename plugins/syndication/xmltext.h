// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLTEXT_H
#define TIDEL_XMLTEXT_H

#include <QByteArray>
#include <QString>

#include <optional>

namespace Tidel {

/// Returns the text of an error at a position of a document.
QString notWellFormed(qint64 line, qint64 column, const QString &reason);

/// Returns \a document in an encoding that extends ASCII: UTF-8, ISO 8859 or a Windows code page. Returns
/// nothing on failure, and sets \a error to the reason.
///
/// Repairs frequent errors of feeds: white space before the declaration, UTF-16 declared in a document of
/// single bytes, and Latin-1 that is not declared.
std::optional<QByteArray> readableXml(const QByteArray &document, QString *error);

} // namespace Tidel

#endif
