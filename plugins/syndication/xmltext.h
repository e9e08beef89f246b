// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLTEXT_H
#define TIDEL_XMLTEXT_H

#include <QByteArray>
#include <QString>

#include <optional>

namespace Tidel {

/// What is wrong with a document, and where.
QString notWellFormed(qint64 line, qint64 column, const QString &reason);

/// \a document in an encoding in which every byte that looks like ASCII is: UTF-8, ISO 8859 or a Windows code
/// page. On failure nothing, and \a error says why.
///
/// What many feeds get wrong is put right: blank space ahead of the declaration, a declaration of UTF-16 in a
/// document of single bytes, and Latin-1 without a word of it.
std::optional<QByteArray> readableXml(const QByteArray &document, QString *error);

} // namespace Tidel

#endif
