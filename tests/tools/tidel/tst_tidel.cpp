// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"

#include <commandtable.h>

#include <QtTest>

namespace {

const QString samples(TIDEL_TEST_DATA);

QByteArray feed(const QByteArray &items)
{
    return "<rss version='2.0'><channel><title>Feed</title>" + items + "</channel></rss>";
}

} // namespace

/// Runs the program. Each test has a new store.
class TestTidel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void stats();
    void help();
    void helpOfOptions();
    void version();
    void usageErrors_data();
    void usageErrors();
    void emptyStore();
    void subscribe();
    void subscribeTwice();
    void failuresDoNotStopTheRest();
    void allSamples();
    void messages();
    void channelNames();
    void unknownNames();
    void enclosures();
    void refreshTwice();
    void changedFeed();
    void refreshSelectedChannels();
    void refreshWithoutFile();
    void prunedMessagesAreNotStoredAgain();
    void undatedMessages();
    void editedLinkIsRead();
    void itemsWithoutLinkAfterMove();
    void nothingIsLeft();
    void sharedItem();
    void hostileFeeds();
    void noTraces();
    void log();
    void logOfPlainMessages();
    void exampleOfLogSettings();
    void logCannotBeWritten();
    void strangeFileNames();
    void plainLocale();
    void localTime();
    void storeCannotBeOpened();
    void resultsCannotBeWritten();

private:
    Run run(const QStringList &arguments) const;
    QString copy(const QString &sample, const QString &name = QString()) const;
    QStringList copyFolder(const QString &folder) const;
    QString write(const QString &name, const QByteArray &content) const;
    QString read(const QString &name) const;
    QString feedFile(const QString &name) const { return m_dir->filePath("feeds/" + name); }

    QScopedPointer<QTemporaryDir> m_dir;
    QProcessEnvironment m_environment;
};

void TestTidel::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir(m_dir->path()).mkdir("feeds"));
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert("XDG_DATA_HOME", m_dir->filePath("data"));
    m_environment.insert("LC_ALL", "C.UTF-8");
    m_environment.insert("TZ", "UTC");
}

void TestTidel::cleanup() { m_dir.reset(); }

Run TestTidel::run(const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(feedFile(QString()));
    process.start(TIDEL_PROGRAM, arguments);
    return finishedRun(process);
}

