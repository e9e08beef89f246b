// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/downloadqueue.h>
#include <TidelReader/pluginfinder.h>

#include <feedplugininterface.h>
#include <soon.h>

#include <QPointer>
#include <QSignalSpy>
#include <QThread>

using namespace Tidel;

/// Tests several download plug-ins side by side.
class TestPluginSwitch : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void describe();
    void oneForEachThread();
    void oneIsReturnedItself();
    void subscribe_data();
    void subscribe();
    void noneTakesTheAddress();
    void channels();
    void firstFailureCounts();
    void enclosure();
    void busy();
    void cancel();
    void queue();

private:
    /// Installs the plug-ins \a names in a new folder, and finds them.
    FeedPluginInterface *plugins(const QStringList &names);
    void addChannelAt(const QString &name, const QString &link) const;

    QTemporaryDir m_folder;
    FeedPluginInterface *m_all = nullptr;
};

FeedPluginInterface *TestPluginSwitch::plugins(const QStringList &names)
{
    const QString folder = m_folder.filePath(names.join('-'));
    QDir().mkpath(folder);
    for (const QString &name : names)
        QFile::copy(QString(TIDEL_FIXTURE_PLUGINS) + '/' + name + ".so", folder + '/' + name + ".so");
    const auto found = findPlugin(folder);
    return found ? *found : nullptr;
}

void TestPluginSwitch::addChannelAt(const QString &name, const QString &link) const
{
    store().update(QString("INSERT { <%1> a mfo:FeedChannel ; nie:title '%2' ; nie:links <%3> }")
                       .arg(channelUri(name), name, link));
}

void TestPluginSwitch::initTestCase()
{
    m_all = plugins({"secure", "special"});
    QVERIFY(m_all);
}

void TestPluginSwitch::oneForEachThread()
{
    const QString folder = m_folder.filePath("secure-special");
    QCOMPARE(*findPlugin(folder), m_all);
    QPointer<FeedPluginInterface> other;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        other = *findPlugin(folder);
        QVERIFY(other != m_all);
        QCOMPARE(other->thread(), QThread::currentThread());
    }));
    thread->start();
    QVERIFY(thread->wait(60000));
    QVERIFY(!other);
}

void TestPluginSwitch::describe()
{
    const QList<PluginDescription> found = describePlugins(m_folder.filePath("secure-special"));
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).file, m_folder.filePath("secure-special/secure.so"));
    QCOMPARE(found.at(0).name, QString("secure"));
    QCOMPARE(found.at(0).version, QString("2.1"));
    QCOMPARE(found.at(0).description, QString("Feeds over https"));
    QCOMPARE(found.at(0).addresses, QStringList({"https://", "file:///secure/"}));
    QCOMPARE(found.at(1).name, QString("special"));
    QCOMPARE(found.at(1).version, QString());
}

void TestPluginSwitch::oneIsReturnedItself()
{
    FeedPluginInterface *one = plugins({"secure"});
    QVERIFY(one);
    QCOMPARE(one->errorString(), QString("secure failed"));
}

void TestPluginSwitch::subscribe_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("plugin");

    QTest::newRow("only one takes it") << "https://example.org/a"
                                       << "secure";
    QTest::newRow("longer beginning") << "https://special.example.org/a"
                                      << "special";
    QTest::newRow("beginning of a host") << "https://special.example.org.evil/a"
                                         << "secure";
    QTest::newRow("second beginning") << "file:///secure/a"
                                      << "secure";
}

void TestPluginSwitch::subscribe()
{
    QFETCH(QString, address);
    QFETCH(QString, plugin);
    QSignalSpy finished(m_all, &FeedPluginInterface::downloadFeedsFinished);
    m_all->subscribe(QUrl(address));
    QCOMPARE(finished.size(), 0);
    QVERIFY(finished.wait(longestWait));
    QCOMPARE(m_all->property("newMessages").toStringList(), QStringList(plugin + ' ' + address));
}

void TestPluginSwitch::noneTakesTheAddress()
{
    QSignalSpy failed(m_all, &FeedPluginInterface::downloadFeedsFailed);
    m_all->subscribe(QUrl("http://example.org/"));
    QCOMPARE(failed.size(), 0);
    QVERIFY(failed.wait(longestWait));
    QCOMPARE(failed.first().first().toInt(), int(FeedDownloadBadAddress));
    QCOMPARE(m_all->errorString(), QString("no download plug-in takes this address"));

    // A plug-in that says nothing takes what the others do not.
    FeedPluginInterface *withAny = plugins({"dummy", "special"});
    QSignalSpy finished(withAny, &FeedPluginInterface::downloadFeedsFinished);
    withAny->subscribe(QUrl("http:"));
    QVERIFY(finished.wait(longestWait));
}

