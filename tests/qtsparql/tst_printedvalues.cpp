// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tracker_p.h"

#include "printedvalues_p.h"
#include "scratchstore.h"
#include "sqliteconnections_p.h"

#include <QFile>
#include <QTest>

#include <dlfcn.h>
#include <sqlite3.h>

namespace {

int preparedCount = 0;

} // namespace

/// Called by Tracker and the driver in place of the one of SQLite.
extern "C" int sqlite3_prepare_v2(sqlite3 *database, const char *sql, int size, sqlite3_stmt **statement,
                                  const char **rest)
{
    using Prepare = int (*)(sqlite3 *, const char *, int, sqlite3_stmt **, const char **);
    static const auto prepare = reinterpret_cast<Prepare>(dlsym(RTLD_NEXT, "sqlite3_prepare_v2"));
    ++preparedCount;
    return prepare(database, sql, size, statement, rest);
}

namespace {

/// A connection of Tracker to a store, without the driver.
class TrackerConnection
{
public:
    explicit TrackerConnection(const QString &folder)
    {
        const GObjectPtr<GFile> store(g_file_new_for_path(QFile::encodeName(folder).constData()));
        m_connection.reset(tracker_sparql_connection_new(TRACKER_SPARQL_CONNECTION_FLAGS_READONLY,
                                                         store.get(), nullptr, nullptr, nullptr));
        m_databases = connectionsOpenedBy([this] { rows("ASK {}"); });
    }
    ~TrackerConnection() { tracker_sparql_connection_close(m_connection.get()); }

    /// The connections of SQLite that the first query has opened.
    QVector<sqlite3 *> databases() const { return m_databases; }

    QStringList rows(const char *query) const
    {
        QStringList rows;
        const GObjectPtr<TrackerSparqlCursor> cursor(
            tracker_sparql_connection_query(m_connection.get(), query, nullptr, nullptr));
        while (cursor && tracker_sparql_cursor_next(cursor.get(), nullptr, nullptr)) {
            QString row;
            for (int i = 0; i < tracker_sparql_cursor_get_n_columns(cursor.get()); ++i)
                row += QString::fromUtf8(tracker_sparql_cursor_get_string(cursor.get(), i, nullptr)) + u'|';
            rows.append(row);
        }
        rows.sort();
        return rows;
    }

    /// The type and the text of \a expression; the error if there is one.
    QString value(const QString &expression) const
    {
        sqlite3_stmt *statement = nullptr;
        const QByteArray sql = QStringLiteral("SELECT typeof(%1), %1").arg(expression).toUtf8();
        sqlite3_prepare_v2(m_databases.first(), sql.constData(), -1, &statement, nullptr);
        QString value;
        if (sqlite3_step(statement) != SQLITE_ROW)
            value = QString::fromUtf8(sqlite3_errmsg(m_databases.first()));
        else
            for (int i : {0, 1})
                value += QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, i)))
                    + u'|';
        sqlite3_finalize(statement);
        return value;
    }

private:
    GObjectPtr<TrackerSparqlConnection> m_connection;
    QVector<sqlite3 *> m_databases;
};

} // namespace

/// Tests the names and times that queries print beside those that Tracker alone prints.
class TestPrintedValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void names();
    void times_data();
    void times();
    void otherValues_data();
    void otherValues();
    void rows();
    void rowsPrepareNothing();

private:
    void compare(const QString &expression) const;

    std::unique_ptr<ScratchStore> m_store;
    std::unique_ptr<TrackerConnection> m_slow;
    std::unique_ptr<TrackerConnection> m_fast;
};

void TestPrintedValues::init()
{
    m_store = std::make_unique<ScratchStore>();
    VERIFY_DONE(m_store->update(QStringLiteral(
        "INSERT { <urn:a> a mfo:FeedMessage ; nie:title \"1262\" ; nie:isLogicalPartOf _:b ; "
        "nie:links <https://example.org/ä?q=1#x> ; nie:contentCreated \"2024-02-29T23:59:59Z\" . "
        "_:b a mfo:FeedMessage ; nie:contentCreated \"1969-12-31T23:59:59.25+02:00\" }")));
    m_slow = std::make_unique<TrackerConnection>(m_store->folder());
    m_fast = std::make_unique<TrackerConnection>(m_store->folder());
    QCOMPARE(m_fast->databases().size(), 1);
    printValuesFast(m_fast->databases().first());
}

void TestPrintedValues::cleanup()
{
    m_slow.reset();
    m_fast.reset();
}

void TestPrintedValues::compare(const QString &expression) const
{
    const QString expected = m_slow->value(expression);
    QVERIFY(!expected.isEmpty());
    QCOMPARE(m_fast->value(expression), expected);
}

void TestPrintedValues::names()
{
    const int last =
        m_slow->value(QStringLiteral("(SELECT max(ID) FROM Resource)")).split(u'|').at(1).toInt();
    QVERIFY(last > 100);
    for (int number = -1; number <= last + 1; ++number)
        compare(QStringLiteral("SparqlPrintIRI(%1)").arg(number));
}

void TestPrintedValues::times_data()
{
    QTest::addColumn<qint64>("time");
    const QPair<const char *, qint64> times[] = {
        {"first", -62135596800},
        {"before the first", -62135596801},
        {"last", 253402300799},
        {"after the last", 253402300800},
        {"smallest", std::numeric_limits<qint64>::min()},
        {"greatest", std::numeric_limits<qint64>::max()},
        {"1969-12-31T23:59:59Z", -1},
        {"1970-01-01T00:00:00Z", 0},
        {"2000-02-29T12:34:56Z", 951827696},
        {"0999-01-01T00:00:00Z", -30641760000},
        {"a day before 1970", -86400},
    };
    for (const auto &[name, time] : times)
        QTest::newRow(name) << time;
}

void TestPrintedValues::times()
{
    QFETCH(qint64, time);
    compare(QStringLiteral("SparqlFormatTime(%1)").arg(time));
}

void TestPrintedValues::otherValues_data()
{
    QTest::addColumn<QString>("value");
    for (const char *value : {"NULL", "''", "'text'", "'12'", "'1.5'", "1.5", "1e300", "x'3132'",
                              "'2024-02-29T23:59:59.25+02:00'", "9223372036854775807"})
        QTest::newRow(value) << QString::fromLatin1(value);
}

void TestPrintedValues::otherValues()
{
    QFETCH(QString, value);
    compare(QStringLiteral("SparqlPrintIRI(%1)").arg(value));
    compare(QStringLiteral("SparqlFormatTime(%1)").arg(value));
}

void TestPrintedValues::rows()
{
    const char *const everything = "SELECT ?s ?p ?o { ?s ?p ?o }";
    const QStringList expected = m_slow->rows(everything);
    QVERIFY(expected.filter(QStringLiteral("urn:bnode:")).size() > 1);
    QVERIFY(expected.size() > 100);
    QCOMPARE(m_fast->rows(everything), expected);
}

// Of the driver's own connections.
void TestPrintedValues::rowsPrepareNothing()
{
    const auto prepared = [this](int limit) {
        const QString query = QStringLiteral("SELECT ?s { ?s a rdf:Property } LIMIT %1").arg(limit);
        preparedCount = 0;
        return m_store->rows(query).size() == limit ? preparedCount : -1;
    };
    QVERIFY(prepared(1) > 0);
    QCOMPARE(prepared(50), prepared(1));
}

QTEST_GUILESS_MAIN(TestPrintedValues)

#include "tst_printedvalues.moc"
