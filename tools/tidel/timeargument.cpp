// SPDX-License-Identifier: LGPL-2.1-or-later
#include "timeargument.h"

#include <QHash>
#include <QRegularExpression>

namespace Tidel {

QDateTime timeArgument(const QString &text, const QDateTime &now, bool isEnd)
{
    static const QRegularExpression days(QStringLiteral("^(\\d{1,5})d$"));
    const QRegularExpressionMatch match = days.match(text);
    if (match.hasMatch())
        return now.addDays(-match.captured(1).toInt());
    QDate day = QDate::fromString(text, Qt::ISODate);
    if (text == QLatin1String("today"))
        day = now.date();
    else if (text == QLatin1String("yesterday"))
        day = now.date().addDays(-1);
    if (!day.isValid())
        return {};
    return (isEnd ? day.addDays(1) : day).startOfDay();
}

int intervalArgument(const QString &text)
{
    static const QHash<QString, int> units = {
        {QStringLiteral("m"), 60}, {QStringLiteral("h"), 60 * 60}, {QStringLiteral("d"), 24 * 60 * 60}};
    static const QRegularExpression interval(QStringLiteral("^(\\d{1,6})([mhd])$"));
    constexpr qint64 year = 365LL * 24 * 60 * 60;
    const QRegularExpressionMatch match = interval.match(text);
    const qint64 seconds = match.captured(1).toLongLong() * units.value(match.captured(2));
    return seconds <= year ? int(seconds) : 0;
}

} // namespace Tidel
