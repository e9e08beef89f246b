// SPDX-License-Identifier: LGPL-2.1-or-later
#include <resumepoint.h>

#include <QtTest>

using namespace Tidel;

/// Tests which files can be recognized later. tst_resumeddownloads tests the answers to questions for the
/// rest.
class TestResumePoint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validators_data();
    void validators();
    void addresses_data();
    void addresses();
    void bounds();
};

namespace {

AnswerHead headWith(const QByteArrayList &lines)
{
    AnswerHead head;
    for (const QByteArray &line : lines)
        head.addLine(line);
    return head;
}

} // namespace

void TestResumePoint::validators_data()
{
    QTest::addColumn<QByteArrayList>("headers");
    QTest::addColumn<QByteArray>("validator");

    const QByteArray size = "Content-Length: 10";
    const QByteArray modified = "Last-Modified: Tue, 03 Nov 2026 12:00:00 GMT";
    const QByteArray date = modified.mid(15);
    const QByteArray inTheSameSecond = "Date: Tue, 03 Nov 2026 12:00:00 GMT";
    const QByteArray aSecondLater = "Date: Tue, 03 Nov 2026 12:00:01 GMT";
    QTest::newRow("tag") << QByteArrayList{size, "ETag: \"x\""} << QByteArray("\"x\"");
    QTest::newRow("tag and date") << QByteArrayList{size, "ETag: \"x\"", modified, aSecondLater}
                                  << QByteArray("\"x\"");
    QTest::newRow("weak tag") << QByteArrayList{size, "ETag: W/\"x\""} << QByteArray();
    QTest::newRow("weak tag and date")
        << QByteArrayList{size, "ETag: W/\"x\"", modified, aSecondLater} << date;
    QTest::newRow("date") << QByteArrayList{size, modified, aSecondLater} << date;
    QTest::newRow("date of the same second")
        << QByteArrayList{size, modified, inTheSameSecond} << QByteArray();
    QTest::newRow("no clock") << QByteArrayList{size, modified} << QByteArray();
    QTest::newRow("no date") << QByteArrayList{size, "Last-Modified: soon", aSecondLater} << QByteArray();
    QTest::newRow("no size") << QByteArrayList{"ETag: \"x\""} << QByteArray();
    QTest::newRow("no bytes") << QByteArrayList{"Content-Length: 0", "ETag: \"x\""} << QByteArray();
    QTest::newRow("in chunks") << QByteArrayList{size, "ETag: \"x\"", "Transfer-Encoding: chunked"}
                               << QByteArray();
    QTest::newRow("compressed") << QByteArrayList{size, "ETag: \"x\"", "Content-Encoding: gzip"}
                                << QByteArray();
    QTest::newRow("longest") << QByteArrayList{size, "ETag: \"" + QByteArray(1022, 'x') + '"'}
                             << '"' + QByteArray(1022, 'x') + '"';
    QTest::newRow("too long") << QByteArrayList{size, "ETag: \"" + QByteArray(1023, 'x') + '"'}
                              << QByteArray();
}

void TestResumePoint::validators()
{
    QFETCH(QByteArrayList, headers);
    QFETCH(QByteArray, validator);
    const AnswerHead head = headWith(QByteArrayList{"HTTP/1.1 200 OK"} + headers);
    const ResumePoint point = ResumePoint::of(head, QUrl("https://ann:x@example.org/a.mp3?key=1#t=1"));
    QCOMPARE(point.validator, validator);
    QCOMPARE(point.address, QUrl("https://example.org/a.mp3"));
}

void TestResumePoint::addresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isSame");

    QTest::newRow("same") << "https://example.org/a.mp3" << true;
    QTest::newRow("query") << "https://example.org/a.mp3?key=1" << true;
    QTest::newRow("user") << "https://ann:x@example.org/a.mp3" << true;
    QTest::newRow("scheme") << "http://example.org/a.mp3" << false;
    QTest::newRow("host") << "https://example.com/a.mp3" << false;
    QTest::newRow("port") << "https://example.org:444/a.mp3" << false;
    QTest::newRow("path") << "https://example.org/b.mp3" << false;
}

void TestResumePoint::addresses()
{
    QFETCH(QString, address);
    QFETCH(bool, isSame);
    ResumePoint point;
    point.address = QUrl("https://example.org/a.mp3");
    QCOMPARE(point.isOf(QUrl(address)), isSame);
}

void TestResumePoint::bounds()
{
    ResumePoint point{QUrl("https://example.org/a.mp3"), "\"x\"", 10, 0};
    QVERIFY(!point.isValid());
    point.offset = 1;
    QVERIFY(point.isValid());
    point.offset = 9;
    QVERIFY(point.isValid());
    point.offset = 10;
    QVERIFY(!point.isValid());
    point.offset = 9;
    point.validator.clear();
    QVERIFY(!point.isValid());
}

QTEST_GUILESS_MAIN(TestResumePoint)
#include "tst_resumepoint.moc"
