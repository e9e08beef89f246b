// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/downloadfolder.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Tidel;

/// Which files are removed: those in the download folder, and no others.
class TestDownloadFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void folder();
    void folderOfTheUsersChoice();
    void removed_data();
    void removed();
    void kept_data();
    void kept();
    void several();
    void linkIntoAnotherFolder();
    void linkToAFileOutside();
    void brokenLink();
    void folderBehindALink();
    void noFolder();
    void fileThatCannotBeRemoved();

private:
    QString home() const { return m_home->path(); }
    QString write(const QString &path) const;
    /// Removes the file of one enclosure and returns the number of removed files.
    int remove(const QString &localUrl);

    std::unique_ptr<QTemporaryDir> m_home;
    QString m_folder;
    QStringList m_failed;
};

void TestDownloadFolder::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", QFile::encodeName(home()));
    qunsetenv("XDG_CONFIG_HOME");
    m_folder = home() + "/Downloads/tidel";
    m_failed.clear();
    QVERIFY(QDir().mkpath(m_folder + "/sub"));
    QVERIFY(QDir().mkpath(home() + "/Downloads/tidel-too"));
}

/// Writes an empty file at \a path below the home.
QString TestDownloadFolder::write(const QString &path) const
{
    QFile file(home() + '/' + path);
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

int TestDownloadFolder::remove(const QString &localUrl)
{
    FeedEnclosure enclosure;
    enclosure.setLocalUrl(localUrl);
    return DownloadFolder::removeFiles({enclosure}, &m_failed);
}

void TestDownloadFolder::folder() { QCOMPARE(DownloadFolder::path(), m_folder); }

void TestDownloadFolder::folderOfTheUsersChoice()
{
    QVERIFY(QDir().mkpath(home() + "/.config"));
    QVERIFY(QDir().mkpath(home() + "/Elsewhere/tidel"));
    QFile settings(home() + "/.config/user-dirs.dirs");
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("XDG_DOWNLOAD_DIR=\"$HOME/Elsewhere\"\n");
    settings.close();
    QCOMPARE(DownloadFolder::path(), home() + "/Elsewhere/tidel");
    const QString file = write("Elsewhere/tidel/a.ogg");
    QCOMPARE(remove("file://" + file), 1);
    QVERIFY(!QFile::exists(file));
}

void TestDownloadFolder::removed_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("file") << "a.ogg"
                          << "a.ogg";
    QTest::newRow("in a folder") << "sub/a.ogg"
                                 << "sub/a.ogg";
    QTest::newRow("up and down") << "sub/../a.ogg"
                                 << "a.ogg";
    QTest::newRow("out and in") << "../tidel/a.ogg"
                                << "a.ogg";
    QTest::newRow("encoded") << "100%25%20a.ogg"
                             << "100% a.ogg";
    QTest::newRow("hidden") << ".a"
                            << ".a";
}

void TestDownloadFolder::removed()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    const QString file = write("Downloads/tidel/" + name);
    const QString other = write("Downloads/tidel/other");
    QCOMPARE(remove("file://" + m_folder + '/' + path), 1);
    QCOMPARE(m_failed, QStringList());
    QVERIFY(!QFile::exists(file));
    QVERIFY(QFile::exists(other));
}

void TestDownloadFolder::kept_data()
{
    QTest::addColumn<QString>("localUrl");
    QTest::addColumn<QString>("name");
    QTest::newRow("outside") << "file://%1/a.ogg"
                             << "a.ogg";
    QTest::newRow("beside") << "file://%1/Downloads/a.ogg"
                            << "Downloads/a.ogg";
    QTest::newRow("folder with a longer name") << "file://%1/Downloads/tidel-too/a.ogg"
                                               << "Downloads/tidel-too/a.ogg";
    QTest::newRow("out of it") << "file://%1/Downloads/tidel/../a.ogg"
                               << "Downloads/a.ogg";
    QTest::newRow("far out of it") << "file://%1/Downloads/tidel/sub/../../../a.ogg"
                                   << "a.ogg";
    QTest::newRow("encoded way out") << "file://%1/Downloads/tidel/%2e%2e%2fa.ogg"
                                     << "Downloads/a.ogg";
    QTest::newRow("folder") << "file://%1/Downloads/tidel/sub"
                            << "Downloads/tidel/sub/a.ogg";
    QTest::newRow("download folder") << "file://%1/Downloads/tidel/"
                                     << "Downloads/tidel/a.ogg";
    QTest::newRow("plain path") << "%1/Downloads/tidel/a.ogg"
                                << "Downloads/tidel/a.ogg";
    QTest::newRow("network") << "http://localhost%1/Downloads/tidel/a.ogg"
                             << "Downloads/tidel/a.ogg";
    QTest::newRow("nothing") << "file://%1/Downloads/tidel/b.ogg"
                             << "Downloads/tidel/a.ogg";
    QTest::newRow("empty") << ""
                           << "Downloads/tidel/a.ogg";
    QTest::newRow("relative") << "file:a.ogg"
                              << "Downloads/tidel/a.ogg";
}

