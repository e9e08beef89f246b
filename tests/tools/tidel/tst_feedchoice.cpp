// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"
#include "pseudoterminal.h"

#include <QtTest>

namespace {

const QByteArray twoFeeds = "<link rel=alternate type=application/rss+xml title=Garden href=garden.xml>"
                            "<link rel=alternate type=application/rss+xml title=Kitchen href=kitchen.xml>";

} // namespace

/// Subscribes to web pages with the program.
class TestFeedChoice : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void onlyFeed();
    void listed();
    void byNumber();
    void wrongNumber();
    void all();
    void severalPages();
    void missingFeed();
    void misuse_data();
    void misuse();
    void asked_data();
    void asked();

private:
    void start(QProcess &process, const QStringList &arguments) const;
    /// Runs the program without a terminal. Returns the lines of its results, its errors and its exit code.
    QStringList run(const QStringList &arguments) const;
    /// Runs the program on a terminal, and enters \a input. Returns what the terminal shows.
    QString runOnTerminal(const QStringList &arguments, const QByteArray &input) const;
    QString path(const QString &name) const { return m_dir->filePath(name); }
    QString url(const QString &name) const { return "file://" + path(name); }
    bool write(const QString &name, const QByteArray &content) const;
    QStringList channels() const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestFeedChoice::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    for (const char *title : {"Garden", "Kitchen"}) {
        const QByteArray document = QByteArray("<rss version='2.0'><channel><title>") + title
            + "</title><item><title>Peas</title></item></channel></rss>";
        QVERIFY(write(QString(title).toLower() + ".xml", document));
    }
    QVERIFY(write("two.html", "<!DOCTYPE html>" + twoFeeds));
}

bool TestFeedChoice::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

void TestFeedChoice::start(QProcess &process, const QStringList &arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", path("data"));
    environment.insert("LC_ALL", "C.UTF-8");
    process.setProcessEnvironment(environment);
    process.start(TIDEL_PROGRAM, arguments);
}

QStringList TestFeedChoice::run(const QStringList &arguments) const
{
    QProcess process;
    start(process, arguments);
    const Run ended = finishedRun(process);
    return ended.lines() << ended.errors() << QString::number(ended.exitCode);
}

QString TestFeedChoice::runOnTerminal(const QStringList &arguments, const QByteArray &input) const
{
    PseudoTerminal terminal;
    QProcess process;
    process.setStandardInputFile(terminal.name());
    process.setStandardOutputFile(terminal.name());
    start(process, arguments);
    if (!terminal.enter(input))
        return {};
    QString shown = QString::fromUtf8(terminal.readAll());
    shown += finishedRun(process).err;
    return shown.remove('\r');
}

