// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STORETEST_H
#define STORETEST_H

#include "messagelog.h"
#include "statementgate.h"
#include "teststore.h"

#include <feedtrackersparql.h>

#include <QDebug>
#include <QMetaType>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

/// Returns the text that a debug stream in no-spacing mode writes for \a value.
template <typename T> QString debugText(const T &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

/// Returns a text as a trace writes it, between double quotes.
QString quoted(const QString &text);

/// Returns \a text with the URNs of createUrn() replaced by URN1, URN2 and so on, in the order in which they
/// appear. Replaces each local time between the start of the program and now by NOW.
QString patterned(const QString &text);

/// \name Lines of a journal
/// A trace is given by the function that writes it and its items. A blank follows each item. The name of an
/// overloaded function includes its arguments.
/// @{
QString debugLine(const QString &function, const QStringList &items);
QString criticalLine(const QString &function, const QStringList &items);
QString selectLine(const QString &statement);
QString insertLine(const QString &statement);
QString deleteLine(const QString &statement);
/// Returns the line of a warning that Qt writes.
QString warningLine(const QString &text);
/// Returns the line of the signal, emitted by the instance that the test starts with.
QString signalLine(const QList<FeedEnclosure> &enclosures);
/// @}

/// Changes the result of one statement of an operation, counted from 0.
struct Intervention
{
    int statement;
    StatementGate::Verdict verdict;
};
using Interventions = std::vector<Intervention>;
Q_DECLARE_METATYPE(Interventions)

/**
 * Executes \a operation and returns its journal in order: each statement that reaches the connection, each
 * trace and each signal. Also reports a trace with a wrong form, and a result that is not deleted by the
 * event loop.
 */
QStringList journalOf(const std::function<void()> &operation, const Interventions &interventions = {});

/// \name Parts of a journal, by the statement of that number, counted from 0
/// @{
QStringList throughStatement(const QStringList &journal, int number);
QStringList fromStatement(const QStringList &journal, int number);
/// @}

/// Executes an operation and returns true if it returned the value that reports a failure; otherwise returns
/// false.
using Operation = std::function<bool()>;
Q_DECLARE_METATYPE(Operation)

/// An operation with one statement, and its traces if that has no result or an error.
struct SingleRead
{
    const char *function;
    Operation returnsItsEmptyValue;
    QString statement;
    QString noResult;
    QString error;
    QStringList tracesBefore = {};
};

/// Adds test data with both failures of each of \a reads, for checkFailingOperation().
void addFailureRows(const std::vector<SingleRead> &reads);
/// Adds the columns for addFailureRow().
void addFailureColumns();
/// Adds test data with one failure of an operation. \a journal is its whole journal.
void addFailureRow(const QString &name, const Operation &returnsItsEmptyValue,
                   const Interventions &interventions, const QStringList &journal);
/// Runs a test with this data.
void checkFailingOperation();

/// Returns the error that the store reports for \a statement, as a debug stream writes it.
QString storeErrorOf(const QString &statement);
/// Returns the error that the store reports for a refused statement.
QString refusalError();

/// \name What the store holds
/// Returns sorted lines of text with prefixed names where a prefix exists. The store's own data is omitted.
/// @{
QStringList everythingIn(const TestStore &store);
/// Returns the resources that have properties.
QStringList subjectsIn(const TestStore &store);
/// Returns the properties of \a subject, each with its value.
QStringList propertiesOf(const TestStore &store, const QString &subject);
/// @}

/// The base of the tests. Each test has a new store and a new instance, in a time zone that is not UTC.
class StoreTestCase : public QObject
{
    Q_OBJECT

public:
    StoreTestCase();

protected:
    FeedTrackerSparql *tracker() const { return FeedTrackerSparql::instance(); }
    const TestStore &store() const { return *m_store; }

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<MessageLog> m_silence;
    std::unique_ptr<TestStore> m_store;
};

#endif
