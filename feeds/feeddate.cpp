// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeddate.h"

#include "dateparts.h"
#include "monthnames.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace Tidel {

namespace {

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

bool isNumber(const QString &text) { return std::all_of(text.begin(), text.end(), isDigit); }

/// Reads "10:00", "10h00", "10:00:30.5" or "1000", each with an optional zone, "AM" or "PM" at the end.
bool takeTime(const QString &word, DateParts &parts)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{1,2})[:h]?(\\d\\d)(?::?(\\d\\d)(?:\\.\\d+)?)?([A-Za-z]*[-+:0-9]*)$"));
    const QRegularExpressionMatch match = pattern.match(word);
    if (!match.hasMatch())
        return false;
    parts.hour = match.captured(1).toInt();
    parts.minute = match.captured(2).toInt();
    parts.second = match.captured(3).toInt();
    const QString rest = match.captured(4);
    if (!rest.isEmpty() && !parts.takeHalfOfDay(rest))
        parts.offset = zoneOffset(rest);
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

/// Reads "11/03/2026", "03.11.2026" or "03-11-26".
bool takeNumericDate(const QString &word, DateParts &parts)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\d\\d?)([/.-])(\\d\\d?)\\2(\\d{4}|\\d\\d)$"));
    const QRegularExpressionMatch match = pattern.match(word);
    if (!match.hasMatch())
        return false;
    parts.day = match.captured(1).toInt();
    parts.month = match.captured(3).toInt();
    parts.year = fullYear(match.captured(4));
    const bool isMonthFirst = match.captured(2) == QLatin1String("/") ? parts.day <= 12 : parts.month > 12;
    if (isMonthFirst)
        std::swap(parts.day, parts.month);
    return true;
}

/// Reads a day with a suffix, such as "3rd", "3." or "1er".
bool takeOrdinal(const QString &word, DateParts &parts)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\d\\d?)(?:\\.|(?![ap]m$)\\p{L}{1,2})$"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(word);
    if (!match.hasMatch() || parts.day >= 0)
        return false;
    parts.day = match.captured(1).toInt();
    return true;
}

bool takeDigits(const QString &word, DateParts &parts)
{
    if (isNumber(word))
        return takeNumber(word, parts);
    return takeTime(word, parts) || takeNumericDate(word, parts) || takeOrdinal(word, parts);
}

/// Reads a name of a month, "AM", "PM" or a name of a zone, and passes over all other words.
void takeName(const QString &word, DateParts &parts)
{
    const int month = monthNumber(word);
    // Before the month there may be a day whose name begins like a month, such as "mar".
    if (month > 0 && (parts.month < 0 || parts.hour < 0))
        parts.month = month;
    else if (parts.takeHalfOfDay(word))
        return;
    else if (parts.month < 0 && misspelledMonthNumber(word) > 0)
        parts.month = misspelledMonthNumber(word);
    else if (parts.hour >= 0 && !isDayName(word))
        parts.offset = zoneOffset(word);
}

bool takeWord(const QString &word, DateParts &parts)
{
    if (isDigit(word.at(0)))
        return takeDigits(word, parts);
    const bool isSign = word.at(0) == QLatin1Char('+') || word.at(0) == QLatin1Char('-');
    if (isSign && word.size() > 1) {
        const auto offset = numericOffset(word);
        parts.offset = offset.value_or(0);
        return offset.has_value();
    }
    if (word.at(0).isLetter())
        takeName(word, parts);
    return word.at(0).isLetter() || word.size() == 1;
}

/// Returns \a text without comments in parentheses and fractions of seconds. "03-Nov-2026" becomes three
/// words, "GMT-0500" stays one.
QString unfolded(QString text)
{
    static const QRegularExpression comment(QStringLiteral("\\([^)]*\\)|\\[[^\\]]*\\]"));
    static const QRegularExpression fraction(QStringLiteral("(:\\d\\d),\\d+"));
    static const QRegularExpression hyphens(QStringLiteral("(\\d)-(\\p{L}{3,10})-(\\d)"));
    return text.remove(comment)
        .replace(fraction, QStringLiteral("\\1"))
        .replace(hyphens, QStringLiteral("\\1 \\2 \\3"));
}

QDateTime parseWords(const QString &text)
{
    DateParts parts;
    const QStringList words =
        QString(text).replace(QLatin1Char(','), QLatin1Char(' ')).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (!takeWord(word, parts))
            return QDateTime();
    }
    return parts.toUtc();
}

/// Sets the day of \a parts to the one that \a match names, and returns true if there is one.
bool takeDayOfYear(const QRegularExpressionMatch &match, DateParts &parts)
{
    parts.year = match.captured(1).toInt();
    if (!match.captured(2).isEmpty())
        return parts.setWeekDate(match.captured(2).toInt(), qMax(match.captured(3).toInt(), 1));
    if (!match.captured(4).isEmpty())
        return parts.setOrdinalDate(match.captured(4).toInt());
    parts.month = match.captured(5).isEmpty() ? 1 : match.captured(5).toInt();
    parts.day = match.captured(6).isEmpty() ? 1 : match.captured(6).toInt();
    return true;
}

