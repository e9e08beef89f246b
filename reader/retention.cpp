// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retention.h"

#include "headlines_p.h"
#include "messageremoval_p.h"
#include "statements_p.h"
#include "writeturn.h"

#include <QDateTime>

namespace Tidel {

namespace {

const char *const attempt = "find its oldest messages in the store";

/// The messages in the rows of \a question, URI and time of reading, that \a rule does not keep as unread.
Result<QStringList> droppable(StorePrivate &store, const QSparqlQuery &question, const RetentionRule &rule)
{
    return store.run(question, attempt).map([&rule](const Answer &answer) {
        QStringList uris;
        while (answer->next()) {
            if (rule.dropsUnread || answer->value(1).toDateTime().isValid())
                uris.append(answer->value(0).toString());
        }
        return uris;
    });
}

} // namespace

Retention::Retention(const Store &store) : m_store(store) { }

Result<QStringList> Retention::excess(const QString &channelUri, const RetentionRule &rule) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    QVector<QSparqlQuery> questions;
    if (rule.keep) {
        const Result<int> count = store.number(Statements::droppableCount(channelUri), attempt);
        if (!count)
            return Failure(count.error());
        if (*count > *rule.keep)
            questions.append(Statements::droppableMessages(channelUri, *count - *rule.keep));
    }
    if (rule.days)
        questions.append(
            Statements::droppableBefore(channelUri, QDateTime::currentDateTime().addDays(-*rule.days)));

    QStringList uris;
    for (const QSparqlQuery &question : qAsConst(questions)) {
        const Result<QStringList> some = droppable(store, question, rule);
        if (!some)
            return some;
        uris += *some;
    }
    uris.removeDuplicates();
    return uris;
}

Result<QList<FeedMessage>> Retention::headlines(const QStringList &uris) const
{
    return readHeadlines(StorePrivate::of(m_store), uris, Statements::headlines,
                         "read its oldest messages from the store");
}

Result<void> Retention::drop(const QString &channelUri, const QStringList &uris, const RetentionRule &rule,
                             const RemovalStep &step)
{
    const auto spared =
        rule.dropsUnread ? Statements::Spared::Favorites : Statements::Spared::FavoritesAndUnread;
    StorePrivate &store = StorePrivate::of(m_store);
    return inChunks(uris, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return dropMessages(store, channelUri, some, spared, step);
    });
}

} // namespace Tidel
