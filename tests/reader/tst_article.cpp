// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/article.h>

#include <QtTest>

using namespace Tidel;

namespace {

const QUrl base("https://example.org/blog/post.html");

/// Returns a line for each block, such as "P >> * text" for the first paragraph of an item in two quotations.
QString dump(const Article &article)
{
    static const char *const kinds[] = {"P", "H", "C", "R", "L"};
    QStringList lines;
    for (const ArticleBlock &block : article.blocks) {
        QStringList parts{kinds[block.kind]};
        parts << QString(block.quotes, '>') << QString(block.lists, '-') << block.marker << block.text
              << block.cells.join('|');
        parts.removeAll(QString());
        lines.append(parts.join(' ').replace('\n', "\\n"));
    }
    for (const ArticleLink &link : article.links)
        lines.append((link.isPicture ? "picture " : "link ") + link.link.toString());
    return lines.join('\n');
}

} // namespace

class TestArticle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blocks_data();
    void blocks();
    void noControlCharacters();
    void deepNesting_data();
    void deepNesting();
    void formattingIsNotRepeated();
    void manyUnclosedParagraphsStayApart();
};

void TestArticle::blocks_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *html, const char *expected) {
        QTest::newRow(*html ? html : "nothing") << QString::fromUtf8(html) << QString::fromUtf8(expected);
    };
    row("", "");
    row("plain text", "P plain text");
    row(" a \n\t <b>b</b>  c ", "P a b c");
    row("a &lt;b&gt; &amp; caf&eacute;", "P a <b> & caf\u00e9");
    row("<p>a</p>\n<p>b</p>", "P a\nP b");
    row("<p>a<p>b", "P a\nP b");
    row("<div><div>a</div>b</div>", "P a\nP b");
    row("a<br>b<br/><br/>c<br>", "P a\\nb\\n\\nc");
    row("<br><br>a", "P a");
    row("a\u2028b", "P a b");
    row("<h2>Title</h2>text", "H Title\nP text");
    row("<blockquote>a<blockquote>b</blockquote></blockquote>c", "P > a\nP >> b\nP c");
    row("He said <q>yes</q>.", "P He said \u201cyes\u201d.");
    row("<ul><li>a<li>b</ul>c", "P - \u2022 a\nP - \u2022 b\nP c");
    row("<ol><li>a<li>b</ol>", "P - 1. a\nP - 2. b");
    row("<ol start=5><li>a</ol>", "P - 5. a");
    row("<ol start=-5><li>a</ol>", "P - 1. a");
    row("<ol start=x><li>a</ol>", "P - 1. a");
    row("<ol><li>a<ul><li>b</ul>c<li>d</ol>", "P - 1. a\nP -- \u2022 b\nP - c\nP - 2. d");
    row("<ul><li><p>a</p><p>b</p></li></ul>", "P - \u2022 a\nP - b");
    row("<ul><li></li><li>b</ul>", "P - \u2022 b");
    row("<li>a", "P - a");
    row("<dl><dt>a<dd>b</dl>", "P a\nP - b");
    row("<pre>  a\n\tb  c\n\n</pre>d", "C   a\\n    b  c\nP d");
    row("<pre><code>\n\na<br>b</code></pre>", "C a\\nb");
    row("<hr>a", "L\nP a");
    row("<table><tr><th>a<th>b<tr><td>c<td><p>d</p><p>e</p></table>", "R a|b\nR c|d e");
    row("<table><caption>t</caption><tr><td>a</table>", "P t\nP a");
    row("<table><tr><td><table><tr><td>a<td>b</table><td>c</table>", "R a b|c");
    row("<table><tr><td><hr>a<td></table>", "R a|");
    row("a<script>b</script><style>c</style><!-- d --><form>e<select><option>f</select></form>", "P ae");
    row("<a href=\"x.html\">here</a> and <a href=\"//other.example/\">there</a>",
        "P here [1] and there [2]\nlink https://example.org/blog/x.html\nlink https://other.example/");
    row("<a href=x>a</a> <a href=x>b</a>", "P a [1] b [1]\nlink https://example.org/blog/x");
    row("<a href=\"#note\">note</a>", "P note");
    row("<a href=\"javascript:alert(1)\">a</a>", "P a");
    row("<a name=x>a</a>", "P a");
    row("<a href=x></a>", "P [1]\nlink https://example.org/blog/x");
    row("<img src=a.png alt=\"A  cat\">", "P (picture: A cat) [1]\npicture https://example.org/blog/a.png");
    row("<img src=a.png>", "P (picture) [1]\npicture https://example.org/blog/a.png");
    row("<img src=a.png width=1 height=1>", "");
    row("<img src=\"data:image/png;base64,AAAA\">a", "P a");
    row("<a href=a.png><img src=a.png></a>", "P (picture) [1]\npicture https://example.org/blog/a.png");
    row("<video><source src=v.mp4></video>", "P (video) [1]\nlink https://example.org/blog/v.mp4");
    row("<audio src=a.mp3></audio>", "P (audio) [1]\nlink https://example.org/blog/a.mp3");
    row("<iframe src=\"https://video.example/1\">no frames</iframe>",
        "P (video) [1]\nlink https://video.example/1");
    row("a\x1b[0mb", "P a[0mb");
    row("text <b", "P text");
}

