// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORE_P_H
#define TIDEL_STORE_P_H

#include "store.h"

#include <QHash>
#include <QSet>
#include <QSharedData>
#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>

#include <memory>
#include <optional>

namespace Tidel {

/// The finished result of a statement that the store took.
using Answer = std::unique_ptr<QSparqlResult>;

/// The connection behind a Store, and the one way in which this library runs statements.
class StorePrivate : public QSharedData
{
public:
    /// Opens the store in \a folder; the store of the user if it is empty.
    explicit StorePrivate(const QString &folder = QString());

    /// The connection of \a store.
    static StorePrivate &of(const Store &store) { return *store.d; }

    /// Runs \a statement and waits for its end. \a attempt says what it does, see Error::attempt(); a failure
    /// is traced as critical in the category "TidelReader".
    Result<Answer> run(const QSparqlQuery &statement, const char *attempt);
    /// As run(), and returns the first column as text.
    Result<QStringList> texts(const QSparqlQuery &statement, const char *attempt);
    /// As run(), and returns the number in the first column of the first row; 0 if there is no row.
    Result<int> number(const QSparqlQuery &statement, const char *attempt);
    /// As run(), and returns the second column by the first one.
    Result<QHash<QString, QString>> values(const QSparqlQuery &statement, const char *attempt);
    /// As run(), and returns the number in the second column by the first one.
    Result<QHash<QString, int>> counts(const QSparqlQuery &statement, const char *attempt);
    /// As run(), for updates. What was changed is on the disk when the function returns.
    Result<void> update(const QSparqlQuery &statement, const char *attempt);
    /// As update(), but a power loss can undo the change. For what the next refresh writes again.
    Result<void> updateLoosely(const QSparqlQuery &statement, const char *attempt);

    QSparqlConnection connection;

private:
    Result<Answer> run(const QSparqlQuery &statement, const char *attempt, QSparqlConnection *on);

    std::optional<QSparqlConnection> durableConnection; // shares the open store with the other one
};

/// Takes \a others off \a counts. What is not more than 0 then is left out.
void subtract(QHash<QString, int> *counts, const QHash<QString, int> &others);

/// The rows of \a answer as values, each resource of the first column once. A resource with two values of one
/// property is in two rows.
template <typename T> QList<T> eachOnce(const Answer &answer, T (*extract)(const QSparqlResultRow &))
{
    QList<T> values;
    QSet<QString> uris;
    while (answer->next()) {
        const QString uri = answer->value(0).toString();
        if (uris.contains(uri))
            continue;
        uris.insert(uri);
        values.append(extract(answer->current()));
    }
    return values;
}

// The time that a question about many resources takes grows faster than their number, and an update of more
// messages is not faster.
constexpr int chunkSize = 100;

/// Calls \a work with chunkSize elements of \a list at a time, until it fails.
template <typename List, typename Work> Result<void> inChunks(const List &list, const Work &work)
{
    for (int from = 0; from < list.size(); from += chunkSize) {
        const Result<void> done = work(list.mid(from, chunkSize));
        if (!done)
            return done;
    }
    return {};
}

} // namespace Tidel

#endif
