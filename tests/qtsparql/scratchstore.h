// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SCRATCHSTORE_H
#define SCRATCHSTORE_H

#include <QSparqlConnection>
#include <QSparqlResult>

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// An empty store of the real kind in a folder of its own, with a connection that stays open.
class ScratchStore
{
public:
    using Connection = std::unique_ptr<QSparqlConnection>;
    using Result = std::unique_ptr<QSparqlResult>;

    ScratchStore();

    QString folder() const;
    /// One more connection to the same store.
    Connection connect() const;

    QSparqlConnection &connection() const { return *m_connection; }
    Result select(const QString &statement) const;
    Result ask(const QString &statement) const;
    Result update(const QString &statement) const;
    /// The rows of \a statement as text, columns separated by a blank; fails the running test when refused.
    QStringList rows(const QString &statement) const;

    static Connection connect(const QString &folder);
    static Result run(QSparqlConnection &connection, const QString &statement,
                      QSparqlQuery::StatementType type);
    static QStringList rows(QSparqlConnection &connection, const QString &statement);

private:
    QTemporaryDir m_dir;
    Connection m_connection;
};

/// Fails with what the store says.
#define VERIFY_DONE(result)                                                                                  \
    do {                                                                                                     \
        const auto &checked = (result);                                                                      \
        QVERIFY2(!checked->hasError(), qPrintable(checked->lastError().message()));                          \
    } while (false)

/// There is an error of that type, and nothing else.
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
