// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TIMEARGUMENT_H
#define TIDEL_TIMEARGUMENT_H

#include <QDateTime>
#include <QString>

namespace Tidel {

/// Returns the time that \a text means: "today", "yesterday", a number of days before \a now such as "7d", or
/// a day such as "2026-11-03"; invalid if it means none. A day is its beginning, or with \a isEnd its end.
QDateTime timeArgument(const QString &text, const QDateTime &now, bool isEnd = false);

/// Returns the seconds that \a text means, such as "30m", "2h" or "1d": at most a year. 0 if it means none.
int intervalArgument(const QString &text);

} // namespace Tidel

#endif
