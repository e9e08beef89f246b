// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"
#include "pseudoterminal.h"

#include <timeargument.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace Tidel;

/// Runs the program on a store with two channels.
class TestSearchCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void hits();
    void options();
    void json();
    void nothingFound();
    void failures_data();
    void failures();
    void newMessagesAreFound();
    void onATerminal_data();
    void onATerminal();
    void times_data();
    void times();

private:
    Run run(const QStringList &arguments) const;
    QByteArray runOnTerminal(const QStringList &arguments, const char *name, const char *value) const;
    void writeFeed(const QString &name, const QString &title, const QByteArray &items) const;
    QString path(const QString &name) const { return m_home->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_home;
};

namespace {

QByteArray item(const QByteArray &title, const QByteArray &text, const QByteArray &day)
{
    return "<item><title>" + title + "</title><link>https://example.org/" + title.left(3)
        + "</link><description>" + text + "</description><pubDate>" + day
        + " Nov 2026 12:00:00 GMT</pubDate></item>";
}

} // namespace

void TestSearchCommand::writeFeed(const QString &name, const QString &title, const QByteArray &items) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<rss version='2.0'><channel><title>" + title.toUtf8() + "</title>" + items
               + "</channel></rss>");
}

void TestSearchCommand::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    writeFeed("garden.xml", "Garden",
              item("Beans", "Climb the &lt;b&gt;poles&lt;/b&gt; &amp;#27;[31m of wood", "03")
                  + item("Peas", "No poles", "05"));
    writeFeed("sea.xml", "Sea", item("Ships", "Masts are poles too", "04"));
    QCOMPARE(run({"subscribe", path("garden.xml"), path("sea.xml")}).exitCode, 0);
    QCOMPARE(run({"favorite", "https://example.org/Shi"}).exitCode, 0);
}

Run TestSearchCommand::run(const QStringList &arguments) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_home->path());
    environment.insert("TZ", "UTC");
    process.setProcessEnvironment(environment);
    process.start(TIDEL_PROGRAM, arguments);
    return finishedRun(process);
}

QByteArray TestSearchCommand::runOnTerminal(const QStringList &arguments, const char *name,
                                            const char *value) const
{
    PseudoTerminal terminal;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_home->path());
    environment.insert("TZ", "UTC");
    environment.insert("TERM", "xterm");
    environment.remove("NO_COLOR");
    environment.insert(name, value);
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(terminal.name());
    process.start(TIDEL_PROGRAM, arguments);
    const QByteArray shown = terminal.readAll().replace('\r', "");
    return finishedRun(process).exitCode == 0 ? shown : QByteArray();
}

void TestSearchCommand::hits()
{
    const Run result = run({"search", "climb", "wood"});
    QCOMPARE(result.err, QString());
    QCOMPARE(
        result.out,
        QString::fromUtf8("1  \u2022   2026-11-03 12:00  Garden  Beans\n       Climb the poles [31m of wood\n"
                          "       https://example.org/Bea\n"));
    QCOMPARE(result.exitCode, 0);
}

void TestSearchCommand::options()
{
    const auto titles = [this](const QStringList &options) {
        QStringList found;
        for (const QString &line : run(QStringList{"search", "poles"} + options).out.split('\n')) {
            if (line.contains(" 2026-"))
                found.append(line.section("  ", -1));
        }
        found.sort();
        return found;
    };
    QCOMPARE(titles({}), QStringList({"Beans", "Peas", "Ships"}));
    QCOMPARE(titles({"--channel", "Garden"}), QStringList({"Beans", "Peas"}));
    QCOMPARE(titles({"--favorites"}), QStringList("Ships"));
    QCOMPARE(titles({"--since", "2026-11-04"}), QStringList({"Peas", "Ships"}));
    QCOMPARE(titles({"--until", "2026-11-04"}), QStringList({"Beans", "Ships"}));
    QCOMPARE(titles({"--limit", "2"}).size(), 2);
    QCOMPARE(run({"folder", "Sea", "Far/Away"}).exitCode, 0);
    QCOMPARE(titles({"--folder", "far"}), QStringList("Ships"));
    QCOMPARE(run({"read", "https://example.org/Shi"}).exitCode, 0);
    QCOMPARE(titles({"--unread"}), QStringList({"Beans", "Peas"}));
    QCOMPARE(titles({"--unread", "--limit", "1"}).size(), 1);
}

