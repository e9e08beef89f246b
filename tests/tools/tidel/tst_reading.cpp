// SPDX-License-Identifier: LGPL-2.1-or-later
#include <soon.h>

#include <QtTest>

#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs the program as a person who reads does, within one session of a terminal.
class TestReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void rowsOfTheLastList();
    void listsOfOtherSessions();
    void filesOfLists();
    void withoutTerminal();
    void partsOfTitles();
    void numbersAreNoPartsOfTitles();
    void listFitsTheTerminal();
    void screenful();
    void filters();
    void readAndUnread();
    void readAll();
    void shownMessagesAreRead();
    void changes();
    void open();
    void openRefusesOtherLinks();
    void channelCounts();
    void unsubscribingAsks();
    void deletingAsks();
    void passwordIsHidden();

private:
    /// Runs the lines \a script with a shell in a new session of a terminal with \a columns. Returns what the
    /// terminal shows. The user enters \a input after \a prompt has appeared.
    QString session(const QString &script, int columns = 80, int lines = 24, const QByteArray &input = {},
                    const QByteArray &prompt = {}) const;
    QString run(const QString &script, int columns = 80) const { return session(script, columns).trimmed(); }
    void writeFeed(const QString &name, const QString &title, const QByteArray &items) const;
    QString path(const QString &name) const { return m_home->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_home;
};

namespace {

QByteArray item(const QByteArray &title, const QByteArray &day, const QByteArray &text = "Text")
{
    return "<item><title>" + title + "</title><link>https://example.org/" + title.toLower().replace(' ', '-')
        + "</link><guid>" + title.left(5) + "</guid><description>" + text + "</description><pubDate>" + day
        + " 12:00:00 GMT</pubDate></item>";
}

/// Adds to \a text what \a terminal shows until \a end, or all of it if that is null.
void readUntil(const char *end, int terminal, QByteArray *text)
{
    char some[4096];
    ssize_t count = 0;
    while ((!end || !text->contains(end)) && (count = read(terminal, some, sizeof some)) > 0)
        text->append(some, int(count));
}

} // namespace

void TestReading::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(path("bin")) && QDir().mkpath(path("run")));
    writeFeed("garden.xml", "Garden Notes",
              item("Runner beans", "03 Nov 2026") + item("Broad beans", "05 Nov 2026")
                  + item("2600 peas", "01 Nov 2026"));
    writeFeed("sea.xml", "Sea", item("Ships", "04 Nov 2026"));
    QVERIFY(run("tidel subscribe garden.xml sea.xml").contains("Subscribed: Sea"));
}

void TestReading::writeFeed(const QString &name, const QString &title, const QByteArray &items) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<rss version='2.0'><channel><title>" + title.toUtf8() + "</title>" + items
               + "</channel></rss>");
}

QString TestReading::session(const QString &script, int columns, int lines, const QByteArray &input,
                             const QByteArray &prompt) const
{
    const winsize size = {ushort(lines), ushort(columns), 0, 0};
    const QByteArray bin = QFileInfo(TIDEL_PROGRAM).path().toLocal8Bit();
    const QByteArray home = m_home->path().toLocal8Bit();
    const QByteArray text = "cd " + home + "\n" + script.toLocal8Bit();
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        qputenv("XDG_DATA_HOME", home);
        qputenv("XDG_RUNTIME_DIR", home + "/run");
        qputenv("PATH", home + "/bin:" + bin + ":/usr/bin:/bin");
        qputenv("TZ", "UTC");
        qputenv("NO_COLOR", "1");
        qputenv("PAGER", "cat");
        qputenv("LC_ALL", "C.UTF-8");
        execl("/bin/sh", "sh", "-c", text.constData(), nullptr);
        _exit(127);
    }
    QByteArray shown;
    readUntil(prompt.constData(), terminal, &shown);
    if (::write(terminal, input.constData(), size_t(input.size())) == input.size())
        readUntil(nullptr, terminal, &shown);
    waitpid(child, nullptr, 0);
    close(terminal);
    return QString::fromUtf8(shown).remove('\r');
}

