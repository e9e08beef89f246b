// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeddate.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace Tidel {

namespace {

/// The parts of a date that have been read. A part that has not been read is -1.
struct DateParts
{
    int year = -1;
    int month = -1;
    int day = -1;
    int hour = -1;
    int minute = 0;
    int second = 0;
    int offset = 0; // In seconds east of UTC.

    QDateTime toUtc() const;
};

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

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

int monthNumber(const QString &word)
{
    static const QStringList names{QStringLiteral("jan"), QStringLiteral("feb"), QStringLiteral("mar"),
                                   QStringLiteral("apr"), QStringLiteral("may"), QStringLiteral("jun"),
                                   QStringLiteral("jul"), QStringLiteral("aug"), QStringLiteral("sep"),
                                   QStringLiteral("oct"), QStringLiteral("nov"), QStringLiteral("dec")};
    return names.indexOf(word.left(3).toLower()) + 1;
}

bool isDayName(const QString &word)
{
    static const QStringList names{QStringLiteral("mon"), QStringLiteral("tue"), QStringLiteral("wed"),
                                   QStringLiteral("thu"), QStringLiteral("fri"), QStringLiteral("sat"),
                                   QStringLiteral("sun")};
    return names.contains(word.left(3).toLower());
}

/// The seconds east of UTC of "+hh:mm", "-hhmm" or "+hh".
std::optional<int> numericOffset(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^([+-])(\\d\\d)(?::?(\\d\\d))?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const int seconds = match.captured(2).toInt() * 3600 + match.captured(3).toInt() * 60;
    return match.captured(1) == QLatin1String("-") ? -seconds : seconds;
}

/// The seconds east of UTC of a zone such as "EST", "+0200" or "GMT+02:00". Unknown names are UTC, as in
/// mail.
int zoneOffset(const QString &zone)
{
    static const QHash<QString, int> hours{
        {QStringLiteral("EST"), -5}, {QStringLiteral("EDT"), -4},  {QStringLiteral("CST"), -6},
        {QStringLiteral("CDT"), -5}, {QStringLiteral("MST"), -7},  {QStringLiteral("MDT"), -6},
        {QStringLiteral("PST"), -8}, {QStringLiteral("PDT"), -7},  {QStringLiteral("CET"), 1},
        {QStringLiteral("CEST"), 2}, {QStringLiteral("EET"), 2},   {QStringLiteral("EEST"), 3},
        {QStringLiteral("BST"), 1},  {QStringLiteral("WEST"), 1},  {QStringLiteral("MSK"), 3},
        {QStringLiteral("JST"), 9},  {QStringLiteral("AEST"), 10}, {QStringLiteral("AEDT"), 11},
    };
    int nameEnd = 0;
    while (nameEnd < zone.size() && zone.at(nameEnd).isLetter())
        ++nameEnd;
    if (const auto offset = numericOffset(zone.mid(nameEnd)))
        return *offset;
    return hours.value(zone.left(nameEnd).toUpper()) * 3600;
}

QDateTime parseIso(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral(
            "^(\\d{4})(?:[-/](\\d{1,2})(?:[-/](\\d{1,2}))?)?"
            "(?:[T\\s]+(\\d{1,2}):?(\\d\\d)(?::?(\\d\\d)(?:[.,]\\d+)?)?\\s*([A-Za-z]*[-+:0-9]*))?$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return QDateTime();

    DateParts parts;
    parts.year = match.captured(1).toInt();
    parts.month = match.captured(2).isEmpty() ? 1 : match.captured(2).toInt();
    parts.day = match.captured(3).isEmpty() ? 1 : match.captured(3).toInt();
    parts.hour = match.captured(4).toInt();
    parts.minute = match.captured(5).toInt();
    parts.second = match.captured(6).toInt();
    parts.offset = zoneOffset(match.captured(7));
    return parts.toUtc();
}

/// Reads "10:00", "10:00:30.5" or "1000", each with an optional zone at the end.
bool takeTime(const QString &word, DateParts &parts)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{1,2}):?(\\d\\d)(?::(\\d\\d)(?:\\.\\d+)?)?([A-Za-z]*[-+:0-9]*)$"));
    const QRegularExpressionMatch match = pattern.match(word);
    if (!match.hasMatch())
        return false;
    parts.hour = match.captured(1).toInt();
    parts.minute = match.captured(2).toInt();
    parts.second = match.captured(3).toInt();
    if (!match.captured(4).isEmpty())
        parts.offset = zoneOffset(match.captured(4));
    return true;
}

