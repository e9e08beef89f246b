// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQL_H
#define QSPARQL_H

#include <QtGlobal>

/// Marks what the module exports.
#if defined(TIDELSPARQL_BUILD)
#define Q_SPARQL_EXPORT Q_DECL_EXPORT
#else
#define Q_SPARQL_EXPORT Q_DECL_IMPORT
#endif

namespace QSparql {

/// Where a result stands when it stands on no row; see QSparqlResult::pos().
enum Location { BeforeFirstRow = -1, AfterLastRow = -2 };

} // namespace QSparql

#endif
