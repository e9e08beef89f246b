// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retentionrule.h"

#include <QRegularExpression>
#include <QStringList>

namespace Tidel {

QString RetentionRule::toString() const
{
    QStringList words;
    if (keep)
        words.append(QStringLiteral("keep=%1").arg(*keep));
    if (days)
        words.append(QStringLiteral("days=%1").arg(*days));
    if (words.isEmpty())
        words.append(QStringLiteral("all"));
    else if (dropsUnread)
        words.append(QStringLiteral("unread"));
    return words.join(QLatin1Char(' '));
}

std::optional<RetentionRule> RetentionRule::fromString(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^(?:all|(?=.)(?:keep=(\\d{1,9}))?(?: ?\\bdays=(\\d{1,9}))?( unread)?)$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    RetentionRule rule;
    if (!match.captured(1).isEmpty())
        rule.keep = match.captured(1).toInt();
    if (!match.captured(2).isEmpty())
        rule.days = match.captured(2).toInt();
    rule.dropsUnread = !match.captured(3).isEmpty();
    return rule.toString() == text ? std::optional<RetentionRule>(rule) : std::nullopt;
}

} // namespace Tidel
