// SPDX-License-Identifier: LGPL-2.1-or-later
#include "iconsamples.h"

#include <decodedicon.h>
#include <iconfetcher.h>
#include <paintedicon.h>

#include <QApplication>
#include <QIcon>
#include <QPalette>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace Tidel;

/// What icons are fetched, decoded and shown.
class TestIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serversLearnNothing();
    void sites_data();
    void sites();
    void decoding_data();
    void decoding();
    void bestImageOfAFile();
    void tiles();
};

void TestIcons::serversLearnNothing()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QByteArray request;
    connect(&server, &QTcpServer::newConnection, this, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [&request, socket] {
            request += socket->readAll();
            socket->write(
                "HTTP/1.1 404 No\r\nContent-Length: 0\r\nSet-Cookie: a=b\r\nConnection: close\r\n\r\n");
            socket->disconnectFromHost();
        });
    });
    QUrl address(QStringLiteral("http://127.0.0.1:%1/feed.xml").arg(server.serverPort()));
    address.setUserInfo("ann:secret");
    IconFetcher fetcher;
    QSignalSpy ended(&fetcher, &IconFetcher::ended);
    for (const char *uri : {"urn:1", "urn:2", "urn:3"})
        fetcher.fetch(QString::fromLatin1(uri), {address, {}, address});
    QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 3, 60000);
    // The third one need not ask for what is not there for the others.
    QVERIFY(request.count("GET ") >= 2 && request.count("GET ") <= 4);
    QCOMPARE(request.count("User-Agent: Tidel\r\n"), request.count("GET "));
    QVERIFY(ended.at(2).at(2).toBool());
    for (const char *word : {"cookie", "referer", "authorization", "ann", "secret"})
        QVERIFY2(!request.toLower().contains(word), request.constData());
}

void TestIcons::sites_data()
{
    QTest::addColumn<QString>("feed");
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isAllowed");

    const auto row = [](const char *feed, const char *address, bool isAllowed) {
        QTest::newRow(qPrintable(QString::fromLatin1("%1 %2").arg(feed, address)))
            << QString::fromLatin1(feed) << QString::fromLatin1(address) << isAllowed;
    };
    row("https://a.org/feed", "https://a.org/x.png", true);
    row("http://a.org/feed", "https://a.org/x.png", true);
    row("https://a.org/feed", "http://a.org/x.png", false);
    row("https://feeds.a.org/feed", "https://www.a.org/", true);
    row("https://www.a.org/feed", "https://cdn.a.org/x.png", true);
    row("https://a.org/feed", "https://b.org/x.png", false);
    row("https://a.org/feed", "https://ba.org/x.png", false);
    row("https://a.org/feed", "https://a.org.b.org/x.png", false);
    row("https://a.org/feed", "ftp://a.org/x.png", false);
    row("https://a.org/feed", "file:///x.png", false);
    row("https://a.org/feed", "/x.png", false);
    row("file:///feed.xml", "https://a.org/x.png", false);
    row("", "", false);
}

void TestIcons::sites()
{
    QFETCH(QString, feed);
    QFETCH(QString, address);
    QFETCH(bool, isAllowed);
    const IconPlaces places{QUrl(feed), {}, {}};
    QCOMPARE(places.mayAsk(QUrl(address)), isAllowed);
}

void TestIcons::decoding_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");

    for (const char *format : {"PNG", "JPEG", "ICO"})
        QTest::newRow(format) << picture({32, 32}, Qt::red, format) << QSize(32, 32);
    QTest::newRow("large") << picture({512, 384}) << QSize(64, 48);
    QTest::newRow("largest") << picture({2048, 2048}) << QSize(64, 64);
    QTest::newRow("too large") << picture({2049, 2048}) << QSize();
    QTest::newRow("counter") << picture({1, 1}) << QSize();
    QTest::newRow("banner") << picture({88, 31}) << QSize();
    QTest::newRow("tower") << picture({31, 88}) << QSize();
    QTest::newRow("another format") << picture({32, 32}, Qt::red, "BMP") << QSize();
    QTest::newRow("cut") << picture({32, 32}).left(30) << QSize();
    QTest::newRow("more than it says") << boast(40000, 40000) << QSize();
    QTest::newRow("more than a file says") << iconFile({boast(40000, 40000)}, {16}) << QSize();
    QTest::newRow("more than a file says in one of its images")
        << iconFile({picture({32, 32}), boast(40000, 40000)}, {32, 16}) << QSize();
    QTest::newRow("a bitmap that is more") << iconFile({boastingBitmap(60000, 60000)}, {0}) << QSize();
    QTest::newRow("a file of nothing") << iconFile({}, {}) << QSize();
    QTest::newRow("nothing") << QByteArray() << QSize();
}

void TestIcons::decoding()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    const QImage icon = decodedIcon(bytes);
    QCOMPARE(icon.isNull() ? QSize() : icon.size(), size);
}

void TestIcons::bestImageOfAFile()
{
    const QList<QByteArray> images{picture({16, 16}, Qt::red), picture({128, 128}, Qt::green),
                                   picture({64, 64}, Qt::blue), picture({256, 256}, Qt::black)};
    const QImage large = decodedIcon(iconFile(images, {16, 128, 64, 0}));
    QCOMPARE(large.size(), QSize(64, 64));
    QCOMPARE(large.pixelColor(9, 9), QColor(Qt::blue));
    const QImage small =
        decodedIcon(iconFile({picture({16, 16}, Qt::red), picture({32, 32}, Qt::green)}, {16, 32}));
    QCOMPARE(small.size(), QSize(32, 32));
}

/// An icon that is as dark or light as the list stands on a tile.
void TestIcons::tiles()
{
    const QPalette before = QApplication::palette();
    for (const QColor &base : {QColor(Qt::white), QColor(0x20, 0x20, 0x20)}) {
        QPalette palette = before;
        palette.setColor(QPalette::Base, base);
        QApplication::setPalette(palette);
        for (const QColor &color : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::red)}) {
            QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
            image.fill(color);
            const QImage shown = pictureIcon(image).pixmap(64, 64).toImage();
            const QColor edge = shown.pixelColor(6, 32);
            QCOMPARE(shown.pixelColor(32, 32), color);
            const bool hasTile = std::abs(base.lightness() - qGray(color.rgb())) < 60;
            QCOMPARE(edge != color, hasTile);
            QVERIFY(std::abs(base.lightness() - edge.lightness()) > 60);
        }
    }
    QApplication::setPalette(before);
    QVERIFY(pictureIcon(QImage()).isNull());
}

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
