// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/cleantext.h>
#include <TidelReader/htmltext.h>

#include <QtTest>

using namespace Tidel;

class TestHtmlText : public QObject
{
    Q_OBJECT

private slots:
    void plain_data();
    void plain();
    void hostileTextsAreRead_data();
    void hostileTextsAreRead();
    void anyTextIsAccepted();
    void words_data();
    void words();
    void wordsOfLongTexts();
    void clean();
};

void TestHtmlText::plain_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *html, const char *expected) {
        QTest::newRow(*html ? html : "nothing") << QString::fromUtf8(html) << QString::fromUtf8(expected);
    };
    row("", "");
    row("plain", "plain");
    row(" a \n\t b ", "a b");
    row("a\xc2\xa0 b", "a b");
    row("a\x01 b\x7f", "a b");

    row("a<b>b</b>c", "abc");
    row("<p>a</p><p>b</p>", "a b");
    row("<P CLASS=x>a</P >b", "a b");
    row("a<br>b<br/>c<BR />d", "a b c d");
    row("<ul><li>a<li>b</ul>c", "a b c");
    row("<td>a</td><td>b</td>", "a b");
    row("a<img src=x alt=\"picture\">b", "ab");
    row("a<unknown-element>b", "ab");
    row("<a title=\"1 > 0\">b</a>", "b");
    row("<a title='a>b' rel = \"c>d\">b</a>", "b");
    row("<a title=it's>b</a>'", "b'");
    row("<a \">b</a>\"", "b\"");
    row("text <b", "text");
    row("text <a href=\"unclosed>lost", "text");

    row("a < b > c", "a < b > c");
    row("I <3 you", "I <3 you");
    row("a <<b>b</b>", "a <b");
    row("a <", "a <");
    row("&lt;b&gt;", "<b>");
    row("<b>&lt;</b>script>x", "<script>x");
    row("caf&eacute; &amp; &#8220;tea&#x201D;", "caf\xc3\xa9 & \xe2\x80\x9ctea\xe2\x80\x9d");
    row("a&nbsp;b", "a b");
    row("AT&T & co &amp co", "AT&T & co & co");
    row("&unknown; &#;", "&unknown; &#;");
    row("&#150;", "\xe2\x80\x93");
    row("&#128517;", "\xf0\x9f\x98\x85");
    row("a&#1;b", "ab");
    row("&#0;&#xd800;", "\xef\xbf\xbd\xef\xbf\xbd");
    row("&amp;amp;", "&amp;");
    row("&notit; &amplt; &#65x &&amp; &#x1F600;&#x301; &NotEqualTilde; &bogus; a&",
        "\xc2\xacit; &lt; Ax && \xf0\x9f\x98\x80\xcc\x81 \xe2\x89\x82\xcc\xb8 &bogus; a&");
    // Among much text, references are resolved by themselves.
    const QByteArray much = QByteArray("<p>many words</p>").repeated(40);
    const QByteArray words = QByteArray("many words ").repeated(40);
    row((much + "&notit; &amplt; &#65x &&amp; &#x1F600;&#x301; &NotEqualTilde; &bogus; a&").constData(),
        (words + "\xc2\xacit; &lt; Ax && \xf0\x9f\x98\x80\xcc\x81 \xe2\x89\x82\xcc\xb8 &bogus; a&")
            .constData());
    row("&nbsp;&#32;&lt;b&gt;&NewLine;x", "<b> x");
    row("&", "&");

    row("a<!-- <p>no</p> -->b", "ab");
    row("a<!-->b<!--->c", "abc");
    row("a<!doctype html>b<?php no ?>c</ no>d", "abcd");
    row("a<!-- unclosed <p>", "a");
    row("a<script>if (a < b) '<p>no</p>'</script>b", "ab");
    row("a<SCRIPT>no</scripts></Script\n>b", "ab");
    row("a<script src=x />b", "ab");
    row("a<style>p{}</style>b<iframe src=x>no</iframe>c<template>no</template>d", "abcd");
    row("a<script>unclosed <p>", "a");
    row("<html><head><title>no</title></head><body>a</body></html>", "a");
    row("a<noscript>b</noscript>", "ab");
    row("a</script>b", "ab");
    row("a<scripted>b", "ab");
}

