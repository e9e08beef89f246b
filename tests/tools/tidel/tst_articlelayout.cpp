// SPDX-License-Identifier: LGPL-2.1-or-later
#include <articlelayout.h>

#include <QTest>

#include <clocale>

using namespace Tidel;

class TestArticleLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setlocale(LC_CTYPE, "C.UTF-8"); }
    void words_data();
    void words();
    void blocks_data();
    void blocks();
};

void TestArticleLayout::words_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("lines");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("short") << "one two"
                           << "one two";
    QTest::newRow("exact") << "one two six"
                           << "one two six";
    QTest::newRow("wrapped") << "one two three four"
                             << "one two/three four";
    QTest::newRow("long word") << "a abcdefghijklmnopq b"
                               << "a/abcdefghijklmnopq/b";
    QTest::newRow("wide characters") << QString::fromUtf8("\u6f22\u5b57\u6f22\u5b57\u6f22\u5b57\u6f22\u5b57")
                                     << QString::fromUtf8(
                                            "\u6f22\u5b57\u6f22\u5b57\u6f22/\u5b57\u6f22\u5b57");
}

void TestArticleLayout::words()
{
    QFETCH(QString, text);
    QFETCH(QString, lines);
    QCOMPARE(wrapped(text, 11).join('/'), lines);
}

void TestArticleLayout::blocks_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *html, const QStringList &lines) { QTest::newRow(html) << html << lines; };
    row("", {});
    row("<p>a<p>b", {"a", "", "b"});
    row("<h1>Title</h1>text", {"Title", "-----", "", "text"});
    row("<p>one two three four five", {"one two three four", "five"});
    row("<blockquote>one two three four five</blockquote>", {"> one two three four", "> five"});
    row("<ul><li>one two three four five<li>six</ul>",
        {QString::fromUtf8(" \u2022 one two three"), "   four five", QString::fromUtf8(" \u2022 six")});
    row("<ol start=9><li>a<li>b<li>c</ol>", {"9. a", "10. b", "11. c"});
    row("<ul><li>a<p>b</ul>", {QString::fromUtf8(" \u2022 a"), "", "   b"});
    row("<ul><li>a<ul><li>b</ul></ul>", {QString::fromUtf8(" \u2022 a"), QString::fromUtf8("    \u2022 b")});
    row("<pre>int  a;  // a comment that is long\n  b</pre>", {"int  a;  // a comment that is long", "  b"});
    row("<table><tr><td>a<td>b<tr><td>long<td>c</table>", {"a     b", "long  c"});
    row("<table><tr><td>one two three<td>four five six</table>", {"one two three | four", "five six"});
    row("a<hr>b", {"a", "", "* * *", "", "b"});
    row("<a href=\"https://e.org/\">a</a>", {"a [1]", "", "[1] https://e.org/"});
    row("<img src=\"https://e.org/\">", {"(picture) [1]", "", "[1] (picture) https://e.org/"});
}

void TestArticleLayout::blocks()
{
    QFETCH(QString, html);
    QFETCH(QStringList, lines);
    QCOMPARE(laidOut(Article::fromHtml(html), 20), lines);
}

QTEST_GUILESS_MAIN(TestArticleLayout)
#include "tst_articlelayout.moc"
