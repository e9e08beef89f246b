// SPDX-License-Identifier: LGPL-2.1-or-later
#include <downloadqueue.h>
#include <plugincall.h>
#include <pluginfinder.h>

#include <feedplugininterface.h>

#include <QtTest>

using namespace Tidel;

class TestPluginFinder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void badPlugins_data();
    void badPlugins();
    void goodPlugin();
    void firstGoodPlugin();
    void nothingThere();
    void calls();
    void queueOrder();
    void methodThatIsNotThere();
    void emptyQueue();

private:
    QString copy(const QString &name, const QString &as = QString()) const;
    FeedPluginInterface *dummy() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPluginFinder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString TestPluginFinder::copy(const QString &name, const QString &as) const
{
    const QString target = m_folder->filePath((as.isEmpty() ? name : as) + ".so");
    return QFile::copy(QString(TIDEL_FIXTURE_PLUGINS) + '/' + name + ".so", target) ? target : QString();
}

FeedPluginInterface *TestPluginFinder::dummy() const
{
    QString error;
    return loadPlugin(QString(TIDEL_FIXTURE_PLUGINS) + "/dummy.so", &error);
}

void TestPluginFinder::badPlugins_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");

    QTest::newRow("library") << "nometadata"
                             << "is not a plug-in: ";
    QTest::newRow("other interface") << "otherinterface"
                                     << "is a plug-in for something else: \"org.example.Other/1.0\"";
    QTest::newRow("other class") << "notadownloader"
                                 << "does not download feeds, whatever it says of itself";
    QTest::newRow("throws") << "throws"
                            << "fails to start";
    QTest::newRow("unresolved") << "unresolved"
                                << "cannot be loaded: ";
}

void TestPluginFinder::badPlugins()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    const QString file = copy(name);
    QVERIFY(!file.isEmpty());
    QString error;
    QVERIFY(!loadPlugin(file, &error));
    QVERIFY2(error.startsWith(reason), qPrintable(error));
    QStringList problems;
    QVERIFY(!findPlugin(m_folder->path(), &problems));
    QCOMPARE(problems.size(), 1);
    QVERIFY2(problems.first().startsWith(file + ' ' + reason), qPrintable(problems.first()));
}

void TestPluginFinder::goodPlugin()
{
    QString error;
    FeedPluginInterface *plugin = loadPlugin(copy("dummy"), &error);
    QVERIFY2(plugin, qPrintable(error));
    QCOMPARE(error, QString());
    const std::unique_ptr<FeedPluginInterface> downloader(plugin->createDownloader(nullptr));
    QVERIFY(downloader != nullptr && downloader.get() != plugin);
}

void TestPluginFinder::firstGoodPlugin()
{
    QVERIFY(!copy("throws", "a").isEmpty());
    QFile text(m_folder->filePath("b.so"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("I am a library, honestly.\n");
    text.close();
    QVERIFY(!copy("dummy", "c").isEmpty());
    QVERIFY(!copy("otherinterface", "d").isEmpty());
    QVERIFY(QDir(m_folder->path()).mkdir("0.so"));
    QFile notes(m_folder->filePath("0.txt"));
    QVERIFY(notes.open(QIODevice::WriteOnly));

    QStringList problems;
    QVERIFY(findPlugin(m_folder->path(), &problems));
    QCOMPARE(problems.size(), 2);
    QVERIFY2(problems.at(0).endsWith("a.so fails to start"), qPrintable(problems.at(0)));
    QVERIFY2(problems.at(1).contains("b.so is not a plug-in: "), qPrintable(problems.at(1)));
}

void TestPluginFinder::nothingThere()
{
    for (const QString &folder : {m_folder->path(), QString("/no/such/folder"), QString()}) {
        QStringList problems;
        QVERIFY(!findPlugin(folder, &problems));
        QCOMPARE(problems, QStringList());
    }
    QVERIFY2(pluginFolder().endsWith("/tidel/plugins"), qPrintable(pluginFolder()));
}

void TestPluginFinder::calls()
{
    const std::unique_ptr<FeedPluginInterface> downloader(dummy()->createDownloader(nullptr));
    QSignalSpy failed(downloader.get(), &FeedPluginInterface::downloadFeedsFailed);
    QVERIFY(invoke(*downloader, methodCall("subscribe", QUrl("https://example.org/"))));
    QCOMPARE(downloader->errorString(), QString("example.org"));
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(invoke(*downloader, methodCall("downloadEnclosure", QString("a"), QString("b"))));
    QVERIFY(invoke(*downloader, methodCall("cancel")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("No such method.*noSuchMethod"));
    QVERIFY(!invoke(*downloader, methodCall("noSuchMethod")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("No such method.*subscribe"));
    QVERIFY(!invoke(*downloader, methodCall("subscribe", QString("not a URL"))));
    FeedMethod tooMany = methodCall("subscribe");
    for (int i = 0; i < 11; ++i)
        tooMany.arguments.append(FeedArgument::fromValue(i));
    QVERIFY(!invoke(*downloader, tooMany));
}

void TestPluginFinder::queueOrder()
{
    constexpr int count = 50;
    DownloadQueue queue(*dummy());
    QStringList heard;
    for (int i = 0; i < count; ++i) {
        const QString host = i % 3 ? QString("host%1").arg(i) : QString();
        queue.add(methodCall("subscribe", QUrl("https://" + host)), [&heard](const DownloadEnding &ending) {
            heard.append(ending.isFine() ? QString("fine") : QString::number(ending.error) + ending.reason);
        });
    }
    QList<int> steps;
    connect(&queue, &DownloadQueue::advanced, this, [&](int ended, int all) {
        QCOMPARE(all, count);
        steps.append(ended);
    });
    QCOMPARE(queue.run(), 0);
    QCOMPARE(heard.size(), count);
    QCOMPARE(steps.size(), count + 1);
    QCOMPARE(steps.last(), count);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(heard.at(i), i % 3 ? QString("599host%1").arg(i) : QString("fine"));
        QCOMPARE(steps.at(i), i);
    }
}

void TestPluginFinder::methodThatIsNotThere()
{
    DownloadQueue queue(*dummy());
    QStringList heard;
    for (int i = 0; i < 20; ++i) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("No such method.*downloadFeeds"));
        queue.add(methodCall("downloadFeeds", QStringList("urn:x")),
                  [&heard](const DownloadEnding &ending) { heard.append(ending.reason); });
    }
    QCOMPARE(queue.run(), 0);
    QCOMPARE(heard.size(), 20);
    QCOMPARE(QSet<QString>(heard.begin(), heard.end()),
             QSet<QString>{"the plug-in has no \"downloadFeeds\""});
}

void TestPluginFinder::emptyQueue()
{
    DownloadQueue queue(*dummy());
    QCOMPARE(queue.run(), 0);
}

QTEST_GUILESS_MAIN(TestPluginFinder)
#include "tst_pluginfinder.moc"
