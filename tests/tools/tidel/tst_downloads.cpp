// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

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

    void removed();
    void kept();
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
    QVERIFY(QDir().mkpath(m_folder));
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
    const CommandResult result = runCommand(pruneCommand, {}, {{"keep", "0"}, {"include-unread", ""}});
    return store().count("?e a mfo:Enclosure") == 0 ? result : CommandResult();
}

void TestDownloads::removed()
{
    const QString file = write("Downloads/tidel/a.ogg");
    const QString other = write("Downloads/tidel/other");
    QCOMPARE(deleteEnclosure("file://" + file).out, QString("News: deleted 1 message, 1 file\n"));
    QVERIFY(!QFile::exists(file));
    QVERIFY(QFile::exists(other));
}

void TestDownloads::kept()
{
    const QString file = write("Downloads/a.ogg");
    const CommandResult result = deleteEnclosure("file://" + file);
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QString("News: deleted 1 message, 0 files\n"));
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
