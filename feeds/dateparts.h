// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DATEPARTS_H
#define TIDEL_DATEPARTS_H

#include <QDateTime>
#include <QString>

#include <optional>

namespace Tidel {

/// The parts of a date that have been read. A part that has not been read is -1.
struct DateParts
{
    int year = -1;
    int month = -1;
    int day = -1;
    int hour = -1;
    int minute = 0;
    int second = 0;
    int offset = 0; ///< In seconds east of UTC.

    /// Sets month and day to those of \a weekday, from 1 for Monday, in the ISO week \a week of year. Returns
    /// true on success; otherwise returns false.
    bool setWeekDate(int week, int weekday);
    /// Sets month and day to those of the day \a dayOfYear of year. Returns true on success; otherwise
    /// returns false.
    bool setOrdinalDate(int dayOfYear);
    /// Returns true if \a word is "AM" or "PM" and sets hour, which must be from 1 to 12; otherwise returns
    /// false.
    bool takeHalfOfDay(const QString &word);

    /// The time; invalid if a part of the date is missing, or if it is outside the years 1 to 9999.
    QDateTime toUtc() const;

private:
    bool setDate(const QDate &date);
};

/// The seconds east of UTC of "+hh:mm", "-hhmm", "+hh" or "+h"; nothing if \a text is something else.
std::optional<int> numericOffset(const QString &text);

/// The seconds east of UTC of a zone such as "EST", "+0200" or "GMT+02:00". Unknown names are UTC, as in
/// mail.
int zoneOffset(const QString &zone);

} // namespace Tidel

#endif
