// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"
#include "pseudoterminal.h"

#include <feedserver.h>
#include <soon.h>

#include <QtTest>

#include <csignal>

namespace {

const QString samples(TIDEL_TEST_DATA);

QByteArray item(int number)
{
    return "<item><title>Item " + QByteArray::number(number) + "</title><link>https://example.org/"
        + QByteArray::number(number) + "</link></item>";
}

} // namespace

/// Runs the program with the plug-in and a server.
class TestNetwork : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void subscribeAndRefresh();
    void manyFeeds();
    void parallelRuns();
    void failures();
    void removedPermanently();
    void passwordsAreNotShown();
    void download();
    void parallelDownloads();
    void downloadByName();
    void downloadFolder();
    void interrupted_data();
    void interrupted();
    void interruptedWriting();
    void interruptedDownload();
    void killedDownload();
    void progress();
    void progressInNarrowTerminal();
    void withoutPlugin();
    void badPlugin();

private:
    void start(QProcess &process, const QStringList &arguments) const;
    void startStalledDownload(QProcess &process);
    Run run(const QStringList &arguments) const;
    QString runThreeTimes(const QStringList &arguments) const;
    QString write(const QString &name, const QByteArray &items) const;
    QString address(const QString &name) const { return m_server->url("/files/" + name); }
    QStringList downloads() const;
    QByteArray shownProgress(ushort columns) const;
    QProcessEnvironment installedEnvironment() const;
    /// Copies the program, its library and \a plugin, which may be empty. Returns the path of the program.
    QString copyProgram(const QString &plugin) const;

    QTemporaryDir m_served;
    std::unique_ptr<FeedServer> m_server;
    std::unique_ptr<QTemporaryDir> m_dir;
    QProcessEnvironment m_environment;
};

void TestNetwork::initTestCase()
{
    // A shell may ignore the signal for programs in the background.
    signal(SIGINT, SIG_DFL);
    QVERIFY(m_served.isValid());
    m_server = std::make_unique<FeedServer>(m_served.path());
    QVERIFY(m_server->isRunning());
}

void TestNetwork::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert("XDG_DATA_HOME", m_dir->filePath("data"));
    m_environment.insert("XDG_CONFIG_HOME", m_dir->filePath("config"));
    m_environment.insert("HOME", m_dir->path());
    m_environment.insert("LC_ALL", "C.UTF-8");
    m_environment.insert("TZ", "UTC");
    m_server->forgetRequests();
}

void TestNetwork::start(QProcess &process, const QStringList &arguments) const
{
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(m_dir->path());
    process.start(TIDEL_PROGRAM, arguments);
}

Run TestNetwork::run(const QStringList &arguments) const
{
    QProcess process;
    start(process, arguments);
    return finishedRun(process);
}

QString TestNetwork::write(const QString &name, const QByteArray &items) const
{
    QFile file(m_served.filePath(name));
    const QByteArray title = name.section('.', 0, 0).toUtf8();
    const QByteArray document =
        "<rss version='2.0'><channel><title>" + title + "</title>" + items + "</channel></rss>";
    return file.open(QIODevice::WriteOnly) && file.write(document) > 0 ? address(name) : QString();
}

