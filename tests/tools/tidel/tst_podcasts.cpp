// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"
#include "pseudoterminal.h"

#include <feedserver.h>
#include <soon.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/// Downloads episodes with the real program from a real server, and interrupts it.
class TestPodcasts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void interrupted_data();
    void interrupted();
    void queue();
    void queueIsWorkedThrough();
    void failedOneWaits();
    void interruptedQueue();
    void downloadedOneDoesNotWait();
    void unqueue();
    void newest();
    void newestOfChannels();
    void progress_data();
    void progress();
    void misuse_data();
    void misuse();

private:
    void start(QProcess &process, const QStringList &arguments) const;
    Run run(const QStringList &arguments) const;
    QStringList waiting() const;
    void subscribe(const QString &name, const QStringList &paths) const;
    /// The address of a file of the server. No two tests have the same, so that it interrupts each.
    QString path(const QString &options) const
    {
        return QString("/ranged/a.mp3?test=%1&%2").arg(m_dir->path().section('/', -1), options);
    }
    QString address(const QString &path) const { return m_server->url(path); }
    QString folder() const { return m_dir->filePath("Downloads/tidel"); }
    QStringList files() const;

    QTemporaryDir m_served;
    std::unique_ptr<FeedServer> m_server;
    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_body;
};

void TestPodcasts::initTestCase()
{
    // A shell may ignore the signal for programs in the background.
    signal(SIGINT, SIG_DFL);
    for (int i = 0; i < 60000; ++i)
        m_body += QByteArray::number(i % 9973) + ' ';
    QFile file(m_served.filePath("a.mp3"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(m_body) == m_body.size());
    m_server = std::make_unique<FeedServer>(m_served.path());
    QVERIFY(m_server->isRunning());
}

void TestPodcasts::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_server->forgetRequests();
}

void TestPodcasts::start(QProcess &process, const QStringList &arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_dir->filePath("data"));
    environment.insert("XDG_CONFIG_HOME", m_dir->filePath("config"));
    environment.insert("HOME", m_dir->path());
    environment.insert("LC_ALL", "C.UTF-8");
    environment.insert("TERM", process.processEnvironment().value("TERM", "xterm"));
    process.setProcessEnvironment(environment);
    process.start(TIDEL_PROGRAM, arguments);
}

Run TestPodcasts::run(const QStringList &arguments) const
{
    QProcess process;
    start(process, arguments);
    return finishedRun(process);
}

/// The addresses of the files that wait.
QStringList TestPodcasts::waiting() const
{
    QStringList addresses;
    const QStringList lines = run({"enclosures", "--json"}).out.split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        if (QDateTime::fromString(object["queued"].toString(), Qt::ISODate).isValid())
            addresses.append(object["url"].toString());
    }
    return addresses;
}