QString TestTidel::write(const QString &name, const QByteArray &content) const
{
    QFile file(feedFile(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                    : QString();
}

QString TestTidel::read(const QString &name) const
{
    QFile file(feedFile(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : "no such file: " + name;
}

QString TestTidel::copy(const QString &sample, const QString &name) const
{
    const QString path = feedFile(name.isEmpty() ? QFileInfo(sample).fileName() : name);
    QFile::remove(path);
    return QFile::copy(samples + '/' + sample, path) ? path : QString();
}

QStringList TestTidel::copyFolder(const QString &folder) const
{
    QStringList paths;
    const QStringList names = QDir(samples + '/' + folder).entryList(QDir::Files);
    for (const QString &name : names)
        paths.append(copy(folder + '/' + name));
    return paths;
}

/// Lists a few of the channels, and counts the others that are silent.
void TestTidel::stats()
{
    QStringList subscribe{"subscribe"};
    for (int i = 1; i <= 7; ++i) {
        const QByteArray item = "<item><title>Peas</title><pubDate>0" + QByteArray::number(i)
            + " Mar 2020 12:00:00 GMT</pubDate></item>";
        subscribe.append(
            write(QString("feed%1.xml").arg(i), feed(item).replace("Feed", "Feed " + QByteArray::number(i))));
    }
    VERIFY_RUN(run(subscribe), 0);
    const Run shown = run({"stats"});
    VERIFY_RUN(shown, 0);
    const QStringList lines = shown.lines();
    QCOMPARE(lines.first(), QString("Channels:    7"));
    const int silent = int(lines.indexOf("Silent for 90 days:"));
    QVERIFY2(silent > 0, qPrintable(shown.out));
    QVERIFY2(lines.value(silent + 1).startsWith("  Feed 1  1 message"), qPrintable(shown.out));
    QVERIFY2(lines.value(silent + 5).startsWith("  Feed 5  1 message"), qPrintable(shown.out));
    QCOMPARE(lines.value(silent + 6), QString("  and 2 more"));
    QCOMPARE(lines.size(), silent + 7);
}

void TestTidel::help()
{
    const Run all = run({"--help"});
    VERIFY_RUN(all, 0);
    QVERIFY(all.out.startsWith("Usage: tidel "));
    QCOMPARE(all.err, QString());
    const QStringList names = Tidel::commandNames();
    for (const QString &command : names) {
        QVERIFY2(all.out.contains("\n  " + command + ' '), qPrintable(command));
        const Run one = run({command, "--help"});
        VERIFY_RUN(one, 0);
        QVERIFY2(one.out.startsWith("Usage: tidel " + command), qPrintable(one.out));
        QCOMPARE(run({command, "-h"}).out, one.out);
    }
    QVERIFY(!QFile::exists(m_dir->filePath("data")));
}

void TestTidel::helpOfOptions()
{
    QCOMPARE(run({"export", "--help"}).out,
             "Usage: tidel export [FILE] [--opml | --json]\n"
             "\n"
             "Write a list of the channels with their titles and folders, for other feed\n"
             "readers.\n"
             "\n"
             "Arguments:\n"
             "  FILE                 The file to write, which only you can read; by default\n"
             "                       the standard output.\n"
             "\n"
             "Options:\n"
             "  --opml               Writes OPML 2.0; this is the default.\n"
             "  --json               Writes a line of JSON for each result and each error, for\n"
             "                       other programs.\n"
             "  --quiet              Writes only what was asked for and errors.\n"
             "  --help               Displays this help.\n"
             "\n"
             "Examples:\n"
             "  tidel export subscriptions.opml\n"
             "  tidel export --json\n");
    QVERIFY(run({"download", "--help"}).out.contains("\n  MESSAGE|ENCLOSURE|CHANNEL  "));
    QVERIFY(run({"prune", "--help"}).out.contains("\n  --keep N  "));
}

void TestTidel::version()
{
    const Run version = run({"--version"});
    VERIFY_RUN(version, 0);
    QVERIFY(QRegularExpression("^tidel \\d+\\.\\d+\\.\\d+\n$").match(version.out).hasMatch());
}

void TestTidel::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing") << QStringList() << "no command given";
    QTest::newRow("command") << QStringList{"frobnicate"} << "unknown command \"frobnicate\"";
    QTest::newRow("command with control") << QStringList{"a\x1b[2J\nb"} << "unknown command \"a[2J b\"";
    QTest::newRow("option") << QStringList{"--frobnicate"} << "Unknown option 'frobnicate'; see ";
    QTest::newRow("command with a slip")
        << QStringList{"serach"}
        << "unknown command \"serach\"; did you mean \"search\"? See \"tidel --help\"";
    QTest::newRow("option with a slip")
        << QStringList{"prune", "--kep", "3"} << "unknown option --kep; did you mean --keep? See ";
    QTest::newRow("title with a dash")
        << QStringList{"messages", "-day one"} << "Unknown option 'day one'; see ";
    QTest::newRow("empty channel") << QStringList{"messages", ""} << "an argument is empty";
    QTest::newRow("empty feed") << QStringList{"subscribe", "a.xml", ""} << "an argument is empty";
    QTest::newRow("option of a command") << QStringList{"channels", "--frobnicate"} << "frobnicate";
    QTest::newRow("no log settings") << QStringList{"--log-settings"} << "log-settings";
    QTest::newRow("log settings of a command")
        << QStringList{"channels", "--log-settings", "a.ini"} << "log-settings";
    QTest::newRow("no file") << QStringList{"subscribe"} << "an argument is missing";
    QTest::newRow("no message to mark") << QStringList{"read"} << "name messages, or give --all";
    QTest::newRow("a time without --all")
        << QStringList{"read", "a", "--older-than", "7d"} << "--older-than needs --all";
    QTest::newRow("no time") << QStringList{"read", "--all", "--older-than", "x"}
                             << "--older-than needs a number";
    QTest::newRow("no limit") << QStringList{"messages", "--limit", "0"} << "--limit needs a number";
    QTest::newRow("no folder") << QStringList{"messages", "--folder", "/"} << "--folder needs the name";
    QTest::newRow("too much for channels") << QStringList{"channels", "a"} << "too many arguments";
    QTest::newRow("too much for enclosures") << QStringList{"enclosures", "a", "b"} << "too many arguments";
    QTest::newRow("nothing to unsubscribe") << QStringList{"unsubscribe"} << "an argument is missing";
    QTest::newRow("nothing to edit") << QStringList{"edit", "--title", "a"} << "an argument is missing";
    QTest::newRow("too much to edit")
        << QStringList{"edit", "a", "b", "--title", "c"} << "too many arguments";
    QTest::newRow("edit without option")
        << QStringList{"edit", "a"} << "give --title, --link, --every or --login";
    QTest::newRow("empty title") << QStringList{"edit", "a", "--title", ""} << "--title needs a text";
    QTest::newRow("empty link") << QStringList{"edit", "a", "--link="} << "--link needs a file or URL";
    QTest::newRow("no title") << QStringList{"edit", "a", "--title"} << "title";
    QTest::newRow("no favorite") << QStringList{"favorite"} << "an argument is missing";
    QTest::newRow("two favorites") << QStringList{"favorite", "a", "b"} << "too many arguments";
    QTest::newRow("no unfavorite") << QStringList{"unfavorite"} << "an argument is missing";
    QTest::newRow("prune --remember without a rule") << QStringList{"prune", "--remember"} << "--keep N";
    QTest::newRow("--keep without value") << QStringList{"prune", "--keep"} << "keep";
    QTest::newRow("--keep with negative number")
        << QStringList{"prune", "--keep", "-1"} << "--keep needs a number of messages, 0 or more";
    QTest::newRow("--keep with word")
        << QStringList{"prune", "a", "--keep", "few"} << "--keep needs a number of messages, 0 or more";
    QTest::newRow("option of another command") << QStringList{"clean", "--keep", "1"} << "keep";
    QTest::newRow("too much to clean") << QStringList{"clean", "a"} << "too many arguments";
}

void TestTidel::usageErrors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    const Run wrong = run(arguments);
    VERIFY_RUN(wrong, 2);
    QCOMPARE(wrong.out, QString());
    QCOMPARE(wrong.errors().size(), 1);
    QVERIFY2(wrong.err.startsWith("tidel: ") && wrong.err.contains(expected), qPrintable(wrong.err));
    QVERIFY2(wrong.err.contains("--help"), qPrintable(wrong.err));
    QVERIFY(!QFile::exists(m_dir->filePath("data")));
}

void TestTidel::emptyStore()
{
    for (const QStringList &arguments :
         {QStringList{"channels"}, QStringList{"messages"}, QStringList{"refresh"},
          QStringList{"prune", "--keep", "1", "--include-unread"}}) {
        const Run empty = run(arguments);
        VERIFY_RUN(empty, 0);
        QCOMPARE(empty.out, QString());
        QVERIFY2(empty.err.contains("tidel subscribe"), qPrintable(empty.err));
    }
}

void TestTidel::subscribe()
{
    const QString radio = copy("feeds/hillside-radio.xml");
    const QString garden = copy("feeds/garden-notes.atom");
    const Run subscribed = run({"subscribe", radio, "garden-notes.atom"});
    VERIFY_RUN(subscribed, 0);
    QCOMPARE(subscribed.lines(),
             QStringList({"Subscribed: The Hillside Radio Hour (5 messages)",
                          "Subscribed: Garden Notes (4 messages)"}));
    QCOMPARE(subscribed.err, QString());

    const Run channels = run({"channels", "--uri"});
    VERIFY_RUN(channels, 0);
    QCOMPARE(channels.lines().size(), 2);
    const QRegularExpression row("^1  Garden Notes +4/4  " + QRegularExpression::escape("file://" + garden)
                                 + " +urn:uuid:[0-9a-f-]+$");
    QVERIFY2(row.match(channels.lines().first()).hasMatch(), qPrintable(channels.out));
    QVERIFY(channels.lines().last().startsWith("2  The Hillside Radio Hour"));
}

void TestTidel::subscribeTwice()
{
    const QString radio = copy("feeds/hillside-radio.xml");
    VERIFY_RUN(run({"subscribe", radio}), 0);
    for (const QString &name : {radio, QString("hillside-radio.xml"), "file://" + radio}) {
        const Run again = run({"subscribe", name});
        VERIFY_RUN(again, 0);
        QCOMPARE(again.lines().size(), 1);
        QVERIFY2(again.out.startsWith("Already subscribed: The Hillside Radio Hour"), qPrintable(again.out));
        QVERIFY2(again.out.contains("tidel refresh"), qPrintable(again.out));
    }
    const Run twice = run({"subscribe", copy("feeds/town-news.xml"), "./town-news.xml"});
    VERIFY_RUN(twice, 0);
    QVERIFY2(twice.lines().last().startsWith("Already subscribed: Town News"), qPrintable(twice.out));
    QCOMPARE(run({"channels"}).lines().size(), 2);
    QCOMPARE(run({"messages", "Town News"}).lines().size(), 2);
}

void TestTidel::failuresDoNotStopTheRest()
{
    copyFolder("broken");
    copy("feeds/town-news.xml");
    copy("feeds/county-news.xml");
    const QStringList wrong{"missing.xml",   ".", "ftp://example.org/feed.xml", "empty.xml", "plain-text.xml",
                            "bookmarks.opml"};
    const Run some = run(QStringList{"subscribe", "town-news.xml"} + wrong + QStringList{"county-news.xml"});
    VERIFY_RUN(some, 1);
    QCOMPARE(some.lines(),
             QStringList({"Subscribed: Town News (2 messages)", "Subscribed: County News (2 messages)"}));

    const QStringList errors = some.errors();
    QCOMPARE(errors.size(), wrong.size());
    for (int i = 0; i < wrong.size(); ++i)
        QVERIFY2(errors.at(i).startsWith("tidel: " + wrong.at(i) + ": "), qPrintable(errors.at(i)));
    QVERIFY(errors.at(0).endsWith(": no such file; web addresses begin with https:// or http://"));
    QVERIFY(run({"subscribe", "/no/such/file"}).err.endsWith(": no such file\n"));
    QVERIFY(errors.at(1).contains("directory"));
    QVERIFY(errors.at(2).contains("only files and http and https addresses are supported"));
    QVERIFY(errors.at(3).contains("empty"));
    QVERIFY(errors.at(4).contains("neither XML nor JSON"));
    QVERIFY(errors.at(5).contains("XML but not a feed"));
    QCOMPARE(run({"channels"}).lines().size(), 2);
}

void TestTidel::allSamples()
{
    const QStringList feeds = copyFolder("feeds");
    const Run good = run(QStringList{"subscribe"} + feeds);
    VERIFY_RUN(good, 0);
    QCOMPARE(good.lines().size(), feeds.size());
    QCOMPARE(run({"channels"}).lines().size(), feeds.size());

    const QStringList wrong = copyFolder("broken");
    const Run bad = run(QStringList{"subscribe"} + wrong);
    VERIFY_RUN(bad, 1);
    QCOMPARE(bad.out, QString());
    QCOMPARE(bad.errors().size(), wrong.size());

    for (const QString &feed : feeds) {
        const Run messages = run({"messages", feed});
        VERIFY_RUN(messages, 0);
        const QString count = QString(" (%1 message").arg(messages.lines().size());
        QVERIFY2(good.lines().at(feeds.indexOf(feed)).contains(count), qPrintable(feed));
    }
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 0);
    QCOMPARE(refreshed.lines(), QStringList(QString("%1 channels: 0 new messages").arg(feeds.size())));
}

void TestTidel::messages()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/observatory.rdf")}), 0);
    const Run messages = run({"messages", "Observatory News"});
    VERIFY_RUN(messages, 0);
    QCOMPARE(
        messages.lines(),
        QStringList(
            {"1  \u2022   2026-11-06 00:12  A comet, at last             https://sky.example.org/2026/comet",
             "2  \u2022   2026-11-04 00:00  Clouds                       https://sky.example.org/2026/clouds",
             "3  \u2022   1969-07-21 02:56  From the archive: footsteps  https://sky.example.org/1969/moon"}));

    VERIFY_RUN(run({"subscribe", copy("feeds/missing-parts.xml")}), 0);
    const Run bare = run({"messages", "missing-parts.xml"});
    QVERIFY2(bare.out.contains(QRegularExpression("\\(no date\\) +\\(no title\\)")), qPrintable(bare.out));

    VERIFY_RUN(run({"subscribe", copy("feeds/nothing-yet.xml")}), 0);
    const Run none = run({"messages", "Nothing Yet"});
    VERIFY_RUN(none, 0);
    QCOMPARE(none.out, QString());
    QVERIFY(none.err.contains("no messages"));
}

