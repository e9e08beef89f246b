// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDFILE_H
#define TIDEL_FEEDFILE_H

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace Tidel {

/// The largest document that is read, in bytes.
constexpr qint64 maximumDocumentSize = Q_INT64_C(32) * 1024 * 1024;

/// The bytes of the document at \a url; on failure nothing, and \a error says why.
std::optional<QByteArray> readDocument(const QUrl &url, QString *error);

} // namespace Tidel

#endif
