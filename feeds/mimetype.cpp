// SPDX-License-Identifier: LGPL-2.1-or-later
#include "mimetype.h"

#include <QRegularExpression>

#include <algorithm>

namespace Tidel {

namespace {

bool isTokenCharacter(QChar c)
{
    static const QString marks = QStringLiteral("!#$&^_.+-");
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
        || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || marks.contains(c);
}

} // namespace

QString cleanMimeType(const QString &text)
{
    const QString type = text.section(QLatin1Char(';'), 0, 0).trimmed().toLower();
    const int slash = type.indexOf(QLatin1Char('/'));
    if (slash <= 0 || slash == type.size() - 1 || type.size() > 255)
        return QString();
    const auto isToken = [&](int from, int to) {
        return std::all_of(type.begin() + from, type.begin() + to, isTokenCharacter);
    };
    return isToken(0, slash) && isToken(slash + 1, type.size()) ? type : QString();
}

QByteArray charsetOf(const QString &header)
{
    static const QRegularExpression pattern(
        QStringLiteral(";\\s*charset\\s*=\\s*[\"']?([A-Za-z0-9][A-Za-z0-9._:+-]{0,39})"),
        QRegularExpression::CaseInsensitiveOption);
    return pattern.match(header).captured(1).toLatin1();
}

} // namespace Tidel