void TestTidel::channelNames()
{
    const QString town = copy("feeds/town-news.xml");
    copy("feeds/town-news.xml", "twin.xml");
    VERIFY_RUN(run({"subscribe", town}), 0);
    const QString expected = run({"messages", "Town News"}).out;
    QVERIFY(expected.contains("The bridge is open"));
    const QString uri = run({"channels", "--uri"}).lines().first().section(' ', -1);
    for (const QString &name : {uri, town, QString("town-news.xml"), "file://" + town})
        QCOMPARE(run({"messages", name}).out, expected);

    VERIFY_RUN(run({"subscribe", "twin.xml"}), 0);
    const Run ambiguous = run({"messages", "Town News"});
    VERIFY_RUN(ambiguous, 1);
    QCOMPARE(ambiguous.out, QString());
    QVERIFY2(ambiguous.err.contains("2 channels have such a title"), qPrintable(ambiguous.err));
    QCOMPARE(run({"messages", "twin.xml"}).out, expected);
}

void TestTidel::unknownNames()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml")}), 0);
    for (const QStringList &arguments :
         {QStringList{"messages", "Nowhere"}, QStringList{"enclosures", "https://example.org/nothing"},
          QStringList{"enclosures", "> } DELETE WHERE { ?s ?p ?o } #"}, QStringList{"refresh", "Nowhere"},
          QStringList{"unsubscribe", "Nowhere"}, QStringList{"edit", "Nowhere", "--title", "a"},
          QStringList{"favorite", "https://example.org/nothing"},
          QStringList{"unfavorite", "https://example.org/nothing"},
          QStringList{"prune", "Nowhere", "--keep", "0"}}) {
        const Run unknown = run(arguments);
        VERIFY_RUN(unknown, 1);
        QCOMPARE(unknown.out, QString());
        QCOMPARE(unknown.errors().size(), 1);
        QVERIFY2(unknown.err.contains("no such"), qPrintable(unknown.err));
    }
    QCOMPARE(run({"messages", "Town News"}).lines().size(), 2);
}