void TestReading::rowsOfTheLastList()
{
    const QString list = run("tidel messages");
    QCOMPARE(list.split('\n'),
             QStringList({QString::fromUtf8("1  \u2022   2026-11-05 12:00  Garden Notes  Broad beans"),
                          QString::fromUtf8("2  \u2022   2026-11-04 12:00  Sea           Ships"),
                          QString::fromUtf8("3  \u2022   2026-11-03 12:00  Garden Notes  Runner beans"),
                          QString::fromUtf8("4  \u2022   2026-11-01 12:00  Garden Notes  2600 peas")}));
    QVERIFY(run("tidel messages > all; tidel show 2").startsWith("Ships\n====="));
    // The lists of channels and of messages are apart.
    QVERIFY(run("tidel messages > all; tidel channels > all; tidel show 3").startsWith("Runner beans\n"));
    QVERIFY(run("tidel channels > all; tidel messages 2").endsWith("Ships"));
    QVERIFY(run("tidel search ships > all; tidel show 1").startsWith("Ships\n"));
    QCOMPARE(run("tidel messages > all; tidel favorite 4"), QString("Favorite: 2600 peas"));
    QCOMPARE(run("tidel messages > all; tidel show 5"),
             QString("tidel: 5: the last list of messages in this terminal has 4 rows"));
    QCOMPARE(run("tidel channels > all; tidel messages 3"),
             QString("tidel: 3: the last list of channels in this terminal has 2 rows"));
    // A list for another program changes nothing.
    QVERIFY(run("tidel messages > all; tidel messages Sea --json > all; tidel show 1").startsWith("Broad"));
}

void TestReading::listsOfOtherSessions()
{
    run("tidel messages");
    QVERIFY(run("tidel show 2").startsWith("tidel: 2: no such message; "));
    QVERIFY(run("tidel messages 2").startsWith("tidel: 2: no such channel; "));
}

