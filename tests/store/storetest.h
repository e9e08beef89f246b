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

/// What a debug stream that is in no-spacing mode prints for \a value.
template <typename T> QString debugText(const T &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

/// A text as a trace shows it, between double quotes.
QString quoted(const QString &text);

/// \a text with each URN of createUrn()'s replaced by URN1, URN2... in the order of their appearance, and
/// each local time between the start of the program and now by NOW.
QString patterned(const QString &text);

/// \name Lines of a journal
/// A trace is given by the function that writes it and its items, which end with a blank each; the name of
/// an overloaded function has its arguments added.
/// @{
QString debugLine(const QString &function, const QStringList &items);
QString criticalLine(const QString &function, const QStringList &items);
QString selectLine(const QString &statement);
QString insertLine(const QString &statement);
QString deleteLine(const QString &statement);
/// What Qt itself warns of.
QString warningLine(const QString &text);
/// The signal, as the instance that a test starts with emits it.
QString signalLine(const QList<FeedEnclosure> &enclosures);
/// @}

/// What becomes of one of an operation's statements, counted from 0.
struct Intervention
{
    int statement;
    StatementGate::Verdict verdict;
};
using Interventions = std::vector<Intervention>;
Q_DECLARE_METATYPE(Interventions)

/**
 * What \a operation does, in its order: each statement as it reaches the connection, each trace and each
 * signal. A trace that is not built as it has to be is reported as such, and so is a result that is not left
 * to the event loop.
 */
QStringList journalOf(const std::function<void()> &operation, const Interventions &interventions = {});

/// \name Parts of a journal, by the statement of that number, counted from 0
/// @{
QStringList throughStatement(const QStringList &journal, int number);
QStringList fromStatement(const QStringList &journal, int number);
/// @}

/// Runs an operation and tells whether it returned what it returns when it fails.
using Operation = std::function<bool()>;
Q_DECLARE_METATYPE(Operation)

/// An operation of one statement, and what it says when that yields no result or an error.
struct SingleRead
{
    const char *function;
    Operation returnsItsEmptyValue;
    QString statement;
    QString noResult;
    QString error;
    QStringList tracesBefore = {};
};

/// Test data with both failures of each of \a reads, for checkFailingOperation().
void addFailureRows(const std::vector<SingleRead> &reads);
/// Makes room for rows of addFailureRow().
void addFailureColumns();
/// Test data with one failure of an operation; \a journal is all that it is to do.
void addFailureRow(const QString &name, const Operation &returnsItsEmptyValue,
                   const Interventions &interventions, const QStringList &journal);
/// The body of a test of such data.
void checkFailingOperation();

/// The error that the store gives for \a statement, as a debug stream prints it.
QString storeErrorOf(const QString &statement);
/// The error that a refused statement meets.
QString refusalError();

/// \name What the store holds
/// Lines of text, sorted; prefixed names where there is a prefix, and without what the store itself keeps.
/// @{
QStringList everythingIn(const TestStore &store);
/// The resources that something is said of.
QStringList subjectsIn(const TestStore &store);
/// What is said of \a subject, each line a property and its value.
QStringList propertiesOf(const TestStore &store, const QString &subject);
/// @}

/// The base of the tests: a new store and a new instance for each function, in a time zone that is not UTC.
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
