// SPDX-License-Identifier: LGPL-2.1-or-later
#include "iconsamples.h"
#include "windowtest.h"

#include <answer.h>
#include <channelicons.h>
#include <iconcache.h>
#include <refresher.h>

#include <TidelReader/channels.h>
#include <TidelReader/subscriptions.h>

#include <feedserver.h>
#include <soon.h>

#include <QAction>
#include <QSignalSpy>

using namespace Tidel;

namespace {

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

/// The icons of channels.
class TestDesktopIcons : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void namedByTheFeed();
    void namedByTheWebsite();
    void usualPlace();
    void onceInAWeek();
    void theNextPlaceIsTried_data();
    void theNextPlaceIsTried();
    void otherServersAreNotAsked_data();
    void otherServersAreNotAsked();
    void noServerAnswers();
    void switchedOff();
    void goneWithTheChannel();

private:
    /// Stores a channel whose feed says \a head of itself. "SERVER" becomes the address of the server.
    void subscribe(const QByteArray &head);
    void save(const char *name, const QByteArray &bytes) const;
    void refresh();
    ChannelIcons *icons() const { return channels()->icons(); }
    /// The color in the middle of the icon of the channel; invalid if it is a letter.
    QColor shownColor() const;
    /// Waits until no search is under way, and returns what the server was asked for but for the feed.
    QStringList asked();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FeedServer> m_server;
    QString m_uri;
};

void TestDesktopIcons::init()
{
    WindowTestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<FeedServer>(m_folder->path());
    QVERIFY(m_server->isRunning());
}

void TestDesktopIcons::cleanup()
{
    WindowTestCase::cleanup();
    m_server.reset();
}

void TestDesktopIcons::save(const char *name, const QByteArray &bytes) const
{
    write(m_folder->filePath(QString::fromLatin1(name)), bytes);
}

void TestDesktopIcons::subscribe(const QByteArray &head)
{
    QByteArray feed = "<feed xmlns='http://www.w3.org/2005/Atom'><title>Garden</title>" + head
        + "<entry><id>1</id><title>Beans</title></entry></feed>";
    save("feed.xml", feed.replace("SERVER", m_server->url("").toUtf8()));
    const auto added =
        Subscriptions(reader()).add({{Link::fromText(m_server->url("/files/feed.xml")), "Garden", {}, {}}});
    VERIFY_OK(added);
    m_uri = added->constFirst().uri();
}

void TestDesktopIcons::refresh()
{
    QSignalSpy finished(window()->findChild<Refresher *>(), &Refresher::finished);
    press(Qt::Key_F5);
    COMPARE_SOON(finished.size(), 1);
}

QColor TestDesktopIcons::shownColor() const
{
    const QModelIndex index = channels()->model()->index(3, 0);
    if (icons()->icon(m_uri).isNull())
        return {};
    return index.data(Qt::DecorationRole).value<QIcon>().pixmap(16, 16).toImage().pixelColor(8, 8);
}

QStringList TestDesktopIcons::asked()
{
    // The archive answers look() before.
    bool hasAnswered = false;
    const auto answer = [&hasAnswered](const Result<void> &) { hasAnswered = true; };
    whenAnswered(archive()->read([](const Store &) { return Result<void>(); }), this, answer);
    [&] { VERIFY_SOON(hasAnswered && !icons()->isLooking()); }();
    QStringList requests;
    const QStringList all = m_server->takeRequests();
    for (const QString &request : all) {
        if (!request.contains("feed.xml"))
            requests.append(request);
    }
    return requests;
}

void TestDesktopIcons::namedByTheFeed()
{
    save("icon.png", picture({40, 40}));
    save("logo.png", picture({40, 40}, Qt::blue));
    subscribe("<logo>SERVER/files/logo.png</logo><icon>icon.png</icon>");
    openWindow();
    COMPARE_SOON(channelTitles().size(), 4);
    QVERIFY(!shownColor().isValid());
    refresh();
    QCOMPARE(asked(), QStringList("GET /files/icon.png 200"));
    QCOMPARE(shownColor(), QColor(Qt::red));
    refresh();
    QCOMPARE(asked(), QStringList());

    openWindow();
    COMPARE_SOON(channelTitles().size(), 4);
    QCOMPARE(shownColor(), QColor(Qt::red));
    QCOMPARE(asked(), QStringList());
}