QStringList TestNetwork::downloads() const
{
    return QDir(m_dir->filePath("into"))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

QString TestNetwork::copyProgram(const QString &plugin) const
{
    const QString folder = m_dir->filePath("installed/lib");
    const QString plugins = folder + "/tidel/plugins";
    const QString program = m_dir->filePath("installed/tidel");
    const bool isThere = QDir().mkpath(plugins) && QFile::copy(TIDEL_PROGRAM, program)
        && QFile::copy(TIDEL_READER, folder + "/libTidelReader.so.0")
        && (plugin.isEmpty() || QFile::copy(plugin, plugins + "/plugin.so"));
    return isThere ? program : QString();
}

/// The environment of the copied program, which uses the copied library.
QProcessEnvironment TestNetwork::installedEnvironment() const
{
    QProcessEnvironment environment = m_environment;
    environment.insert("LD_LIBRARY_PATH", m_dir->filePath("installed/lib"));
    return environment;
}

void TestNetwork::subscribeAndRefresh()
{
    const QString morning = write("morning.xml", item(1));
    const QString evening = write("evening.xml", item(2));
    const Run subscribed = run({"subscribe", morning, evening});
    VERIFY_RUN(subscribed, 0);
    QCOMPARE(subscribed.lines(),
             QStringList({"Subscribed: morning (1 message)", "Subscribed: evening (1 message)"}));
    QCOMPARE(subscribed.err, QString());
    QCOMPARE(run({"subscribe", morning}).out,
             QString("Already subscribed: morning (\"tidel refresh\" downloads new messages)\n"));

    m_server->forgetRequests();
    const Run unchanged = run({"refresh"});
    VERIFY_RUN(unchanged, 0);
    QCOMPARE(unchanged.lines(), QStringList({"2 channels: 0 new messages"}));
    QStringList requests = m_server->takeRequests();
    requests.sort();
    QCOMPARE(requests, QStringList({"GET /files/evening.xml 304", "GET /files/morning.xml 304"}));

    write("morning.xml", item(4) + item(3) + item(1));
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 0);
    QCOMPARE(refreshed.lines().size(), 4);
    QCOMPARE(refreshed.lines().at(0), QString("morning: 2 new"));
    QVERIFY(refreshed.out.contains("\n  (no date)  Item 3\n")
            && refreshed.out.contains("\n  (no date)  Item 4\n"));
    QCOMPARE(refreshed.lines().last(), QString("2 channels: 2 new messages"));
    QCOMPARE(run({"refresh", "morning"}).out, QString("morning: nothing new\n"));
    QCOMPARE(run({"refresh", "morning", morning}).out, QString("morning: nothing new\n"));
}

// There are more feeds than parallel downloads. The output has the order of the arguments.
void TestNetwork::manyFeeds()
{
    QStringList addresses;
    QStringList expected;
    for (int i = 10; i < 50; ++i) {
        addresses.append(write(QString("many%1.xml").arg(i), item(i)));
        expected.append(QString("Subscribed: many%1 (1 message)").arg(i));
    }
    QCOMPARE(run(QStringList{"subscribe"} + addresses).lines(), expected);
    QCOMPARE(run({"refresh"}).lines(), QStringList{"40 channels: 0 new messages"});
}

/// The output of three runs at the same time.
QString TestNetwork::runThreeTimes(const QStringList &arguments) const
{
    QProcess processes[3];
    for (QProcess &process : processes)
        start(process, arguments);
    QByteArray output;
    for (QProcess &process : processes) {
        process.waitForFinished(120000);
        output += process.readAllStandardOutput() + process.readAllStandardError();
    }
    return QString::fromUtf8(output);
}

/// The lines of \a text without \a usual.
QString oddLines(const QString &text, const QString &usual)
{
    QStringList lines;
    for (const QString &line : text.split('\n'))
        if (!line.contains(usual))
            lines.append(line);
    return lines.join('\n');
}

