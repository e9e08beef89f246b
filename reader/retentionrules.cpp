// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retentionrules.h"

#include "statements_p.h"
#include "store_p.h"

namespace Tidel {

RetentionRules::RetentionRules(const Store &store) : m_store(store) { }

Result<QHash<QString, RetentionRule>> RetentionRules::all() const
{
    return StorePrivate::of(m_store)
        .values(Statements::everyDetail(Statements::retention), "read the rules for pruning from the store")
        .map([](const QHash<QString, QString> &texts) {
            QHash<QString, RetentionRule> rules;
            for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
                const bool isCommon = text.key() == Statements::everyChannel;
                if (const auto rule = RetentionRule::fromString(text.value()))
                    rules.insert(isCommon ? QString() : text.key(), *rule);
            }
            return rules;
        });
}

Result<void> RetentionRules::set(const QString &channelUri, const std::optional<RetentionRule> &rule)
{
    return StorePrivate::of(m_store).update(
        Statements::update(Statements::replaceRetention(channelUri, rule ? rule->toString() : QString())),
        "change the rule for pruning in the store");
}

} // namespace Tidel
