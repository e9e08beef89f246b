// SPDX-License-Identifier: LGPL-2.1-or-later
#include "store.h"
#include "store_p.h"
#include "usertext.h"

#include <QSparqlConnectionOptions>

#include <qsttrace.h>

namespace Tidel {

Store::Store(StorePrivate *store) : d(store) { }
Store::Store(const Store &other) = default;
Store &Store::operator=(const Store &other) = default;
Store::~Store() = default;

Result<Store> Store::open()
{
    Store store(new StorePrivate);
    const QSparqlConnection &connection = store.d->connection;
    QST_DEBUG("TidelReader") << "open the store" << connection.isValid();
    if (connection.isValid())
        return store;
    return Failure(
        Error(Error::StoreUnavailable, QStringLiteral("open the store"), connection.lastError().message()));
}

namespace {

const QString driver = QStringLiteral("QTRACKER_DIRECT");

QSparqlConnectionOptions optionsOf(const QString &folder)
{
    QSparqlConnectionOptions options;
    options.setDatabaseName(folder);
    return options;
}

QSparqlConnectionOptions durable(QSparqlConnectionOptions options)
{
    options.setOption(QStringLiteral("durable"), true);
    return options;
}

Error::Kind kindOf(const QSparqlError &error)
{
    const bool isRefused =
        error.type() == QSparqlError::StatementError || error.type() == QSparqlError::TransactionError;
    return isRefused ? Error::StoreRefused : Error::StoreFailed;
}

} // namespace

StorePrivate::StorePrivate(const QString &folder) : connection(driver, optionsOf(folder))
{
    // Another attempt would wait once more.
    if (connection.isValid())
        durableConnection.emplace(driver, durable(connection.options()));
}

Result<Answer> StorePrivate::run(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt, &connection);
}

Result<Answer> StorePrivate::run(const QSparqlQuery &statement, const char *attempt, QSparqlConnection *on)
{
    QST_DEBUG("TidelReader") << attempt;
    Answer answer(on->exec(statement));
    if (answer)
        answer->waitForFinished();
    if (answer && !answer->hasError())
        return answer;
    const QString message = answer ? answer->lastError().message() : QStringLiteral("it gave no answer");
    QST_CRITICAL("TidelReader") << attempt << withoutPasswords(message)
                                << withoutPasswords(statement.preparedQueryText());
    // The lines that follow quote the statement.
    const QString reason = message.section(QLatin1Char('\n'), 0, 0);
    return Failure(Error(answer ? kindOf(answer->lastError()) : Error::StoreFailed,
                         QString::fromLatin1(attempt), reason));
}

Result<QStringList> StorePrivate::texts(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt).map([](const Answer &answer) {
        QStringList texts;
        while (answer->next())
            texts.append(answer->value(0).toString());
        return texts;
    });
}

Result<QHash<QString, QString>> StorePrivate::values(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt).map([](const Answer &answer) {
        QHash<QString, QString> values;
        while (answer->next())
            values.insert(answer->value(0).toString(), answer->value(1).toString());
        return values;
    });
}

Result<QHash<QString, int>> StorePrivate::counts(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt).map([](const Answer &answer) {
        QHash<QString, int> counts;
        while (answer->next())
            counts.insert(answer->value(0).toString(), answer->value(1).toInt());
        return counts;
    });
}

Result<int> StorePrivate::number(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt).map([](const Answer &answer) {
        return answer->next() ? answer->value(0).toInt() : 0;
    });
}

Result<void> StorePrivate::update(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt, &*durableConnection).map([](const Answer &) {});
}

Result<void> StorePrivate::updateLoosely(const QSparqlQuery &statement, const char *attempt)
{
    return run(statement, attempt).map([](const Answer &) {});
}

void subtract(QHash<QString, int> *counts, const QHash<QString, int> &others)
{
    for (auto other = others.cbegin(); other != others.cend(); ++other) {
        const int left = counts->value(other.key()) - other.value();
        if (left > 0)
            counts->insert(other.key(), left);
        else
            counts->remove(other.key());
    }
}

} // namespace Tidel