void TestDesktopIcons::namedByTheWebsite()
{
    save("a.png", picture({48, 48}, Qt::green));
    save("page.html", "<title>x</title><link rel=icon sizes=48x48 href=a.png>" + QByteArray(1000000, ' '));
    subscribe("<link href='SERVER/files/page.html'/>");
    openWindow();
    refresh();
    QCOMPARE(asked(), QStringList({"GET /files/page.html 200", "GET /files/a.png 200"}));
    QCOMPARE(shownColor(), QColor(Qt::green));
}

void TestDesktopIcons::usualPlace()
{
    save("favicon.ico", picture({16, 16}, Qt::blue, "ICO"));
    subscribe({});
    openWindow();
    refresh();
    QCOMPARE(asked(), QStringList("GET /favicon.ico 200"));
    QCOMPARE(shownColor(), QColor(Qt::blue));
}

void TestDesktopIcons::onceInAWeek()
{
    subscribe({});
    openWindow();
    refresh();
    QCOMPARE(asked(), QStringList("GET /favicon.ico 404"));
    QVERIFY(!shownColor().isValid());
    refresh();
    QCOMPARE(asked(), QStringList());
    QVERIFY(!IconCache::isDue(m_uri));

    const QDir folder(m_folder->path());
    const QDir cache(QFile::decodeName(qgetenv("XDG_CACHE_HOME")) + "/tidel/icons");
    const auto setAge = [&](int days) {
        QFile file(cache.filePath(cache.entryList(QDir::Files).value(0)));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(
            file.setFileTime(QDateTime::currentDateTime().addDays(-days), QFileDevice::FileModificationTime));
    };
    QCOMPARE(cache.entryList(QDir::Files).size(), 1);
    setAge(6);
    refresh();
    QCOMPARE(asked(), QStringList());
    setAge(8);
    save("favicon.ico", picture({16, 16}));
    refresh();
    QCOMPARE(asked(), QStringList("GET /favicon.ico 200"));
    QCOMPARE(shownColor(), QColor(Qt::red));
    // An icon that is gone for once stays.
    setAge(8);
    QVERIFY(QFile::remove(folder.filePath("favicon.ico")));
    refresh();
    QCOMPARE(asked(), QStringList("GET /favicon.ico 404"));
    QCOMPARE(shownColor(), QColor(Qt::red));
    QVERIFY(!IconCache::icon(m_uri).isNull());
}

void TestDesktopIcons::theNextPlaceIsTried_data()
{
    QTest::addColumn<QByteArray>("place");
    QTest::addColumn<int>("requests");

    QTest::newRow("nothing there") << QByteArray("SERVER/files/none.png") << 1;
    QTest::newRow("no picture") << QByteArray("SERVER/files/page.html") << 1;
    QTest::newRow("a drawing") << QByteArray("SERVER/files/drawing.png") << 1;
    QTest::newRow("a banner") << QByteArray("SERVER/files/banner.png") << 1;
    QTest::newRow("too many bytes") << QByteArray("SERVER/files/large.png") << 1;
    QTest::newRow("endless") << QByteArray("SERVER/endless") << 1;
    QTest::newRow("too many pixels") << QByteArray("SERVER/files/boast.png") << 1;
    QTest::newRow("too many pixels in a file") << QByteArray("SERVER/files/boast.ico") << 1;
    QTest::newRow("empty") << QByteArray("SERVER/empty") << 1;
    QTest::newRow("no HTTP") << QByteArray("SERVER/no-http") << 0;
    QTest::newRow("redirected in a circle") << QByteArray("SERVER/loop") << 3;
    QTest::newRow("redirected to a file") << QByteArray("SERVER/redirect/302?file://FOLDER/red.png") << 1;
    QTest::newRow("redirected to another host") << QByteArray("SERVER/redirect/302?OTHER/files/red.png") << 1;
}

