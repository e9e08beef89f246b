// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

constexpr int itemCount = 300;

QString link(int number) { return QStringLiteral("https://example.org/%1").arg(number); }

} // namespace

/// `tidel check` on sound and on damaged stores.
class TestCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void noStore();
    void soundStore();
    void yesNeedsRepair();
    void findingsAndRepair();
    void damage_data();
    void damage();
    void nothingReadable();
    void errorsNameTheRepair();
    void repairThatIsKilled();

private:
    Run tidel(const QStringList &arguments) const;
    QString storeFolder() const { return m_home->filePath("data/tidel/store"); }
    QString writeFeed() const;
    /// Overwrites the bytes of the database from \a from to \a to, thousandths of its size, by \a byte.
    void overwrite(int from, int to, char byte) const;
    QByteArray database() const;
    void setDatabase(const QByteArray &bytes) const;
    QStringList damagedFolders() const { return QDir(storeFolder()).entryList({"damaged-*"}, QDir::Dirs); }
    QStringList messages() const;
    QStringList links() const;
    QStringList titles() const;

    std::unique_ptr<QTemporaryDir> m_home;
};

void TestCheck::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", m_home->filePath("data").toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
}

Run TestCheck::tidel(const QStringList &arguments) const
{
    QProcess process;
    process.start(TIDEL_PROGRAM, arguments);
    return finishedRun(process);
}

