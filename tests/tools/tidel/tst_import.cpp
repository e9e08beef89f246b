// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"

#include <feedserver.h>
#include <soon.h>

#include <QtTest>

#include <csignal>

namespace {

QByteArray feed(const QString &address, const QString &title)
{
    return "<outline text='" + title.toUtf8() + "' xmlUrl='" + address.toUtf8() + "'/>";
}

} // namespace

/// Imports with the real program and a server.
class TestImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void import();
    void unreachableFeed();
    void feedsOwnTitle();
    void leftOut();
    void interrupted();
    void sameBytes();

private:
    void start(QProcess &process, const QStringList &arguments, const QString &data = "data") const;
    Run run(const QStringList &arguments, const QString &data = "data") const;
    QString list(const QByteArray &outlines) const;
    QString address(const QString &path) const { return m_server->url(path); }

    QTemporaryDir m_served;
    std::unique_ptr<FeedServer> m_server;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestImport::initTestCase()
{
    signal(SIGINT, SIG_DFL);
    m_server = std::make_unique<FeedServer>(m_served.path());
    QVERIFY(m_server->isRunning());
}

void TestImport::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_server->forgetRequests();
}

void TestImport::start(QProcess &process, const QStringList &arguments, const QString &data) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_dir->filePath(data));
    environment.insert("HOME", m_dir->path());
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_dir->path());
    process.start(TIDEL_PROGRAM, arguments);
}

Run TestImport::run(const QStringList &arguments, const QString &data) const
{
    QProcess process;
    start(process, arguments, data);
    return finishedRun(process);
}

QString TestImport::list(const QByteArray &outlines) const
{
    QFile file(m_dir->filePath("list.opml"));
    const bool isWritten = file.open(QIODevice::WriteOnly)
        && file.write("<opml version='2.0'><body>\n" + outlines + "\n</body></opml>") > 0;
    return isWritten ? QString("list.opml") : QString();
}

void TestImport::import()
{
    const QString file = list("<outline text='A'><outline text='Ü'>" + feed(address("/feed/One"), "Mine")
                              + "</outline></outline>" + feed(address("/feed/Two"), "Yours"));
    const Run first = run({"import", file});
    QCOMPARE(first.err, QString());
    QCOMPARE(first.out,
             QString("Subscribed: Mine (1 message)\nSubscribed: Yours (1 message)\n"
                     "list.opml: 2 channels, 0 already subscribed, 2 new\n"));
    QCOMPARE(first.exitCode, 0);
    const QString channels = run({"channels"}).out;
    QVERIFY2(channels.startsWith("1  Mine   A/Ü  1/1  "), qPrintable(channels));

    // A given title outlives a refresh, and a second import changes nothing.
    QCOMPARE(run({"refresh"}).exitCode, 0);
    QCOMPARE(run({"channels"}).out, channels);
    list(feed(address("/feed/One"), "Another title") + feed(address("/feed/Two"), ""));
    m_server->forgetRequests();
    const Run second = run({"import", file});
    QCOMPARE(second.out, QString("list.opml: 2 channels, 2 already subscribed, 0 new\n"));
    QCOMPARE(second.exitCode, 0);
    QCOMPARE(m_server->requests(), QStringList());
    QCOMPARE(run({"channels"}).out, channels);
}

void TestImport::unreachableFeed()
{
    const QString file = list(feed(address("/files/later.xml"), "Later"));
    const Run imported = run({"import", file});
    QCOMPARE(imported.exitCode, 1);
    QCOMPARE(imported.out,
             QString("list.opml: 1 channel, 0 already subscribed, 1 new, 1 without messages\n"));
    QVERIFY2(imported.err.startsWith("tidel: Later (" + address("/files/later.xml")
                                     + "): subscribed without messages: "),
             qPrintable(imported.err));
    QVERIFY(imported.err.endsWith("; \"tidel refresh\" tries again\n"));

    QFile feed(m_served.filePath("later.xml"));
    QVERIFY(feed.open(QIODevice::WriteOnly));
    feed.write("<rss><channel><title>x</title><item><title>a</title><link>https://example.org/a</link></item>"
               "</channel></rss>");
    feed.close();
    QCOMPARE(run({"refresh"}).out.section('\n', 0, 0), QString("Later: 1 new"));
}

void TestImport::feedsOwnTitle()
{
    const Run imported = run({"import", list(feed(address("/feed/Own"), ""))});
    QCOMPARE(imported.err, QString());
    QCOMPARE(imported.out.section('\n', 0, 0), QString("Subscribed: Own (1 message)"));
    QCOMPARE(run({"edit", "Own", "--title", "Mine"}).exitCode, 0);
    QCOMPARE(run({"refresh"}).exitCode, 0);
    QVERIFY(run({"channels"}).out.startsWith("1  Mine "));
}

void TestImport::leftOut()
{
    const Run imported =
        run({"import", list(feed("javascript:alert(1)", "Bad") + feed(address("/feed/Good"), "Good"))});
    QCOMPARE(imported.exitCode, 1);
    QCOMPARE(
        imported.err,
        QString("tidel: list.opml: line 2: \"Bad\" is left out: its xmlUrl is not a web address or file: "
                "URL\n"));
    QCOMPARE(imported.out.section('\n', 0, 0), QString("Subscribed: Good (1 message)"));
}

void TestImport::interrupted()
{
    QProcess process;
    start(process, {"import", list(feed(address("/silent"), "Silent") + feed(address("/feed/Two"), "Two"))});
    COMPARE_SOON(m_server->requests().size(), 2);
    QCOMPARE(kill(pid_t(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 128 + SIGINT);
    const QString channels = run({"channels"}).out;
    QVERIFY2(channels.startsWith("1  Silent  0/0  "), qPrintable(channels));
    QVERIFY2(channels.contains("\n2  Two "), qPrintable(channels));
}

void TestImport::sameBytes()
{
    const QByteArray outlines = "<outline text='A/B'>" + feed(address("/feed/One"), "One &amp; \"all\"")
        + "<outline text='日本'>" + feed(address("/feed/Two"), " Two  \n ") + "</outline></outline>"
        + feed(address("/status/500"), "Gone") + feed(address("/feed/One?b"), "one &amp; \"all\"");
    QCOMPARE(run({"import", list(outlines)}).exitCode, 1);
    const Run exported = run({"export", "out.opml"});
    QCOMPARE(exported.exitCode, 0);
    QCOMPARE(run({"import", "out.opml"}, "other").out.count("Subscribed: "), 3);
    const QString again = run({"export"}, "other").out;
    QVERIFY(again.contains("日本"));
    QFile file(m_dir->filePath("out.opml"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(again, QString::fromUtf8(file.readAll()));
    QCOMPARE(run({"export", "--json"}, "other").out, run({"export", "--json"}).out);
}

QTEST_GUILESS_MAIN(TestImport)
#include "tst_import.moc"
