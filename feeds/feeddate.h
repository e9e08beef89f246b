// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDATE_H
#define TIDEL_FEEDDATE_H

#include <QDateTime>

namespace Tidel {

/// Returns the time in \a text, in UTC; invalid if there is none or if it is outside the years 1 to 9999.
///
/// Reads ISO 8601 ("2026-11-03T10:00:00Z") and the date format of mail ("Tue, 03 Nov 2026 10:00:00 GMT").
/// Parts may be missing or in another order, years may have two digits, and zones may have names. A time
/// without a zone is in UTC.
QDateTime parseFeedDate(const QString &text);

} // namespace Tidel

#endif
