// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDATE_H
#define TIDEL_FEEDDATE_H

#include <QDateTime>

namespace Tidel {

/// The time that \a text names, in UTC; invalid when it names none or one outside the years 1 to 9999.
///
/// Read are ISO 8601 ("2026-11-03T10:00:00Z") and the mail form ("Tue, 03 Nov 2026 10:00:00 GMT") with what
/// feeds make of them: parts left out or in another order, two-digit years, named zones. A time without zone
/// is taken for UTC.
QDateTime parseFeedDate(const QString &text);

} // namespace Tidel

#endif