void TestReading::filesOfLists()
{
    const QDir lists(path("run/tidel"));
    run("umask 0; tidel messages; tidel channels; cp -p run/tidel/*.messages.list kept; ls -ld run/tidel > kept.folder");
    QCOMPARE(lists.entryList(QDir::Files).size(), 2);
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(path("kept")).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777u, 0600u);
    QCOMPARE(stat(QFile::encodeName(lists.path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777u, 0700u);
    // The next list of a session removes those of ended ones.
    run("tidel messages");
    QCOMPARE(lists.entryList(QDir::Files).size(), 1);
}

void TestReading::withoutTerminal()
{
    const QString list = run("setsid -w tidel messages < /dev/null > all 2>&1; cat all");
    QVERIFY2(list.startsWith("1  "), qPrintable(list));
    QVERIFY(!QFile::exists(path("run/tidel")));
}

void TestReading::partsOfTitles()
{
    QVERIFY(run("tidel show SHIP").startsWith("Ships\n"));
    QVERIFY(run("tidel messages garden").contains("Runner beans"));
    QCOMPARE(
        run("tidel show beans; echo $?; tidel show 2 | head -n 1").split('\n'),
        QStringList({"tidel: beans: 2 messages have such a title; use a number, a longer part of the title "
                     "or a link",
                     "  1  2026-11-05 12:00  Garden Notes  Broad beans",
                     "  2  2026-11-03 12:00  Garden Notes  Runner beans", "1", "Runner beans"}));
    // The whole title of one message is a part of another one's.
    run("tidel edit Sea --title Garden");
    QVERIFY(run("tidel messages garden").endsWith("Ships"));
    const QString ambiguous = run("tidel messages e --json");
    QVERIFY2(ambiguous.startsWith("{\"candidates\":[\"file://"), qPrintable(ambiguous));
    QCOMPARE(ambiguous.count('\n'), 0);
}

void TestReading::numbersAreNoPartsOfTitles()
{
    QVERIFY(run("tidel show 600").startsWith("tidel: 600: no such message; "));
    QVERIFY(run("tidel show '2600 P'").startsWith("2600 peas\n"));
}

void TestReading::listFitsTheTerminal()
{
    writeFeed("wide.xml", QString(30, QChar(0x4e80)),
              item(QString(50, QChar(0x9045)).toUtf8(), "06 Nov 2026")
                  + item("plain " + QByteArray(90, 'x'), "07 Nov 2026"));
    run("tidel subscribe wide.xml");
    for (const int columns : {60, 80, 120}) {
        const QStringList lines = run("tidel messages; tidel channels", columns).split('\n');
        QCOMPARE(lines.size(), 9);
        for (const QString &line : lines) {
            int width = 0;
            for (const QChar c : line)
                width += c.unicode() >= 0x4e00 && c.unicode() < 0xa000 ? 2 : 1;
            QVERIFY2(width <= columns, qPrintable(line));
        }
        QVERIFY(lines.first().endsWith(QChar(0x2026)));
    }
    QVERIFY(run("tidel messages | cat").contains(QString(90, 'x') + "  https://example.org/plain-"));
    QVERIFY(run("tidel messages --uri").contains(QRegularExpression("urn:uuid:[0-9a-f-]{36}")));
}

void TestReading::screenful()
{
    QByteArray items;
    for (int i = 10; i < 30; ++i)
        items += item("News " + QByteArray::number(i), QByteArray::number(i) + " Oct 2026");
    writeFeed("news.xml", "News",
              items.replace("<guid>", "<guid isPermaLink='false'>n").replace("News ", "N"));
    run("tidel subscribe news.xml");
    const QStringList lines = session("tidel messages", 80, 12).trimmed().split('\n');
    QCOMPARE(lines.size(), 11);
    QCOMPARE(lines.last(), QString("There are more; --limit N shows N messages."));
    QCOMPARE(session("tidel messages --limit 15", 80, 12).trimmed().count('\n'), 14);
    QCOMPARE(session("tidel messages > all; wc -l < all", 80, 12).trimmed(), QString("24"));
    QCOMPARE(session("tidel messages Sea", 80, 12).trimmed().count('\n'), 0);
}

void TestReading::filters()
{
    const auto titles = [this](const QString &options) {
        QStringList shown;
        const QStringList lines = run("tidel messages " + options).split('\n');
        for (const QString &line : lines)
            shown.append(line.section("  ", -1).trimmed());
        return shown.join(", ");
    };
    run("tidel favorite ships; tidel read broad; tidel folder Sea Far/Away");
    QCOMPARE(titles("--unread"), QString("Ships, Runner beans, 2600 peas"));
    QCOMPARE(titles("--favorites"), QString("Ships"));
    QCOMPARE(titles("--since 2026-11-04"), QString("Broad beans, Ships"));
    QCOMPARE(titles("--until 2026-11-03"), QString("Runner beans, 2600 peas"));
    QCOMPARE(titles("--folder far"), QString("Ships"));
    QCOMPARE(titles("--folder Far/Away"), QString("Ships"));
    QCOMPARE(titles("Garden --search beans"), QString("Broad beans, Runner beans"));
    QCOMPARE(titles("Garden Sea --limit 2"), QString("Broad beans, Ships"));
    QCOMPARE(run("tidel messages --folder Fa"),
             QString("tidel: Fa: no such folder; \"tidel channels\" shows the folders"));
    QCOMPARE(run("tidel messages --favorites --unread --until 2026-11-01"),
             QString("No message is like this."));
}

void TestReading::readAndUnread()
{
    QCOMPARE(run("tidel messages > all; tidel read 1 2 ships"), QString("Marked as read: 2 messages"));
    QCOMPARE(run("tidel read ships"), QString("Marked as read: 0 messages"));
    QVERIFY(run("tidel messages Sea").contains("1      2026-"));
    QCOMPARE(run("tidel unread ships"), QString("Marked as unread: 1 message"));
    QVERIFY(run("tidel messages Sea").contains(QString::fromUtf8("1  \u2022   2026-")));
    QVERIFY(run("tidel read nothing").startsWith("tidel: nothing: no such message"));
}

void TestReading::readAll()
{
    QCOMPARE(run("tidel read --all --older-than 2026-11-03"), QString("Marked as read: 1 message"));
    QCOMPARE(run("tidel read --all Garden"), QString("Marked as read: 2 messages"));
    QVERIFY(run("tidel messages --unread").endsWith("Ships"));
    QVERIFY(run("tidel read --all nothing").startsWith("tidel: nothing: no such channel"));
    QCOMPARE(run("tidel read --all"), QString("Marked as read: 1 message"));
    QCOMPARE(run("tidel messages --unread"), QString("No message is like this."));
}

// A message stays read when its feed changes it. What another program gets is not read.
void TestReading::shownMessagesAreRead()
{
    run("tidel show ships --json");
    QVERIFY(run("tidel messages Sea").startsWith(QString::fromUtf8("1  \u2022")));
    run("tidel show ships");
    QVERIFY(run("tidel messages Sea").startsWith("1      "));
    writeFeed("sea.xml", "Sea", item("Ships", "04 Nov 2026", "Other words"));
    QVERIFY(run("tidel refresh Sea").contains("1 changed"));
    QVERIFY(run("tidel messages Sea").startsWith("1      "));
}

void TestReading::changes()
{
    QCOMPARE(run("tidel show ships --changes"), QString("Ships\n\nThis message has not changed."));
    writeFeed(
        "sea.xml", "Sea",
        item("Ships", "04 Nov 2026", "&lt;p&gt;The sea was calm.&lt;/p&gt;&lt;p&gt;Nothing new.&lt;/p&gt;"));
    run("tidel refresh Sea");
    writeFeed("sea.xml", "Sea",
              item("Ships at sea", "04 Nov 2026",
                   "&lt;p&gt;The sea was rough.&lt;/p&gt;&lt;p&gt;Nothing new.&lt;/p&gt;"));
    QVERIFY(run("tidel refresh Sea").contains("1 changed"));
    QStringList lines = run("tidel show ships --changes").split('\n');
    QVERIFY2(lines.value(1).startsWith("Changed:    20"), qPrintable(lines.join('\n')));
    lines.removeAt(1);
    QCOMPARE(lines, QStringList({"[-Ships-]{+Ships at sea+}", "", "The sea was [-calm.-]{+rough.+}"}));
}

void TestReading::open()
{
    QCOMPARE(
        run("tidel open ships"),
        QString("tidel: Ships: cannot open https://example.org/ships, because there is no program xdg-open; "
                "install xdg-utils"));
    QVERIFY(run("tidel messages Sea").startsWith(QString::fromUtf8("1  \u2022")));
    QFile opener(path("bin/xdg-open"));
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\nprintf '%s\\n' $# \"$@\" > \"$XDG_DATA_HOME/opened.part\"\n"
                 "mv \"$XDG_DATA_HOME/opened.part\" \"$XDG_DATA_HOME/opened\"\n");
    opener.close();
    QVERIFY(opener.setPermissions(QFile::ReadUser | QFile::ExeUser));
    QCOMPARE(run("tidel open ships"), QString("Opened: Ships"));
    VERIFY_SOON(QFile::exists(path("opened")));
    QFile opened(path("opened"));
    QVERIFY(opened.open(QIODevice::ReadOnly));
    QCOMPARE(opened.readAll(), QByteArray("1\nhttps://example.org/ships\n"));
    QVERIFY(run("tidel messages Sea").startsWith("1      "));
}

