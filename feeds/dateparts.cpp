// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dateparts.h"

#include <QHash>
#include <QRegularExpression>

namespace Tidel {

bool DateParts::setDate(const QDate &date)
{
    if (!date.isValid() || year < 1)
        return false;
    year = date.year();
    month = date.month();
    day = date.day();
    return true;
}

bool DateParts::setWeekDate(int week, int weekday)
{
    // January 4 is always in the first week.
    const QDate inFirstWeek(year, 1, 4);
    const QDate date = inFirstWeek.addDays(weekday - inFirstWeek.dayOfWeek() + 7 * (week - 1));
    int yearOfWeek = 0;
    return date.weekNumber(&yearOfWeek) == week && yearOfWeek == year && setDate(date);
}

bool DateParts::setOrdinalDate(int dayOfYear)
{
    const QDate date = QDate(year, 1, 1).addDays(dayOfYear - 1);
    return date.year() == year && setDate(date);
}

bool DateParts::takeHalfOfDay(const QString &word)
{
    const QString upper = QString(word).remove(QLatin1Char('.')).toUpper();
    if ((upper != QLatin1String("AM") && upper != QLatin1String("PM")) || hour < 1 || hour > 12)
        return false;
    hour = hour % 12 + (upper == QLatin1String("PM") ? 12 : 0);
    return true;
}

QDateTime DateParts::toUtc() const
{
    const QDate date(year, month, day);
    // "24:00" is the end of the day. A leap second becomes the last second of its minute.
    const bool endOfDay = hour == 24 && minute == 0 && second == 0;
    const QTime time(endOfDay ? 0 : qMax(hour, 0), minute, qMin(second, 59));
    if (year < 1 || !date.isValid() || !time.isValid() || second > 60 || qAbs(offset) > 24 * 3600)
        return QDateTime();

    const QDateTime utc = QDateTime(date, time, Qt::UTC).addDays(endOfDay ? 1 : 0).addSecs(-qint64(offset));
    const int utcYear = utc.date().year();
    return utcYear >= 1 && utcYear <= 9999 ? utc : QDateTime();
}

std::optional<int> numericOffset(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^([+-])(\\d\\d?)(?::?(\\d\\d))?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const int seconds = match.captured(2).toInt() * 3600 + match.captured(3).toInt() * 60;
    return match.captured(1) == QLatin1String("-") ? -seconds : seconds;
}

int zoneOffset(const QString &zone)
{
    static const QHash<QString, int> hours{
        {QStringLiteral("AST"), -4},  {QStringLiteral("ADT"), -3},  {QStringLiteral("EST"), -5},
        {QStringLiteral("EDT"), -4},  {QStringLiteral("CST"), -6},  {QStringLiteral("CDT"), -5},
        {QStringLiteral("MST"), -7},  {QStringLiteral("MDT"), -6},  {QStringLiteral("PST"), -8},
        {QStringLiteral("PDT"), -7},  {QStringLiteral("AKST"), -9}, {QStringLiteral("AKDT"), -8},
        {QStringLiteral("HST"), -10}, {QStringLiteral("CET"), 1},   {QStringLiteral("CEST"), 2},
        {QStringLiteral("MEZ"), 1},   {QStringLiteral("MESZ"), 2},  {QStringLiteral("EET"), 2},
        {QStringLiteral("EEST"), 3},  {QStringLiteral("BST"), 1},   {QStringLiteral("WEST"), 1},
        {QStringLiteral("MSK"), 3},   {QStringLiteral("JST"), 9},   {QStringLiteral("KST"), 9},
        {QStringLiteral("AEST"), 10}, {QStringLiteral("AEDT"), 11}, {QStringLiteral("NZST"), 12},
        {QStringLiteral("NZDT"), 13},
    };
    int nameEnd = 0;
    while (nameEnd < zone.size() && zone.at(nameEnd).isLetter())
        ++nameEnd;
    if (const auto offset = numericOffset(zone.mid(nameEnd)))
        return *offset;
    return hours.value(zone.left(nameEnd).toUpper()) * 3600;
}

} // namespace Tidel
