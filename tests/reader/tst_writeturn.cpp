// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/writeturn.h>

#include <QtTest>

#include <atomic>
#include <optional>
#include <thread>

#include <sys/stat.h>

using namespace Tidel;

class TestWriteTurn : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void oneAfterTheOther();
    void whoWaitsIsNext();
    void whoHasIt();
    void saysForWhomItWaits();
    void privateFiles();
    void unreadableNotes_data();
    void unreadableNotes();
    void followsOwn();
    void withoutFolder();

private:
    QString lockFile() const { return m_dir->filePath("tidel/writing.lock"); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestWriteTurn::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_dir->path()));
    QVERIFY(QDir(m_dir->path()).mkdir("tidel"));
}

// For the system two threads that open the file are like two processes.
void TestWriteTurn::oneAfterTheOther()
{
    std::optional<Result<WriteTurn>> mine(WriteTurn::take());
    QVERIFY(mine->has_value());
    std::atomic<bool> isTheirs(false);
    std::thread thread([&] { isTheirs = WriteTurn::take().has_value(); });
    QTest::qWait(200);
    const bool wasTooEarly = isTheirs;
    mine.reset();
    thread.join();
    QVERIFY(!wasTooEarly);
    QVERIFY(isTheirs);
}

void TestWriteTurn::whoWaitsIsNext()
{
    std::optional<Result<WriteTurn>> mine(WriteTurn::take());
    std::atomic<bool> wasTheirs(false);
    std::thread thread([&] {
        const auto theirs = WriteTurn::take();
        wasTheirs = theirs.has_value();
    });
    QTest::qWait(200);
    mine.reset();
    mine.emplace(WriteTurn::take());
    const bool isSecond = wasTheirs;
    mine.reset();
    thread.join();
    QVERIFY(isSecond);
}

void TestWriteTurn::whoHasIt()
{
    const auto mine = WriteTurn::take();
    QVERIFY(mine);
    QTest::qWait(1000);
    const auto theirs = WriteTurn::take(0);
    QVERIFY(!theirs);
    QCOMPARE(theirs.error().kind(), Error::StoreFailed);
    const QString who =
        QString("could not write to the store: tst_writeturn (process %1) has been writing for ")
            .arg(QCoreApplication::applicationPid());
    const QString text = theirs.error().text();
    QVERIFY2(text.startsWith(who) && text.endsWith(" seconds; wait until it has ended, or end it"),
             qPrintable(text));
    QVERIFY(text.mid(who.size()).section(' ', 0, 0).toInt() >= 1);
}

void TestWriteTurn::saysForWhomItWaits()
{
    const auto mine = WriteTurn::take();
    QVERIFY(mine);
    const QRegularExpression notice(
        QString("^Waiting for tst_writeturn \\(process %1\\), which has been writing for \\d+ seconds$")
            .arg(QCoreApplication::applicationPid()));
    QTest::ignoreMessage(QtInfoMsg, notice);
    QVERIFY(!WriteTurn::take(3));
}

void TestWriteTurn::privateFiles()
{
    const mode_t before = umask(0);
    const bool isTaken = WriteTurn::take().has_value();
    umask(before);
    QVERIFY(isTaken);
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QCOMPARE(QFile::permissions(lockFile()) & others, QFile::Permissions());
}

void TestWriteTurn::unreadableNotes_data()
{
    QTest::addColumn<QByteArray>("note");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no numbers") << QByteArray("a b c");
    QTest::newRow("not text") << QByteArray("\xff\0\n\n\n%1 %2", 9);
    QTest::newRow("long") << QByteArray(1000000, '9');
}

void TestWriteTurn::unreadableNotes()
{
    QFETCH(QByteArray, note);
    QFile file(lockFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(note);
    file.close();
    const auto turn = WriteTurn::take();
    QVERIFY(turn);
    QVERIFY(!turn->followsOwn());
}

void TestWriteTurn::followsOwn()
{
    QVERIFY(!WriteTurn::take()->followsOwn());
    QVERIFY(WriteTurn::take()->followsOwn());
    QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), {"take"}), 0);
    QVERIFY(!WriteTurn::take()->followsOwn());
    QVERIFY(WriteTurn::take()->followsOwn());
}

void TestWriteTurn::withoutFolder()
{
    QVERIFY(QDir(m_dir->path()).rmdir("tidel"));
    const auto turn = WriteTurn::take();
    QVERIFY(!turn);
    QCOMPARE(turn.error().kind(), Error::StoreFailed);
    QVERIFY2(turn.error().text().contains("/tidel/writing-next.lock: "), qPrintable(turn.error().text()));
    QVERIFY(!QFile::exists(m_dir->filePath("tidel")));
}

/// With the argument "take" the program is another process, which has a turn.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().mid(1) == QStringList("take"))
        return WriteTurn::take() ? 0 : 1;
    TestWriteTurn test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_writeturn.moc"