/// Subscribes to a feed with an episode for each of \a paths, the newest last.
void TestPodcasts::subscribe(const QString &name, const QStringList &paths) const
{
    QFile file(m_dir->filePath(name + ".xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<rss version='2.0'><channel><title>" + name.toUtf8() + "</title>");
    int day = 1;
    for (const QString &path : paths) {
        file.write(
            QString("<item><title>%1</title><link>https://example.org/%2/%3</link>"
                    "<pubDate>%4 Nov 2026 12:00:00 GMT</pubDate><enclosure url='%5'/></item>")
                .arg(name, name, QString::number(day), QString::number(day), address(path).toHtmlEscaped())
                .toUtf8());
        ++day;
    }
    file.write("</channel></rss>");
    file.close();
    VERIFY_RUN(run({"subscribe", file.fileName()}), 0);
}

QStringList TestPodcasts::files() const
{
    return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void TestPodcasts::interrupted_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("terminated") << SIGTERM;
    QTest::newRow("killed") << SIGKILL;
}

void TestPodcasts::interrupted()
{
    QFETCH(int, signal);
    const QString episode = path("cut=200000&hold");
    subscribe("radio", {episode});
    QProcess process;
    start(process, {"download", address(episode)});
    const auto part = [this] {
        return QDir(folder()).entryInfoList({".tidel-*.part"}, QDir::Hidden | QDir::Files);
    };
    VERIFY_SOON(part().size() == 1 && part().first().size() == 200000);
    QCOMPARE(kill(pid_t(process.processId()), signal), 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(part().value(0).size(), qint64(200000));
    m_server->forgetRequests();
    const Run done = run({"download", address(episode)});
    VERIFY_RUN(done, 0);
    QCOMPARE(m_server->requests(), QStringList("GET " + episode + " 206"));
    QCOMPARE(done.out, "Downloaded: " + folder() + "/a.mp3 (286.20 KiB)\n");
    QCOMPARE(files(), QStringList("a.mp3"));
    QFile file(folder() + "/a.mp3");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == m_body);
    VERIFY_RUN(run({"check"}), 0);
}

void TestPodcasts::queue()
{
    subscribe("radio", {"/bytes/10/one.mp3", "/bytes/20/two.mp3"});
    const QString one = address("/bytes/10/one.mp3");
    const Run added = run({"download", "--queue", "https://example.org/radio/2", one});
    VERIFY_RUN(added, 0);
    QCOMPARE(added.out,
             "Waits to be downloaded: " + address("/bytes/20/two.mp3") + "\nWaits to be downloaded: " + one
                 + '\n');
    QCOMPARE(m_server->requests(), QStringList());
    QCOMPARE(waiting(), QStringList({address("/bytes/20/two.mp3"), one}));
    const Run shown = run({"enclosures", "https://example.org/radio/1"});
    QVERIFY2(shown.out.endsWith(one + "  waits to be downloaded\n"), qPrintable(shown.out));
    QVERIFY2(run({"enclosures"}).out.contains(one + "  waits to be downloaded\n"), "list");
    // What waits is part of a backup.
    VERIFY_RUN(run({"backup", m_dir->filePath("archive")}), 0);
    QVERIFY(QDir(m_dir->filePath("data")).removeRecursively());
    VERIFY_RUN(run({"restore", m_dir->filePath("archive")}), 0);
    QCOMPARE(waiting(), QStringList({address("/bytes/20/two.mp3"), one}));
}

void TestPodcasts::queueIsWorkedThrough()
{
    const Run nothing = run({"download"});
    VERIFY_RUN(nothing, 0);
    QCOMPARE(nothing.err, QString("No files wait to be downloaded; \"tidel download --queue\" adds some\n"));
    subscribe("radio", {"/bytes/10/one.mp3", "/bytes/20/two.mp3", "/bytes/30/three.mp3"});
    VERIFY_RUN(run({"download", "--queue", "https://example.org/radio/3", "https://example.org/radio/1"}), 0);
    const Run done = run({"download"});
    VERIFY_RUN(done, 0);
    QCOMPARE(done.out,
             "Downloaded: " + folder() + "/three.mp3 (30 bytes)\nDownloaded: " + folder()
                 + "/one.mp3 (10 bytes)\n");
    QCOMPARE(files(), QStringList({"one.mp3", "three.mp3"}));
    QCOMPARE(waiting(), QStringList());
}

void TestPodcasts::failedOneWaits()
{
    subscribe("radio", {"/nothing/one.mp3", "/bytes/20/two.mp3"});
    VERIFY_RUN(run({"download", "--new", "2", "--queue"}), 0);
    const Run done = run({"download"});
    VERIFY_RUN(done, 1);
    QCOMPARE(done.err, "tidel: " + address("/nothing/one.mp3") + ": the server answered 404 Not Found\n");
    QCOMPARE(files(), QStringList("two.mp3"));
    QCOMPARE(waiting(), QStringList(address("/nothing/one.mp3")));
}

void TestPodcasts::interruptedQueue()
{
    const QString held = path("cut=200000&hold");
    subscribe("radio", {held, "/bytes/20/two.mp3"});
    VERIFY_RUN(run({"download", "--new", "2", "--queue"}), 0);
    QProcess process;
    start(process, {"download"});
    COMPARE_SOON(files().filter("two").size(), 1);
    COMPARE_SOON(m_server->requests().size(), 2);
    QCOMPARE(kill(pid_t(process.processId()), SIGKILL), 0);
    QVERIFY(process.waitForFinished());
    VERIFY_RUN(run({"download"}), 0);
    QCOMPARE(files(), QStringList({"a.mp3", "two.mp3"}));
    QCOMPARE(QFileInfo(folder() + "/a.mp3").size(), qint64(m_body.size()));
    QCOMPARE(waiting(), QStringList());
}

void TestPodcasts::downloadedOneDoesNotWait()
{
    subscribe("radio", {"/bytes/10/one.mp3"});
    VERIFY_RUN(run({"download", "--queue", "https://example.org/radio/1"}), 0);
    VERIFY_RUN(run({"download", "https://example.org/radio/1"}), 0);
    QCOMPARE(waiting(), QStringList());
    const Run again = run({"download", "--queue", "https://example.org/radio/1"});
    VERIFY_RUN(again, 0);
    QCOMPARE(again.out, "Already downloaded: " + folder() + "/one.mp3 (10 bytes)\n");
    QCOMPARE(waiting(), QStringList());
}

void TestPodcasts::unqueue()
{
    subscribe("radio", {"/bytes/10/one.mp3", "/bytes/20/two.mp3"});
    VERIFY_RUN(run({"download", "--new", "2", "--queue"}), 0);
    const Run removed = run({"download", "--unqueue", "https://example.org/radio/1"});
    VERIFY_RUN(removed, 0);
    QCOMPARE(removed.out, "Does not wait any more: " + address("/bytes/10/one.mp3") + '\n');
    QCOMPARE(waiting(), QStringList(address("/bytes/20/two.mp3")));
    const Run again = run({"download", "--unqueue", "https://example.org/radio/1"});
    VERIFY_RUN(again, 0);
    QCOMPARE(again.err, QString("None of the files waits to be downloaded\n"));
    QCOMPARE(m_server->requests(), QStringList());
}

void TestPodcasts::newest()
{
    subscribe("radio", {"/bytes/10/one.mp3", "/bytes/20/two.mp3", "/bytes/30/three.mp3"});
    VERIFY_RUN(run({"download", "--new", "1"}), 0);
    QCOMPARE(files(), QStringList("three.mp3"));
    // Who removes a file does not want it again.
    QVERIFY(QFile::remove(folder() + "/three.mp3"));
    VERIFY_RUN(run({"download", "--new", "1"}), 0);
    QCOMPARE(files(), QStringList("two.mp3"));
    VERIFY_RUN(run({"download", "--new", "5"}), 0);
    QCOMPARE(files(), QStringList({"one.mp3", "two.mp3"}));
    const Run none = run({"download", "--new", "5"});
    VERIFY_RUN(none, 0);
    QCOMPARE(none.err, QString("All files of these channels were downloaded before\n"));
}

void TestPodcasts::newestOfChannels()
{
    subscribe("radio", {"/bytes/10/one.mp3", "/bytes/20/two.mp3"});
    subscribe("songs", {"/bytes/30/a.mp3", "/bytes/40/b.mp3", "/bytes/50/c.mp3"});
    VERIFY_RUN(run({"download", "--new", "1", "radio", "--queue"}), 0);
    QCOMPARE(waiting(), QStringList(address("/bytes/20/two.mp3")));
    VERIFY_RUN(run({"download", "--unqueue", "https://example.org/radio/2"}), 0);
    VERIFY_RUN(run({"download", "--new", "1", "--queue"}), 0);
    QCOMPARE(waiting(), QStringList(address("/bytes/50/c.mp3")));
    VERIFY_RUN(run({"download", "--new", "1", "nowhere"}), 1);
    QCOMPARE(files(), QStringList());
}

void TestPodcasts::progress_data()
{
    QTest::addColumn<QByteArray>("terminal");
    QTest::addColumn<bool>("isShown");

    QTest::newRow("terminal") << QByteArray("xterm") << true;
    QTest::newRow("terminal that cannot erase") << QByteArray("dumb") << false;
}

void TestPodcasts::progress()
{
    QFETCH(QByteArray, terminal);
    QFETCH(bool, isShown);
    // What comes within a tenth of a second is not shown.
    const QString episode = path("pause=0.5");
    subscribe("radio", {episode});
    PseudoTerminal screen(0, 0);
    QProcess process;
    process.setStandardErrorFile(screen.name());
    QProcessEnvironment environment;
    environment.insert("TERM", terminal);
    process.setProcessEnvironment(environment);
    start(process, {"download", address(episode)});
    const QByteArray shown = screen.readAll();
    VERIFY_RUN(finishedRun(process), 0);
    const QRegularExpression step("0/1 files, \\d+\\.\\d\\d KiB of 286\\.20 KiB, \\d+ %\r\033\\[K");
    QCOMPARE(step.match(QString::fromLatin1(shown)).hasMatch(), isShown);
    QCOMPARE(shown.isEmpty(), !isShown);
}

void TestPodcasts::misuse_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("reason");

    QTest::newRow("nothing to queue") << QStringList{"--queue"} << "--queue needs a message";
    QTest::newRow("nothing to unqueue") << QStringList{"--unqueue"} << "--unqueue needs a message";
    QTest::newRow("newest to unqueue")
        << QStringList{"--unqueue", "--new", "1"} << "--unqueue needs a message";
    QTest::newRow("both") << QStringList{"--queue", "--unqueue", "a"} << "choose --queue or --unqueue";
    QTest::newRow("no number") << QStringList{"--new", "x"} << "--new needs a number";
    QTest::newRow("zero") << QStringList{"--new", "0"} << "--new needs a number";
    QTest::newRow("large number") << QStringList{"--new", "9999999999"} << "--new needs a number";
    QTest::newRow("folder for later")
        << QStringList{"--queue", "a", "--into", "b"} << "--into downloads at once";
    QTest::newRow("no folder") << QStringList{"a", "--into", ""} << "--into needs a folder";
}

void TestPodcasts::misuse()
{
    QFETCH(QStringList, options);
    QFETCH(QString, reason);
    const Run run = this->run(QStringList{"download"} + options);
    VERIFY_RUN(run, 2);
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
}

QTEST_GUILESS_MAIN(TestPodcasts)
#include "tst_podcasts.moc"
