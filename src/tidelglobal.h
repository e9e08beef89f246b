// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDELGLOBAL_H
#define TIDELGLOBAL_H

#include <QtGlobal>

/// Marks a class or function that the library exports.
#if defined(TIDELCORE_BUILD)
#define TIDEL_EXPORT Q_DECL_EXPORT
#else
#define TIDEL_EXPORT Q_DECL_IMPORT
#endif

#endif
