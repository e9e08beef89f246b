// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SPARQLTEXT_H
#define TIDEL_SPARQLTEXT_H

#include <QStringList>

namespace Tidel {

/// \name Pieces of statements
/// @{

/// \a text as a literal.
QString literal(const QString &text);

/// The resource \a address, an absolute address.
QString iri(const QString &address);

/// "VALUES ?variable { ... } ": \a variable is one of the resources \a addresses.
QString valuesOf(const char *variable, const QStringList &addresses);

/// @}

} // namespace Tidel

#endif
