// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STORERESULT_P_H
#define STORERESULT_P_H

#include <QEvent>
#include <QSparqlResult>

#include <memory>

class QSparqlConnection;
class QSparqlQuery;
struct QstTraceOrigin;

/// Deletes a result when control returns to the event loop. A host may never do that, so its rows go at once.
struct DeleteLater
{
    void operator()(QSparqlResult *result) const
    {
        QEvent close(QEvent::Close);
        static_cast<QObject *>(result)->event(&close);
        result->deleteLater();
    }
};

/// A finished result without an error; null on failure.
using StoreResult = std::unique_ptr<QSparqlResult, DeleteLater>;

/// The texts of the critical trace that reports a failed statement.
struct FailureTexts
{
    /// What follows the text.
    enum Detail {
        PreparedText, ///< the statement follows the text of an error
        PreparedTextAlways, ///< the statement follows both texts
        LastError ///< the error of the store follows the text of an error
    };

    const char *noResult; ///< the text if the connection returns no result
    const char *error; ///< the text if the result has an error
    Detail detail = PreparedText;
};

/// Executes \a query and waits for its result. On failure writes a critical trace from \a origin and returns
/// null.
StoreResult execute(QSparqlConnection *connection, const QSparqlQuery &query, const QstTraceOrigin &origin,
                    const FailureTexts &texts);

/// Writes a debug trace of the statement from \a origin, and then does the same as execute().
StoreResult executeTraced(QSparqlConnection *connection, const QSparqlQuery &query,
                          const QstTraceOrigin &origin, const FailureTexts &texts);

#endif
