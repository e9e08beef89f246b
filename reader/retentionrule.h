// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RETENTIONRULE_H
#define TIDEL_RETENTIONRULE_H

#include "tidelreaderglobal.h"

#include <QString>

#include <optional>

namespace Tidel {

/// Which messages of a channel are dropped: what is beyond \a keep or beyond \a days. Favorites never are.
struct TIDELREADER_EXPORT RetentionRule
{
    std::optional<int> keep; ///< The number of newest messages that stay; any number without a value.
    std::optional<int> days; ///< The age of the oldest messages that stay; any age without a value.
    bool dropsUnread = false; ///< True if unread messages are dropped as read ones are.

    /// The rule as words, such as `keep=100 days=90 unread`; `all` if all messages stay.
    QString toString() const;
    /// The rule that toString() has written; nothing if \a text is no rule.
    static std::optional<RetentionRule> fromString(const QString &text);
};

} // namespace Tidel

#endif
