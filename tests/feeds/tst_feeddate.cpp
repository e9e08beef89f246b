// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feeddate.h>

#include <QtTest>

class TestFeedDate : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void resultIsUtc();
    void commonFormatsAreReadAlike();
    void anyTextIsAccepted();
};

void TestFeedDate::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *text, const char *expected) {
        QTest::newRow(*text ? text : "nothing") << QString::fromUtf8(text) << QString(expected);
    };
    row("Tue, 03 Nov 2026 10:00:00 GMT", "2026-11-03T10:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 +0200", "2026-11-03T08:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 -03:30", "2026-11-03T13:30:00Z");
    row("Tue, 03 Nov 2026 10:00:00 GMT+0200", "2026-11-03T08:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 EDT", "2026-11-03T14:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 pst", "2026-11-03T18:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 Nowhere", "2026-11-03T10:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00", "2026-11-03T10:00:00Z");
    row("Tue, 03 Nov 2026", "2026-11-03T00:00:00Z");
    row("3 nov 2026 9:05", "2026-11-03T09:05:00Z");
    row("Tuesday,3  November  2026   10:00:00.75 UT", "2026-11-03T10:00:00Z");
    row("03 Nov 26 1000 EST", "2026-11-03T15:00:00Z");
    row("03 Nov 70 10:00 GMT", "1970-11-03T10:00:00Z");
    row("03 Nov 102 10:00 GMT", "2002-11-03T10:00:00Z");
    row("Tue, 03-Nov-2026 10:00:00 GMT", "2026-11-03T10:00:00Z");
    row("Tue Nov  3 10:00:00 2026", "2026-11-03T10:00:00Z");
    row("Tue Nov  3 10:00:00 CET 2026", "2026-11-03T09:00:00Z");
    row("November 3, 2026 12:30 AM", "2026-11-03T00:30:00Z");
    row("Nov 3, 2026 12:30 PM", "2026-11-03T12:30:00Z");
    row("Tue, 03 Nov 2026 10:00:00 +0100 (CET)", "2026-11-03T09:00:00Z");
    row("Tue, 03 Nov 2026 24:00:00 GMT", "2026-11-04T00:00:00Z");
    row("Thu, 31 Dec 2026 23:59:60 GMT", "2026-12-31T23:59:59Z");
    row("Sat, 02 Jan 1965 03:04:05 GMT", "1965-01-02T03:04:05Z");
    row("Thu, 29 Feb 2024 00:00:00 GMT", "2024-02-29T00:00:00Z");

    row("2026-11-03T10:00:00Z", "2026-11-03T10:00:00Z");
    row("2026-11-03T10:00:00+05:30", "2026-11-03T04:30:00Z");
    row("2026-11-03T10:00:00.123456789-08", "2026-11-03T18:00:00Z");
    row("2026-11-03t10:00z", "2026-11-03T10:00:00Z");
    row("2026-11-03 10:00:00 +0000", "2026-11-03T10:00:00Z");
    row("2026-11-03 10:00:00 UTC", "2026-11-03T10:00:00Z");
    row("2026/11/3 10:00", "2026-11-03T10:00:00Z");
    row("2026-11-03", "2026-11-03T00:00:00Z");
    row("2026-11", "2026-11-01T00:00:00Z");
    row("2026", "2026-01-01T00:00:00Z");
    row("  2026-11-03T10:00:00Z\n", "2026-11-03T10:00:00Z");
    row("1901-01-01T00:00:00Z", "1901-01-01T00:00:00Z");
    row("0001-01-01T00:00:00Z", "0001-01-01T00:00:00Z");
    row("9999-12-31T23:59:59Z", "9999-12-31T23:59:59Z");

    row("2026-11-03T10:00:00.5Z", "2026-11-03T10:00:00Z");
    row("2026-11-03T10:00:00-0330", "2026-11-03T13:30:00Z");
    row("2026-11-03T10:00:00", "2026-11-03T10:00:00Z");
    row("2026-11-03T10:00:00GMT", "2026-11-03T10:00:00Z");
    row("2026-11-03 10:00:00 PM +0200", "2026-11-03T20:00:00Z");
    row("2026-11-03 10:00:00 am", "2026-11-03T10:00:00Z");
    row("2026-11-03, 10:00", "2026-11-03T10:00:00Z");
    row("2026-11-03T10:00:00,75Z", "2026-11-03T10:00:00Z");
    row("2026-11-03T10:00:00+01:00[Europe/Berlin]", "2026-11-03T09:00:00Z");
    row("2026.11.03", "2026-11-03T00:00:00Z");
    row("20261103", "2026-11-03T00:00:00Z");
    row("20261103T100000Z", "2026-11-03T10:00:00Z");
    row("20261103100000", "2026-11-03T10:00:00Z");
    row("2026-307", "2026-11-03T00:00:00Z");
    row("2024-366T10:00Z", "2024-12-31T10:00:00Z");
    row("2026-W45-2", "2026-11-03T00:00:00Z");
    row("2026W452", "2026-11-03T00:00:00Z");
    row("2026-W45", "2026-11-02T00:00:00Z");
    row("2026-W01-1T10:00:00Z", "2025-12-29T10:00:00Z");
    row("1793700000", "2026-11-03T10:00:00Z");
    row("1793700000999", "2026-11-03T10:00:00Z");

    row("Tuesday, 03-Nov-26 10:00:00 GMT", "2026-11-03T10:00:00Z");
    row("3 November 2026, 10:00", "2026-11-03T10:00:00Z");
    row("3rd November 2026 at 10:00", "2026-11-03T10:00:00Z");
    row("3 November 2026 - 10:00", "2026-11-03T10:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 PM", "2026-11-03T22:00:00Z");
    row("Tue, 03 Nov 2026 10:00PM", "2026-11-03T22:00:00Z");
    row("10:00 p.m. Nov 3, 2026", "2026-11-03T22:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 GMT+1", "2026-11-03T09:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 Z", "2026-11-03T10:00:00Z");
    row("Tue, 03 Novexber 2026 10:00:00 GMT", "2026-11-03T10:00:00Z");
    row("Tue, 03 Nov 2026 10:00:00 MEZ", "2026-11-03T09:00:00Z");

    row("11/03/2026 10:00", "2026-11-03T10:00:00Z");
    row("11/3/26 10:00 PM", "2026-11-03T22:00:00Z");
    row("13/11/2026", "2026-11-13T00:00:00Z");
    row("11/13/2026", "2026-11-13T00:00:00Z");
    row("03.11.2026 10:00 Uhr", "2026-11-03T10:00:00Z");
    row("03-11-2026 10:00:00", "2026-11-03T10:00:00Z");
    row("11-13-2026", "2026-11-13T00:00:00Z");

    row("Ter, 03 Fev 2026 10:00:00 GMT", "2026-02-03T10:00:00Z");
    row("Dienstag, 3. M\u00e4rz 2026", "2026-03-03T00:00:00Z");
    row("Di, 13 Okt 2026 10:00:00 +0200", "2026-10-13T08:00:00Z");
    row("mar., 03 nov. 2026 10:00:00 +0100", "2026-11-03T09:00:00Z");
    row("mardi 3 f\u00e9vrier 2026", "2026-02-03T00:00:00Z");
    row("1er ao\u00fbt 2026 10h30", "2026-08-01T10:30:00Z");
    row("3 juin 2026", "2026-06-03T00:00:00Z");
    row("3 juil. 2026", "2026-07-03T00:00:00Z");
    row("3 de enero de 2026", "2026-01-03T00:00:00Z");
    row("mar 3 dic 2026", "2026-12-03T00:00:00Z");
    row("gio, 03 set 2026", "2026-09-03T00:00:00Z");
    row("3 maggio 2026", "2026-05-03T00:00:00Z");
    row("03 out 2026 10:00", "2026-10-03T10:00:00Z");
    row("maandag 2 november 2026", "2026-11-02T00:00:00Z");
    row("2 mrt 2026", "2026-03-02T00:00:00Z");

    row("2026-366", "");
    row("2026-000", "");
    row("2026-W54-1", "");
    row("2026-W00-1", "");
    row("32/01/2026", "");
    row("13/13/2026", "");
    row("3 jui 2026", "");
    row("10am 3 Nov 2026", "");
    row("3 ma 2026", "");
    row("179370000", "");
    row("Tue, 03 Nov 2026 25:00:00 GMT", "");
    row("Tue, 03 Xyz 2026 10:00:00 GMT", "");

    row("9999-12-31T23:59:59-01:00", "");
    row("0001-01-01T00:00:00+01:00", "");
    row("0000-01-01T00:00:00Z", "");
    row("2026-02-29T00:00:00Z", "");
    row("2026-13-01T00:00:00Z", "");
    row("2026-11-03T25:00:00Z", "");
    row("2026-11-03T10:61:00Z", "");
    row("2026-11-03T10:00:00+99:00", "");
    row("2026-11-03T10:00:00Z and more", "");
    row("Tue, 31 Nov 2026 10:00:00 GMT", "");
    row("10:00:00 GMT", "");
    row("03 Nov", "");
    row("yesterday", "");
    row("", "");
}

