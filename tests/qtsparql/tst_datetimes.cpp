// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QDateTime>
#include <QTest>

#include <time.h>

/// Tests date-times that are written to the store, compared in it, and read from it.
class TestDateTimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sameInstantComesBack_data();
    void sameInstantComesBack();
    void boundValueComesBack_data();
    void boundValueComesBack();
    void orderIsThatOfTheInstants();
    void comparisonIsThatOfTheInstants();
    void sameInstantIsTheSameValue();
    void untypedTextIsLocalTime();
};

namespace {

void setLocalZone(const char *zone)
{
    qputenv("TZ", zone);
    tzset();
}

QDateTime utc(int hour, int minute = 0, int second = 0, int millisecond = 0)
{
    return QDateTime(QDate(2026, 11, 21), QTime(hour, minute, second, millisecond), Qt::UTC);
}

ScratchStore::Result insert(const ScratchStore &store, const QString &name, const QString &date)
{
    return store.update(QStringLiteral("INSERT { <urn:%1> a mfo:FeedMessage ; nie:title \"%1\" ; "
                                       "nie:contentCreated %2 }")
                            .arg(name, date));
}

/// Times in different zones and in no order. The titles have the order of the instants.
void fill(const ScratchStore &store)
{
    const QPair<const char *, const char *> dates[] = {
        {"d", "\"2026-11-21T11:00:00Z\"^^xsd:dateTime"},
        {"a", "\"2026-11-21T10:00:00+02:00\"^^xsd:dateTime"},
        {"f", "\"2026-11-21T08:30:00-05:00\"^^xsd:dateTime"},
        {"c", "\"2026-11-21T05:15:00\"^^xsd:dateTime"},
        {"e", "\"2026-11-21T18:00:00+06:00\"^^<http://www.w3.org/2001/XMLSchema#dateTime>"},
        {"b", "\"2026-11-21T09:00:00Z\"^^xsd:dateTime"},
        {"g", "\"1999-12-31T23:00:00-23:00\"^^xsd:dateTime"},
    };
    for (const auto &[name, date] : dates)
        VERIFY_DONE(insert(store, QString::fromLatin1(name), QString::fromLatin1(date)));
}

} // namespace

void TestDateTimes::init() { setLocalZone("America/New_York"); }

void TestDateTimes::sameInstantComesBack_data()
{
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QDateTime>("instant");
    const auto row = [](const char *literal, const QDateTime &instant) {
        QTest::newRow(literal) << QString::fromLatin1(literal) << instant;
    };
    row("2026-11-21T10:00:00Z", utc(10));
    row("2026-11-21T10:00:00+02:00", utc(8));
    row("2026-11-21T10:00:00-05:30", utc(15, 30));
    row("2026-11-21T10:00:00", utc(15));
    row("2026-11-21T10:00:00.250Z", utc(10, 0, 0, 250));
    row("2026-11-21T10:00:00.250+02:00", utc(8, 0, 0, 250));
    row("1969-12-31T23:59:59Z", QDateTime(QDate(1969, 12, 31), QTime(23, 59, 59), Qt::UTC));
    row("1900-01-01T00:00:00+01:00", QDateTime(QDate(1899, 12, 31), QTime(23, 0), Qt::UTC));
}

void TestDateTimes::sameInstantComesBack()
{
    QFETCH(QString, literal);
    QFETCH(QDateTime, instant);
    const ScratchStore store;
    VERIFY_DONE(insert(store, QStringLiteral("a"), QStringLiteral("\"%1\"^^xsd:dateTime").arg(literal)));
    const auto result = store.select(QStringLiteral("SELECT ?d { ?s nie:contentCreated ?d }"));
    VERIFY_DONE(result);
    QVERIFY(result->next());
    QCOMPARE(result->value(0).userType(), int(QMetaType::QDateTime));
    QCOMPARE(result->value(0).toDateTime().toUTC(), instant);
}

void TestDateTimes::boundValueComesBack_data()
{
    QTest::addColumn<int>("form");
    QTest::newRow("UTC") << 0;
    QTest::newRow("offset") << 1;
    QTest::newRow("local time") << 2;
}

void TestDateTimes::boundValueComesBack()
{
    QFETCH(int, form);
    const QDateTime instant = utc(10, 20, 30);
    const QDateTime value = form == 0 ? instant
        : form == 1                   ? instant.toOffsetFromUtc(19800)
                                      : instant.toLocalTime();

    const ScratchStore store;
    QSparqlQuery query(QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:contentCreated ?:date }"),
                       QSparqlQuery::InsertStatement);
    query.bindValue(QStringLiteral("date"), value);
    const ScratchStore::Result inserted(store.connection().exec(query));
    VERIFY_DONE(inserted);
    const auto result = store.select(QStringLiteral("SELECT ?d { ?s nie:contentCreated ?d }"));
    QVERIFY(result->next());
    QCOMPARE(result->value(0).toDateTime().toUTC(), instant);
}

void TestDateTimes::orderIsThatOfTheInstants()
{
    const ScratchStore store;
    fill(store);
    const QString frame = QStringLiteral("SELECT ?t { ?s nie:title ?t ; nie:contentCreated ?d } ORDER BY %1");
    QCOMPARE(store.rows(frame.arg(QStringLiteral("?d"))).join(QString()), QStringLiteral("gabcdef"));
    QCOMPARE(store.rows(frame.arg(QStringLiteral("DESC(?d)"))).join(QString()), QStringLiteral("fedcbag"));
}

void TestDateTimes::comparisonIsThatOfTheInstants()
{
    const ScratchStore store;
    fill(store);
    QSparqlQuery query(QStringLiteral(
        "SELECT ?t { ?s nie:title ?t ; nie:contentCreated ?d FILTER(?d > ?:date) } ORDER BY ?t"));
    for (const QDateTime &moment : {utc(11), utc(11).toOffsetFromUtc(-3600), utc(11).toLocalTime()}) {
        query.bindValue(QStringLiteral("date"), moment);
        QCOMPARE(store.rows(query.preparedQueryText()).join(QString()), QStringLiteral("ef"));
    }
}

void TestDateTimes::sameInstantIsTheSameValue()
{
    const ScratchStore store;
    const QString insertCreated = QStringLiteral("INSERT { <urn:l> a nie:DataObject ; nie:created %1 }");
    VERIFY_DONE(
        store.update(insertCreated.arg(QStringLiteral("\"2026-11-21T10:00:00+02:00\"^^xsd:dateTime"))));
    // The same instant in another form is the same value. Another instant is a second value.
    VERIFY_DONE(store.update(insertCreated.arg(QStringLiteral("\"2026-11-21T08:00:00Z\"^^xsd:dateTime"))));
    VERIFY_DONE(store.update(insertCreated.arg(QStringLiteral("\"2026-11-21T03:00:00\"^^xsd:dateTime"))));
    const auto other =
        store.update(insertCreated.arg(QStringLiteral("\"2026-11-21T08:00:01Z\"^^xsd:dateTime")));
    VERIFY_REFUSED(other, TransactionError);
}

void TestDateTimes::untypedTextIsLocalTime()
{
    const ScratchStore store;
    VERIFY_DONE(insert(store, QStringLiteral("a"), QStringLiteral("\"2026-11-21T10:00:00\"")));
    const auto result = store.select(QStringLiteral("SELECT ?d { ?s nie:contentCreated ?d }"));
    QVERIFY(result->next());
    QCOMPARE(result->value(0).toDateTime().toUTC(), utc(15));
}

QTEST_GUILESS_MAIN(TestDateTimes)
#include "tst_datetimes.moc"
