// SPDX-License-Identifier: LGPL-2.1-or-later
#include "timeargument.h"

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

} // namespace Tidel
