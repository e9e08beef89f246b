// SPDX-License-Identifier: LGPL-2.1-or-later
#include "headlines_p.h"

#include <QHash>

namespace Tidel {

Result<QList<FeedMessage>> readHeadlines(StorePrivate &store, const QStringList &keys,
                                         QSparqlQuery (*query)(const QStringList &), const char *attempt)
{
    QHash<QString, FeedMessage> found;
    const Result<void> read = inChunks(keys, [&](const QStringList &some) {
        return store.run(query(some), attempt).map([&](const Answer &answer) {
            while (answer->next()) {
                FeedMessage &message = found[answer->value(0).toString()];
                message.setLink(answer->value(1).toString());
                message.setTitle(answer->value(2).toString());
                message.setPublishedDate(answer->value(3).toDateTime());
            }
        });
    });
    return read.map([&] {
        QList<FeedMessage> messages;
        for (const QString &key : keys) {
            if (found.contains(key))
                messages.append(found.value(key));
        }
        return messages;
    });
}

} // namespace Tidel
