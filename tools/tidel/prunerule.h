// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PRUNERULE_H
#define TIDEL_PRUNERULE_H

#include "arguments.h"

#include <QJsonObject>

#include <TidelReader/retentionrule.h>

#include <optional>

namespace Tidel {

/// The rule that the options --keep, --older-than and --include-unread say; nothing if neither --keep nor
/// --older-than is set.
std::optional<RetentionRule> ruleIn(const Arguments &arguments);

/// Returns what is wrong with these options; empty if they are valid.
QString misuseOfRule(const Arguments &arguments);

/// \a rule for a person, such as "the newest 100 messages, none older than 90 days".
QString shownRule(const RetentionRule &rule);

/// \a rule as `keep`, `olderThan` and `includesUnread`, added to \a object.
QJsonObject ruleJson(const RetentionRule &rule, QJsonObject object);

} // namespace Tidel

#endif
