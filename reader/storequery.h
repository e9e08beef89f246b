// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STOREQUERY_H
#define TIDEL_STOREQUERY_H

#include "error.h"
#include "store.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

namespace Tidel {

/// A variable of a query and its value, which is invalid if it has none.
struct QueryValue
{
    QString variable; ///< Its name, without the question mark.
    QVariant value; ///< A text, a number, a truth value, or a date and time. Resources are texts.
};

/// Questions of the user to a store, in SPARQL. They cannot change it.
class TIDELREADER_EXPORT StoreQuery
{
public:
    /// Is called with each row of an answer.
    using RowHandler = std::function<void(const QVector<QueryValue> &)>;

    /// Asks \a store.
    explicit StoreQuery(const Store &store);

    /**
     * Runs \a sparql, a SELECT or ASK query, and calls \a row with each row of the answer. The answer to ASK
     * is a row with one value, `answer`. The prefixes of the store need no declaration: nie, mfo, nao, tidel
     * and the others of its ontologies. Fails with Error::QueryRefused if the text is another statement, or
     * if the store does not understand it.
     */
    Result<void> run(const QString &sparql, const RowHandler &row) const;

private:
    Store m_store;
};

} // namespace Tidel

#endif
