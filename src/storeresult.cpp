// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storeresult_p.h"

#include "qsttrace.h"

#include <QSparqlConnection>
#include <QSparqlQuery>

StoreResult execute(QSparqlConnection *connection, const QSparqlQuery &query, const QstTraceOrigin &origin,
                    const FailureTexts &texts)
{
    StoreResult result(connection->exec(query));
    if (!result) {
        QstTrace(QtCriticalMsg, origin).stream() << texts.noResult;
        return nullptr;
    }
    result->waitForFinished();
    if (!result->hasError())
        return result;

    QstTrace trace(QtCriticalMsg, origin);
    trace.stream() << texts.error;
    if (texts.detail == FailureTexts::LastError)
        trace.stream() << result->lastError();
    else
        trace.stream() << query.preparedQueryText();
    return nullptr;
}
