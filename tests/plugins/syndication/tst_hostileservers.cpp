// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <memorylimit.h>
#include <rawserver.h>

#include <QtTest>

namespace {

constexpr rlim_t maximumMemory = 300 * 1024 * 1024;
const QByteArray document = "<rss version='2.0'><channel><title>T</title></channel></rss>";
const QByteArray okay = "HTTP/1.1 200 OK\r\n";
const QByteArray chunked = okay + "Transfer-Encoding: chunked\r\n\r\n";
const QByteArray megabyte(1024 * 1024, 'x');

QByteArray redirect(const QByteArray &target)
{
    return "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " + target + "\r\n\r\n";
}

/// An answer with \a headers and the feed.
QByteArray feedWith(const QByteArray &headers) { return okay + headers + "\r\n" + document; }

} // namespace

Q_DECLARE_METATYPE(RawAnswer)

/// Subscribes to servers that do not follow HTTP or mean no good.
class TestHostileServers : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init() { QVERIFY(begin()); }
    void cleanup() { end(); }

    void endsWithReason_data();
    void endsWithReason();
    void feedIsStillRead_data();
    void feedIsStillRead();
    void redirectsAreCounted();
    void nobodyElseIsAsked();
};

void TestHostileServers::endsWithReason_data()
{
    QTest::addColumn<RawAnswer>("answer");

    const auto row = [](const char *name, const QByteArray &begin, RawAnswer::End end = RawAnswer::Close) {
        QTest::newRow(name) << RawAnswer{begin, end, {}, 0, 0};
    };
    const auto repeated = [](const char *name, const QByteArray &begin, const QByteArray &piece,
                             qint64 pieces = -1, int pause = 0) {
        QTest::newRow(name) << RawAnswer{begin, RawAnswer::Close, piece, pieces, pause};
    };

    row("closes", "");
    row("resets", "", RawAnswer::Reset);
    row("says nothing", "", RawAnswer::Hold);
    row("TLS", QByteArray("\x16\x03\x03\x00\x02\x02\x28", 7));
    row("random bytes", QByteArray("\x00\xff\x80\n\r\n\r\r\n\n", 10));
    row("another protocol", "220 ready\r\n");
    row("part of a status line", "HTTP/1.");
    row("status line without an end", "HTTP/1.1 200 OK", RawAnswer::Hold);
    row("status of letters", "HTTP/1.1 abc OK\r\n\r\n");
    row("negative status", "HTTP/1.1 -200 OK\r\nContent-Length: 0\r\n\r\n");
    row("large status", "HTTP/1.1 99999999999 OK\r\nContent-Length: 0\r\n\r\n");
    row("status 0", "HTTP/1.1 0 OK\r\nContent-Length: 0\r\n\r\n");
    row("switches the protocol", "HTTP/1.1 101 Switching Protocols\r\n\r\n", RawAnswer::Hold);
    row("long phrase", "HTTP/1.1 404 " + megabyte + "\r\n\r\n");
    row("phrase with controls", "HTTP/1.1 404 \x1b[31m\x07\x08\r\n\r\n");
    repeated("endless status line", "HTTP/1.1 200 ", megabyte, 200);
    repeated("goes on for ever", "", "HTTP/1.1 100 Continue\r\n\r\n", 10000);

    row("headers without an end", okay + "Content-Type: text/xml\r\n");
    row("headers and then nothing", okay + "Content-Type: text/xml\r\n", RawAnswer::Hold);
    repeated("slow headers", okay + "X: ", "y", -1, 20);
    repeated("endless header", okay + "X: ", megabyte, 50);
    row("many headers and no feed", okay + QByteArray("X: y\r\n").repeated(2000) + "\r\nno feed");

    row("announces too much", okay + "Content-Length: 99999999999\r\n\r\n" + document, RawAnswer::Hold);
    row("announces more than it sends", okay + "Content-Length: 1000\r\n\r\n" + document);
    row("resets within the body", okay + "Content-Length: 1000\r\n\r\n" + document, RawAnswer::Reset);
    row("stops within the body", okay + "Content-Length: 1000\r\n\r\n" + document, RawAnswer::Hold);
    repeated("slow body", okay + "\r\n", " ", -1, 20);
    repeated("endless body", okay + "\r\n", megabyte);

    row("no size of a chunk", chunked + "zz\r\n" + document);
    row("negative chunk", chunked + "-1\r\n" + document);
    row("largest chunk", chunked + "7fffffffffffffff\r\n" + document);
    row("larger than the largest chunk", chunked + "ffffffffffffffffffff\r\n" + document);
    row("no last chunk", chunked + "5\r\n<rss>\r\n");
    row("chunk and then nothing", chunked + "5\r\n<rss>\r\n", RawAnswer::Hold);
    repeated("endless extension of a chunk", chunked + "5;", megabyte, 200);
    repeated("endless chunks of a byte", chunked, "1\r\n \r\n");

    row("no gzip", okay + "Content-Encoding: gzip\r\n\r\n" + document);
    row("part of gzip",
        okay + "Content-Encoding: gzip\r\n\r\n" + QByteArray::fromHex("1f8b0800000000000003"));
    row("other compression", okay + "Content-Encoding: br\r\n\r\n" + QByteArray("\x0b\x02\x80\x00\x03", 5));

    row("redirect to itself", redirect("http://127.0.0.1:PORT/"));
    row("redirect without a target", "HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n");
    row("redirect to nothing", redirect(""));
    row("redirect to a script", redirect("javascript:alert(1)"));
    row("redirect to data", redirect("data:text/xml,<rss/>"));
    row("redirect to FTP", redirect("ftp://127.0.0.1:PORT/"));
    row("redirect to a file", redirect("file:///etc/passwd"));
    row("redirect without a host", redirect("http:///feed"));
    row("redirect to a bad port", redirect("http://127.0.0.1:99999/"));
    row("redirect to a long address", redirect("/" + megabyte));

    row("asks for a password",
        "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"" + megabyte.left(10000)
            + "\"\r\nContent-Length: 0\r\n\r\n");
    row("asks for an unknown proof",
        "HTTP/1.1 401 No\r\nWWW-Authenticate: \"=,\r\nContent-Length: 0\r\n\r\n");
    row("asks as a proxy", "HTTP/1.1 407 No\r\nProxy-Authenticate: Basic\r\nContent-Length: 0\r\n\r\n");
    row("never changed", "HTTP/1.1 304 Not Modified\r\n\r\n");
    row("no content", "HTTP/1.1 204 No Content\r\n\r\n" + document);
    row("long name of an element", okay + "\r\n<" + megabyte.left(40000) + "/>");
    row("part of the content", "HTTP/1.1 206 Partial Content\r\nContent-Length: 5\r\n\r\n<rss>");
}

