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
 * Replaces QSparqlConnection::exec() for the whole process. It sees each statement before the real store gets
 * it, and can make the store refuse it or return no result.
 */
namespace StatementGate {

enum Verdict {
    Pass,
    NoResult, ///< exec() returns null
    Refuse, ///< the store gets a statement that it refuses, so that the result has a real error
    NoRows, ///< the store gets a query without results
    EmptyRow, ///< the result has one row, which has no columns
    Late ///< the result has neither rows nor an error until its waitForFinished() is called
};

/// Lets all statements pass and deletes the records.
void reset();
/// Calls \a judge with the prepared text of every later statement.
void setJudge(const std::function<Verdict(const QString &)> &judge);
/// Applies \a verdict to the later statement number \a index, counted from 0, and lets the others pass.
void failAt(int index, Verdict verdict);

/// Returns the prepared texts since the last reset in their order.
QStringList statements();
/// Returns the types of these statements.
QList<QSparqlQuery::StatementType> types();
/// Returns the results of these statements; null if a result has been deleted.
QList<QPointer<QSparqlResult>> results();
/// Returns the connection of the last statement.
QPointer<QSparqlConnection> connection();

/// Returns the statement that the store gets if it is to refuse one.
QString refusedStatement();

} // namespace StatementGate

#endif