void TestTidel::enclosures()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/hillside-radio.xml")}), 0);
    const Run two = run({"enclosures", "https://radio.example.org/episodes/5"});
    VERIFY_RUN(two, 0);
    QStringList lines = two.lines();
    lines.sort();
    QCOMPARE(lines,
             QStringList(
                 {" (no size)  44:00  audio/mpeg       https://media.example.org/hillside/5.mp3",
                  "200.00 KiB  44:00  application/pdf  https://media.example.org/hillside/5-letters.pdf"}));

    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml")}), 0);
    const Run none = run({"enclosures", "https://town.example.net/pool"});
    VERIFY_RUN(none, 0);
    QCOMPARE(none.out, QString());
    QVERIFY2(none.err.contains("no enclosures"), qPrintable(none.err));
    const Run one = run({"enclosures", "https://press.example.net/bridge"});
    QCOMPARE(one.out, QString("53.05 KiB  image/jpeg  https://press.example.net/bridge.jpg\n"));
}

void TestTidel::refreshTwice()
{
    const QStringList feeds{copy("feeds/hillside-radio.xml"), copy("feeds/same-link.xml"),
                            copy("feeds/missing-parts.xml")};
    VERIFY_RUN(run(QStringList{"subscribe"} + feeds), 0);
    QStringList before;
    for (const QString &feed : feeds)
        before.append(run({"messages", feed}).out);
    for (int round = 0; round < 2; ++round) {
        const Run refreshed = run({"refresh"});
        VERIFY_RUN(refreshed, 0);
        QCOMPARE(refreshed.lines(), QStringList({"3 channels: 0 new messages"}));
    }
    for (int i = 0; i < feeds.size(); ++i)
        QCOMPARE(run({"messages", feeds.at(i)}).out, before.at(i));
}

