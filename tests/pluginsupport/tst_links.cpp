// SPDX-License-Identifier: LGPL-2.1-or-later
#include <links.h>

#include <QtTest>

using namespace Tidel;

namespace {

const QUrl base("https://example.org/blog/index.html");

/// What the store requires of a link, so that it is found again and does not end its place in a statement.
bool isFit(const QString &link)
{
    static const QRegularExpression forbidden("[\\x00-\\x20<>\"{}|^`\\\\\\x7f-\\x{ffff}]");
    return QString::fromLatin1(QUrl::fromUserInput(link).toEncoded()) == link
        && !forbidden.match(link).hasMatch();
}

} // namespace

class TestLinks : public QObject
{
    Q_OBJECT

private slots:
    void clean_data();
    void clean();
    void cleanFile_data();
    void cleanFile();
    void cleanLinksAreFit();
    void relative();
    void linkForItemIsFitAndStable();
    void urnIsFit();
};

void TestLinks::clean_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << "https://example.org/a"
                           << "https://example.org/a";
    QTest::newRow("no path") << "http://example.org"
                             << "http://example.org";
    QTest::newRow("query") << "http://example.org/?a=1&b=2;c"
                           << "http://example.org/?a=1&b=2;c";
    QTest::newRow("around") << " \n\thttps://example.org/a \n"
                            << "https://example.org/a";
    QTest::newRow("wrapped") << "https://example.org/a\n    /b\tc"
                             << "https://example.org/a/bc";
    QTest::newRow("blank inside") << "https://example.org/a b"
                                  << "https://example.org/a%20b";
    QTest::newRow("case") << "HTTPS://EXAMPLE.org/A"
                          << "https://example.org/A";
    QTest::newRow("encoded") << "https://example.org/%E4%BA%80%20x"
                             << "https://example.org/%E4%BA%80%20x";
    QTest::newRow("small hex") << "https://example.org/%e4%ba%80"
                               << "https://example.org/%E4%BA%80";
    QTest::newRow("needless encoding") << "https://example.org/%7Ea%41"
                                       << "https://example.org/~aA";
    QTest::newRow("bad percent") << "https://example.org/100%"
                                 << "https://example.org/100%25";
    QTest::newRow("iri") << QStringLiteral("https://m\u00fcller.example/\u4e80?\u00e4#\u00f6")
                         << "https://xn--mller-kva.example/%E4%BA%80?%C3%A4#%C3%B6";
    QTest::newRow("forbidden") << "https://example.org/<>\"{}|\\^`"
                               << "https://example.org/%3C%3E%22%7B%7D%7C%5C%5E%60";
    QTest::newRow("forbidden in query") << "https://example.org/?<>\"{}|\\^`'"
                                        << "https://example.org/?%3C%3E%22%7B%7D%7C%5C%5E%60'";
    QTest::newRow("number host") << "http://127.1/"
                                 << "http://127.0.0.1/";
    QTest::newRow("port") << "http://example.org:8080/a"
                          << "http://example.org:8080/a";
    QTest::newRow("ftp") << "ftp://example.org//a"
                         << "ftp://example.org/%2Fa";
    QTest::newRow("file") << "file:///home/a b.html"
                          << "file:///home/a%20b.html";
    QTest::newRow("magnet") << "magnet:?xt=urn:btih:abc"
                            << "magnet:?xt=urn:btih:abc";
    QTest::newRow("mail") << "mailto:someone@example.org"
                          << "mailto:someone@example.org";

    QTest::newRow("relative") << "post.html"
                              << "https://example.org/blog/post.html";
    QTest::newRow("relative to the root") << "/post.html"
                                          << "https://example.org/post.html";
    QTest::newRow("relative to the parent") << "../post.html"
                                            << "https://example.org/post.html";
    QTest::newRow("relative query") << "?p=1"
                                    << "https://example.org/blog/index.html?p=1";
    QTest::newRow("relative fragment") << "#top"
                                       << "https://example.org/blog/index.html#top";
    QTest::newRow("relative host") << "//example.net/a"
                                   << "https://example.net/a";
    QTest::newRow("no scheme") << "www.example.net"
                               << "https://example.org/blog/www.example.net";

    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("blank") << " \n"
                           << "";
    QTest::newRow("script") << "javascript:alert(1)"
                            << "";
    QTest::newRow("script in disguise") << " JaVa\nScript:alert(1)"
                                        << "";
    QTest::newRow("data") << "data:text/html,x"
                          << "";
    QTest::newRow("unknown scheme") << "foo:bar"
                                    << "";
    QTest::newRow("drive") << "C:\\feeds\\a.html"
                           << "";
    QTest::newRow("no host") << "https:///path"
                             << "";
    QTest::newRow("no slashes") << "https:path"
                                << "";
    QTest::newRow("blank in host") << "https://exam ple.org/"
                                   << "";
    QTest::newRow("endless") << "https://example.org/?" + QString(20000, ' ') + "a"
                             << "";
    QTest::newRow("bad port") << "https://example.org:port/"
                              << "";
}