/// The titles of the stored channels.
QStringList TestFeedChoice::channels() const
{
    QProcess process;
    start(process, {"channels"});
    process.waitForFinished(60000);
    QStringList titles = QString::fromUtf8(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    for (QString &line : titles)
        line = line.section(' ', 2, 2);
    return titles;
}

void TestFeedChoice::onlyFeed()
{
    QVERIFY(write("one.html", "<!DOCTYPE html>" + twoFeeds.left(twoFeeds.indexOf('>') + 1)));
    QCOMPARE(run({"subscribe", path("one.html")}), QStringList({"Subscribed: Garden (1 message)", "0"}));
    QCOMPARE(run({"subscribe", path("one.html")}),
             QStringList({"Already subscribed: Garden (\"tidel refresh\" downloads new messages)", "0"}));
    QCOMPARE(channels(), QStringList("Garden"));
}

void TestFeedChoice::listed()
{
    QCOMPARE(run({"subscribe", path("two.html")}),
             QStringList({"1  Garden   " + url("garden.xml"), "2  Kitchen  " + url("kitchen.xml"),
                          "tidel: " + path("two.html")
                              + ": the document is a web page with 2 feeds; choose one with \"--feed N\", or "
                                "take them with \"--all\"",
                          "1"}));
    QCOMPARE(channels(), QStringList());
}

void TestFeedChoice::byNumber()
{
    QCOMPARE(run({"subscribe", path("two.html"), "--feed", "2"}),
             QStringList({"Subscribed: Kitchen (1 message)", "0"}));
    QCOMPARE(channels(), QStringList("Kitchen"));
}

void TestFeedChoice::wrongNumber()
{
    const QStringList lines = run({"subscribe", path("two.html"), "--feed", "3"});
    QCOMPARE(lines.size(), 4);
    QVERIFY2(lines.at(2).startsWith("tidel: "), qPrintable(lines.at(2)));
    QCOMPARE(lines.last(), QString("1"));
    QCOMPARE(channels(), QStringList());
}

void TestFeedChoice::all()
{
    QCOMPARE(run({"subscribe", path("two.html"), "--all"}),
             QStringList({"Subscribed: Garden (1 message)", "Subscribed: Kitchen (1 message)", "0"}));
}

void TestFeedChoice::severalPages()
{
    QVERIFY(write("other.html", "<!DOCTYPE html>" + twoFeeds));
    QVERIFY(write("plain.html", "<!DOCTYPE html><p>Nothing"));
    QCOMPARE(
        run({"subscribe", path("two.html"), path("plain.html"), path("other.html"), "--all"}),
        QStringList({"Subscribed: Garden (1 message)", "Subscribed: Kitchen (1 message)",
                     "Already subscribed: Garden (\"tidel refresh\" downloads new messages)",
                     "Already subscribed: Kitchen (\"tidel refresh\" downloads new messages)",
                     "tidel: " + path("plain.html") + ": the document is a web page without feeds", "1"}));
}

void TestFeedChoice::missingFeed()
{
    QVERIFY(QFile::remove(path("garden.xml")));
    QCOMPARE(run({"subscribe", path("two.html"), "--all"}),
             QStringList(
                 {"Subscribed: Kitchen (1 message)", "tidel: " + url("garden.xml") + ": no such file", "1"}));
}

void TestFeedChoice::misuse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("zero") << QStringList{"a", "--feed", "0"};
    QTest::newRow("word") << QStringList{"a", "--feed", "first"};
    QTest::newRow("empty") << QStringList{"a", "--feed="};
    QTest::newRow("two pages") << QStringList{"a", "b", "--feed", "1"};
    QTest::newRow("all") << QStringList{"a", "--feed", "1", "--all"};
}

void TestFeedChoice::misuse()
{
    QFETCH(QStringList, arguments);
    const QStringList lines = run(QStringList{"subscribe"} + arguments);
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines.first().startsWith("tidel: subscribe: --feed "), qPrintable(lines.first()));
    QCOMPARE(lines.last(), QString("2"));
}

void TestFeedChoice::asked_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("questions");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("number") << QByteArray("2\n") << 1 << QStringList("Kitchen");
    QTest::newRow("all") << QByteArray("a\n") << 1 << QStringList({"Garden", "Kitchen"});
    QTest::newRow("none") << QByteArray("\n") << 1 << QStringList();
    QTest::newRow("end of input") << QByteArray("\4") << 1 << QStringList();
    QTest::newRow("again") << QByteArray("3\nb\n1\n") << 3 << QStringList("Garden");
}

void TestFeedChoice::asked()
{
    QFETCH(QByteArray, input);
    QFETCH(int, questions);
    QFETCH(QStringList, expected);
    const QString shown = runOnTerminal({"subscribe", path("two.html")}, input);
    QVERIFY2(shown.contains(path("two.html") + ": the document is a web page with 2 feeds\n1  Garden   "),
             qPrintable(shown));
    QCOMPARE(shown.count("Which feed? 1-2, a for all, Enter for none: "), questions);
    QVERIFY2(!shown.contains("tidel: "), qPrintable(shown));
    QCOMPARE(shown.count("Subscribed: "), int(expected.size()));
    QCOMPARE(channels(), expected);
}

QTEST_GUILESS_MAIN(TestFeedChoice)
#include "tst_feedchoice.moc"
