// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pruning.h"

#include <TidelReader/downloadfolder.h>
#include <TidelReader/retention.h>
#include <TidelReader/retentionrules.h>

namespace Tidel {

namespace {

Result<void> pruneChannel(const Store &store, const QString &uri, const RetentionRule &rule)
{
    const RemovalStep removeFiles = [](int, const QList<FeedEnclosure> &enclosures) {
        QStringList failed;
        DownloadFolder::removeFiles(enclosures, &failed);
    };
    Retention retention(store);
    return retention.excess(uri, rule).and_then([&](const QStringList &messages) {
        return messages.isEmpty() ? Result<void>() : retention.drop(uri, messages, rule, removeFiles);
    });
}

} // namespace

Result<void> prune(const Store &store, const QStringList &uris)
{
    return RetentionRules(store).all().and_then([&](const QHash<QString, RetentionRule> &rules) {
        Result<void> pruned;
        for (const QString &uri : uris) {
            if (pruned && rules.contains(uri))
                pruned = pruneChannel(store, uri, rules.value(uri));
        }
        return pruned;
    });
}

} // namespace Tidel