void TestLinks::clean()
{
    QFETCH(QString, link);
    QFETCH(QString, expected);
    QCOMPARE(cleanLink(link, base), expected);
    QVERIFY(expected.isEmpty() || isFit(expected));
}

void TestLinks::cleanFile_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("expected");

    QTest::newRow("web") << "https://example.org/a b.mp3"
                         << "https://example.org/a%20b.mp3";
    QTest::newRow("relative") << "a.mp3"
                              << "https://example.org/blog/a.mp3";
    QTest::newRow("ftp") << "ftp://example.org/a.mp3"
                         << "ftp://example.org/a.mp3";
    QTest::newRow("file") << "file:///a.mp3"
                          << "file:///a.mp3";
    QTest::newRow("mail") << "mailto:someone@example.org"
                          << "";
    QTest::newRow("magnet") << "magnet:?xt=urn:btih:abc"
                            << "";
    QTest::newRow("script") << "javascript:alert(1)"
                            << "";
    QTest::newRow("empty") << ""
                           << "";
}

void TestLinks::cleanFile()
{
    QFETCH(QString, link);
    QFETCH(QString, expected);
    QCOMPARE(cleanFileLink(link, base), expected);
}

void TestLinks::cleanLinksAreFit()
{
    const QString characters = QStringLiteral(
        "abcXYZ019-._~:/?#[]@!$&'()*+,;=%%%2fFcC<>\"{}|^`\\ \n\t\u00e9\u4e80\u202e\u0000\U0001f422");
    const QStringList beginnings{"http://",
                                 "https://",
                                 "https://example.org/",
                                 "https://a.b",
                                 "ftp://",
                                 "file:///",
                                 "mailto:",
                                 "//",
                                 "http://1.2.3.",
                                 ""};
    QRandomGenerator random(2);
    int kept = 0;
    for (int round = 0; round < 50000; ++round) {
        QString link = beginnings.at(random.bounded(beginnings.size()));
        for (int length = random.bounded(30); length > 0; --length)
            link += characters.at(random.bounded(characters.size()));
        const QString cleaned = cleanLink(link, base);
        if (cleaned.isEmpty())
            continue;
        ++kept;
        QVERIFY2(isFit(cleaned), qPrintable(link + " -> " + cleaned));
        QCOMPARE(cleanLink(cleaned, QUrl()), cleaned);
        QVERIFY2(isFit(linkForItem(cleaned, "id")), qPrintable(linkForItem(cleaned, "id")));
    }
    QVERIFY(kept > 10000);
}

void TestLinks::relative()
{
    QVERIFY(isRelativeLink("a"));
    QVERIFY(isRelativeLink(""));
    QVERIFY(isRelativeLink("/a:b"));
    QVERIFY(isRelativeLink("//example.org/"));
    QVERIFY(isRelativeLink("1http://example.org/"));
    QVERIFY(!isRelativeLink("http://example.org/"));
    QVERIFY(!isRelativeLink(" \nurn:x"));
}

void TestLinks::linkForItemIsFitAndStable()
{
    const QString link = "https://example.org/log";
    QCOMPARE(linkForItem(link, "1"), linkForItem(link, "1"));
    QVERIFY(linkForItem(link, "1") != linkForItem(link, "2"));
    QVERIFY(linkForItem(link, "1").startsWith(link + "#"));
    QVERIFY(linkForItem(link + "#top", "1").startsWith(link + "#top-"));
    QVERIFY(isFit(linkForItem(link + "#top", QStringLiteral("\u4e80 >"))));
}

void TestLinks::urnIsFit()
{
    const QString urn = itemUrn("file:///feed.xml", QStringLiteral("1 \u4e80 >"));
    QVERIFY(isFit(urn));
    QVERIFY(isFit(linkForItem(urn, "1")));
    QVERIFY(urn != itemUrn("file:///feed.xml", "2"));
    QVERIFY(urn != itemUrn("file:///other.xml", QStringLiteral("1 \u4e80 >")));
    QVERIFY(urn.startsWith("urn:tidel:item:"));
}

QTEST_GUILESS_MAIN(TestLinks)
#include "tst_links.moc"