void TestPluginSwitch::channels()
{
    addChannelAt("a", "https://special.example.org/a");
    addChannelAt("b", "https://example.org/b");
    addChannelAt("c", "https://special.example.org/c");
    QSignalSpy finished(m_all, &FeedPluginInterface::downloadFeedsFinished);
    m_all->downloadFeeds({channelUri("a"), channelUri("b"), channelUri("c"), "urn:unknown"});
    QVERIFY(finished.wait(longestWait));
    QCOMPARE(m_all->property("newMessages").toStringList(),
             QStringList({"special " + channelUri("a"), "special " + channelUri("c"),
                          "secure " + channelUri("b"), "secure urn:unknown"}));
    m_all->downloadFeeds({channelUri("b")});
    QVERIFY(finished.wait(longestWait));
    QCOMPARE(m_all->property("newMessages").toStringList(), QStringList("secure " + channelUri("b")));
    m_all->downloadFeeds({});
    QVERIFY(finished.wait(longestWait));
}

void TestPluginSwitch::firstFailureCounts()
{
    addChannelAt("fail", "https://special.example.org/a");
    addChannelAt("b", "https://example.org/b");
    QSignalSpy failed(m_all, &FeedPluginInterface::downloadFeedsFailed);
    m_all->downloadFeeds({channelUri("fail"), channelUri("b")});
    QVERIFY(failed.wait(longestWait));
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first().first().toInt(), 599);
    QCOMPARE(m_all->errorString(), QString("special failed"));
    QCOMPARE(m_all->property("newMessages").toStringList().size(), 2);
}

void TestPluginSwitch::enclosure()
{
    store().update(
        QString("INSERT { <%1> a mfo:Enclosure ; mfo:remoteLink <https://special.example.org/file> }")
            .arg(enclosureUri("file")));
    QSignalSpy finished(m_all, &FeedPluginInterface::downloadEnclosureFinished);
    QSignalSpy progress(m_all, &FeedPluginInterface::enclosureDownloadProgress);
    m_all->downloadEnclosure(enclosureUri("file"), "/folder");
    QVERIFY(finished.wait(longestWait));
    const QVariantMap map = finished.first().first().toMap();
    QCOMPARE(map.value("mimeType").toString(), QString("special"));
    QCOMPARE(map.value("localUrl").toString(), QString("/folder"));
    QCOMPARE(progress.size(), 1);
}

void TestPluginSwitch::busy()
{
    QSignalSpy failed(m_all, &FeedPluginInterface::downloadFeedsFailed);
    QSignalSpy finished(m_all, &FeedPluginInterface::downloadFeedsFinished);
    m_all->subscribe(QUrl("https://example.org/a"));
    m_all->subscribe(QUrl("https://example.org/b"));
    COMPARE_SOON(finished.size() + failed.size(), 2);
    QCOMPARE(failed.first().first().toInt(), int(FeedDownloadBusy));
    QCOMPARE(m_all->property("newMessages").toStringList(), QStringList("secure https://example.org/a"));
}

void TestPluginSwitch::cancel()
{
    addChannelAt("wait", "https://special.example.org/a");
    addChannelAt("b", "https://example.org/b");
    QSignalSpy failed(m_all, &FeedPluginInterface::downloadFeedsFailed);
    m_all->downloadFeeds({channelUri("wait"), channelUri("b")});
    m_all->cancel();
    QVERIFY(failed.wait(longestWait));
    QCOMPARE(failed.first().first().toInt(), int(FeedDownloadCanceled));
    // The other plug-in was not called.
    QCOMPARE(m_all->property("newMessages").toStringList().filter("secure"), QStringList());
}

void TestPluginSwitch::queue()
{
    DownloadQueue queue(*m_all);
    QStringList heard;
    for (const char *host : {"", "special.", "", "special."})
        queue.subscribe(QUrl(QString("https://%1example.org/").arg(host)),
                        [&heard](const DownloadResult &result) { heard += result.newMessages(); });
    QSignalSpy finished(&queue, &DownloadQueue::finished);
    queue.start();
    QVERIFY(finished.wait(longestWait));
    const QString one = "secure https://example.org/";
    const QString other = "special https://special.example.org/";
    QCOMPARE(heard, QStringList({one, other, one, other}));
}

QTEST_GUILESS_MAIN(TestPluginSwitch)
#include "tst_pluginswitch.moc"