/// A feed with many items, each with a file.
QString TestCheck::writeFeed() const
{
    QFile file(m_home->filePath("feed.xml"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("could not write a feed");
    file.write("<rss version='2.0'><channel><title>Feed</title>");
    for (int i = 0; i < itemCount; ++i)
        file.write(
            QString("<item><title>Title %1</title><link>%2</link><guid>%1</guid><description>%3</description>"
                    "<enclosure url='%2.mp3' length='1' type='audio/mpeg'/></item>")
                .arg(QString::number(i), link(i), QString("Text of %1. ").arg(i).repeated(40))
                .toUtf8());
    file.write("</channel></rss>");
    return file.fileName();
}

QByteArray TestCheck::database() const
{
    QFile file(storeFolder() + "/meta.db");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestCheck::setDatabase(const QByteArray &bytes) const
{
    QFile file(storeFolder() + "/meta.db");
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void TestCheck::overwrite(int from, int to, char byte) const
{
    QByteArray bytes = database();
    const int begin = int(bytes.size() * qint64(from) / 1000);
    const int end = int(bytes.size() * qint64(to) / 1000);
    setDatabase(bytes.replace(begin, end - begin, QByteArray(end - begin, byte)));
}

QStringList TestCheck::messages() const
{
    return tidel({"messages", m_home->filePath("feed.xml")}).out.split('\n', Qt::SkipEmptyParts);
}

QStringList TestCheck::links() const
{
    QStringList links;
    for (const QString &line : messages())
        links.append(line.section(' ', -1));
    return links;
}

QStringList TestCheck::titles() const
{
    QStringList titles;
    for (const QString &line : messages())
        titles.append(line.mid(line.indexOf("Title ")).section("  ", 0, 0));
    return titles;
}

void TestCheck::noStore()
{
    const Run checked = tidel({"check"});
    QCOMPARE(checked.out, QString("There is no store yet\n"));
    QCOMPARE(checked.exitCode, 0);
    QVERIFY(!QFile::exists(storeFolder()));
}

void TestCheck::soundStore()
{
    QCOMPARE(tidel({"subscribe", writeFeed()}).exitCode, 0);
    const QByteArray before = database();
    for (const QStringList &arguments : {QStringList{"check"}, QStringList{"check", "--repair"}}) {
        const Run checked = tidel(arguments);
        QCOMPARE(checked.exitCode, 0);
        QCOMPARE(checked.err, QString());
        const QStringList lines = checked.out.split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 12);
        for (const QString &line : lines)
            QVERIFY2(line.endsWith(": ok"), qPrintable(line));
    }
    QVERIFY(database() == before);
}

void TestCheck::yesNeedsRepair()
{
    const Run checked = tidel({"check", "--yes"});
    QCOMPARE(checked.exitCode, 2);
    QVERIFY(checked.err.contains("--yes belongs to --repair"));
}

void TestCheck::findingsAndRepair()
{
    QCOMPARE(tidel({"subscribe", writeFeed()}).exitCode, 0);
    const QString folder = m_home->filePath("Downloads/tidel");
    QVERIFY(QDir().mkpath(folder));
    QFile part(folder + "/.tidel-abcdef.part");
    QVERIFY(part.open(QIODevice::WriteOnly));
    QVERIFY(part.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
    part.close();

    const Run checked = tidel({"check"});
    QCOMPARE(checked.exitCode, 1);
    QVERIFY2(checked.out.contains("Unfinished downloads: 1 (" + part.fileName()), qPrintable(checked.out));
    QVERIFY2(checked.err.contains("\"tidel check --repair\""), qPrintable(checked.err));
    // Nobody can answer the question.
    const Run asked = tidel({"check", "--repair"});
    QCOMPARE(asked.exitCode, 1);
    QVERIFY2(asked.out.contains("unfinished downloads are removed"), qPrintable(asked.out));
    QVERIFY2(asked.err.contains("add --yes"), qPrintable(asked.err));
    QVERIFY(part.exists());

    const Run repaired = tidel({"check", "--repair", "--yes"});
    QCOMPARE(repaired.exitCode, 0);
    QVERIFY2(repaired.out.endsWith("Repaired\n"), qPrintable(repaired.out));
    QVERIFY(!part.exists());
}

void TestCheck::damage_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("byte"); // -1 for a file that ends there
    // Behind the list of tables, without which nothing can be read.
    for (int place : {100, 350, 420, 570, 700, 850}) {
        const int byte = place % 4 == 0 ? 0 : 'x';
        QTest::addRow("bytes %d at %d", byte, place) << place << place + 30 << byte;
    }
    for (int size : {500, 700, 950})
        QTest::addRow("cut at %d", size) << size << 1000 << -1;
    QTest::newRow("first pages") << 0 << 10 << int('y');
    QTest::newRow("header") << 0 << 0 << int('y');
}

/// What is damaged does not keep the rest from being saved, and a refresh brings back what the feed still
/// shows.
void TestCheck::damage()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, byte);
    QCOMPARE(tidel({"subscribe", writeFeed()}).exitCode, 0);
    QCOMPARE(tidel({"favorite", link(7)}).exitCode, 0);
    if (byte < 0)
        setDatabase(database().left(int(database().size() * qint64(from) / 1000)));
    else if (to == 0)
        setDatabase(QByteArray(100, char(byte)) + database().mid(100));
    else
        overwrite(from, to, char(byte));
    const QByteArray damaged = database();

    const Run checked = tidel({"check"});
    QCOMPARE(checked.exitCode, 1);
    QVERIFY2(checked.out.startsWith("Database: damaged ("), qPrintable(checked.out));
    QVERIFY2(checked.err.contains("\"tidel check --repair\""), qPrintable(checked.err));
    QCOMPARE(tidel({"check", "--repair"}).exitCode, 1);
    QVERIFY(database() == damaged);

    const Run repaired = tidel({"check", "--repair", "--yes"});
    QVERIFY2(repaired.exitCode == 0, qPrintable(repaired.out + repaired.err));
    QVERIFY2(repaired.out.contains("Saved: "), qPrintable(repaired.out));
    QCOMPARE(damagedFolders().size(), 1);
    QFile kept(storeFolder() + '/' + damagedFolders().first() + "/meta.db");
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QVERIFY(kept.readAll() == damaged);
    QCOMPARE(tidel({"check"}).exitCode, 0);
    QVERIFY(!QFile::exists(storeFolder() + "/salvaged"));

    const bool isChannelLost = !tidel({"channels"}).out.contains("feed.xml");
    QCOMPARE(
        tidel(isChannelLost ? QStringList{"subscribe", m_home->filePath("feed.xml")} : QStringList{"refresh"})
            .exitCode,
        0);
    // A message whose link was lost with its page has a new link, or its item comes back beside it.
    const QStringList stored = titles();
    for (int i = 0; i < itemCount; ++i)
        QVERIFY2(stored.contains("Title " + QString::number(i)), qPrintable(link(i)));
    QCOMPARE(tidel({"check"}).exitCode, 0);
}

void TestCheck::nothingReadable()
{
    QCOMPARE(tidel({"subscribe", writeFeed()}).exitCode, 0);
    const QByteArray garbage(int(database().size()), 'x');
    setDatabase(garbage);
    const Run repaired = tidel({"check", "--repair", "--yes"});
    QCOMPARE(repaired.exitCode, 1);
    QVERIFY2(repaired.err.contains("nothing in it can be read"), qPrintable(repaired.err));
    QVERIFY(database() == garbage);
    QVERIFY(damagedFolders().isEmpty());
    QVERIFY(!QDir(storeFolder() + "/salvaged").exists());
}

void TestCheck::errorsNameTheRepair()
{
    QCOMPARE(tidel({"subscribe", writeFeed()}).exitCode, 0);
    setDatabase(QByteArray(100, 'y') + database().mid(100));
    const Run listed = tidel({"channels"});
    QCOMPARE(listed.exitCode, 1);
    QVERIFY2(listed.err.contains("\"tidel check --repair\""), qPrintable(listed.err));
}

/// Whenever a repair is killed, the next one saves everything.
void TestCheck::repairThatIsKilled()
{
    QCOMPARE(tidel({"subscribe", writeFeed()}).exitCode, 0);
    setDatabase(QByteArray(100, 'y') + database().mid(100));
    const QByteArray damaged = database();
    for (int ms : {50, 100, 150, 200, 250, 300, 400, 600}) {
        QProcess process;
        process.start(TIDEL_PROGRAM, {"check", "--repair", "--yes"});
        QVERIFY(process.waitForStarted());
        QTest::qWait(ms);
        process.kill();
        process.waitForFinished();
    }
    const Run repaired = tidel({"check", "--repair", "--yes"});
    QVERIFY2(repaired.exitCode == 0, qPrintable(repaired.out + repaired.err));
    QCOMPARE(links().size(), itemCount);
    QVERIFY(!damagedFolders().isEmpty());
    QFile kept(storeFolder() + '/' + damagedFolders().first() + "/meta.db");
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QVERIFY(kept.readAll() == damaged);
}

QTEST_GUILESS_MAIN(TestCheck)
#include "tst_check.moc"
