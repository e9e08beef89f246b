// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/link.h>

#include <QtTest>

using namespace Tidel;

namespace {

const QUrl base("https://example.org/blog/index.html");

static_assert(sizeof(Link) == sizeof(QString), "a link is its text and nothing else");

/// Returns true if the store finds the link again, and no character of it can end an IRI.
bool isFit(const QString &link)
{
    static const QRegularExpression forbidden("[\\x00-\\x20<>\"{}|^`\\\\\\x7f-\\x{ffff}]");
    return QString::fromLatin1(QUrl::fromUserInput(link).toEncoded()) == link
        && !forbidden.match(link).hasMatch();
}

} // namespace

class TestLink : public QObject
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
    void notEncoded_data();
    void notEncoded();
};

void TestLink::clean_data()
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

void TestLink::clean()
{
    QFETCH(QString, link);
    QFETCH(QString, expected);
    QCOMPARE(Link::fromText(link, base).toString(), expected);
    QVERIFY(expected.isEmpty() || isFit(expected));
}

void TestLink::cleanFile_data()
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

void TestLink::cleanFile()
{
    QFETCH(QString, link);
    QFETCH(QString, expected);
    QCOMPARE(Link::toFile(link, base).toString(), expected);
}

void TestLink::cleanLinksAreFit()
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
        const QString cleaned = Link::fromText(link, base).toString();
        if (cleaned.isEmpty())
            continue;
        ++kept;
        QVERIFY2(isFit(cleaned), qPrintable(link + " -> " + cleaned));
        QCOMPARE(Link::fromText(cleaned).toString(), cleaned);
        const Link encoded = Link::fromEncoded(cleaned);
        QCOMPARE(encoded.toString(), cleaned);
        QVERIFY2(isFit(encoded.forItem("id").toString()), qPrintable(cleaned));
    }
    QVERIFY(kept > 10000);
}

void TestLink::relative()
{
    QVERIFY(Link::isRelative("a"));
    QVERIFY(Link::isRelative(""));
    QVERIFY(Link::isRelative("/a:b"));
    QVERIFY(Link::isRelative("//example.org/"));
    QVERIFY(Link::isRelative("1http://example.org/"));
    QVERIFY(!Link::isRelative("http://example.org/"));
    QVERIFY(!Link::isRelative(" \nurn:x"));
}

void TestLink::linkForItemIsFitAndStable()
{
    const Link link = Link::fromText("https://example.org/log");
    const Link top = Link::fromText("https://example.org/log#top");
    QCOMPARE(link.forItem("1"), link.forItem("1"));
    QVERIFY(link.forItem("1") != link.forItem("2"));
    QVERIFY(link.forItem("1").toString().startsWith(link.toString() + "#"));
    QVERIFY(top.forItem("1").toString().startsWith(top.toString() + "-"));
    QVERIFY(isFit(top.forItem(QStringLiteral("\u4e80 >")).toString()));
}

void TestLink::urnIsFit()
{
    const QString id = QStringLiteral("1 \u4e80 >");
    const Link urn = Link::ofItem("file:///feed.xml", id);
    QVERIFY(isFit(urn.toString()));
    QVERIFY(isFit(urn.forItem("1").toString()));
    QCOMPARE(Link::fromEncoded(urn.toString()), urn);
    QVERIFY(urn != Link::ofItem("file:///feed.xml", "2"));
    QVERIFY(urn != Link::ofItem("file:///other.xml", id));
    QVERIFY(urn.toString().startsWith("urn:tidel:item:"));
}

void TestLink::notEncoded_data()
{
    QTest::addColumn<QString>("text");
    const QString attack = "> } INSERT { <urn:x> a mfo:FeedMessage } "
                           "DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel } #";
    QTest::newRow("empty") << QString();
    QTest::newRow("relative") << "example.org/x";
    QTest::newRow("blank") << "https://example.org/a b";
    QTest::newRow("line break") << "https://example.org/a\n";
    QTest::newRow("letter") << QStringLiteral("https://example.org/\u00fc");
    QTest::newRow("end of an IRI") << "urn:x" + attack;
    QTest::newRow("escaped end") << "urn:x\\u003E } DELETE";
    QTest::newRow("end of a list") << "urn:x>)} ?e a mfo:Enclosure } " + attack;
    QTest::newRow("web address") << "https://example.org/" + attack;
    QTest::newRow("too long") << "https://example.org/" + QString(20000, 'a');
}

void TestLink::notEncoded()
{
    QFETCH(QString, text);
    QVERIFY(Link::fromEncoded(text).isNull());
    QVERIFY(Link().isNull());
    QCOMPARE(Link::fromEncoded(text), Link());
}

QTEST_GUILESS_MAIN(TestLink)
#include "tst_link.moc"
