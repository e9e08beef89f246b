// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SCRATCHSTORE_H
#define SCRATCHSTORE_H

#include <QSparqlConnection>
#include <QSparqlResult>

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A real, empty store in a folder of its own with an open connection.
class ScratchStore
{
public:
    using Connection = std::unique_ptr<QSparqlConnection>;
    using Result = std::unique_ptr<QSparqlResult>;

    ScratchStore();

    /// Returns the folder of the store.
    QString folder() const;
    /// Opens another connection to the same store.
    Connection connect() const;

    /// Returns the open connection.
    QSparqlConnection &connection() const { return *m_connection; }
    /// Runs a SELECT statement.
    Result select(const QString &statement) const;
    /// Runs an ASK statement.
    Result ask(const QString &statement) const;
    /// Runs an update.
    Result update(const QString &statement) const;
    /// Returns the rows of \a statement as text with a blank between the columns. The running test fails if
    /// the statement fails.
    QStringList rows(const QString &statement) const;

    /// Opens a connection to the store in \a folder, with other \a options if there are some.
    static Connection connect(const QString &folder,
                              QSparqlConnectionOptions options = QSparqlConnectionOptions());
    /// Runs \a statement on \a connection.
    static Result run(QSparqlConnection &connection, const QString &statement,
                      QSparqlQuery::StatementType type);
    /// Returns the rows of \a statement like the other rows().
    static QStringList rows(QSparqlConnection &connection, const QString &statement);

private:
    QTemporaryDir m_dir;
    Connection m_connection;
};

/// Fails with the message of the store if \a result has an error.
#define VERIFY_DONE(result)                                                                                  \
    do {                                                                                                     \
        const auto &checked = (result);                                                                      \
        QVERIFY2(!checked->hasError(), qPrintable(checked->lastError().message()));                          \
    } while (false)

/// Fails unless \a result has an error of the type \a errorType and no rows.
#define VERIFY_REFUSED(result, errorType)                                                                    \
    do {                                                                                                     \
        const auto &checked = (result);                                                                      \
        QVERIFY(checked->hasError());                                                                        \
        QVERIFY2(checked->lastError().type() == QSparqlError::errorType,                                     \
                 qPrintable(checked->lastError().message()));                                                \
        QVERIFY(!checked->lastError().message().isEmpty());                                                  \
        QCOMPARE(checked->size(), 0);                                                                        \
        QVERIFY(!checked->next());                                                                           \
        QVERIFY(!checked->first());                                                                          \
        QVERIFY(!checked->last());                                                                           \
        QVERIFY(!checked->isValid());                                                                        \
        QVERIFY(checked->current().isEmpty());                                                               \
        QVERIFY(!checked->value(0).isValid());                                                               \
        QVERIFY(!checked->boolValue());                                                                      \
    } while (false)

#endif
