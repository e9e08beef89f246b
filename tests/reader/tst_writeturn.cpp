// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/writeturn.h>

#include <QtTest>

#include <atomic>
#include <optional>
#include <thread>

using namespace Tidel;

class TestWriteTurn : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void oneAfterTheOther();
    void withoutFolder();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestWriteTurn::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_dir->path()));
}

// For the system two threads that open the file are like two processes.
void TestWriteTurn::oneAfterTheOther()
{
    QVERIFY(QDir(m_dir->path()).mkdir("tidel"));
    std::optional<WriteTurn> mine(std::in_place);
    std::atomic<bool> isTheirs(false);
    std::thread thread([&] {
        const WriteTurn theirs;
        isTheirs = true;
    });
    QTest::qWait(200);
    const bool wasTooEarly = isTheirs;
    mine.reset();
    thread.join();
    QVERIFY(!wasTooEarly);
    QVERIFY(isTheirs);
}

void TestWriteTurn::withoutFolder()
{
    const WriteTurn one;
    const WriteTurn two;
    QVERIFY(!QFile::exists(m_dir->filePath("tidel")));
}

QTEST_GUILESS_MAIN(TestWriteTurn)
#include "tst_writeturn.moc"
