// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statementgate.h"

#include <dlfcn.h>

#include <memory>
#include <mutex>

namespace {

/// A result of the store that arrives late, like the result of a driver that works in the background.
class LateResult : public QSparqlResult
{
public:
    explicit LateResult(QSparqlResult *result)
        : QSparqlResult(result->query(), result->statementType()), m_result(result)
    {
    }

    void waitForFinished() override
    {
        m_result->waitForFinished();
        m_isFinished = true;
        setLastError(m_result->lastError());
    }
    bool isFinished() const override { return m_isFinished; }
    int size() const override { return m_isFinished ? m_result->size() : 0; }
    QSparqlResultRow current() const override { return atThisRow()->current(); }
    QSparqlBinding binding(int index) const override { return atThisRow()->binding(index); }
    QVariant value(int index) const override { return atThisRow()->value(index); }

private:
    QSparqlResult *atThisRow() const
    {
        m_result->setPos(pos());
        return m_result.get();
    }

    const std::unique_ptr<QSparqlResult> m_result;
    bool m_isFinished = false;
};

/// A result with an empty row, which no statement of the store returns.
class EmptyRowResult : public QSparqlResult
{
public:
    explicit EmptyRowResult(const QSparqlQuery &query)
        : QSparqlResult(query.preparedQueryText(), query.type())
    {
    }

    int size() const override { return 1; }
    QSparqlResultRow current() const override { return {}; }
    QSparqlBinding binding(int) const override { return QSparqlBinding(); }
    QVariant value(int) const override { return {}; }
};

std::mutex mutex; // An archive runs statements on several threads.
QStringList seenStatements;
QList<QSparqlQuery::StatementType> seenTypes;
QList<QPointer<QSparqlResult>> givenResults;
QPointer<QSparqlConnection> lastConnection;
using Judge = std::function<StatementGate::Verdict(const QString &)>;
std::shared_ptr<const Judge> currentJudge;

QSparqlResult *realExec(QSparqlConnection *connection, const QSparqlQuery &query)
{
    using Exec = QSparqlResult *(*)(QSparqlConnection *, const QSparqlQuery &);
    static const Exec exec =
        reinterpret_cast<Exec>(dlsym(RTLD_NEXT, "_ZN17QSparqlConnection4execERK12QSparqlQuery"));
    return exec(connection, query);
}

QSparqlResult *remembered(QSparqlResult *result)
{
    const std::lock_guard<std::mutex> lock(mutex);
    givenResults.append(result);
    return result;
}

} // namespace

namespace StatementGate {

void reset()
{
    const std::lock_guard<std::mutex> lock(mutex);
    seenStatements.clear();
    seenTypes.clear();
    givenResults.clear();
    lastConnection = nullptr;
    currentJudge = nullptr;
}

void setJudge(const std::function<Verdict(const QString &)> &judge)
{
    const std::lock_guard<std::mutex> lock(mutex);
    currentJudge = std::make_shared<const Judge>(judge);
}

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
    std::shared_ptr<const Judge> judge;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        seenStatements.append(text);
        seenTypes.append(query.type());
        lastConnection = this;
        judge = currentJudge;
    }
    switch (judge && *judge ? (*judge)(text) : StatementGate::Pass) {
    case StatementGate::Pass: return remembered(realExec(this, query));
    case StatementGate::Refuse:
        return remembered(realExec(this, QSparqlQuery(StatementGate::refusedStatement(), query.type())));
    case StatementGate::NoRows:
        return remembered(realExec(this, QSparqlQuery(QStringLiteral("SELECT ?u { FILTER(false) }"))));
    case StatementGate::EmptyRow: return remembered(new EmptyRowResult(query));
    case StatementGate::Late: return remembered(new LateResult(realExec(this, query)));
    case StatementGate::NoResult: break;
    }
    return nullptr;
}