void TestDesktopIcons::theNextPlaceIsTried()
{
    QFETCH(QByteArray, place);
    QFETCH(int, requests);
    place.replace("FOLDER", m_folder->path().toUtf8());
    place.replace("OTHER", m_server->url("").replace("127.0.0.1", "localhost").toUtf8());
    save("red.png", picture({16, 16}));
    save("page.html", "<p>x");
    save("drawing.png", "<svg xmlns='http://www.w3.org/2000/svg' width='32' height='32'></svg>");
    save("banner.png", picture({88, 31}));
    save("large.png", picture({16, 16}) + QByteArray(300 * 1024, 'x'));
    save("boast.png", boast(40000, 40000));
    save("boast.ico", iconFile({boast(40000, 40000)}, {16}));
    save("favicon.ico", picture({16, 16}, Qt::green, "ICO"));
    subscribe("<icon>" + place + "</icon>");
    openWindow();
    refresh();
    const QStringList all = asked();
    QVERIFY2(all.size() == requests + 1, qPrintable(all.join(' ')));
    QCOMPARE(all.constLast(), QString("GET /favicon.ico 200"));
    QCOMPARE(shownColor(), QColor(Qt::green));
}

void TestDesktopIcons::otherServersAreNotAsked_data()
{
    QTest::addColumn<QByteArray>("head");

    // "localhost" is the same server by another name.
    QTest::newRow("named by the feed") << QByteArray("<icon>OTHER/files/icon.png</icon>");
    QTest::newRow("website") << QByteArray("<link href='OTHER/files/page.html'/>");
    QTest::newRow("named by the website") << QByteArray("<link href='SERVER/files/page.html'/>");
    QTest::newRow("a file") << QByteArray("<icon>file:///etc/passwd</icon>");
}

void TestDesktopIcons::otherServersAreNotAsked()
{
    QFETCH(QByteArray, head);
    const QByteArray other = m_server->url("").replace("127.0.0.1", "localhost").toUtf8();
    save("icon.png", picture({16, 16}));
    save("page.html", "<link rel=icon href='" + other + "/files/icon.png'>");
    subscribe(head.replace("OTHER", other));
    openWindow();
    refresh();
    const QStringList all = asked();
    QVERIFY2(all.filter("icon.png").isEmpty(), qPrintable(all.join(' ')));
    QCOMPARE(all.contains("GET /files/page.html 200"), head.contains("SERVER"));
    QVERIFY(!shownColor().isValid());
}

/// Without a network, nothing is said about the icon. It is looked for in the next run.
void TestDesktopIcons::noServerAnswers()
{
    subscribe("<link href='http://127.0.0.1:9/'/>");
    openWindow();
    refresh();
    QCOMPARE(asked(), QStringList());
    QVERIFY(IconCache::isDue(m_uri));
    QVERIFY(!shownColor().isValid());
}

void TestDesktopIcons::switchedOff()
{
    const auto action = [this] {
        const QList<QAction *> actions = window()->findChildren<QAction *>();
        return *std::find_if(actions.cbegin(), actions.cend(), [](const QAction *candidate) {
            return candidate->text() == QLatin1String("Show &Icons of Websites");
        });
    };
    save("favicon.ico", picture({16, 16}));
    subscribe({});
    openWindow();
    QVERIFY(action()->isChecked());
    action()->trigger();
    refresh();
    QCOMPARE(asked(), QStringList());
    closeWindow();
    openWindow();
    QVERIFY(!action()->isChecked());
    action()->trigger();
    VERIFY_SOON(shownColor().isValid());
    QCOMPARE(asked(), QStringList("GET /favicon.ico 200"));
    action()->trigger();
    QVERIFY(!shownColor().isValid());
}

void TestDesktopIcons::goneWithTheChannel()
{
    save("favicon.ico", picture({16, 16}));
    subscribe({});
    openWindow();
    refresh();
    QCOMPARE(asked().size(), 1);
    QVERIFY(!IconCache::icon(m_uri).isNull());
    const QList<FeedChannel> stored = *Channels(reader()).all();
    VERIFY_OK(Channels(reader()).remove(stored.constFirst(), [](int, const QList<FeedEnclosure> &) {}));
    VERIFY_SOON(IconCache::icon(m_uri).isNull());
    QVERIFY(IconCache::isDue(m_uri));
}

QTEST_MAIN(TestDesktopIcons)
#include "tst_desktopicons.moc"
