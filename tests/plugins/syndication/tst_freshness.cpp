// SPDX-License-Identifier: LGPL-2.1-or-later
#include <freshness.h>

#include <QtTest>

using namespace Tidel;

namespace {

// Sun, 22 Nov 2026 12:00:00 GMT
constexpr qint64 now = 1795348800;
constexpr qint64 week = 7 * 86400;

} // namespace

class TestFreshness : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secondsToWait_data();
    void secondsToWait();
};

void TestFreshness::secondsToWait_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArrayList>("headers");
    QTest::addColumn<qint64>("expected");
    const auto add = [](const char *name, int status, const QByteArrayList &headers, qint64 expected) {
        QTest::newRow(name) << status << headers << expected;
    };
    add("nothing", 200, {}, 0);
    add("age", 200, {"Cache-Control: public, max-age=600"}, 600);
    add("unchanged", 304, {"Cache-Control: max-age=600"}, 600);
    add("quoted and large letters", 200, {"CACHE-CONTROL: Max-Age=\"600\""}, 600);
    add("age so far", 200, {"Cache-Control: max-age=600", "Age: 200"}, 400);
    add("older than it may be", 200, {"Cache-Control: max-age=600", "Age: 700"}, 0);
    add("shared caches", 200, {"Cache-Control: s-maxage=600"}, 0);
    add("no cache", 200, {"Cache-Control: max-age=600, no-cache"}, 0);
    add("age before date", 200, {"Cache-Control: max-age=60", "Expires: Sun, 22 Nov 2026 13:00:00 GMT"}, 60);
    add("no age", 200, {"Cache-Control: max-age=0", "Expires: Sun, 22 Nov 2026 13:00:00 GMT"}, 0);
    add("date", 200, {"Expires: Sun, 22 Nov 2026 13:00:00 GMT"}, 3600);
    add("date in the past", 200, {"Expires: Sun, 22 Nov 2026 11:00:00 GMT"}, 0);
    add("no date", 200, {"Expires: 0"}, 0);
    add("clock of the server", 200,
        {"Date: Thu, 22 Nov 2029 12:59:00 GMT", "Expires: Thu, 22 Nov 2029 13:00:00 GMT"}, 60);
    add("too long", 200, {"Cache-Control: max-age=315360000"}, week);
    add("date far away", 200, {"Expires: Fri, 31 Dec 9999 23:59:59 GMT"}, week);
    add("no number", 200, {"Cache-Control: max-age=99999999999999999999"}, 0);
    add("negative", 200, {"Cache-Control: max-age=-5"}, 0);
    add("retry", 503, {"Retry-After: 120"}, 120);
    add("retry at a time", 503, {"Retry-After: Sun, 22 Nov 2026 12:10:00 GMT"}, 600);
    add("retry, too long", 503, {"Retry-After: 9999999999"}, week);
    add("refusals are not fresh", 503, {"Cache-Control: max-age=600"}, 0);
    add("too many requests", 429, {}, 3600);
    add("too many requests, retry", 429, {"Retry-After: 5"}, 5);
    add("no answer", 0, {}, 0);
}

void TestFreshness::secondsToWait()
{
    QFETCH(int, status);
    QFETCH(QByteArrayList, headers);
    QFETCH(qint64, expected);
    AnswerHead head;
    if (status > 0)
        head.addLine("HTTP/1.1 " + QByteArray::number(status) + " Text\r\n");
    for (const QByteArray &header : qAsConst(headers))
        head.addLine(header + "\r\n");
    QCOMPARE(Tidel::secondsToWait(head, now), expected);
}

QTEST_GUILESS_MAIN(TestFreshness)
#include "tst_freshness.moc"