void TestDownloadFolder::kept()
{
    QFETCH(QString, localUrl);
    QFETCH(QString, name);
    const QString file = write(name);
    // In this folder the relative path names the file.
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder));
    const int removed = remove(localUrl.replace("%1", home()));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(removed, 0);
    QCOMPARE(m_failed, QStringList());
    QVERIFY(QFile::exists(file));
}

void TestDownloadFolder::several()
{
    QList<FeedEnclosure> enclosures;
    for (const char *path : {"Downloads/tidel/a", "Downloads/b", "Downloads/tidel/sub/c"}) {
        FeedEnclosure enclosure;
        enclosure.setLocalUrl("file://" + write(path));
        enclosures.append(enclosure);
    }
    // Two enclosures may have the same file.
    enclosures.append(enclosures.constFirst());
    QCOMPARE(DownloadFolder::removeFiles(enclosures, &m_failed), 2);
    QCOMPARE(m_failed, QStringList());
    QVERIFY(QFile::exists(home() + "/Downloads/b"));
    QCOMPARE(DownloadFolder::removeFiles({}, &m_failed), 0);
}

void TestDownloadFolder::linkIntoAnotherFolder()
{
    const QString file = write("Downloads/tidel-too/a.ogg");
    QVERIFY(QFile::link(home() + "/Downloads/tidel-too", m_folder + "/link"));
    QCOMPARE(remove("file://" + m_folder + "/link/a.ogg"), 0);
    QVERIFY(QFile::exists(file));
}

void TestDownloadFolder::linkToAFileOutside()
{
    const QString file = write("a.ogg");
    QVERIFY(QFile::link(file, m_folder + "/a.ogg"));
    QCOMPARE(remove("file://" + m_folder + "/a.ogg"), 1);
    QVERIFY(QFile::exists(file));
    QVERIFY(!QFileInfo(m_folder + "/a.ogg").isSymLink());
}

void TestDownloadFolder::brokenLink()
{
    QVERIFY(QFile::link("/nowhere", m_folder + "/a.ogg"));
    QCOMPARE(remove("file://" + m_folder + "/a.ogg"), 1);
    QVERIFY(!QFileInfo(m_folder + "/a.ogg").isSymLink());
}

void TestDownloadFolder::folderBehindALink()
{
    QVERIFY(QDir(m_folder).removeRecursively());
    QVERIFY(QDir().mkpath(home() + "/disk"));
    QVERIFY(QFile::link(home() + "/disk", m_folder));
    const QString file = write("disk/a.ogg");
    QCOMPARE(remove("file://" + m_folder + "/a.ogg"), 1);
    QVERIFY(!QFile::exists(file));
}

void TestDownloadFolder::noFolder()
{
    QVERIFY(QDir(m_folder).removeRecursively());
    const QString file = write("a.ogg");
    QCOMPARE(remove("file://" + file), 0);
    QVERIFY(QFile::exists(file));
}

void TestDownloadFolder::fileThatCannotBeRemoved()
{
    QVERIFY(QDir(m_folder).removeRecursively());
    // Not even root can remove files of this folder.
    QVERIFY(QFile::link("/proc/self", m_folder));
    m_failed.append("before");
    QCOMPARE(remove("file://" + m_folder + "/status"), 0);
    QCOMPARE(m_failed, QStringList({"before", m_folder + "/status"}));
}

QTEST_GUILESS_MAIN(TestDownloadFolder)
#include "tst_downloadfolder.moc"