void TestHtmlText::plain()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(plainText(html), expected);
}

void TestHtmlText::hostileTextsAreRead_data()
{
    QTest::addColumn<QString>("beginning");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *beginning, const char *part, const char *end,
                        const char *expected) {
        QTest::newRow(name) << beginning << part << end << expected;
    };
    row("nested formatting", "a", "<b>", "b", "ab");
    row("nested blocks", "a", "<div>", "b", "a b");
    row("end tags", "a", "</i>", "b", "ab");
    row("paragraphs", "<b><i><u>a", "<p>", "b", "a b");
    row("tables", "a", "<table><tr><td>", "b", "a b");
    row("attributes", "a<b", " x=1", ">b", "ab");
    row("unclosed attribute", "a", "<a b='", "", "a");
    row("unclosed comment", "a", "<!--", "b", "a");
    row("unclosed script", "a", "<script>", "b", "a");
    row("ends of scripts", "a<script>", "</scripts>", "b</script>c", "ac");
    row("references", "a", "&#x20;", "b", "a b");
    row("blanks", "a", " ", "b", "a b");
}

// The time would be minutes if it grew with the square of the length.
void TestHtmlText::hostileTextsAreRead()
{
    QFETCH(QString, beginning);
    QFETCH(QString, part);
    QFETCH(QString, end);
    QFETCH(QString, expected);
    QCOMPARE(plainText(beginning + part.repeated(200000) + end), expected);
}

// No text may crash the program, and the result is clean.
void TestHtmlText::anyTextIsAccepted()
{
    const QStringList parts{"<", "</", ">", "!", "--", "<!--",        "script",     "p",
                            "=", "\"", "'", "&", "#",  ";",           "x",          "1",
                            " ", "lt", "/", "?", "a",  QChar(0xd83d), QChar(0xde05)};
    QRandomGenerator random(1);
    for (int round = 0; round < 20000; ++round) {
        QString html;
        for (int length = random.bounded(30); length > 0; --length)
            html += parts.at(random.bounded(parts.size()));
        const QString text = plainText(html);
        QCOMPARE(text, cleanText(text).simplified());
    }
}

void TestHtmlText::words_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");

    const QString ellipsis(QChar(0x2026));
    QTest::newRow("nothing") << "<img src=x>"
                             << "";
    QTest::newRow("short") << "<p>Beans &amp; poles</p>"
                           << "Beans & poles";
    QTest::newRow("80 characters") << QString(80, 'a') << QString(80, 'a');
    QTest::newRow("long") << QString("word ").repeated(30)
                          << QString("word ").repeated(15) + "word" + ellipsis;
    QTest::newRow("one word") << QString(200, 'a') << QString(79, 'a') + ellipsis;
    QTest::newRow("pair at the end") << QString(78, 'a') + QString::fromUtf8("\xf0\x9f\x98\x85")
            + QString(20, 'a') << QString(78, 'a') + ellipsis;
    QTest::newRow("no blanks") << QString(QChar(0x6f22)).repeated(100)
                               << QString(QChar(0x6f22)).repeated(79) + ellipsis;
}

void TestHtmlText::words()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(firstWords(html), expected);
    QVERIFY(firstWords(html).size() <= 80);
}

void TestHtmlText::wordsOfLongTexts()
{
    QCOMPARE(firstWords(QString(19000, ' ') + "a <b>b</b>"), QString("a b"));
    QCOMPARE(firstWords(QString(20000, ' ') + 'a'), QString());
}

void TestHtmlText::clean()
{
    QCOMPARE(cleanText("a\tb\r\nc"), QString("a\tb\r\nc"));
    QCOMPARE(cleanText(QString("a\x01\x1f\x7f") + QChar(0xfffe) + QChar(0xffff) + QChar(0xfdd0) + "b"),
             QString("ab"));
    QCOMPARE(cleanText(QString(QChar(0xd83d)) + "a" + QChar(0xde05)), QString("a"));
    const QString pair = QString::fromUtf8("\xf0\x9f\x98\x85");
    QCOMPARE(cleanText(pair + QChar(0xd83d)), pair);
}

QTEST_GUILESS_MAIN(TestHtmlText)
#include "tst_htmltext.moc"
