// SPDX-License-Identifier: LGPL-2.1-or-later
#include <QSparqlBinding>
#include <QSparqlConnection>
#include <QSparqlConnectionOptions>
#include <QSparqlError>
#include <QSparqlQuery>
#include <QSparqlResult>
#include <QSparqlResultRow>

#include <QTest>

#include <type_traits>

/// The public classes have one pointer to their state, and the values among them share it until one is
/// changed.
class TestSharedValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void binding();
    void connectionOptions();
    void error();
    void query();
    void resultRow();
};

static_assert(sizeof(QSparqlConnection) == sizeof(QObject) + sizeof(void *));
static_assert(sizeof(QSparqlResult) == sizeof(QObject) + sizeof(void *));

namespace {

template <typename T> void checkLayout()
{
    static_assert(sizeof(T) == sizeof(void *));
    static_assert(std::is_nothrow_move_constructible_v<T>);
    static_assert(std::is_nothrow_move_assignable_v<T>);
    static_assert(std::is_nothrow_swappable_v<T>);
}

/// Checks copies and moves of a value that \a change makes from an empty one. \a text shows a value.
template <typename T, typename Change, typename Text> void checkSharing(Change change, Text text)
{
    checkLayout<T>();
    const QString empty = text(T());
    T value;
    change(value);
    const QString changed = text(value);
    QVERIFY(changed != empty);

    T copy = value;
    QCOMPARE(text(copy), changed);
    value = T();
    QCOMPARE(text(value), empty);
    QCOMPARE(text(copy), changed);
    value = copy;
    change(copy = T());
    QCOMPARE(text(value), changed);

    // What was moved is empty, and it can be used again.
    T moved = std::move(value);
    QCOMPARE(text(moved), changed);
    QCOMPARE(text(value), empty);
    change(value);
    QCOMPARE(text(value), changed);
    moved = T();
    moved = std::move(value);
    QCOMPARE(text(moved), changed);

    T other;
    moved.swap(other);
    QCOMPARE(text(moved), empty);
    QCOMPARE(text(other), changed);
    using std::swap;
    swap(moved, other);
    QCOMPARE(text(moved), changed);
    QCOMPARE(text(other), empty);
}

/// Checks that \a change of a copy leaves the original as it is.
template <typename T, typename Change, typename Text>
void checkDetaching(const T &value, Change change, Text text)
{
    const QString before = text(value);
    T copy = value;
    change(copy);
    QVERIFY(text(copy) != before);
    QCOMPARE(text(value), before);
}

template <typename T> QString debugText(const T &value)
{
    QString text;
    QDebug(&text) << value;
    return text;
}

const QString name = QStringLiteral("name");

} // namespace

void TestSharedValues::binding()
{
    using Binding = QSparqlBinding;
    checkSharing<Binding>([](Binding &value) { value.setName(name); }, debugText<Binding>);
    checkSharing<Binding>([](Binding &value) { value.setValue(1); }, debugText<Binding>);
    checkSharing<Binding>([](Binding &value) { value.setResource(name); }, debugText<Binding>);
    checkSharing<Binding>([](Binding &value) { value.setBlankNodeLabel(name); }, debugText<Binding>);
    checkSharing<Binding>([](Binding &value) { value.setLanguageTag(name); },
                          [](const Binding &value) { return value.languageTag(); });
    checkSharing<Binding>([](Binding &value) { value.setDataTypeUri(QUrl(name)); },
                          [](const Binding &value) { return value.dataTypeUri().toString(); });

    const Binding value(name, 1);
    checkDetaching(
        value, [](Binding &copy) { copy.setName(QString()); }, debugText<Binding>);
    checkDetaching(
        value, [](Binding &copy) { copy.setValue(2); }, debugText<Binding>);
    checkDetaching(
        value, [](Binding &copy) { copy.clear(); }, debugText<Binding>);
}

void TestSharedValues::connectionOptions()
{
    using Options = QSparqlConnectionOptions;
    const auto text = [](const Options &value) { return value.databaseName(); };
    checkSharing<Options>([](Options &value) { value.setDatabaseName(name); }, text);

    Options value;
    value.setDatabaseName(name);
    checkDetaching(
        value, [](Options &copy) { copy.setDatabaseName(QStringLiteral("other")); }, text);
    checkDetaching(
        value, [](Options &copy) { copy.setOption(QStringLiteral("databaseName"), QVariant()); }, text);
}

void TestSharedValues::error()
{
    using Error = QSparqlError;
    checkSharing<Error>([](Error &value) { value.setMessage(name); }, debugText<Error>);
    checkSharing<Error>([](Error &value) { value.setType(Error::BackendError); }, debugText<Error>);
    checkSharing<Error>([](Error &value) { value.setNumber(5); }, debugText<Error>);

    const Error value(name, Error::BackendError, 5);
    checkDetaching(
        value, [](Error &copy) { copy.setMessage(QString()); }, debugText<Error>);
    checkDetaching(
        value, [](Error &copy) { copy.setType(Error::NoError); }, debugText<Error>);
    checkDetaching(
        value, [](Error &copy) { copy.setNumber(6); }, debugText<Error>);
}

void TestSharedValues::query()
{
    using Query = QSparqlQuery;
    checkSharing<Query>([](Query &value) { value.setQuery(name); }, debugText<Query>);
    checkSharing<Query>([](Query &value) { value.setType(Query::InsertStatement); }, debugText<Query>);
    checkSharing<Query>([](Query &value) { value.bindValue(name, 1); }, debugText<Query>);

    Query value(name, Query::InsertStatement);
    value.bindValue(name, 1);
    checkDetaching(
        value, [](Query &copy) { copy.setQuery(QString()); }, debugText<Query>);
    checkDetaching(
        value, [](Query &copy) { copy.setType(Query::AskStatement); }, debugText<Query>);
    checkDetaching(
        value, [](Query &copy) { copy.bindValue(name, 2); }, debugText<Query>);
    checkDetaching(
        value, [](Query &copy) { copy.bindValue(name, QVariant()); }, debugText<Query>);
    checkDetaching(
        value, [](Query &copy) { copy.unbindValues(); }, debugText<Query>);
}

void TestSharedValues::resultRow()
{
    using Row = QSparqlResultRow;
    checkSharing<Row>([](Row &value) { value.append(QSparqlBinding(name, 1)); }, debugText<Row>);

    Row value;
    value.append(QSparqlBinding(name, 1));
    checkDetaching(
        value, [](Row &copy) { copy.append(QSparqlBinding()); }, debugText<Row>);
    checkDetaching(
        value, [](Row &copy) { copy.clear(); }, debugText<Row>);
}

QTEST_GUILESS_MAIN(TestSharedValues)
#include "tst_sharedvalues.moc"