void TestTidel::changedFeed()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/hillside-radio.xml")}), 0);
    copy("feeds-later/hillside-radio.xml");
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 0);
    QCOMPARE(refreshed.lines(),
             QStringList({"The Hillside Radio Hour: 2 new", "  2026-11-17 18:00  Letters, answered",
                          "  2026-11-10 18:00  The Bridge"}));
    QCOMPARE(run({"refresh"}).lines(), QStringList("The Hillside Radio Hour: nothing new"));

    const QStringList lines = run({"messages", "The Hillside Radio Hour"}).lines();
    QCOMPARE(lines.size(), 7);
    QVERIFY2(lines.first().contains("Letters, answered"), qPrintable(lines.first()));
    QVERIFY2(lines.last().contains("Pilot"), qPrintable(lines.last()));
    QVERIFY(run({"enclosures", "https://radio.example.org/episodes/7"}).out.contains("35.71 MiB"));
}

void TestTidel::refreshSelectedChannels()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/hillside-radio.xml"), copy("feeds/town-news.xml")}), 0);
    copy("feeds-later/hillside-radio.xml");
    QCOMPARE(run({"refresh", "Town News"}).lines(), QStringList("Town News: nothing new"));
    const Run some = run({"refresh", "Nowhere", "hillside-radio.xml"});
    VERIFY_RUN(some, 1);
    QVERIFY2(some.out.startsWith("The Hillside Radio Hour: 2 new\n"), qPrintable(some.out));
    QVERIFY2(some.err.startsWith("tidel: Nowhere: no such channel"), qPrintable(some.err));
}

void TestTidel::refreshWithoutFile()
{
    const QString town = copy("feeds/town-news.xml");
    VERIFY_RUN(run({"subscribe", town, copy("feeds/county-news.xml")}), 0);
    QVERIFY(QFile::remove(town));
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 1);
    QCOMPARE(refreshed.lines(), QStringList({"2 channels: 0 new messages, 1 failed"}));
    QCOMPARE(refreshed.err, "tidel: Town News (file://" + town + "): no such file\n");
    QCOMPARE(run({"messages", "Town News"}).lines().size(), 2);
}

