// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statementgate.h"

#include <dlfcn.h>

namespace {

QStringList seenStatements;
QList<QSparqlQuery::StatementType> seenTypes;
QList<QPointer<QSparqlResult>> givenResults;
QPointer<QSparqlConnection> lastConnection;
std::function<StatementGate::Verdict(const QString &)> currentJudge;

QSparqlResult *realExec(QSparqlConnection *connection, const QSparqlQuery &query)
{
    using Exec = QSparqlResult *(*)(QSparqlConnection *, const QSparqlQuery &);
    static const Exec exec =
        reinterpret_cast<Exec>(dlsym(RTLD_NEXT, "_ZN17QSparqlConnection4execERK12QSparqlQuery"));
    QSparqlResult *result = exec(connection, query);
    givenResults.append(result);
    return result;
}

} // namespace

namespace StatementGate {

void reset()
{
    seenStatements.clear();
    seenTypes.clear();
    givenResults.clear();
    lastConnection = nullptr;
    currentJudge = nullptr;
}

void setJudge(const std::function<Verdict(const QString &)> &judge) { currentJudge = judge; }

void failAt(int index, Verdict verdict)
{
    setJudge(
        [index, verdict, seen = 0](const QString &) mutable { return seen++ == index ? verdict : Pass; });
}

QStringList statements() { return seenStatements; }

QList<QSparqlQuery::StatementType> types() { return seenTypes; }

QList<QPointer<QSparqlResult>> results() { return givenResults; }

QPointer<QSparqlConnection> connection() { return lastConnection; }

QString refusedStatement() { return QStringLiteral("refuse this"); }

} // namespace StatementGate

QSparqlResult *QSparqlConnection::exec(const QSparqlQuery &query)
{
    const QString text = query.preparedQueryText();
    seenStatements.append(text);
    seenTypes.append(query.type());
    lastConnection = this;
    switch (currentJudge ? currentJudge(text) : StatementGate::Pass) {
    case StatementGate::Pass: return realExec(this, query);
    case StatementGate::Refuse:
        return realExec(this, QSparqlQuery(StatementGate::refusedStatement(), query.type()));
    case StatementGate::NoResult: break;
    }
    return nullptr;
}
