// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDATE_H
#define TIDEL_FEEDDATE_H

#include <QDateTime>

namespace Tidel {

/// Returns the time in \a text, in UTC; invalid if there is none or if it is outside the years 1 to 9999.
///
/// Reads ISO 8601 ("2026-11-03T10:00:00Z"), the date format of mail ("Tue, 03 Nov 2026 10:00:00 GMT"),
/// numeric dates ("11/03/2026 10:00") and the seconds or milliseconds since 1970. Parts may be missing or in
/// another order, years may have two digits, and zones may have names. Months may have their names in
/// English, Dutch, French, German, Italian, Portuguese and Spanish. A time without a zone is in UTC.
///
/// Of two numbers before the year the first is the month in "11/03/2026", and the day in "03.11.2026" and
/// "03-11-2026", unless only the other order is a date.
QDateTime parseFeedDate(const QString &text);

} // namespace Tidel

#endif
