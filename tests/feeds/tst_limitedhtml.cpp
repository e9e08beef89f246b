// SPDX-License-Identifier: LGPL-2.1-or-later
#include <limitedhtml.h>

#include <QtTest>

using namespace Tidel;

class TestLimitedHtml : public QObject
{
    Q_OBJECT

private slots:
    void beginnings_data();
    void beginnings();
    void everySizeIsSound();
    void hostileTexts_data();
    void hostileTexts();
};

void TestLimitedHtml::beginnings_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("beginning");

    QTest::newRow("empty") << "" << 0 << "";
    QTest::newRow("fits") << "<b>bold</b>" << 11 << "<b>bold</b>";
    QTest::newRow("text") << "abcdef" << 4 << "abcd";
    QTest::newRow("within a character") << QString::fromUtf8("ab\u20ac") << 4 << "ab";
    QTest::newRow("within two units") << QString::fromUtf8("ab\U0001f600") << 5 << "ab";
    QTest::newRow("within an entity") << "abc&amp;d" << 6 << "abc";
    QTest::newRow("after an entity") << "abc&amp;d" << 8 << "abc&amp;";
    QTest::newRow("ampersand long before") << "a & b is what one reads in a title of some length" << 40
                                           << "a & b is what one reads in a title of so";
    QTest::newRow("within a tag") << "ab<img alt='x'>cd" << 10 << "ab";
    QTest::newRow("within a comment") << "ab<!-- x --> cd" << 10 << "ab";
    QTest::newRow("within a script") << "ab<script>x</script>cd" << 15 << "ab";
    QTest::newRow("open element") << "<b>abcdef</b>" << 10 << "<b>abc</b>";
    QTest::newRow("no room for its end") << "ab<b>cd</b>" << 8 << "ab";
    QTest::newRow("open elements") << "<div><b>abcdefgh</b></div>" << 24 << "<div><b>abcdef</b></div>";
    QTest::newRow("closed elements") << "<b>a</b><i>bcdefgh</i>" << 18 << "<b>a</b><i>bcd</i>";
    QTest::newRow("elements closed by another") << "<div><b>a</div>bcdefgh" << 19 << "<div><b>a</div>bcde";
    QTest::newRow("elements that need no end") << "<p>a<br>bcdef" << 11 << "<p>a<br>bcd";
    QTest::newRow("no tag") << "a < bcdef" << 6 << "a < bc";
    QTest::newRow("another end tag") << "<b>a</i>bcdefgh" << 14 << "<b>a</i>bc</b>";
}

void TestLimitedHtml::beginnings()
{
    QFETCH(QString, html);
    QFETCH(int, size);
    QTEST(limitedHtml(html, size), "beginning");
}

void TestLimitedHtml::everySizeIsSound()
{
    const QString html =
        QString::fromUtf8("<div class='a></b'>\u20ac &lt; <i>x<b>y</b>\U0001f600</i><br/>&#8364;z</div>");
    for (int size = 0; size < html.toUtf8().size(); ++size) {
        const QString beginning = limitedHtml(html, size);
        QVERIFY2(beginning.toUtf8().size() <= size, qPrintable(beginning));
        QVERIFY2(!beginning.contains(QChar::ReplacementCharacter), qPrintable(beginning));
        for (const char *name : {"div", "i", "b"})
            QCOMPARE(beginning.count(QString("</%1>").arg(name)),
                     beginning.count(QRegularExpression(QString("<%1[ >]").arg(name))));
        QCOMPARE(beginning.count('&'), beginning.count(';'));
    }
}

void TestLimitedHtml::hostileTexts_data()
{
    QTest::addColumn<QString>("pattern");

    for (const char *pattern :
         {"<b>", "</b>", "<b></i>", "<", "&", "<!--", "<script>", "<a b='", "&amp;", "<p>"})
        QTest::newRow(pattern) << QString(pattern);
}

// Ends within a second. It would take minutes if the time grew with the square of the size.
void TestLimitedHtml::hostileTexts()
{
    QFETCH(QString, pattern);
    constexpr int size = 1024 * 1024;
    const QString beginning = limitedHtml(pattern.repeated(4 * size / pattern.size()), size);
    QVERIFY(beginning.toUtf8().size() <= size);
}

QTEST_GUILESS_MAIN(TestLimitedHtml)
#include "tst_limitedhtml.moc"
