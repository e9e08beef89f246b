// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>
#include <output.h>

#include <TidelReader/channels.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <pty.h>
#include <unistd.h>

using namespace Tidel;

class TestShow : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void text();
    void severalMessages();
    void html();
    void json();
    void unknownMessage();
    void failures();
    void options_data();
    void options();
    void pagerOnAShortTerminal();

private:
    QStringList shown(const QStringList &names, const Options &options = {}) const;
};

void TestShow::init()
{
    CommandTestCase::init();
    FeedMessage beans = message("Beans", day(3), {"beans.mp3"});
    beans.setDescription(
        "<p>Climb the <a href=\"pole.html\">pole</a>.</p><p>\x1b[31mRed &amp; \u202e green</p>");
    FeedMessage peas = message("Peas");
    peas.setDescription(QString());
    peas.setSummary("Short");
    addChannel("Garden", {beans, peas});
    addFavorite("Beans");
    store().update("INSERT { ?m tidel:author 'Ada' , 'Zoe' ; tidel:category 'food' ; "
                   "tidel:updatedDate '2026-11-04T12:00:00Z' } WHERE { ?m nie:title 'Beans' } "
                   "INSERT { ?e tidel:duration 3723 } WHERE { ?e a mfo:Enclosure }");
}

QStringList TestShow::shown(const QStringList &names, const Options &options) const
{
    const CommandResult result = runCommand(showCommand, names, options);
    return result.isFine ? result.out.chopped(1).split('\n') : QStringList(result.err);
}

void TestShow::text()
{
    const QStringList lines = shown({linkOf("Beans")}, {{"width", "40"}});
    QCOMPARE(lines.mid(0, 5),
             QStringList({"Beans", "=====", "Channel:    Garden", "Author:     Ada, Zoe",
                          "Published:  " + day(3).toLocalTime().toString("yyyy-MM-dd HH:mm")}));
    QVERIFY(lines.at(5).startsWith("Updated:    2026-11-04 "));
    QCOMPARE(lines.mid(6),
             QStringList({"Categories: food", "Favorite:   yes", "Link:       https://example.org/Beans",
                          "File:       https://example.org/beans.mp3 (1:02:03)", "", "Climb the pole [1].",
                          "", "[31mRed &  green", "", "[1] https://example.org/pole.html"}));
}

void TestShow::severalMessages()
{
    QCOMPARE(shown({linkOf("Peas"), linkOf("Beans"), "peas"}).mid(0, 10),
             QStringList({"Peas", "====", "Channel:    Garden", "Link:       https://example.org/Peas", "",
                          "Short", "", "", "Beans", "====="}));
}

void TestShow::html()
{
    QCOMPARE(shown({linkOf("Beans")}, {{"html", ""}}),
             QStringList("<p>Climb the <a href=\"pole.html\">pole</a>.</p><p>[31mRed &amp;  green</p>"));
}

void TestShow::json()
{
    const QStringList lines = shown({linkOf("Beans")}, {{"json", ""}});
    QCOMPARE(lines.size(), 1);
    QJsonObject json = QJsonDocument::fromJson(lines.first().toUtf8()).object();
    QVERIFY(json.take("uri").toString().startsWith("urn:uuid:"));
    QJsonObject file = json.take("enclosures").toArray().first().toObject();
    QVERIFY(file.take("uri").toString().startsWith("urn:uuid:"));
    QCOMPARE(file, QJsonObject({{"url", "https://example.org/beans.mp3"}, {"duration", 3723}}));
    QVERIFY(json.take("downloaded").toString().endsWith("Z"));
    QCOMPARE(json,
             QJsonObject(
                 {{"title", "Beans"},
                  {"link", "https://example.org/Beans"},
                  {"channels", QJsonArray{"Garden"}},
                  {"author", "Ada, Zoe"},
                  {"categories", QJsonArray{"food"}},
                  {"favorite", true},
                  {"read", false},
                  {"html",
                   "<p>Climb the <a href=\"pole.html\">pole</a>.</p><p>\x1b[31mRed &amp; \u202e green</p>"},
                  {"text", "Climb the pole. [31mRed & \u202e green"},
                  {"published", "2026-11-03T12:00:00Z"},
                  {"updated", "2026-11-04T12:00:00Z"}}));
}

void TestShow::unknownMessage()
{
    const CommandResult result = runCommand(showCommand, {"https://example.org/none", linkOf("Peas")});
    QVERIFY(!result.isFine);
    QVERIFY(result.err.startsWith("tidel: https://example.org/none: no such message; "));
    QVERIFY(result.out.startsWith("Peas\n"));
}

void TestShow::failures()
{
    failEverywhere(
        showCommand, {linkOf("Beans")}, {}, [this] { init(); }, [] {});
}

void TestShow::options_data()
{
    QTest::addColumn<Options>("options");
    QTest::addColumn<QString>("problem");
    QTest::newRow("none") << Options{} << "";
    QTest::newRow("width") << Options{{"width", "20"}} << "";
    QTest::newRow("two forms") << Options{{"html", ""}, {"json", ""}} << "give --html or --json, not both";
    for (const char *width : {"0", "-5", "19", "x", ""})
        QTest::newRow(qPrintable(QString("width ") + width))
            << Options{{"width", width}} << "give a number of columns, 20 or more: --width N";
}

void TestShow::options()
{
    QFETCH(Options, options);
    QFETCH(QString, problem);
    QCOMPARE(showCommand.misuse({{"a"}, options}), problem);
}

void TestShow::pagerOnAShortTerminal()
{
    int master = -1;
    int slave = -1;
    winsize size = {};
    size.ws_row = 5;
    size.ws_col = 40;
    QCOMPARE(openpty(&master, &slave, nullptr, nullptr, &size), 0);
    FILE *terminal = fdopen(slave, "w");
    const QString paged = home() + "/paged";
    qputenv("PAGER", "cat > " + paged.toUtf8());
    {
        Output output(terminal, stderr);
        QCOMPARE(output.width(), 40);
        output.page({"1", "2", "3", "4"});
        QVERIFY(!QFile::exists(paged));
        output.page({"1", "\x1b[2J", "3", "4", "5"});
        QVERIFY(output.finish());
    }
    qunsetenv("PAGER");
    fclose(terminal);
    close(master);
    QFile file(paged);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("1\n[2J\n3\n4\n5\n"));
}

QTEST_GUILESS_MAIN(TestShow)
#include "tst_show.moc"
