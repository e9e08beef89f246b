// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDELREADERGLOBAL_H
#define TIDELREADERGLOBAL_H

#include <QtGlobal>

/// Marks the symbols that the library exports.
#if defined(TIDELREADER_BUILD)
#define TIDELREADER_EXPORT Q_DECL_EXPORT
#else
#define TIDELREADER_EXPORT Q_DECL_IMPORT
#endif

#endif