// A timer may refresh at the same time as the user. Everything is stored once, and nothing fails.
void TestNetwork::parallelRuns()
{
    constexpr int feeds = 20;
    constexpr int items = 30;
    QStringList addresses;
    QByteArray document;
    for (int i = 0; i < items; ++i)
        document += item(i);
    for (int i = 0; i < feeds; ++i) {
        QByteArray own = document;
        addresses.append(write(QString("shared%1.xml").arg(i),
                               own.replace("example.org", "h" + QByteArray::number(i) + ".org")));
    }

    const QString subscribed = runThreeTimes(QStringList{"subscribe"} + addresses);
    QVERIFY2(!subscribed.contains("tidel:"), qPrintable(subscribed));
    QCOMPARE(subscribed.count("Subscribed: "), feeds);
    QCOMPARE(subscribed.count("Already subscribed: "), 2 * feeds);
    const QString channels = run({"channels"}).out;
    QVERIFY2(channels.count(QString("  %1/%1  ").arg(items)) == feeds,
             qPrintable(oddLines(channels, "30/30") + oddLines(subscribed, "(30 messages)")));

    for (int i = 0; i < feeds; ++i)
        write(QString("shared%1.xml").arg(i), item(1000 + i));
    const QString refreshed = runThreeTimes({"refresh"});
    QVERIFY2(!refreshed.contains("tidel:"), qPrintable(refreshed));
    QCOMPARE(refreshed.count(": 1 new\n"), feeds);
    QVERIFY(!refreshed.contains("nothing new"));
    const QString grown = run({"channels"}).out;
    QVERIFY2(grown.count(QString("  %1/%1  ").arg(items + 1)) == feeds,
             qPrintable(oddLines(grown, "31/31") + refreshed));
}

void TestNetwork::failures()
{
    const QString good = write("good.xml", item(1));
    const QString fading = write("fading.xml", item(2));
    const QStringList wrong{m_server->url("/nothing"), m_server->url("/status/410"), m_server->url("/empty"),
                            m_server->url("/redirect/302?file:///etc/hostname")};
    const Run some = run(QStringList{"subscribe", good} + wrong + QStringList{fading});
    VERIFY_RUN(some, 1);
    QCOMPARE(some.lines(), QStringList({"Subscribed: good (1 message)", "Subscribed: fading (1 message)"}));
    QCOMPARE(some.err,
             QString("tidel: %1: the server answered 404 Not Found\n"
                     "tidel: %2: the server answered 410 Gone: the file was removed permanently\n"
                     "tidel: %3: the document is empty\n"
                     "tidel: %4: the server redirects to an unsafe address\n")
                 .arg(wrong.at(0), wrong.at(1), wrong.at(2), wrong.at(3)));

    QVERIFY(QFile::remove(m_served.filePath("fading.xml")));
    write("good.xml", item(3) + item(1));
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 1);
    QCOMPARE(refreshed.lines(),
             QStringList({"good: 1 new", "  (no date)  Item 3", "2 channels: 1 new message, 1 failed"}));
    QCOMPARE(refreshed.err, "tidel: fading (" + fading + "): the server answered 404 Not Found\n");
}

void TestNetwork::removedPermanently()
{
    VERIFY_RUN(run({"subscribe", write("bygone.xml", item(1))}), 0);
    const QString gone = m_server->url("/status/410");
    VERIFY_RUN(run({"edit", "bygone", "--link", gone}), 0);
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 1);
    QCOMPARE(
        refreshed.err,
        "tidel: bygone (" + gone
            + "): the server answered 410 Gone: the file was removed permanently; the feed is not asked for "
              "any more: \"tidel edit CHANNEL --link\" gives it another address, \"tidel refresh --force\" "
              "asks again, \"tidel unsubscribe\" deletes it\n");
}