void TestReading::openRefusesOtherLinks()
{
    QFile opener(path("bin/xdg-open"));
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\ntouch \"$XDG_DATA_HOME/opened\"\n");
    opener.close();
    QVERIFY(opener.setPermissions(QFile::ReadUser | QFile::ExeUser));
    writeFeed("bad.xml", "Bad", "<item><title>Trap</title><link>ftp://example.org/x</link></item>");
    run("tidel subscribe bad.xml");
    QVERIFY(run("tidel open trap").startsWith("tidel: Trap: the link is no http or https address: "));
    QTest::qWait(200);
    QVERIFY(!QFile::exists(path("opened")));
}

void TestReading::channelCounts()
{
    QVERIFY(run("tidel read beans; tidel read ships; tidel channels | cat")
                .contains("Sea           0/1  file://"));
    QVERIFY(run("tidel read runner; tidel channels | cat").contains("1  Garden Notes  2/3  file://"));
    const QJsonObject json =
        QJsonDocument::fromJson(run("tidel channels --json | head -n 1").toUtf8()).object();
    QCOMPARE(json.value("unread").toInt(), 2);
    QCOMPARE(json.value("messages").toInt(), 3);
    QVERIFY(run("tidel channels --uri").contains("urn:uuid:"));
}

void TestReading::unsubscribingAsks()
{
    const QString question = "Delete Sea with 1 message, 0 files? [y/N] ";
    const QString unsubscribe = "stty -echo; tidel unsubscribe Sea";
    for (const char *answer : {"n\n", "\n", "\x04"}) {
        const QString shown = session(unsubscribe, 80, 24, answer);
        QVERIFY2(shown.contains(question), qPrintable(shown));
        QVERIFY2(shown.contains("Not deleted: Sea"), qPrintable(shown));
    }
    QVERIFY(run("tidel channels").contains("Sea"));
    const QString shown = session(unsubscribe, 80, 24, "y\n");
    QVERIFY2(shown.contains(question + "Unsubscribed: Sea"), qPrintable(shown));
    QCOMPARE(run("tidel unsubscribe Garden --yes"), QString("Unsubscribed: Garden Notes"));
    writeFeed("sea.xml", "Sea", item("Ships", "04 Nov 2026"));
    run("tidel subscribe sea.xml");
    // Without a terminal, a script is not asked.
    QCOMPARE(run("tidel unsubscribe Sea < /dev/null"), QString("Unsubscribed: Sea"));
}

