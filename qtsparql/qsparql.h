// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQL_H
#define QSPARQL_H

#include <QtGlobal>

/// Marks the symbols that the library exports.
#if defined(TIDELSPARQL_BUILD)
#define Q_SPARQL_EXPORT Q_DECL_EXPORT
#else
#define Q_SPARQL_EXPORT Q_DECL_IMPORT
#endif

namespace QSparql {

/// The positions of a result that has no current row; see QSparqlResult::pos().
enum Location {
    BeforeFirstRow = -1, ///< before the first row
    AfterLastRow = -2 ///< after the last row
};

} // namespace QSparql

#endif
