// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <refresher.h>

#include <TidelReader/channelmodel.h>
#include <TidelReader/retentionrules.h>
#include <TidelReader/subscriptions.h>

#include <feedserver.h>
#include <rawserver.h>
#include <soon.h>

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QProgressBar>
#include <QSignalSpy>
#include <QStatusBar>

using namespace Tidel;

/// Refreshing in the background.
class TestDesktopRefreshing : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void news();
    void currentChannelOnly();
    void errorsAtTheirChannels();
    void limits();
    void stop();
    void oneAfterTheOther();
    void withoutStore();

private:
    QStringList subscribeTo(const QStringList &addresses);
    QString statusText() const { return window()->statusBar()->currentMessage(); }
    /// Whether the progress of a refresh is shown.
    bool showsProgress() const
    {
        const auto *bar = window()->findChild<QProgressBar *>();
        return bar && bar->isVisible();
    }
};

/// Stores channels that were never refreshed, and returns their URIs.
QStringList TestDesktopRefreshing::subscribeTo(const QStringList &addresses)
{
    QList<Subscription> wanted;
    for (const QString &address : addresses)
        wanted.append({Link::fromText(address), "Feed", {}, {}});
    const Result<QList<FeedChannel>> added = Subscriptions(reader()).add(wanted);
    QStringList uris;
    for (const FeedChannel &channel : *added)
        uris.append(channel.uri());
    return uris;
}

void TestDesktopRefreshing::news()
{
    subscribeTo({QUrl::fromLocalFile(TIDEL_TEST_DATA "/feeds/county-news.xml").toString()});
    openWindow();
    COMPARE_SOON(channelTitles().size(), 4);
    press(Qt::Key_F5);
    QVERIFY(showsProgress());
    VERIFY_SOON(!showsProgress());
    QVERIFY2(statusText().contains("new message(s) in 1 channel(s)"), qPrintable(statusText()));
    VERIFY_SOON(!titles().isEmpty());
    press(Qt::Key_F5);
    COMPARE_SOON(statusText(), QString("No new messages"));
}

void TestDesktopRefreshing::currentChannelOnly()
{
    FeedServer server(TIDEL_TEST_DATA "/feeds");
    const QStringList uris =
        subscribeTo({server.url("/files/county-news.xml"), server.url("/files/town-news.xml")});
    QCOMPARE(uris.size(), 2);
    openWindow();
    COMPARE_SOON(channelTitles().size(), 5);
    channels()->select(uris.at(1));
    QSignalSpy finished(window()->findChild<Refresher *>(), &Refresher::finished);
    press(Qt::Key_R);
    COMPARE_SOON(finished.size(), 1);
    QCOMPARE(server.requests().filter("/files/"), QStringList("GET /files/town-news.xml 200"));
}

/// A channel that cannot be refreshed has a sign and says why, and nothing else is in the way.
void TestDesktopRefreshing::errorsAtTheirChannels()
{
    FeedServer server(TIDEL_TEST_DATA "/feeds");
    const QStringList uris = subscribeTo({server.url("/status/404"), "http://127.0.0.1:9/feed.xml"});
    openWindow();
    COMPARE_SOON(channelTitles().size(), 5);
    QSignalSpy finished(window()->findChild<Refresher *>(), &Refresher::finished);
    press(Qt::Key_F5);
    COMPARE_SOON(finished.size(), 1);
    QCOMPARE(statusText(), QString("No new messages; 2 channel(s) could not be refreshed"));
    QVERIFY(!dialog<QDialog>());
    QCOMPARE(notice()->text(), QString());
    for (const QString &uri : uris) {
        channels()->select(uri);
        VERIFY_SOON(channels()->currentIndex().data(Qt::ToolTipRole).toString().contains("Could not be"));
    }
}

/// What is beyond the limits of a channel goes when new messages have come.
void TestDesktopRefreshing::limits()
{
    const QString address = QUrl::fromLocalFile(TIDEL_TEST_DATA "/feeds/county-news.xml").toString();
    const QStringList uris = subscribeTo({address});
    RetentionRule rule;
    rule.keep = 1;
    rule.dropsUnread = true;
    VERIFY_OK(RetentionRules(reader()).set(uris.constFirst(), rule));
    openWindow();
    COMPARE_SOON(channelTitles().size(), 4);
    press(Qt::Key_F5);
    COMPARE_SOON(store().count("?m a mfo:FeedMessage"), 1);
    QVERIFY2(!statusText().startsWith("1 "), qPrintable(statusText()));
}

void TestDesktopRefreshing::stop()
{
    RawAnswer silence;
    silence.end = RawAnswer::Hold;
    RawServer server(silence);
    subscribeTo({server.url()});
    openWindow();
    COMPARE_SOON(channelTitles().size(), 4);
    press(Qt::Key_F5);
    COMPARE_SOON(server.clients(), 1);
    QVERIFY(showsProgress());
    press(Qt::Key_Escape);
    VERIFY_SOON(!showsProgress());
}

/// A refresh that is asked for while another one runs begins when that has ended.
void TestDesktopRefreshing::oneAfterTheOther()
{
    FeedServer server(TIDEL_TEST_DATA "/feeds");
    const QStringList uris =
        subscribeTo({server.url("/files/county-news.xml"), server.url("/files/town-news.xml")});
    Archive own;
    Refresher refresher(&own);
    QSignalSpy finished(&refresher, &Refresher::finished);
    refresher.refresh({uris.at(0)}, Archive::Forced);
    refresher.refresh({uris.at(1)}, Archive::Forced);
    COMPARE_SOON(finished.size(), 2);
    QCOMPARE(server.requests().filter("/files/"),
             QStringList({"GET /files/county-news.xml 200", "GET /files/town-news.xml 200"}));
}

/// What hinders every refresh is said above the panes.
void TestDesktopRefreshing::withoutStore()
{
    QTemporaryDir folder;
    QVERIFY(QFile(folder.filePath("file")).open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath("file")));
    openWindow();
    press(Qt::Key_F5);
    VERIFY_SOON(notice()->text().startsWith("Nothing could be refreshed: could not open the store"));
    QVERIFY(!dialog<QDialog>());
}

QTEST_MAIN(TestDesktopRefreshing)
#include "tst_desktoprefreshing.moc"