void TestFeedDate::parse()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(Tidel::parseFeedDate(text).toString(Qt::ISODate), expected);
}

void TestFeedDate::resultIsUtc()
{
    QCOMPARE(Tidel::parseFeedDate("2026-11-03T10:00:00+05:30").timeSpec(), Qt::UTC);
    QCOMPARE(Tidel::parseFeedDate("Tue, 03 Nov 2026 10:00:00 EST").timeSpec(), Qt::UTC);
}

// The common formats have a reader of their own, which a blank at the end leads past.
void TestFeedDate::commonFormatsAreReadAlike()
{
    const QStringList formats{"yyyy-MM-ddTHH:mm:ss", "yyyy-MM-ddTHH:mm:ss.zzz", "ddd, dd MMM yyyy HH:mm:ss ",
                              "ddd, d MMM yyyy HH:mm:ss "};
    const QStringList zones{"Z", "GMT", "+05:30", "-0800", "+00:00", "+9900", "EST", "*0100", "+01:0x"};
    const QLocale english(QLocale::C);
    QRandomGenerator random(1);
    for (int round = 0; round < 2000; ++round) {
        const QDateTime time = QDateTime::fromSecsSinceEpoch(random.generate64() % 4000000000, Qt::UTC);
        const QString text = english.toString(time, formats.at(round % formats.size()))
            + zones.at(random.bounded(zones.size()));
        QCOMPARE(Tidel::parseFeedDate(text), Tidel::parseFeedDate(text + ' '));
    }
    QCOMPARE(Tidel::parseFeedDate("2026-02-29T10:00:00Z"), QDateTime());
    QCOMPARE(Tidel::parseFeedDate("Tue, 31 Nov 2026 10:00:00 GMT"), QDateTime());
}

// No text may crash the program.
void TestFeedDate::anyTextIsAccepted()
{
    const QString characters = QStringLiteral("0123456789 ,:+-/.TZW()[]anovtueGMT\u0660\u0663\n");
    QRandomGenerator random(1);
    for (int round = 0; round < 20000; ++round) {
        QString text;
        for (int length = random.bounded(40); length > 0; --length)
            text += characters.at(random.bounded(characters.size()));
        const QDateTime time = Tidel::parseFeedDate(text);
        if (time.isValid())
            QVERIFY(time.date().year() >= 1 && time.date().year() <= 9999);
    }
    QVERIFY(!Tidel::parseFeedDate(QString(1000000, '1')).isValid());
}

QTEST_GUILESS_MAIN(TestFeedDate)
#include "tst_feeddate.moc"