void TestSearchCommand::json()
{
    const QStringList lines = run({"search", "poles", "--json"}).out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QJsonObject hit = QJsonDocument::fromJson(run({"search", "masts", "--json"}).out.toUtf8()).object();
    QVERIFY(hit.take("uri").toString().startsWith("urn:uuid:"));
    QCOMPARE(hit,
             QJsonObject({{"title", "Ships"},
                          {"link", "https://example.org/Shi"},
                          {"channels", QJsonArray{"Sea"}},
                          {"excerpt", "Masts are poles too"},
                          {"favorite", true},
                          {"read", false},
                          {"published", "2026-11-04T12:00:00Z"}}));
}

void TestSearchCommand::nothingFound()
{
    for (const QStringList &options : {QStringList(), QStringList("--json")}) {
        const Run result = run(QStringList{"search", "tomatoes", "red"} + options);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, QString("tomatoes red: no message has these words\n"));
        QCOMPARE(result.exitCode, 0);
    }
}

void TestSearchCommand::failures_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("error");
    QTest::newRow("no word") << QStringList(
        "---") << 1 << "could not search: there is no word to look for; give a word of letters or digits";
    QTest::newRow("channel") << QStringList({"a", "--channel", "None"}) << 1 << "None: no such channel";
    QTest::newRow("since") << QStringList({"a", "--since", "soon"}) << 2 << "--since needs today, yesterday";
    QTest::newRow("until") << QStringList({"a", "--until", ""}) << 2 << "--until needs today, yesterday";
    QTest::newRow("limit") << QStringList({"a", "--limit", "0"}) << 2 << "--limit needs a number, 1 or more";
    QTest::newRow("nothing") << QStringList() << 2 << "an argument is missing";
}

void TestSearchCommand::failures()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, error);
    const Run result =
        run(QStringList{"search", "--"}.mid(0, arguments == QStringList("---") ? 2 : 1) + arguments);
    QVERIFY2(result.err.contains(error), qPrintable(result.err));
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(result.out, QString());
}

void TestSearchCommand::newMessagesAreFound()
{
    QVERIFY(QFile::exists(path("tidel/store/search.db")));
    writeFeed("sea.xml", "Sea", item("Whales", "Are no fish", "06"));
    QCOMPARE(run({"refresh"}).exitCode, 0);
    QVERIFY(run({"search", "fish"}).out.contains("Whales"));
    QCOMPARE(run({"unsubscribe", "Garden"}).exitCode, 0);
    QVERIFY(run({"search", "peas"}).err.contains("no message"));
}

void TestSearchCommand::onATerminal_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("shown");
    const QByteArray plain =
        "1  \u2022   2026-11-03 12:00  Garden  Beans\n       Climb the poles [31m of wood\n"
        "       https://example.org/Bea\n";
    QTest::newRow("bold")
        << QByteArray("A") << QByteArray("a")
        << QByteArray(plain).replace("wood", "\033[1mwood\033[22m").replace("Beans", "\033[1mBeans\033[22m");
    QTest::newRow("NO_COLOR") << QByteArray("NO_COLOR") << QByteArray("1") << plain;
    QTest::newRow("dumb") << QByteArray("TERM") << QByteArray("dumb") << plain;
}

void TestSearchCommand::onATerminal()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, shown);
    QCOMPARE(runOnTerminal({"search", "wood", "beans"}, name.constData(), value.constData()), shown);
}

void TestSearchCommand::times_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("begin");
    QTest::addColumn<QDateTime>("end");
    const QDateTime noon(QDate(2026, 3, 1), QTime(12, 0));
    const auto day = [](int month, int number) { return QDate(2026, month, number).startOfDay(); };
    QTest::newRow("today") << "today" << day(3, 1) << day(3, 2);
    QTest::newRow("yesterday") << "yesterday" << day(2, 28) << day(3, 1);
    QTest::newRow("days") << "2d" << noon.addDays(-2) << noon.addDays(-2);
    QTest::newRow("date") << "2026-01-31" << day(1, 31) << day(2, 1);
    for (const char *text : {"", "7", "d", "-1d", "2026-02-30", "soon", "99999999999d"})
        QTest::newRow(qPrintable(QString("not ") + text)) << text << QDateTime() << QDateTime();
}

void TestSearchCommand::times()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, begin);
    QFETCH(QDateTime, end);
    const QDateTime noon(QDate(2026, 3, 1), QTime(12, 0));
    QCOMPARE(timeArgument(text, noon), begin);
    QCOMPARE(timeArgument(text, noon, true), end);
}

QTEST_GUILESS_MAIN(TestSearchCommand)
#include "tst_searchcommand.moc"
