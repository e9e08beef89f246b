// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <TidelReader/downloadfolder.h>
#include <commands.h>

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace Tidel;

/// Tests that the file of a deleted enclosure is removed if it is in the download folder, and kept otherwise.
class TestDownloads : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void folder();
    void configuredFolder();
    void removed_data();
    void removed();
    void kept_data();
    void kept();
    void linkToAnotherFolder();
    void linkToFileOutside();
    void brokenLink();
    void linkAsFolder();
    void noFolder();
    void fileThatCannotBeRemoved();

private:
    QString write(const QString &path) const;
    CommandResult deleteEnclosure(const QString &localUrl) const;

    QString m_folder;
};

void TestDownloads::init()
{
    CommandTestCase::init();
    m_folder = home() + "/Downloads/tidel";
    QVERIFY(QDir().mkpath(m_folder + "/sub"));
    QVERIFY(QDir().mkpath(home() + "/Downloads/tidel-too"));
}

/// Creates an empty file at \a path in the home folder; returns its absolute path.
QString TestDownloads::write(const QString &path) const
{
    QFile file(home() + '/' + path);
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

/// Deletes a message whose only enclosure has the file \a localUrl.
CommandResult TestDownloads::deleteEnclosure(const QString &localUrl) const
{
    addChannel("News", {message("a", day(1), {"a.ogg"})});
    setLocalUrl("a.ogg", localUrl);
    const CommandResult result = runCommand(prune, {}, {{"keep", "0"}});
    return store().count("?e a mfo:Enclosure") == 0 ? result : CommandResult();
}

void TestDownloads::folder() { QCOMPARE(DownloadFolder::path(), m_folder); }

void TestDownloads::configuredFolder()
{
    QVERIFY(QDir().mkpath(home() + "/.config"));
    QVERIFY(QDir().mkpath(home() + "/Elsewhere/tidel"));
    QFile settings(home() + "/.config/user-dirs.dirs");
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("XDG_DOWNLOAD_DIR=\"$HOME/Elsewhere\"\n");
    settings.close();
    QCOMPARE(DownloadFolder::path(), home() + "/Elsewhere/tidel");
    const QString file = write("Elsewhere/tidel/a.ogg");
    QCOMPARE(deleteEnclosure("file://" + file).out, QString("News: deleted 1 message, 1 file\n"));
    QVERIFY(!QFile::exists(file));
}

void TestDownloads::removed_data()
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

void TestDownloads::removed()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    const QString file = write("Downloads/tidel/" + name);
    const QString other = write("Downloads/tidel/other");
    QCOMPARE(deleteEnclosure("file://" + m_folder + '/' + path).out,
             QString("News: deleted 1 message, 1 file\n"));
    QVERIFY(!QFile::exists(file));
    QVERIFY(QFile::exists(other));
}

void TestDownloads::kept_data()
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

void TestDownloads::kept()
{
    QFETCH(QString, localUrl);
    QFETCH(QString, name);
    const QString file = write(name);
    // Relative to this folder, a relative URL would name the file.
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder));
    const CommandResult result = deleteEnclosure(localUrl.replace("%1", home()));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QString("News: deleted 1 message, 0 files\n"));
    QVERIFY(QFile::exists(file));
}

void TestDownloads::linkToAnotherFolder()
{
    const QString file = write("Downloads/tidel-too/a.ogg");
    QVERIFY(QFile::link(home() + "/Downloads/tidel-too", m_folder + "/link"));
    QCOMPARE(deleteEnclosure("file://" + m_folder + "/link/a.ogg").out,
             QString("News: deleted 1 message, 0 files\n"));
    QVERIFY(QFile::exists(file));
}

void TestDownloads::linkToFileOutside()
{
    const QString file = write("a.ogg");
    QVERIFY(QFile::link(file, m_folder + "/a.ogg"));
    QCOMPARE(deleteEnclosure("file://" + m_folder + "/a.ogg").out,
             QString("News: deleted 1 message, 1 file\n"));
    QVERIFY(QFile::exists(file));
    QVERIFY(!QFileInfo(m_folder + "/a.ogg").isSymLink());
}

void TestDownloads::brokenLink()
{
    QVERIFY(QFile::link("/nowhere", m_folder + "/a.ogg"));
    QCOMPARE(deleteEnclosure("file://" + m_folder + "/a.ogg").out,
             QString("News: deleted 1 message, 1 file\n"));
    QVERIFY(!QFileInfo(m_folder + "/a.ogg").isSymLink());
}

void TestDownloads::linkAsFolder()
{
    QVERIFY(QDir(m_folder).removeRecursively());
    QVERIFY(QDir().mkpath(home() + "/disk"));
    QVERIFY(QFile::link(home() + "/disk", m_folder));
    const QString file = write("disk/a.ogg");
    QCOMPARE(deleteEnclosure("file://" + m_folder + "/a.ogg").out,
             QString("News: deleted 1 message, 1 file\n"));
    QVERIFY(!QFile::exists(file));
}

void TestDownloads::noFolder()
{
    QVERIFY(QDir(m_folder).removeRecursively());
    const QString file = write("a.ogg");
    QCOMPARE(deleteEnclosure("file://" + file).out, QString("News: deleted 1 message, 0 files\n"));
    QVERIFY(QFile::exists(file));
}

void TestDownloads::fileThatCannotBeRemoved()
{
    QVERIFY(QDir(m_folder).removeRecursively());
    // Not even root can remove files in this folder.
    QVERIFY(QFile::link("/proc/self", m_folder));
    const CommandResult result = deleteEnclosure("file://" + m_folder + "/status");
    QVERIFY(!result.isFine);
    QCOMPARE(result.err, "tidel: " + m_folder + "/status: could not remove the file; remove it yourself\n");
    QCOMPARE(result.out, QString("News: deleted 1 message, 0 files\n"));
}

QTEST_GUILESS_MAIN(TestDownloads)
#include "tst_downloads.moc"
