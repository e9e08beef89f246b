// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <QtTest>

#include <vector>

/// How the plug-in spares servers.
class TestManners : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init() { QVERIFY(begin()); }
    void cleanup() { end(); }

    void requestsAtATime();
};

// Requests that wait for their turn do not time out: all together take longer than the server may be silent.
void TestManners::requestsAtATime()
{
    constexpr int count = 8;
    std::vector<std::unique_ptr<FeedPluginInterface>> downloaders;
    int ended = 0;
    for (int i = 0; i < count; ++i) {
        downloaders.push_back(another());
        FeedPluginInterface *each = downloaders.back().get();
        each->setProperty("timeout", 3000);
        connect(each, &FeedPluginInterface::downloadFeedsFinished, this, [&] { ++ended; });
        each->subscribe(QUrl(m_server->url("/crowd/" + QString::number(i))));
    }
    QTRY_COMPARE_WITH_TIMEOUT(ended, count, 60000);
    const QStringList titles = m_store->texts("SELECT ?t { ?c a mfo:FeedChannel ; nie:title ?t }");
    QCOMPARE(titles, QStringList() << QStringList(QVector<QString>(count, "2").toList()));
}

QTEST_GUILESS_MAIN(TestManners)
#include "tst_manners.moc"
