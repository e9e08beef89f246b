// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/pluginfinder.h>

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
    void onlyGoodPlugin();
    void nothingThere();

private:
    QString copy(const QString &name, const QString &as = QString()) const;

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

void TestPluginFinder::badPlugins_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");

    QTest::newRow("library") << "nometadata"
                             << "is not a plug-in: ";
    QTest::newRow("other interface") << "otherinterface"
                                     << "is a plug-in for another interface: \"org.example.Other/1.0\"";
    QTest::newRow("other class") << "notadownloader"
                                 << "is not a download plug-in, although its metadata say so";
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
    const Result<FeedPluginInterface *> plugin = loadPlugin(file);
    QVERIFY(!plugin);
    QCOMPARE(plugin.error().kind(), Error::PluginUnusable);
    QVERIFY2(plugin.error().text().startsWith(reason), qPrintable(plugin.error().text()));
    QStringList problems;
    QVERIFY(!findPlugin(m_folder->path(), &problems));
    QCOMPARE(problems.size(), 1);
    QVERIFY2(problems.first().startsWith(file + ' ' + reason), qPrintable(problems.first()));
}

void TestPluginFinder::goodPlugin()
{
    const Result<FeedPluginInterface *> plugin = loadPlugin(copy("dummy"));
    QVERIFY2(plugin, qPrintable(plugin ? QString() : plugin.error().text()));
    const std::unique_ptr<FeedPluginInterface> downloader((*plugin)->createDownloader(nullptr));
    QVERIFY(downloader != nullptr && downloader.get() != *plugin);
}

void TestPluginFinder::onlyGoodPlugin()
{
    QVERIFY(!copy("throws", "a").isEmpty());
    QFile text(m_folder->filePath("b.so"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("This is not a library.\n");
    text.close();
    QVERIFY(!copy("dummy", "c").isEmpty());
    QVERIFY(!copy("otherinterface", "d").isEmpty());
    QVERIFY(QDir(m_folder->path()).mkdir("0.so"));
    QFile notes(m_folder->filePath("0.txt"));
    QVERIFY(notes.open(QIODevice::WriteOnly));

    QStringList problems;
    QVERIFY(findPlugin(m_folder->path(), &problems));
    QCOMPARE(problems.size(), 3);
    QVERIFY2(problems.at(0).endsWith("a.so fails to start"), qPrintable(problems.at(0)));
    QVERIFY2(problems.at(1).contains("b.so is not a plug-in: "), qPrintable(problems.at(1)));
    QVERIFY2(problems.at(2).contains("d.so is a plug-in for another"), qPrintable(problems.at(2)));
}

void TestPluginFinder::nothingThere()
{
    for (const QString &folder : {m_folder->path(), QString("/no/such/folder"), QString()}) {
        QStringList problems;
        const Result<FeedPluginInterface *> plugin = findPlugin(folder, &problems);
        QVERIFY(!plugin);
        QCOMPARE(plugin.error().text(), "no download plug-in in " + folder);
        QCOMPARE(problems, QStringList());
    }
    QVERIFY2(pluginFolder().endsWith("/tidel/plugins"), qPrintable(pluginFolder()));
}

QTEST_GUILESS_MAIN(TestPluginFinder)
#include "tst_pluginfinder.moc"
