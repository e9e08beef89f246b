// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QTest>

ScratchStore::ScratchStore() : m_connection(connect()) { }

QString ScratchStore::folder() const { return m_dir.filePath(QStringLiteral("store")); }

ScratchStore::Connection ScratchStore::connect() const { return connect(folder()); }

ScratchStore::Connection ScratchStore::connect(const QString &folder, QSparqlConnectionOptions options)
{
    options.setDatabaseName(folder);
    return std::make_unique<QSparqlConnection>(QStringLiteral("QTRACKER_DIRECT"), options);
}

ScratchStore::Result ScratchStore::run(QSparqlConnection &connection, const QString &statement,
                                       QSparqlQuery::StatementType type)
{
    Result result(connection.exec(QSparqlQuery(statement, type)));
    if (!result)
        qFatal("No result for %s", qPrintable(statement.left(1000)));
    result->waitForFinished();
    return result;
}

QStringList ScratchStore::rows(QSparqlConnection &connection, const QString &statement)
{
    const Result result = run(connection, statement, QSparqlQuery::SelectStatement);
    if (result->hasError())
        QTest::qFail(qPrintable(result->lastError().message()), __FILE__, __LINE__);
    QStringList lines;
    while (result->next()) {
        QStringList columns;
        for (int i = 0; i < result->current().count(); ++i)
            columns.append(result->stringValue(i));
        lines.append(columns.join(QLatin1Char(' ')));
    }
    return lines;
}

ScratchStore::Result ScratchStore::select(const QString &statement) const
{
    return run(*m_connection, statement, QSparqlQuery::SelectStatement);
}

ScratchStore::Result ScratchStore::ask(const QString &statement) const
{
    return run(*m_connection, statement, QSparqlQuery::AskStatement);
}

ScratchStore::Result ScratchStore::update(const QString &statement) const
{
    return run(*m_connection, statement, QSparqlQuery::InsertStatement);
}

QStringList ScratchStore::rows(const QString &statement) const { return rows(*m_connection, statement); }
