// SPDX-License-Identifier: LGPL-2.1-or-later
#include "teststore.h"

#include <feedtrackersparql.h>

#include <QSparqlConnection>

#include <QCoreApplication>
#include <QEvent>
#include <QStringList>
#include <QTest>

namespace {

QSparqlResult *run(QSparqlConnection *connection, const QString &statement, QSparqlQuery::StatementType type)
{
    QSparqlResult *result = connection->exec(QSparqlQuery(statement, type));
    if (!result)
        qFatal("No result for %s", qPrintable(statement));
    result->waitForFinished();
    if (result->hasError())
        QTest::qFail(qPrintable(result->lastError().message() + QLatin1Char('\n') + statement), __FILE__,
                     __LINE__);
    return result;
}

} // namespace

TestStore::TestStore() { qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit()); }

TestStore::~TestStore()
{
    FeedTrackerSparql::releaseInstance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString TestStore::dataFolder() const { return m_folder.path(); }

QSparqlConnection *TestStore::beside() const
{
    if (!m_beside)
        m_beside = std::make_unique<QSparqlConnection>(QStringLiteral("QTRACKER_DIRECT"));
    return m_beside.get();
}

void TestStore::update(const QString &statement) const
{
    delete run(beside(), statement, QSparqlQuery::InsertStatement);
}

std::vector<QSparqlResultRow> TestStore::select(const QString &statement) const
{
    const std::unique_ptr<QSparqlResult> result(run(beside(), statement, QSparqlQuery::SelectStatement));
    std::vector<QSparqlResultRow> rows;
    while (result->next())
        rows.push_back(result->current());
    return rows;
}

QStringList TestStore::texts(const QString &statement) const
{
    QStringList lines;
    for (const QSparqlResultRow &row : select(statement)) {
        QStringList columns;
        for (int i = 0; i < row.count(); ++i)
            columns.append(row.value(i).toString());
        lines.append(columns.join(QLatin1Char(' ')));
    }
    return lines;
}

int TestStore::count(const QString &pattern) const
{
    return int(select(QStringLiteral("SELECT ?anything { %1 }").arg(pattern)).size());
}