int fullYear(const QString &digits)
{
    const int year = digits.toInt();
    if (digits.size() > 3)
        return year;
    if (digits.size() == 3)
        return 1900 + year;
    return year + (year < 50 ? 2000 : 1900);
}

/// Reads a number. The first one is the day if it has at most two digits, the next one is the year, and all
/// others are times.
bool takeNumber(const QString &digits, DateParts &parts)
{
    if (parts.day < 0 && digits.size() <= 2)
        parts.day = digits.toInt();
    else if (parts.year < 0 && digits.size() <= 4)
        parts.year = fullYear(digits);
    else
        return takeTime(digits, parts);
    return true;
}

bool takeAmPm(const QString &word, DateParts &parts)
{
    const QString upper = word.toUpper();
    if ((upper != QLatin1String("AM") && upper != QLatin1String("PM")) || parts.hour < 1 || parts.hour > 12)
        return false;
    parts.hour = parts.hour % 12 + (upper == QLatin1String("PM") ? 12 : 0);
    return true;
}

bool takeWord(const QString &word, DateParts &parts)
{
    if (isDigit(word.at(0))) {
        const bool isNumber = std::all_of(word.begin(), word.end(), isDigit);
        return isNumber ? takeNumber(word, parts) : takeTime(word, parts);
    }
    if (!word.at(0).isLetter()) {
        const auto offset = numericOffset(word);
        parts.offset = offset.value_or(0);
        return offset.has_value();
    }
    if (parts.month < 0 && monthNumber(word) > 0)
        parts.month = monthNumber(word);
    else if (!takeAmPm(word, parts) && !isDayName(word) && parts.hour >= 0)
        parts.offset = zoneOffset(word);
    return true;
}

/// Returns \a text without comments in parentheses. "03-Nov-2026" becomes three words, "GMT-0500" stays one.
QString unfolded(QString text)
{
    static const QRegularExpression comment(QStringLiteral("\\([^)]*\\)"));
    static const QRegularExpression hyphens(QStringLiteral("(\\d)-([A-Za-z]{3,9})-(\\d)"));
    if (text.contains(QLatin1Char('(')))
        text.remove(comment);
    if (text.contains(QLatin1Char('-')))
        text.replace(hyphens, QStringLiteral("\\1 \\2 \\3"));
    return text;
}

QStringList dateWords(const QString &text)
{
    QString blanks = unfolded(text);
    blanks.replace(QLatin1Char(','), QLatin1Char(' '));
    return blanks.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QDateTime parseMailDate(const QString &text)
{
    DateParts parts;
    for (const QString &word : dateWords(text)) {
        if (!takeWord(word, parts))
            return QDateTime();
    }
    return parts.toUtc();
}

} // namespace

QDateTime parseFeedDate(const QString &text)
{
    const QString trimmed = text.simplified();
    if (trimmed.isEmpty() || trimmed.size() > 100)
        return QDateTime();
    const bool isIso = trimmed.size() >= 4 && isDigit(trimmed.at(3))
        && (trimmed.size() == 4 || trimmed.at(4) == QLatin1Char('-') || trimmed.at(4) == QLatin1Char('/'));
    return isIso ? parseIso(trimmed) : parseMailDate(trimmed);
}

} // namespace Tidel