void TestReading::deletingAsks()
{
    run("tidel favorite runner");
    const QString question = "Delete 2 messages, 1 favorite among them? [y/N] ";
    const QString command = "stty -echo; tidel delete runner Ships";
    QString shown = session(command, 80, 24, "n\n");
    QVERIFY2(shown.contains(question) && shown.contains("Not deleted"), qPrintable(shown));
    shown = session("stty -echo; tidel delete Ships", 80, 24, "\x04");
    QVERIFY2(shown.contains("Delete Ships? [y/N] "), qPrintable(shown));
    shown = session(command, 80, 24, "y\n");
    QVERIFY2(shown.contains(question + "Deleted: 2 messages, 0 files"), qPrintable(shown));
    QCOMPARE(run("tidel delete broad --yes"), QString("Deleted: 1 message, 0 files"));
}

void TestReading::passwordIsHidden()
{
    const QByteArray prompt = "Password of Ann for 127.0.0.1: ";
    run("tidel edit Sea --link http://127.0.0.1:9/sea.xml");
    const QString shown = session("tidel edit Sea --login Ann; stty -a", 80, 24, "open sesame\n", prompt);
    QVERIFY2(shown.startsWith(prompt), qPrintable(shown));
    QVERIFY2(!shown.contains("sesame"), qPrintable(shown));
    QVERIFY2(shown.contains(" echo "), qPrintable(shown));
    QVERIFY(run("cat tidel/logins.json").contains("open sesame"));
}

QTEST_GUILESS_MAIN(TestReading)
#include "tst_reading.moc"