// A deleted message is not stored again while the feed contains it.
void TestTidel::prunedMessagesAreNotStoredAgain()
{
    const auto publish = [this](const QStringList &titles) {
        QString items;
        for (const QString &title : titles)
            items += QString("<item><title>%1</title><link>https://example.org/%1</link>"
                             "<pubDate>Tue, 0%2 Nov 2026 10:00:00 GMT</pubDate></item>")
                         .arg(title, title.right(1));
        QVERIFY(!write("feed.xml", feed(items.toUtf8())).isEmpty());
    };
    const QString nothingNew = "Feed: nothing new\n";
    publish({"day3", "day2", "day1"});
    VERIFY_RUN(run({"subscribe", "feed.xml"}), 0);
    QCOMPARE(run({"prune", "--keep", "1", "--include-unread"}).out,
             QString("Feed: deleted 2 messages, 0 files\n"));
    QCOMPARE(run({"refresh"}).out, nothingNew);
    QCOMPARE(run({"refresh"}).out, nothingNew);
    QCOMPARE(run({"messages", "Feed"}).lines().size(), 1);

    publish({"day4", "day3", "day2"});
    QCOMPARE(run({"refresh"}).out, QString("Feed: 1 new\n  2026-11-04 10:00  day4\n"));
    publish({"day4", "day3", "day2", "day1"});
    QCOMPARE(run({"refresh"}).out, QString("Feed: 1 new\n  2026-11-01 10:00  day1\n"));

    VERIFY_RUN(run({"favorite", "https://example.org/day1"}), 0);
    QCOMPARE(run({"prune", "Feed", "--keep", "0", "--include-unread"}).out,
             QString("Feed: deleted 2 messages, 0 files\n"));
    QCOMPARE(run({"messages", "Feed"}).out,
             QString("1  \u2022*  2026-11-01 10:00  day1  https://example.org/day1\n"));
    QCOMPARE(run({"refresh"}).out, nothingNew);

    VERIFY_RUN(run({"unsubscribe", "Feed"}), 0);
    QCOMPARE(run({"subscribe", "feed.xml"}).out, QString("Subscribed: Feed (4 messages)\n"));
}

// Without dates, the order of the feed counts. The newest message is the first one.
void TestTidel::undatedMessages()
{
    const auto publish = [this](const QStringList &titles) {
        QString items;
        for (const QString &title : titles)
            items += QString("<item><title>%1</title><link>https://example.org/%1</link></item>").arg(title);
        QVERIFY(!write("feed.xml", feed(items.toUtf8())).isEmpty());
    };
    const auto shown = [this] {
        QStringList titles;
        for (const QString &line : run({"messages", "Feed"}).lines())
            titles.append(line.section("example.org/", 1));
        return titles;
    };
    publish({"c", "b", "a"});
    VERIFY_RUN(run({"subscribe", "feed.xml"}), 0);
    QCOMPARE(shown(), QStringList({"c", "b", "a"}));
    QCOMPARE(run({"prune", "--keep", "2", "--include-unread"}).out,
             QString("Feed: deleted 1 message, 0 files\n"));
    QCOMPARE(shown(), QStringList({"c", "b"}));

    publish({"e", "d", "c", "b", "a"});
    QCOMPARE(run({"refresh"}).out, QString("Feed: 2 new\n  (no date)  e\n  (no date)  d\n"));
    VERIFY_RUN(run({"prune", "--keep", "3", "--include-unread"}), 0);
    QCOMPARE(shown(), QStringList({"e", "d", "c"}));
}

void TestTidel::editedLinkIsRead()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/hillside-radio.xml")}), 0);
    VERIFY_RUN(run({"prune", "--keep", "2", "--include-unread"}), 0);
    const QString moved = copy("feeds-later/hillside-radio.xml", "moved.xml");
    QCOMPARE(run({"edit", "hillside-radio.xml", "--title", "Radio", "--link", "moved.xml"}).out,
             "Changed: Radio (file://" + moved + ")\n");
    QVERIFY(run({"refresh", "Radio"}).out.startsWith("Radio: 2 new\n"));
    QCOMPARE(run({"messages", "moved.xml"}).lines().size(), 4);
}

void TestTidel::itemsWithoutLinkAfterMove()
{
    const QByteArray old = "<item><title>Old</title><guid isPermaLink='false'>1</guid></item>";
    const QByteArray fresh = "<item><title>New</title><guid isPermaLink='false'>2</guid></item>";
    VERIFY_RUN(run({"subscribe", write("feed.xml", feed(old))}), 0);
    for (const char *place : {"moved.xml", "again.xml"}) {
        write(place, feed(old + fresh));
        VERIFY_RUN(run({"edit", "Feed", "--link", place}), 0);
        VERIFY_RUN(run({"refresh"}), 0);
        QCOMPARE(run({"messages", "Feed"}).lines().size(), 2);
    }
}

void TestTidel::nothingIsLeft()
{
    const QStringList feeds{copy("feeds/hillside-radio.xml"), copy("feeds/garden-notes.atom"),
                            copy("feeds/town-news.xml"), copy("feeds/county-news.xml")};
    VERIFY_RUN(run(QStringList{"subscribe"} + feeds), 0);
    const Run dry = run({"prune", "--keep", "1", "--include-unread", "--dry-run"});
    const Run pruned = run({"prune", "--keep", "1", "--include-unread"});
    VERIFY_RUN(pruned, 0);
    QCOMPARE(dry.lines().filter(QRegularExpression("^[^ ].*: would delete ")).size(),
             pruned.lines().filter(": deleted ").size());
    QCOMPARE(run({"prune", "--keep", "1", "--include-unread", "--dry-run"}).lines().filter("would delete"),
             QStringList());
    QCOMPARE(run({"clean"}).out, QString("Nothing to clean\n"));
    for (const QString &feed : feeds)
        VERIFY_RUN(run({"unsubscribe", feed}), 0);
    QCOMPARE(run({"channels"}).out, QString());
    QCOMPARE(run({"clean"}).out, QString("Nothing to clean\n"));
}