void TestArticle::blocks()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(dump(Article::fromHtml(html, base)), expected);
}

void TestArticle::noControlCharacters()
{
    const Article article = Article::fromHtml("<p>a\x1b[31m&#27;[0m&#x9b;b</p><pre>\x07&#7;c</pre>"
                                              "<img src=x alt=\"&#27;]0;d\"><a href=\"y\x1b\">e</a>");
    for (const ArticleBlock &block : article.blocks) {
        for (const QChar c : block.text)
            QVERIFY2(c == '\n' || c.category() != QChar::Other_Control, qPrintable(block.text));
    }
}

void TestArticle::deepNesting_data()
{
    QTest::addColumn<QString>("tag");
    QTest::newRow("div") << "<div>";
    QTest::newRow("bold") << "<b>";
    QTest::newRow("links") << "<a href=x>";
    QTest::newRow("quotations") << "<blockquote>";
    QTest::newRow("lists") << "<ul><li>";
    QTest::newRow("tables") << "<table><tr><td>";
    QTest::newRow("paragraphs") << "<p>";
    QTest::newRow("items") << "<li>";
    QTest::newRow("numbered") << "<font size=%1>";
    QTest::newRow("ends") << "</div>";
    QTest::newRow("ends of others") << "<div></x>";
    QTest::newRow("items in items") << "<li><dd>";
    QTest::newRow("overlapping tables") << "<div><table></div></table>";
    QTest::newRow("quoted ends") << "<div title=\"</\">";
}

// Without a bound, some of these texts take minutes or exhaust the stack.
void TestArticle::deepNesting()
{
    QFETCH(QString, tag);
    QString html;
    for (int i = 0; i < 100000; ++i)
        html += tag.contains("%1") ? tag.arg(i) : tag;
    const Article article = Article::fromHtml(html + "text");
    QCOMPARE(article.blocks.size(), 1);
    QVERIFY(article.blocks.first().text.contains("text") || article.blocks.first().cells.contains("text"));
}

// A parser repeats open elements in each paragraph. Without a bound, this takes gigabytes.
void TestArticle::formattingIsNotRepeated()
{
    QString html = "<p>";
    for (int i = 0; i < 100; ++i)
        html += QString("<b class=%1><i class=%1>").arg(i);
    QCOMPARE(Article::fromHtml(html + QString("<p>x").repeated(100000)).blocks.size(), 100000);
}

void TestArticle::manyUnclosedParagraphsStayApart()
{
    QString html;
    for (int i = 0; i < 1000; ++i)
        html += "<p>a<ul><li>b<li>c</ul>";
    QCOMPARE(Article::fromHtml(html).blocks.size(), 3000);
}

QTEST_GUILESS_MAIN(TestArticle)
#include "tst_article.moc"
