// SPDX-License-Identifier: LGPL-2.1-or-later
#include "merge_p.h"

#include "storedfacts_p.h"
#include "writeturn.h"

namespace Tidel {

namespace {

const char *const attempt = "merge what the store has twice";

Result<void> merge(StorePrivate &store, const QStringList &uris)
{
    if (uris.size() < 2)
        return {};
    const auto facts = storedFacts(store, uris, attempt);
    if (!facts)
        return Failure(facts.error());
    StoredFacts own = facts->value(uris.first());
    QString text;
    const QStringList others = uris.mid(1);
    for (const QString &uri : others)
        text += takeOver(uris.first(), &own, facts->value(uri)) + Statements::moveParts(uri, uris.first());
    return store.update(Statements::update(text + Statements::deleteResources(others)), attempt);
}

} // namespace

Result<void> mergeSameLinks(StorePrivate &store, Statements::Kind kind, const QStringList &links)
{
    return inChunks(links, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        for (const QString &link : some) {
            const Result<void> merged = store.texts(Statements::resourcesWithLink(kind, link), attempt)
                                            .and_then([&](QStringList found) {
                                                found.removeDuplicates();
                                                return merge(store, found);
                                            });
            if (!merged)
                return merged;
        }
        return {};
    });
}

} // namespace Tidel