void TestNetwork::passwordsAreNotShown()
{
    const auto withPassword = [](QString url) { return url.replace("://", "://user:secret@"); };
    const QString settings = m_dir->filePath("log.ini");
    QFile file(settings);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[log-settings]\ndir-path=" + m_dir->path().toUtf8()
               + "\nfile-name=log\n"
                 "[log-format]\nformat=<message>\n[Tracker]\ndebug=true\n[TidelReader]\ndebug=true\n"
                 "[default]\ndebug=true\nwarning=true\n");
    file.close();
    // Of today's feeds, and as older versions stored relative links.
    const QString link = withPassword(address("a.html"));
    const QString feed = withPassword(
        write("private.xml",
              ("<item><title>A</title><link>" + link + "</link><enclosure url='b.mp3'/></item>").toUtf8()));
    const QString shownFeed = QString(feed).remove(":secret");
    const QString shownLink = QString(link).remove(":secret");
    const auto logged = [&](QStringList arguments) {
        return run(QStringList{"--log-settings", settings} + arguments);
    };
    const QList<std::pair<QStringList, QString>> commands{
        {{"subscribe", withPassword(m_server->url("/nothing"))}, "://user@127.0.0.1"},
        {{"subscribe", feed}, "Subscribed: private"},
        {{"subscribe", feed}, "Already subscribed"},
        {{"channels"}, shownFeed},
        {{"messages", shownFeed}, shownLink},
        {{"enclosures", shownLink}, "://user@127.0.0.1"},
        {{"download", QString(shownLink).replace("a.html", "b.mp3")}, "404"},
        {{"unfavorite", shownLink}, "Not a favorite"},
        {{"enclosures", link}, "://user@127.0.0.1"},
        {{"download", link}, "://user@127.0.0.1"},
        {{"download", withPassword("http://nowhere")}, "://user@nowhere"},
        {{"favorite", withPassword("http://nowhere")}, "://user@nowhere"},
        {{"messages", withPassword("http://nowhere")}, "://user@nowhere"},
        {{"edit", feed, "--title", "private"}, shownFeed},
        {{"edit", feed, "--link", withPassword(m_server->url("/status/410"))}, "://user@127.0.0.1"},
        {{"refresh"}, "://user@127.0.0.1"},
        {{"unsubscribe", "private"}, "private"},
    };
    for (const auto &[arguments, shown] : commands) {
        const Run ended = logged(arguments);
        const QString all = ended.out + ended.err;
        QVERIFY2(all.contains(shown), qPrintable(arguments.join(' ') + '\n' + all));
        QVERIFY2(!all.contains("secret"), qPrintable(arguments.join(' ') + '\n' + all));
    }
    QFile log(m_dir->filePath("log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray lines = log.readAll();
    QVERIFY(lines.contains("read the channels"));
    QVERIFY(!lines.contains("secret"));
}

void TestNetwork::download()
{
    const QString feed =
        write("files.xml",
              "<item><title>Files</title><link>https://example.org/files</link>"
              "<enclosure url='"
                  + m_server->url("/bytes/1000/a.mp3").toUtf8() + "' type='audio/mpeg' length='1'/></item>");
    VERIFY_RUN(run({"subscribe", feed}), 0);
    const QString target = m_dir->filePath("into");
    const Run first = run({"download", "https://example.org/files", "--into", "into"});
    VERIFY_RUN(first, 0);
    QCOMPARE(first.out, "Downloaded: " + target + "/a.mp3 (1000 bytes)\n");
    QCOMPARE(first.err, QString());
    QCOMPARE(downloads(), QStringList("a.mp3"));
    QVERIFY(run({"enclosures", "https://example.org/files"}).out.startsWith("1000 bytes  audio/mpeg  "));

    m_server->forgetRequests();
    const QString already = "Already downloaded: " + target + "/a.mp3 (1000 bytes)\n";
    QCOMPARE(run({"download", "https://example.org/files"}).out, already);
    QCOMPARE(run({"download", "https://example.org/files", "--into", "into"}).out, already);
    const QString copy = m_dir->filePath("elsewhere/a.mp3");
    QCOMPARE(run({"download", "https://example.org/files", "--into", "elsewhere"}).out,
             "Copied: " + copy + " (1000 bytes)\n");
    QCOMPARE(QFileInfo(copy).size(), 1000);
    const Run taken = run({"download", "https://example.org/files", "--into", "elsewhere"});
    VERIFY_RUN(taken, 1);
    QCOMPARE(taken.err,
             "tidel: " + copy + ": a file of this name exists; move it away or choose another folder\n");
    QCOMPARE(m_server->requests(), QStringList());
    // The archive still refers to the first one.
    QVERIFY(run({"enclosures", "https://example.org/files"}).out.endsWith("  " + target + "/a.mp3\n"));
}

void TestNetwork::parallelDownloads()
{
    QByteArray files;
    for (int i = 10; i < 30; ++i)
        files += "<enclosure url='" + m_server->url(QString("/bytes/1000/%1.mp3").arg(i)).toUtf8() + "'/>";
    const QString feed = write(
        "often.xml", "<item><title>Often</title><link>https://example.org/often</link>" + files + "</item>");
    VERIFY_RUN(run({"subscribe", feed}), 0);
    const QString output = runThreeTimes({"download", "https://example.org/often", "--into", "into"});
    QVERIFY2(!output.contains("tidel:"), qPrintable(output));
    QCOMPARE(output.count("ownloaded: "), 60);
    QCOMPARE(downloads().size(), 20);
}

void TestNetwork::downloadByName()
{
    const QString good = m_server->url("/bytes/10/good.mp3");
    const QString bad = m_server->url("/nothing");
    const QString feed =
        write("named.xml",
              "<item><title>N</title><link>https://example.org/n</link>"
              "<media:group xmlns:media='http://search.yahoo.com/mrss/'/>"
              "<enclosure url='"
                  + good.toUtf8() + "'/><enclosure url='" + bad.toUtf8() + "'/></item>" + item(1));
    VERIFY_RUN(run({"subscribe", feed}), 0);
    const Run mixed = run(
        {"download", "https://example.org/n", "https://example.org/1", "nowhere", good, "--into", "into"});
    VERIFY_RUN(mixed, 1);
    QCOMPARE(mixed.out, "Downloaded: " + m_dir->filePath("into") + "/good.mp3 (10 bytes)\n");
    QVERIFY2(mixed.err.contains("https://example.org/1: the message has no enclosures\n"),
             qPrintable(mixed.err));
    QVERIFY2(mixed.err.contains("tidel: nowhere: no such message; "), qPrintable(mixed.err));
    QVERIFY2(mixed.err.contains("tidel: " + bad + ": the server answered 404 Not Found\n"),
             qPrintable(mixed.err));
}

void TestNetwork::downloadFolder()
{
    const QString file = m_server->url("/bytes/10/a.mp3");
    VERIFY_RUN(run({"subscribe",
                    write("folder.xml",
                          "<item><link>https://example.org/f</link><enclosure url='" + file.toUtf8()
                              + "'/></item>")}),
               0);
    VERIFY_RUN(run({"download", file}), 0);
    QVERIFY(QFile::exists(m_dir->filePath("Downloads/tidel/a.mp3")));
}

void TestNetwork::interrupted_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("terminate") << SIGTERM;
}

