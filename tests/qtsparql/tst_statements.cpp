// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTest>

/**
 * Runs the statements in the folder `statements`, which has a folder for each topic. Each statement has a
 * store of its own.
 * - `setup.ru` fills the store before each statement of its topic.
 * - `name.ru` is an update and `name.rq` is a query. If both exist, the query checks the effect of the
 * update.
 * - `name.rows` has the expected rows, one on each line. Tabs separate the terms, and `-` is an unbound one.
 * For an ASK query the line is `true` or `false`.
 * - `name.error` has the expected type of error of the update, or of the query if there is no update.
 */
class TestStatements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void statement_data();
    void statement();
};

namespace {

QDir topics() { return QDir(QStringLiteral(TIDEL_STATEMENTS)); }

/// Returns a null text if there is no such file.
QString content(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll()) + QLatin1String("");
}

QSparqlError::ErrorType errorType(const QString &name)
{
    for (const auto &[type, text] : {std::pair(QSparqlError::StatementError, "StatementError"),
                                     std::pair(QSparqlError::TransactionError, "TransactionError"),
                                     std::pair(QSparqlError::BackendError, "BackendError")}) {
        if (name.trimmed() == QLatin1String(text))
            return type;
    }
    return QSparqlError::NoError;
}

QSparqlQuery::StatementType typeOf(const QString &fileName, const QString &text)
{
    if (fileName.endsWith(QLatin1String(".ru")))
        return QSparqlQuery::InsertStatement;
    return text.contains(QLatin1String("ASK {")) ? QSparqlQuery::AskStatement : QSparqlQuery::SelectStatement;
}

ScratchStore::Result run(const ScratchStore &store, const QString &fileName)
{
    const QString text = content(fileName);
    return ScratchStore::run(store.connection(), text, typeOf(fileName, text));
}

QString rowsOf(QSparqlResult &result)
{
    if (result.isBool())
        return result.boolValue() ? QStringLiteral("true\n") : QStringLiteral("false\n");
    QString lines;
    while (result.next()) {
        QStringList terms;
        for (int i = 0; i < result.current().count(); ++i)
            terms.append(result.binding(i).isValid() ? result.binding(i).toString() : QStringLiteral("-"));
        lines += terms.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return lines;
}

} // namespace

void TestStatements::initTestCase() { qputenv("TZ", "UTC"); }

void TestStatements::statement_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("setup");
    const QStringList folders = topics().entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QVERIFY(!folders.isEmpty());
    for (const QString &folder : folders) {
        const QDir topic(topics().filePath(folder));
        QSet<QString> seen;
        const QStringList files = topic.entryList(QDir::Files);
        for (const QString &file : files) {
            const QString name = file.section(QLatin1Char('.'), 0, 0);
            if (name == QLatin1String("setup") || seen.contains(name))
                continue;
            seen.insert(name);
            QTest::newRow(qPrintable(folder + QLatin1Char('/') + name))
                << topic.filePath(name) << topic.filePath(QStringLiteral("setup.ru"));
        }
    }
}

void TestStatements::statement()
{
    QFETCH(QString, base);
    QFETCH(QString, setup);
    const QString update = base + QLatin1String(".ru");
    const QString query = base + QLatin1String(".rq");
    const QString rows = content(base + QLatin1String(".rows"));
    const QString error = content(base + QLatin1String(".error"));
    QVERIFY2(QFile::exists(update) || QFile::exists(query), "no statement");
    QVERIFY2(!rows.isNull() || !error.isNull(), "no expectation");
    QVERIFY2(rows.isNull() || QFile::exists(query), "rows are expected of a query");

    const ScratchStore store;
    if (QFile::exists(setup))
        VERIFY_DONE(run(store, setup));
    const bool isRefusalOfUpdate = !error.isNull() && QFile::exists(update);
    if (!error.isNull()) {
        QVERIFY2(errorType(error) != QSparqlError::NoError, "no such error");
        const auto refused = run(store, isRefusalOfUpdate ? update : query);
        QVERIFY2(refused->lastError().type() == errorType(error), qPrintable(refused->lastError().message()));
    } else if (QFile::exists(update)) {
        VERIFY_DONE(run(store, update));
    }
    if (!rows.isNull()) {
        const auto result = run(store, query);
        VERIFY_DONE(result);
        QCOMPARE(rowsOf(*result), rows);
    }
}

QTEST_GUILESS_MAIN(TestStatements)
#include "tst_statements.moc"
