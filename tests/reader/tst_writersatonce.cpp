// SPDX-License-Identifier: LGPL-2.1-or-later
#include <teststore.h>

#include <QProcess>
#include <QtTest>

#include <memory>
#include <vector>

/// Several programs that write the same messages at the same time and take no turns.
class TestWritersAtOnce : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingTwiceAndNothingLost();
};

void TestWritersAtOnce::nothingTwiceAndNothingLost()
{
    constexpr int programs = 4;
    constexpr int count = 300;
    const TestStore store;
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int i = 0; i < programs; ++i) {
        writers.push_back(std::make_unique<QProcess>());
        writers.back()->start(QStringLiteral(TIDEL_WRITER_HELPER),
                              {QString::number(i) + ".xml", QString::number(count)});
        QVERIFY(writers.back()->waitForReadyRead(60000));
        QCOMPARE(writers.back()->readAllStandardOutput(), QByteArray("ready\n"));
    }
    for (const auto &writer : writers)
        writer->write("\n");
    int channelsAdded = 0;
    for (const auto &writer : writers) {
        QVERIFY(writer->waitForFinished(120000));
        QVERIFY2(writer->exitCode() == 0, writer->readAllStandardError().constData());
        const QList<QByteArray> said = writer->readAllStandardOutput().simplified().split(' ');
        QCOMPARE(said.value(0).toInt(), count);
        channelsAdded += said.value(1).toInt();
    }
    QCOMPARE(channelsAdded, 1);
    QCOMPARE(store.count("?c a mfo:FeedChannel"), programs + 1);
    QCOMPARE(store.count("?m a mfo:FeedMessage"), count);
    QCOMPARE(store.count("?e a mfo:Enclosure"), count);
    QCOMPARE(store.count("?m a mfo:FeedMessage ; nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel"),
             programs * count);
    QCOMPARE(store.count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m . ?m a mfo:FeedMessage"), count);
}

QTEST_GUILESS_MAIN(TestWritersAtOnce)
#include "tst_writersatonce.moc"
