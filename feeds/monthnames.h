// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MONTHNAMES_H
#define TIDEL_MONTHNAMES_H

#include <QString>

namespace Tidel {

/// The number of the month with the English name that begins with the three characters at \a name; 0 if there
/// is none.
int englishMonthNumber(const QChar *name);

/// The number of the month whose name begins with \a word, in English, Dutch, French, German, Italian,
/// Portuguese or Spanish. 0 if there is none, several, or if \a word has less than three letters.
int monthNumber(const QString &word);

/// The number of the month that \a word may mean by its first three letters; 0 if there is none.
int misspelledMonthNumber(const QString &word);

/// Returns true if \a word begins like the English name of a day; otherwise returns false.
bool isDayName(const QString &word);

} // namespace Tidel

#endif
