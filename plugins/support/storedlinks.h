// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STOREDLINKS_H
#define TIDEL_STOREDLINKS_H

#include <QSet>
#include <QString>

#include <optional>

class QSparqlConnection;

namespace Tidel {

/// Those of \a links, which are encoded, that \a pattern finds as its ?l; nothing when the store does not
/// tell.
std::optional<QSet<QString>> storedLinks(QSparqlConnection &connection, const QSet<QString> &links,
                                         const QString &pattern);

} // namespace Tidel

#endif
