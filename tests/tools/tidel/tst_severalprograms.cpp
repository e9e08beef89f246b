// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/writeturn.h>

#include <heldlocks.h>
#include <storetest.h>

#include <QProcess>
#include <QtTest>

using namespace Tidel;

namespace {

constexpr int itemCount = 2000;

} // namespace

/// Several programs that write to one store at the same time.
class TestSeveralPrograms : public StoreTestCase
{
    Q_OBJECT

private slots:
    void sameItemsAtOnce();
    void othersWriteBetweenGroups_data();
    void othersWriteBetweenGroups();
    void unsubscribedDuringRefresh();
    void suspendedDuringRefresh();

private:
    /// Writes a feed with items of the numbers below \a count.
    QString write(const QString &name, int count) const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly))
            return QString();
        file.write("<rss version='2.0'><channel><title>Feed</title>");
        for (int i = 0; i < count; ++i)
            file.write(QStringLiteral("<item><link>https://example.org/%1</link></item>").arg(i).toUtf8());
        file.write("</channel></rss>");
        return file.fileName();
    }
    static std::unique_ptr<QProcess> start(const QStringList &arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::MergedChannels);
        process->start(TIDEL_PROGRAM, arguments);
        return process;
    }
    int messages() const { return store().count("?m a mfo:FeedMessage"); }

    QTemporaryDir m_folder;
};

#define VERIFY_END(started)                                                                                  \
    do {                                                                                                     \
        const auto &process = started;                                                                       \
        QVERIFY(process->waitForFinished(120000));                                                           \
        const QByteArray output = process->readAll();                                                        \
        QVERIFY2(process->exitCode() == 0, output.constData());                                              \
    } while (false)

void TestSeveralPrograms::sameItemsAtOnce()
{
    const auto one = start({"subscribe", write("one.xml", itemCount)});
    const auto two = start({"subscribe", write("two.xml", itemCount)});
    VERIFY_END(one);
    VERIFY_END(two);
    QCOMPARE(messages(), itemCount);
    QCOMPARE(store().count("?m a mfo:FeedMessage ; nie:isLogicalPartOf ?c"), 2 * itemCount);
}

void TestSeveralPrograms::othersWriteBetweenGroups_data()
{
    QTest::addColumn<QString>("update");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("atEnd");
    QStringList links;
    for (int i = 0; i < itemCount; ++i)
        links.append(QStringLiteral("'https://example.org/%1'").arg(i));
    QTest::newRow("nothing") << QString() << 0 << itemCount;
    QTest::newRow("messages are pruned")
        << "DELETE { ?m a rdfs:Resource } WHERE { ?m a mfo:FeedMessage } INSERT { ?c tidel:droppedLink "
            + links.join(", ") + " } WHERE { ?c a mfo:FeedChannel }"
        << 0 << 0;
    QTest::newRow("the channel is deleted")
        << "DELETE { ?r a rdfs:Resource } WHERE { ?r a nie:InformationElement }" << 1 << 0;
}

void TestSeveralPrograms::othersWriteBetweenGroups()
{
    QFETCH(QString, update);
    QFETCH(int, exitCode);
    QFETCH(int, atEnd);
    const QString feed = write("one.xml", 1);
    VERIFY_END(start({"subscribe", feed}));
    write("one.xml", itemCount);
    const auto refresh = start({"refresh"});
    QTRY_VERIFY_WITH_TIMEOUT(messages() > 1, 60000);
    {
        const auto turn = WriteTurn::take();
        QVERIFY(turn);
        QVERIFY(messages() < itemCount);
        store().update(update);
    }
    QVERIFY(refresh->waitForFinished(120000));
    const QByteArray output = refresh->readAll();
    QVERIFY2(refresh->exitCode() == exitCode, output.constData());
    QCOMPARE(output.contains("the channel was deleted during the download"), exitCode != 0);
    QCOMPARE(messages(), atEnd);
}

void TestSeveralPrograms::unsubscribedDuringRefresh()
{
    const QString feed = write("one.xml", 1);
    VERIFY_END(start({"subscribe", feed}));
    write("one.xml", itemCount);
    const auto refresh = start({"refresh"});
    QTRY_VERIFY_WITH_TIMEOUT(messages() > 1, 60000);
    VERIFY_END(start({"unsubscribe", feed}));
    QVERIFY(refresh->waitForFinished(120000));
    QCOMPARE(messages(), 0);
    QCOMPARE(store().count("?c tidel:digest ?d"), 0);
    QCOMPARE(store().count("?c nie:contentLastModified ?time"), 0);
}

void TestSeveralPrograms::suspendedDuringRefresh()
{
    const QString feed = write("one.xml", 1);
    VERIFY_END(start({"subscribe", feed}));
    write("one.xml", itemCount);
    const auto refresh = start({"refresh"});
    QTRY_VERIFY_WITH_TIMEOUT(messages() > 1, 60000);
    // The lock of its turn.
    QVERIFY(stopWithLock(refresh->processId(), "WRITE", 0, 0));
    const int before = messages();
    VERIFY_END(start({"channels"}));

    const auto quiet = start({"prune", "--keep", "0", "--include-unread", "--quiet"});
    const auto prune = start({"prune", "--keep", "0", "--include-unread"});
    QVERIFY(prune->waitForReadyRead(60000));
    const QByteArray notice = prune->readLine();
    const QByteArray expected =
        QStringLiteral("tidel: Waiting for tidel (process %1), which has been writing for ")
            .arg(refresh->processId())
            .toUtf8();
    QVERIFY2(notice.startsWith(expected), notice.constData());
    QCOMPARE(messages(), before);
    kill(pid_t(refresh->processId()), SIGCONT);
    VERIFY_END(prune);
    VERIFY_END(refresh);
    QVERIFY(quiet->waitForFinished(120000));
    QCOMPARE(quiet->readAll(), QByteArray());
}

QTEST_GUILESS_MAIN(TestSeveralPrograms)
#include "tst_severalprograms.moc"
