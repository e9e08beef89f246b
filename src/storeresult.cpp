// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storeresult_p.h"

#include "qsttrace.h"

#include <QSparqlConnection>
#include <QSparqlQuery>

StoreResult execute(QSparqlConnection *connection, const QSparqlQuery &query, const QstTraceOrigin &origin,
                    const FailureTexts &texts)
{
    StoreResult result(connection->exec(query));
    if (result)
        result->waitForFinished();
    if (result && !result->hasError())
        return result;

    QstTrace trace(QtCriticalMsg, origin);
    trace.stream() << (result ? texts.error : texts.noResult);
    if (result && texts.detail == FailureTexts::LastError)
        trace.stream() << result->lastError();
    else if (result || texts.detail == FailureTexts::PreparedTextAlways)
        trace.stream() << query.preparedQueryText();
    return nullptr;
}

StoreResult executeTraced(QSparqlConnection *connection, const QSparqlQuery &query,
                          const QstTraceOrigin &origin, const FailureTexts &texts)
{
    QstTrace(QtDebugMsg, origin).stream() << query.preparedQueryText();
    return execute(connection, query, origin, texts);
}
