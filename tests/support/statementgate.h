// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STATEMENTGATE_H
#define STATEMENTGATE_H

#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>

#include <QPointer>
#include <QStringList>

#include <functional>

/**
 * Stands in front of QSparqlConnection::exec() for the whole process: sees each statement on its way to the
 * real store, and may have it refused by the store or answered with no result at all.
 */
namespace StatementGate {

enum Verdict {
    Pass,
    NoResult, ///< exec() returns null
    Refuse, ///< the store is given a statement that it refuses, so that the result has a real error
    NoRows, ///< the store is given a query that nothing answers
    EmptyRow, ///< the result has one row, which has no columns
    Late ///< the result has neither rows nor an error until its waitForFinished() is called
};

/// Lets everything pass and forgets what was seen.
void reset();
/// Asks \a judge about every statement from now on; its argument is the prepared text.
void setJudge(const std::function<Verdict(const QString &)> &judge);
/// Gives \a verdict on the statement number \a index, counted from 0 since now, and lets the others pass.
void failAt(int index, Verdict verdict);

/// The prepared texts seen since the last reset, in their order.
QStringList statements();
/// The types of the same statements.
QList<QSparqlQuery::StatementType> types();
/// The results that were handed out for them; null once deleted.
QList<QPointer<QSparqlResult>> results();
/// The connection that the last of them came by.
QPointer<QSparqlConnection> connection();

/// What the store is given in place of a statement that it has to refuse.
QString refusedStatement();

} // namespace StatementGate

#endif
