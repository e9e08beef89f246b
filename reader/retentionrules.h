// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RETENTIONRULES_H
#define TIDEL_RETENTIONRULES_H

#include "error.h"
#include "retentionrule.h"
#include "store.h"

#include <QHash>
#include <QString>

#include <optional>

namespace Tidel {

/// The rules that the user wants to be remembered: one for each channel, and one for all channels without a
/// rule of their own. Nothing applies them by itself.
class TIDELREADER_EXPORT RetentionRules
{
public:
    /// Works on \a store.
    explicit RetentionRules(const Store &store);

    /// All rules by the URI of their channel. The one of all channels has an empty URI.
    Result<QHash<QString, RetentionRule>> all() const;
    /// Replaces the rule of the channel \a channelUri, or that of all channels if it is empty. Forgets it if
    /// \a rule has no value.
    Result<void> set(const QString &channelUri, const std::optional<RetentionRule> &rule);

private:
    Store m_store;
};

} // namespace Tidel

#endif
