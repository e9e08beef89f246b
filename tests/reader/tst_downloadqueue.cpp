// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/downloadqueue.h>
#include <TidelReader/pluginfinder.h>

#include <feedplugininterface.h>
#include <soon.h>

#include <QtTest>

using namespace Tidel;

class TestDownloadQueue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void order();
    void headlines();
    void empty();
    void enclosures();
    void unknownSize();
    void cancelLeavesOutTheRest();
    void endingAtOnce();

private:
    /// "5 of 6" for thousands of millions of bytes.
    static QString progressText(qint64 received, qint64 total)
    {
        return QString("%1 of %2").arg(received / 1000000000).arg(total < 0 ? -1 : total / 1000000000);
    }
    /// Starts \a queue and waits for its end.
    static bool run(DownloadQueue &queue);

    FeedPluginInterface *m_plugin = nullptr;
};

void TestDownloadQueue::initTestCase()
{
    const Result<FeedPluginInterface *> plugin = loadPlugin(QString(TIDEL_FIXTURE_PLUGINS) + "/dummy.so");
    QVERIFY(plugin);
    m_plugin = *plugin;
}

bool TestDownloadQueue::run(DownloadQueue &queue)
{
    QSignalSpy finished(&queue, &DownloadQueue::finished);
    queue.start();
    const bool isFinished = finished.wait(longestWait);
    QTest::qWait(0);
    return isFinished && finished.size() == 1;
}

void TestDownloadQueue::order()
{
    constexpr int count = 50;
    DownloadQueue queue(*m_plugin);
    QStringList heard;
    for (int i = 0; i < count; ++i) {
        const QString host = i % 3 ? QString("host%1").arg(i) : QString();
        queue.subscribe(QUrl("https://" + host), [&heard](const DownloadResult &result) {
            heard.append(result.isOk() ? QString("ok") : QString::number(result.error()) + result.reason());
        });
    }
    QList<int> steps;
    connect(&queue, &DownloadQueue::advanced, this, [&](int ended, int all) {
        QCOMPARE(all, count);
        steps.append(ended);
    });
    QVERIFY(run(queue));
    QCOMPARE(heard.size(), count);
    QCOMPARE(steps.size(), count + 1);
    QCOMPARE(steps.last(), count);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(heard.at(i), i % 3 ? QString("599host%1").arg(i) : QString("ok"));
        QCOMPARE(steps.at(i), i);
    }
}

void TestDownloadQueue::headlines()
{
    const auto headline = [](const QString &link, int day) {
        return QVariantMap{{"link", link},
                           {"title", "Title of " + link},
                           {"date", QDateTime(QDate(2026, 11, day), QTime(), Qt::UTC)}};
    };
    const DownloadResult result = DownloadResult::ofFeeds({"a", "b"});
    QCOMPARE(result.headlines().size(), 0);
    QCOMPARE(result.withHeadlines({headline("b", 2)}).headlines().size(), 0);
    const QList<FeedMessage> known = result.withHeadlines({headline("a", 1), headline("b", 2)}).headlines();
    QCOMPARE(known.size(), 2);
    QCOMPARE(known.first().link(), QString("b"));
    QCOMPARE(known.first().title(), QString("Title of b"));
    QCOMPARE(known.first().publishedDate().date(), QDate(2026, 11, 2));
}

void TestDownloadQueue::empty()
{
    DownloadQueue queue(*m_plugin);
    QVERIFY(run(queue));
}

void TestDownloadQueue::enclosures()
{
    DownloadQueue queue(*m_plugin);
    QStringList heard;
    QStringList steps;
    connect(&queue, &DownloadQueue::progressed, this,
            [&](qint64 received, qint64 total) { steps.append(progressText(received, total)); });
    for (const QString &uri : {QString("urn:a"), QString("urn:b")})
        queue.downloadEnclosure(uri, "/tmp/%41", [&heard](const DownloadResult &result) {
            heard.append(QString("%1 %2 %3 %4")
                             .arg(result.localUrl(), result.path(), QString::number(result.length()),
                                  result.mimeType()));
        });
    QVERIFY(run(queue));
    QCOMPARE(heard,
             QStringList({"file:///tmp/%2541/urn:a /tmp/%41/urn:a 5000000000 audio/ogg",
                          "file:///tmp/%2541/urn:b /tmp/%41/urn:b 5000000000 audio/ogg"}));
    // The first one ends with less than announced, and its size counts then.
    QCOMPARE(steps, QStringList({"2 of 6", "5 of 6", "7 of 11", "10 of 11"}));
}

void TestDownloadQueue::unknownSize()
{
    DownloadQueue queue(*m_plugin);
    QStringList steps;
    connect(&queue, &DownloadQueue::progressed, this,
            [&](qint64 received, qint64 total) { steps.append(progressText(received, total)); });
    for (const QString &uri : {QString("urn:unsized"), QString("urn:b")})
        queue.downloadEnclosure(uri, "/tmp", [](const DownloadResult &) {});
    QVERIFY(run(queue));
    QCOMPARE(steps, QStringList({"2 of -1", "5 of -1", "7 of 11", "10 of 11"}));
}

void TestDownloadQueue::cancelLeavesOutTheRest()
{
    DownloadQueue queue(*m_plugin);
    QList<int> heard;
    for (int i = 0; i < 50; ++i)
        queue.subscribe(QUrl("wait://x"),
                        [&heard](const DownloadResult &result) { heard.append(result.error()); });
    QSignalSpy finished(&queue, &DownloadQueue::finished);
    queue.start();
    QTest::qWait(50);
    QCOMPARE(finished.size(), 0);
    queue.cancel();
    COMPARE_SOON(finished.size(), 1);
    QCOMPARE(heard.size(), 8);
    QCOMPARE(heard.count(FeedDownloadCanceled), 8);
}

// The interface forbids it, but a plug-in that does it must not stop its host.
void TestDownloadQueue::endingAtOnce()
{
    DownloadQueue queue(*m_plugin);
    int heard = 0;
    for (int i = 0; i < 20; ++i)
        queue.subscribe(QUrl("atonce:"), [&heard](const DownloadResult &) { ++heard; });
    QVERIFY(run(queue));
    QCOMPARE(heard, 20);
}

QTEST_GUILESS_MAIN(TestDownloadQueue)
#include "tst_downloadqueue.moc"
