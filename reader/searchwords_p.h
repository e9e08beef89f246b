// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHWORDS_P_H
#define TIDEL_SEARCHWORDS_P_H

#include "error.h"

#include <QString>

namespace Tidel {

/// The words that a user looks for as an expression for SQLite: all of them, phrases in quotes, beginnings of
/// words with "*". All other characters only separate words. Fails with Error::StoreRefused if there are no
/// words, or too many.
Result<QString> matchExpression(const QString &words);

} // namespace Tidel

#endif
