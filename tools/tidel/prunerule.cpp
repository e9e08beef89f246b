// SPDX-License-Identifier: LGPL-2.1-or-later
#include "prunerule.h"

#include <QRegularExpression>
#include <QStringList>

namespace Tidel {

namespace {

/// The value of --older-than in days; nothing if it is no number of days.
std::optional<int> daysIn(const QString &text)
{
    static const QRegularExpression days(QStringLiteral("^(\\d{1,5})d$"));
    const QRegularExpressionMatch match = days.match(text);
    return match.hasMatch() ? std::optional<int>(match.captured(1).toInt()) : std::nullopt;
}

/// The value of --keep; nothing if it is no number of messages.
std::optional<int> numberIn(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^\\d{1,9}$"));
    return number.match(text).hasMatch() ? std::optional<int>(text.toInt()) : std::nullopt;
}

bool keepsAll(const Arguments &arguments) { return arguments.value("keep") == QLatin1String("all"); }

} // namespace

std::optional<RetentionRule> ruleIn(const Arguments &arguments)
{
    if (!arguments.isSet("keep") && !arguments.isSet("older-than"))
        return std::nullopt;
    return RetentionRule{numberIn(arguments.value("keep")), daysIn(arguments.value("older-than")),
                         arguments.isSet("include-unread")};
}

QString misuseOfRule(const Arguments &arguments)
{
    if (arguments.isSet("keep") && !keepsAll(arguments) && !numberIn(arguments.value("keep")))
        return QStringLiteral("--keep needs a number of messages, 0 or more, or \"all\"");
    if (arguments.isSet("older-than") && !daysIn(arguments.value("older-than")))
        return QStringLiteral("--older-than needs a number of days such as 90d");
    if (keepsAll(arguments) && (arguments.isSet("older-than") || arguments.isSet("include-unread")))
        return QStringLiteral("--keep all keeps everything; leave out --older-than and --include-unread");
    return {};
}

QString shownRule(const RetentionRule &rule)
{
    QStringList parts;
    if (rule.keep)
        parts.append(QStringLiteral("keeps the newest %1").arg(*rule.keep));
    if (rule.days)
        parts.append(QStringLiteral("deletes what is older than %1 days").arg(*rule.days));
    if (parts.isEmpty())
        return QStringLiteral("keeps all");
    return parts.join(QLatin1String(", "))
        + QLatin1String(rule.dropsUnread ? ", unread messages too" : ", keeps unread messages");
}

QJsonObject ruleJson(const RetentionRule &rule, QJsonObject object)
{
    if (rule.keep)
        object.insert(QStringLiteral("keep"), *rule.keep);
    if (rule.days)
        object.insert(QStringLiteral("olderThan"), QStringLiteral("%1d").arg(*rule.days));
    object.insert(QStringLiteral("includesUnread"), rule.dropsUnread);
    return object;
}

} // namespace Tidel