void TestTidel::sharedItem()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml"), copy("feeds/county-news.xml")}), 0);
    for (const char *channel : {"Town News", "County News"}) {
        const Run messages = run({"messages", channel});
        QCOMPARE(messages.lines().size(), 2);
        QVERIFY2(messages.lines().first().contains("https://press.example.net/bridge"),
                 qPrintable(messages.out));
    }
    // There is one message, which has the enclosures of both feeds.
    QCOMPARE(run({"enclosures", "https://press.example.net/bridge"}).lines().size(), 2);
    QCOMPARE(run({"refresh"}).lines(), QStringList({"2 channels: 0 new messages"}));
}

void TestTidel::hostileFeeds()
{
    const QString town = copy("feeds/town-news.xml");
    VERIFY_RUN(run({"subscribe", town}), 0);
    const QString hostile = copy("feeds/hostile.xml");
    const QString title = "\" } ; DELETE { ?c a mfo:FeedChannel } WHERE { ?c a mfo:FeedChannel } # %1 %2";
    const Run subscribed = run({"subscribe", hostile});
    VERIFY_RUN(subscribed, 0);
    QCOMPARE(subscribed.lines(), QStringList("Subscribed: " + title + " (10 messages)"));
    QCOMPARE(run({"refresh"}).lines(), QStringList({"2 channels: 0 new messages"}));

    const Run channels = run({"channels"});
    QCOMPARE(channels.lines().size(), 2);
    QVERIFY2(channels.out.contains("Town News"), qPrintable(channels.out));
    QVERIFY2(channels.out.contains(title), qPrintable(channels.out));
    QCOMPARE(run({"messages", town}).lines().size(), 2);
    VERIFY_RUN(run({"subscribe", copy("feeds/hostile.xml", "twin.xml")}), 0);
    const Run ambiguous = run({"messages", title});
    QVERIFY2(ambiguous.err.startsWith("tidel: " + title + ": 2 channels"), qPrintable(ambiguous.err));

    const Run messages = run({"messages", hostile});
    VERIFY_RUN(messages, 0);
    QCOMPARE(messages.lines().size(), 10);
    for (QChar c : messages.out)
        QVERIFY(c == '\n' || c.category() != QChar::Other_Control);
    QVERIFY(!messages.out.contains("javascript:") && !messages.out.contains("data:"));
    QVERIFY(!messages.out.contains("root:"));
    QCOMPARE(run({"enclosures", "https://hostile.example.org/6"}).lines().size(), 3);
}

void TestTidel::noTraces()
{
    m_environment.insert("QT_LOGGING_RULES", "*=true");
    m_environment.insert("QT_FORCE_STDERR_LOGGING", "1");
    m_environment.insert("G_MESSAGES_DEBUG", "all");
    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml")}), 0);
    QCOMPARE(run({"subscribe", copy("feeds/county-news.xml")}).err, QString());
    QCOMPARE(run({"refresh"}).err, QString());
    QCOMPARE(run({"channels"}).err, QString());
    QCOMPARE(run({"subscribe", copy("broken/plain-text.xml")}).errors().size(), 1);
}

void TestTidel::log()
{
    const QString settings =
        write("log.ini",
              "[log-settings]\ndir-path=.\nfile-name=log.txt\n[TidelReader]\ndebug=true\n"
              "[log-format]\nformat=<function>|<message>\nfunction-length=0\n");
    const Run subscribed = run({"--log-settings", settings, "subscribe", copy("feeds/town-news.xml")});
    VERIFY_RUN(subscribed, 0);
    QCOMPARE(subscribed.out, QString("Subscribed: Town News (2 messages)\n"));
    QCOMPARE(subscribed.err, QString());
    const QStringList lines = read("log.txt").split('\n');
    QCOMPARE(lines.first(), QString("open|open the store true "));
    QVERIFY2(lines.contains("run|add messages to the store "), qPrintable(lines.join('\n')));
    QCOMPARE(lines.last(), QString());

    const Run channels = run({"--log-settings=" + settings, "channels"});
    VERIFY_RUN(channels, 0);
    QCOMPARE(channels.out, run({"channels"}).out);
    QCOMPARE(read("log.txt").count("|read the channels from the store "), 1);
}