void TestNetwork::interrupted()
{
    QFETCH(int, signal);
    const QString quick = write("quick.xml", item(1));
    VERIFY_RUN(run({"subscribe", quick}), 0);
    write("quick.xml", item(2) + item(1));
    m_server->forgetRequests();
    QProcess process;
    start(process, {"subscribe", m_server->url("/silent"), write("after.xml", item(3))});
    COMPARE_SOON(m_server->requests().size(), 2);
    // The server answers the second request only.
    VERIFY_SOON(run({"channels"}).out.contains("after"));
    QCOMPARE(kill(pid_t(process.processId()), signal), 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 128 + signal);
    QCOMPARE(QString(process.readAllStandardOutput()), QString("Subscribed: after (1 message)\n"));
    QCOMPARE(QString(process.readAllStandardError()), QString());

    // The next refresh stores the rest.
    QCOMPARE(run({"refresh"}).lines().last(), QString("2 channels: 1 new message"));
}

void TestNetwork::interruptedWriting()
{
    QByteArray items;
    for (int i = 0; i < 12000; ++i)
        items += item(i);
    QProcess process;
    start(process, {"subscribe", write("huge.xml", items)});
    const auto stored = [&] {
        return QJsonDocument::fromJson(run({"channels", "--json"}).out.toUtf8())["messages"].toInt();
    };
    VERIFY_SOON(stored() > 0);
    QCOMPARE(kill(pid_t(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 128 + SIGINT);
    const int before = stored();
    QVERIFY2(before > 0 && before < 12000 && before % 100 == 0, qPrintable(QString::number(before)));
    // The rest comes with the next refresh.
    VERIFY_RUN(run({"refresh"}), 0);
    QCOMPARE(stored(), 12000);
}

/// Starts a download that the server does not complete.
void TestNetwork::startStalledDownload(QProcess &process)
{
    const QString file = m_server->url("/stalled/a.mp3");
    const QString feed =
        write("stalled.xml",
              "<item><link>https://example.org/s</link><enclosure url='" + file.toUtf8() + "'/></item>");
    VERIFY_RUN(run({"subscribe", feed}), 0);
    m_server->forgetRequests();
    start(process, {"download", file, "--into", "into"});
    COMPARE_SOON(m_server->requests().size(), 1);
}

void TestNetwork::interruptedDownload()
{
    QProcess process;
    startStalledDownload(process);
    QCOMPARE(kill(pid_t(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 128 + SIGINT);
    QCOMPARE(downloads(), QStringList());
}

void TestNetwork::killedDownload()
{
    QProcess process;
    startStalledDownload(process);
    process.kill();
    QVERIFY(process.waitForFinished());
    QVERIFY(!downloads().contains("a.mp3"));
}

/// The text on a terminal with \a columns columns during the subscription to two feeds. The width of the
/// terminal is unknown if \a columns is 0.
QByteArray TestNetwork::shownProgress(ushort columns) const
{
    PseudoTerminal terminal(24, columns);
    QProcess process;
    process.setStandardErrorFile(terminal.name());
    start(process, {"subscribe", write("one.xml", item(1)), write("two.xml", item(2))});
    const QByteArray shown = terminal.readAll();
    const Run ended = finishedRun(process);
    return ended.exitCode == 0 && ended.out.count("Subscribed: ") == 2 ? shown : QByteArray();
}

void TestNetwork::progress()
{
    const QByteArray shown = shownProgress(0);
    QVERIFY2(shown.startsWith("[....................] 0/2 feeds\r\033[K"), shown.constData());
    // What comes within a tenth of a second is left out.
    QVERIFY2(shown.endsWith("\r\033[K"), shown.constData());
}

void TestNetwork::progressInNarrowTerminal()
{
    const QByteArray shown = shownProgress(25);
    QVERIFY2(shown.startsWith("[....................] 0\r\033[K"), shown.constData());
    QVERIFY2(!shown.contains("/2"), shown.constData());
}

void TestNetwork::withoutPlugin()
{
    VERIFY_RUN(run({"subscribe", write("plain.xml", item(1))}), 0);
    QProcess process;
    process.setProcessEnvironment(installedEnvironment());
    const QString program = copyProgram(QString());
    for (const QStringList &arguments : {QStringList{"refresh"}, {"subscribe", "https://example.org/"}}) {
        process.start(program, arguments);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        const QString error = process.readAllStandardError();
        QVERIFY2(error.startsWith("tidel: no download plug-in in " + m_dir->path()), qPrintable(error));
        QVERIFY2(error.contains("install tidel again"), qPrintable(error));
    }
    process.start(program, {"messages", "plain"});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(process.readAllStandardOutput().contains("Item 1"));
}

void TestNetwork::badPlugin()
{
    const QString program = copyProgram(QString(TIDEL_FIXTURE_PLUGINS) + "/otherinterface.so");
    QProcess process;
    process.setProcessEnvironment(installedEnvironment());
    process.start(program, {"subscribe", "https://example.org/1"});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    const QString error = process.readAllStandardError();
    QVERIFY2(error.contains("plugin.so is a plug-in for another interface: \"org.example.Other/1.0\"\n"),
             qPrintable(error));
    QVERIFY2(error.contains("tidel: no download plug-in in "), qPrintable(error));
    process.start(program, {"channels"});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestNetwork)
#include "tst_network.moc"
