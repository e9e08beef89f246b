// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/pageicons.h>

#include <QtTest>

using namespace Tidel;

namespace {

const QUrl page("https://example.org/blog/index.html");

QStringList texts(const QVector<QUrl> &icons)
{
    QStringList lines;
    for (const QUrl &icon : icons)
        lines.append(icon.toString());
    return lines;
}

} // namespace

class TestPageIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ofPage_data();
    void ofPage();
    void hostilePages();
};

void TestPageIcons::ofPage_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const char *html, const QStringList &expected = QStringList()) {
        QTest::newRow(name) << QByteArray(html) << expected;
    };
    row("nothing", "");
    row("other links", "<link rel=stylesheet href=a.png><link rel=mask-icon href=b.png><link href=c.png>");
    row("one", "<html><head><title>x</title><LINK REL='Shortcut Icon' HREF='/a.png?x=1&amp;y=2'></head>",
        {"https://example.org/a.png?x=1&y=2"});
    row("relative", "<link rel=icon href=a.png>", {"https://example.org/blog/a.png"});
    row("base", "<base href=https://example.net/b/><link rel=icon href=a.png>",
        {"https://example.net/b/a.png"});
    row("the next to 64 pixels comes first",
        "<link rel=icon sizes=16x16 href=a><link rel=icon sizes='512x512' href=b>"
        "<link rel=icon sizes='20x20 48X48' href=c>",
        {"https://example.org/blog/c", "https://example.org/blog/a", "https://example.org/blog/b"});
    row("sizes that are not named", "<link rel=apple-touch-icon href=a><link rel=icon href=b>",
        {"https://example.org/blog/b", "https://example.org/blog/a"});
    row("each once", "<link rel=icon href=a><link rel=icon href=a>", {"https://example.org/blog/a"});
    row("three at most",
        "<link rel=icon href=a><link rel=icon href=b><link rel=icon href=c><link rel=icon href=d>",
        {"https://example.org/blog/a", "https://example.org/blog/b", "https://example.org/blog/c"});
    row("no drawings",
        "<link rel=icon type=image/svg+xml href=a><link rel=icon href=b.svg?x><link rel=icon href=c>",
        {"https://example.org/blog/c"});
    row("only on the web",
        "<link rel=icon href=file:///etc/passwd><link rel=icon href=javascript:1>"
        "<link rel=icon href=data:image/png,x><link rel=icon href=ftp://example.org/a>");
    row("cut", "<link rel=icon href=a><link rel=icon hr", {"https://example.org/blog/a"});
    row("in scripts and comments", "<!--<link rel=icon href=a>--><script>'<link rel=icon href=b>'</script>");
    row("sizes that are none", "<link rel=icon sizes='any -5x5 0x0 99999999999x1' href=a>",
        {"https://example.org/blog/a"});
}

void TestPageIcons::ofPage()
{
    QFETCH(QByteArray, html);
    QFETCH(QStringList, expected);
    QCOMPARE(texts(iconsOfPage(html, page, 64)), expected);
}

void TestPageIcons::hostilePages()
{
    const QByteArray icon = "<link rel=icon href=a>";
    const QStringList expected{"https://example.org/blog/a"};
    for (const QByteArray part : {"<b>", "<", "<!--x-->", "<link rel=icon sizes='"}) {
        const QByteArray rest = part.repeated(256 * 1024 / part.size());
        QCOMPARE(texts(iconsOfPage(icon + rest, page, 64)), expected);
    }
    const QByteArray sizes = "<link rel=icon sizes='" + QByteArray("9x9 ").repeated(1000) + "' href=a>";
    QCOMPARE(texts(iconsOfPage(sizes.repeated(60), page, 64)), expected);
}

QTEST_GUILESS_MAIN(TestPageIcons)
#include "tst_pageicons.moc"