void TestHostileServers::endsWithReason()
{
    QFETCH(RawAnswer, answer);
    const RawServer server(answer);
    downloader().setProperty("timeout", 300);
    const MemoryLimit limit(maximumMemory);
    QVERIFY(limit.holds());
    const Ending failed = subscribe(server.url());
    VERIFY_ENDING(failed, "downloadFeedsFailed");
    QVERIFY(!failed.text.isEmpty());
    QVERIFY2(failed.text.size() < 1100, qPrintable(failed.text));
    QCOMPARE(channelUri(), QString());
}

void TestHostileServers::feedIsStillRead_data()
{
    QTest::addColumn<RawAnswer>("answer");

    const auto row = [](const char *name, const QByteArray &begin) {
        QTest::newRow(name) << RawAnswer{begin, RawAnswer::Close, {}, 0, 0};
    };
    row("no headers", feedWith(""));
    row("lines without returns", "HTTP/1.1 200 OK\nContent-Type: text/xml\n\n" + document);
    row("long validators", feedWith("ETag: \"" + megabyte.left(5000) + "\"\r\n"));
    row("long type", feedWith("Content-Type: text/xml; charset=" + megabyte.left(5000) + "\r\n"));
    row("long Link header", feedWith("Link: <" + megabyte.left(5000) + ">\r\n"));
    row("cookies", feedWith(QByteArray("Set-Cookie: a=b\r\n").repeated(50)));
    row("control characters", feedWith("X: \x1b[31m\x07\r\n"));
}

void TestHostileServers::feedIsStillRead()
{
    QFETCH(RawAnswer, answer);
    const RawServer server(answer);
    downloader().setProperty("timeout", 10000);
    const MemoryLimit limit(maximumMemory);
    VERIFY_ENDING(subscribe(server.url()), "downloadFeedsFinished");
    QVERIFY(!channelUri().isEmpty());
}

void TestHostileServers::redirectsAreCounted()
{
    const RawServer server({redirect("http://127.0.0.1:PORT/"), RawAnswer::Close, {}, 0, 0});
    QCOMPARE(subscribe(server.url()).text, QString("the server redirects more than 10 times"));
    QCOMPARE(server.clients(), 11);
}

// Documents name many addresses. Only those that the user asks for are requested.
void TestHostileServers::nobodyElseIsAsked()
{
    FeedServer other(m_folder->path());
    const QByteArray url = other.url("/feed/").toUtf8();
    const QByteArray html = "&lt;img src='" + url + "1'&gt;&lt;script src='" + url + "2'&gt;&lt;/script&gt;";
    write("curious.xml",
          "<?xml-stylesheet href='" + url + "3'?><!DOCTYPE rss SYSTEM '" + url + "4' [<!ENTITY % p SYSTEM '"
              + url + "5'> %p; <!ENTITY e SYSTEM '" + url
              + "6'>]><rss version='2.0' xmlns:atom='http://www.w3.org/2005/Atom' "
                "xmlns:xi='http://www.w3.org/2001/XInclude'><channel><title>T</title><link>"
              + url + "7</link><image><url>" + url + "8</url></image><atom:link rel='self' href='" + url
              + "9'/><atom:link rel='hub' href='" + url + "10'/><xi:include href='" + url
              + "11'/><item><title>&e;</title><link>" + url + "12</link><description>" + html
              + "</description><enclosure url='" + url + "13'/></item></channel></rss>");
    VERIFY_ENDING(subscribe(m_server->url("/files/curious.xml")), "downloadFeedsFinished");
    VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    QCOMPARE(other.requests(), QStringList());
}

QTEST_GUILESS_MAIN(TestHostileServers)
#include "tst_hostileservers.moc"