// Messages that are not structured are logged by their logging category, and not printed.
void TestTidel::logOfPlainMessages()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml")}), 0);
    const QString expected = run({"channels"}).out;
    const QByteArray settings = "[log-settings]\ndir-path=.\nfile-name=log.txt\n[log-format]\n"
                                "format=\"<msgtype>: <message>\"\nmsgtype-length=0\n";
    const QStringList channels{"--log-settings", write("log.ini", settings), "channels"};
    m_environment.insert("QT_LOGGING_RULES", "tidel.sparql.tracker=true");
    QCOMPARE(run(channels).out, expected);
    QCOMPARE(read("log.txt"), QString());
    write("log.ini", settings + "[tidel.sparql.tracker]\ndebug=true\n");
    QCOMPARE(run(channels).out, expected);
    QVERIFY2(read("log.txt").startsWith("Debug: "), qPrintable(read("log.txt")));
}

void TestTidel::exampleOfLogSettings()
{
    const Run channels = run({"--log-settings", TIDEL_DOCS "/log-settings.ini", "channels"});
    VERIFY_RUN(channels, 0);
    QCOMPARE(channels.out, QString());
    QVERIFY2(read("tidel.log").contains("read the channels from the store"), qPrintable(read("tidel.log")));
}

void TestTidel::logCannotBeWritten()
{
    const Run missing = run({"--log-settings", "nowhere.ini", "channels"});
    VERIFY_RUN(missing, 1);
    QCOMPARE(missing.err, QString("tidel: nowhere.ini: could not read the log settings: no such file\n"));
    write("folder.ini", "[log-settings]\ndir-path=.\n");
    const Run folder = run({"--log-settings", "folder.ini", "channels"});
    VERIFY_RUN(folder, 1);
    QCOMPARE(folder.err,
             QString("tidel: folder.ini: could not open the log file: it cannot be written; "
                     "check dir-path and file-name\n"));
    QCOMPARE(missing.out + folder.out, QString());
    QVERIFY(!QFile::exists(m_dir->filePath("data")));

    // Empty settings log nothing.
    const Run silent = run({"--log-settings", write("silent.ini", QByteArray()), "channels"});
    VERIFY_RUN(silent, 0);
    QCOMPARE(silent.out, QString());
    QCOMPARE(silent.errors().size(), 1);
}

void TestTidel::strangeFileNames()
{
    const QStringList names{"two words.xml", "100%41.xml",  "a#b?c.xml",
                            "[a]{b}|^`.xml", "\"<x>\".xml", QStringLiteral("\u4e80.xml")};
    for (const QString &name : names) {
        VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml", name)}), 0);
        QVERIFY2(run({"subscribe", name}).out.startsWith("Already subscribed"), qPrintable(name));
        QCOMPARE(run({"refresh", name}).lines(), QStringList("Town News: nothing new"));
        QCOMPARE(run({"messages", name}).lines().size(), 2);
    }
    QCOMPARE(run({"channels"}).lines().size(), names.size());
}

// The environment of a cron job has no character set. Titles and file names are still UTF-8.
void TestTidel::plainLocale()
{
    const QString name = QStringLiteral("\u4e80.xml");
    const Run expected = [&] {
        run({"subscribe", copy("feeds/many-scripts.xml", name)});
        return run({"messages", name});
    }();
    QVERIFY(expected.out.contains(QStringLiteral("\u9045\u3044\u30ab\u30e1")));
    m_environment.insert("LC_ALL", "C");
    m_environment.insert("XDG_DATA_HOME", m_dir->filePath("other"));
    VERIFY_RUN(run({"subscribe", name}), 0);
    QCOMPARE(run({"messages", name}).out, expected.out);
}

void TestTidel::localTime()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml")}), 0);
    m_environment.insert("TZ", "Asia/Kathmandu");
    const Run messages = run({"messages", "Town News"});
    QVERIFY2(messages.out.startsWith("1  \u2022   2026-11-04 14:45  "), qPrintable(messages.out));
}

void TestTidel::storeCannotBeOpened()
{
    QFile file(m_dir->filePath("data"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const Run closed = run({"channels"});
    VERIFY_RUN(closed, 1);
    QCOMPARE(closed.out, QString());
    QCOMPARE(closed.errors().size(), 1);
    QVERIFY2(closed.err.startsWith("tidel: could not open the store: "), qPrintable(closed.err));
}

void TestTidel::resultsCannotBeWritten()
{
    VERIFY_RUN(run({"subscribe", copy("feeds/town-news.xml")}), 0);
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setStandardOutputFile("/dev/full");
    process.start(TIDEL_PROGRAM, {"channels"});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QVERIFY(process.readAllStandardError().contains("could not write the results"));
}

QTEST_GUILESS_MAIN(TestTidel)
#include "tst_tidel.moc"
