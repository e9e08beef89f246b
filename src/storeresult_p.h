// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STORERESULT_P_H
#define STORERESULT_P_H

#include <QSparqlResult>

#include <memory>

class QSparqlConnection;
class QSparqlQuery;
struct QstTraceOrigin;

struct DeleteLater
{
    void operator()(QObject *object) const { object->deleteLater(); }
};

/// A finished result without an error, or nothing.
using StoreResult = std::unique_ptr<QSparqlResult, DeleteLater>;

/// What a critical trace says when a statement fails.
struct FailureTexts
{
    enum Detail {
        PreparedText, ///< the statement follows the text of an error
        PreparedTextAlways, ///< it follows both texts
        LastError ///< what the store says follows the text of an error
    };

    const char *noResult;
    const char *error;
    Detail detail = PreparedText;
};

/// Runs \a query and waits for it. A failure is traced as coming from \a origin and yields nothing.
StoreResult execute(QSparqlConnection *connection, const QSparqlQuery &query, const QstTraceOrigin &origin,
                    const FailureTexts &texts);

/// The same, with the statement traced before it is run.
StoreResult executeTraced(QSparqlConnection *connection, const QSparqlQuery &query,
                          const QstTraceOrigin &origin, const FailureTexts &texts);

#endif