QDateTime parseIso(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{4})(?:-?W(\\d\\d)(?:-?([1-7]))?|-(\\d{3})|[-/.]?(\\d\\d?)(?:[-/.]?(\\d\\d?))?)?"
                       "(?:[T\\s,]+(\\d\\d?):?(\\d\\d)(?::?(\\d\\d)(?:\\.\\d+)?)?"
                       "\\s*([AP]M)?\\s*([A-Z]*[-+:0-9]*))?$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(text);
    DateParts parts;
    if (!match.hasMatch() || !takeDayOfYear(match, parts))
        return QDateTime();
    parts.hour = match.captured(7).toInt();
    parts.minute = match.captured(8).toInt();
    parts.second = match.captured(9).toInt();
    parts.takeHalfOfDay(match.captured(10));
    parts.offset = zoneOffset(match.captured(11));
    return parts.toUtc();
}

/// Reads the seconds or milliseconds since 1970, which have 10 or 13 digits in our time, or "20261103100000".
QDateTime parseDigits(const QString &digits)
{
    if (digits.size() == 10)
        return QDateTime::fromSecsSinceEpoch(digits.toLongLong(), Qt::UTC);
    if (digits.size() == 13)
        return QDateTime::fromSecsSinceEpoch(digits.toLongLong() / 1000, Qt::UTC);
    return parseIso(digits.size() == 14 ? QString(digits).insert(8, QLatin1Char('T')) : digits);
}

/// Returns true if \a text has a digit for each 0 of \a shape, a letter for each a, and otherwise equals it.
bool hasShape(const QString &text, int from, const char *shape)
{
    for (; *shape; ++shape, ++from) {
        if (from >= text.size())
            return false;
        const QChar c = text.at(from);
        const char lower = char(c.toLatin1() | 0x20);
        const bool isLetter = lower >= 'a' && lower <= 'z';
        if (*shape == '0' ? !isDigit(c) : *shape == 'a' ? !isLetter : c != QLatin1Char(*shape))
            return false;
    }
    return true;
}

int numberAt(const QString &text, int from, int digits)
{
    int number = 0;
    for (int i = from; i < from + digits; ++i)
        number = number * 10 + (text.at(i).unicode() - '0');
    return number;
}

/// Returns true if \a text from \a from on is "Z", "GMT", "+hh:mm" or "+hhmm", and sets the offset of \a
/// parts.
bool takeCommonZone(const QString &text, int from, DateParts &parts)
{
    const int length = text.size() - from;
    if ((length == 1 && text.at(from) == QLatin1Char('Z'))
        || (length == 3 && text.endsWith(QLatin1String("GMT"))))
        return true;
    const bool hasColon = length == 6 && hasShape(text, from + 1, "00:00");
    if (!hasColon && !(length == 5 && hasShape(text, from + 1, "0000")))
        return false;
    parts.offset = numberAt(text, from + 1, 2) * 3600 + numberAt(text, text.size() - 2, 2) * 60;
    if (text.at(from) == QLatin1Char('-'))
        parts.offset = -parts.offset;
    return text.at(from) == QLatin1Char('-') || text.at(from) == QLatin1Char('+');
}

void takeTimeAt(const QString &text, int from, DateParts &parts)
{
    parts.hour = numberAt(text, from, 2);
    parts.minute = numberAt(text, from + 3, 2);
    parts.second = numberAt(text, from + 6, 2);
}

/// Reads "2026-11-03T10:00:00.5Z" and the like.
bool takeCommonIso(const QString &text, DateParts &parts)
{
    if (!hasShape(text, 0, "0000-00-00T00:00:00"))
        return false;
    parts.year = numberAt(text, 0, 4);
    parts.month = numberAt(text, 5, 2);
    parts.day = numberAt(text, 8, 2);
    takeTimeAt(text, 11, parts);
    int zone = 19;
    if (hasShape(text, zone, ".0")) {
        do
            ++zone;
        while (zone < text.size() && isDigit(text.at(zone)));
    }
    return takeCommonZone(text, zone, parts);
}

/// Reads "Tue, 03 Nov 2026 10:00:00 GMT" and the like.
bool takeCommonMailDate(const QString &text, DateParts &parts)
{
    const int day = 5;
    const int dayDigits = hasShape(text, day, "00") ? 2 : 1;
    const int month = day + dayDigits + 1;
    if (!hasShape(text, 0, "aaa, 0") || !hasShape(text, month - 1, " aaa 0000 00:00:00 "))
        return false;
    parts.day = numberAt(text, day, dayDigits);
    parts.month = englishMonthNumber(text.constData() + month);
    parts.year = numberAt(text, month + 4, 4);
    takeTimeAt(text, month + 9, parts);
    return parts.month > 0 && takeCommonZone(text, month + 18, parts);
}

bool startsWithYear(const QString &text)
{
    const QString separators = QStringLiteral("-/.W");
    return hasShape(text, 0, "0000")
        && (text.size() == 4 || isDigit(text.at(4)) || separators.contains(text.at(4).toUpper()));
}

} // namespace

QDateTime parseFeedDate(const QString &text)
{
    // Nearly all dates have one of these formats. Regular expressions would take ten times as long.
    DateParts iso;
    if (takeCommonIso(text, iso))
        return iso.toUtc();
    DateParts mail;
    if (takeCommonMailDate(text, mail))
        return mail.toUtc();
    if (text.size() > 1000)
        return QDateTime();

    const QString trimmed = unfolded(text).simplified();
    if (trimmed.isEmpty() || trimmed.size() > 100)
        return QDateTime();
    if (isNumber(trimmed))
        return parseDigits(trimmed);
    return startsWithYear(trimmed) ? parseIso(trimmed) : parseWords(trimmed);
}

} // namespace Tidel
