// SPDX-License-Identifier: LGPL-2.1-or-later
#include <commandtable.h>

#include <QtTest>

using Objects = QList<QJsonObject>;

namespace {

const QByteArray feed = R"(<rss version="2.0" xmlns:dc="http://purl.org/dc/elements/1.1/"><channel>
<title>Garden</title><link>https://example.org/</link>
<item><title>Beans</title><link>https://example.org/beans</link><guid>1</guid>
<pubDate>Tue, 03 Nov 2026 13:00:00 +0100</pubDate><dc:creator>Ada</dc:creator><category>food</category>
<description>Poles &lt;b&gt;first&lt;/b&gt;.</description>
<enclosure url="%1" length="4" type="audio/mpeg"/></item>
<item><title>Peas</title><link>https://example.org/peas</link><guid>2</guid></item></channel></rss>)";

QStringList keys(const QJsonObject &object) { return object.keys(); }

/// Returns true if the manual page has \a key; otherwise returns false.
bool isDocumented(const QString &key)
{
    QFile file(TIDEL_JSON_MANUAL);
    const QString page = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    return QRegularExpression("^\\.BR? .*\\b" + key + "\\b", QRegularExpression::MultilineOption)
        .match(page)
        .hasMatch();
}

} // namespace

/// Tests what every command writes for other programs.
class TestJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyCommand();
    void values();
    void query();
    void errors();
    void quiet();

private:
    QByteArray run(const QStringList &arguments, int exitCode = 0) const;
    Objects objects(const QStringList &arguments, int exitCode = 0) const;
    QString path(const QString &name) const { return m_folder->filePath(name); }

    QScopedPointer<QTemporaryDir> m_folder;
};

void TestJson::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
    const auto write = [this](const QString &name, const QByteArray &content) {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    };
    const QByteArray episode = QUrl::fromLocalFile(path("episode.mp3")).toEncoded();
    QVERIFY(write("garden.xml", QString(feed).arg(QString(episode)).toUtf8()));
    QVERIFY(write("episode.mp3", "1234"));
    QVERIFY(write("xdg-open", "#!/bin/sh\n")
            && QFile::setPermissions(path("xdg-open"), QFile::ReadUser | QFile::ExeUser));
    QVERIFY(write("page.html",
                  "<html><head><link rel='alternate' type='application/rss+xml' title='One' "
                  "href='a.xml'><link rel='alternate' type='application/rss+xml' href='b.xml'>"
                  "</head></html>"));
    QVERIFY(write(
        "list.opml",
        "<opml version='2.0'><body><outline text='Far' xmlUrl='file:///nowhere/far.xml'/></body></opml>"));
}

QByteArray TestJson::run(const QStringList &arguments, int exitCode) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", path("data"));
    environment.insert("HOME", path("home"));
    environment.insert("TZ", "Asia/Tokyo");
    environment.insert("PATH", m_folder->path() + ':' + environment.value("PATH"));
    process.setProcessEnvironment(environment);
    process.start(TIDEL_PROGRAM, arguments);
    if (!process.waitForFinished() || process.exitCode() != exitCode)
        qWarning() << arguments << process.exitCode() << process.readAllStandardError();
    return process.readAllStandardOutput();
}

Objects TestJson::objects(const QStringList &arguments, int exitCode) const
{
    Objects result;
    const QList<QByteArray> lines = run(arguments + QStringList{"--json"}, exitCode).split('\n');
    for (const QByteArray &line : lines.mid(0, lines.size() - 1)) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (!document.isObject())
            qWarning() << arguments << line;
        result.append(document.object());
    }
    return result;
}

// The keys are what other programs rely on.
void TestJson::everyCommand()
{
    const QString beans = "https://example.org/beans";
    QSet<QString> tested;
    const auto check = [&](const QStringList &arguments, const QList<QStringList> &expected) {
        tested.insert(arguments.first());
        const Objects written = objects(arguments);
        QCOMPARE(written.size(), expected.size());
        for (int i = 0; i < written.size(); ++i)
            QCOMPARE(keys(written.at(i)), expected.at(i));
        for (const QString &key : expected.first())
            QVERIFY2(arguments.first() == "query" || isDocumented(key), qPrintable(key));
    };
    const QStringList channel{"link", "title", "type", "uri"};
    const QStringList deleted{"deletedEnclosures", "deletedFiles", "deletedMessages"};
    const QStringList deletedChannel = deleted + channel;
    check({"subscribe", path("garden.xml")}, {{"link", "new", "title"}});
    check({"channels"},
          {{"due", "link", "messages", "title", "type", "unread", "updated", "uri", "website"}});
    check({"refresh"}, {{"changed", "link", "new", "title", "type", "uri"}});
    check({"messages", "Garden"},
          {{"channels", "favorite", "link", "published", "read", "title", "uri"},
           {"channels", "favorite", "link", "read", "title", "uri"}});
    check({"enclosures", beans}, {{"length", "type", "uri", "url"}});
    check({"download", beans, "--queue"}, {{"length", "queued", "type", "uri", "url"}});
    check({"enclosures"}, {{"length", "queued", "type", "uri", "url"}});
    check({"download", beans}, {{"file", "length", "type", "uri", "url"}});
    check({"favorite", beans}, {{"favorite", "uri"}});
    check({"show", beans},
          {{"author", "categories", "channels", "downloaded", "enclosures", "favorite", "html", "link",
            "published", "read", "text", "title", "uri"}});
    check({"read", beans}, {{"changed", "read"}});
    check({"unread", beans}, {{"changed", "read"}});
    check({"open", beans}, {{"uri"}});
    check({"search", "poles"},
          {{"channels", "excerpt", "favorite", "link", "published", "read", "title", "uri"}});
    check(
        {"query",
         "SELECT ?t (COUNT(?m) AS ?n) { ?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel ; nie:title ?t } GROUP BY ?t"},
        {{"n", "t"}});
    const Objects statistics = objects({"stats"});
    tested.insert("stats");
    QCOMPARE(statistics.size(), 16);
    QCOMPARE(
        keys(statistics.first()),
        QStringList({"channels", "downloaded", "enclosures", "favorites", "length", "messages", "unread"}));
    QCOMPARE(keys(statistics.at(1)), QStringList({"day", "messages"}));
    QCOMPARE(keys(statistics.last()), QStringList({"link", "messages", "newest", "title", "type", "uri"}));
    check({"plugins"}, {{"addresses", "description", "file", "name", "version"}});
    check({"unfavorite", beans}, {{"favorite", "uri"}});
    check({"delete", beans, "--dry-run"},
          {{"channels", "favorite", "link", "published", "read", "title", "uri"}});
    check({"edit", "Garden", "--title", "Notes"}, {channel});
    check({"folder", "Notes", "A/B"}, {{"folder", "link", "title", "type", "uri"}});
    check({"export"}, {{"folder", "link", "title", "website"}});
    check({"import", path("list.opml"), "--dry-run"}, {{"link", "title"}});
    check({"backup", path("copy.ttl.gz")}, {{"channels", "enclosures", "file", "length", "messages"}});
    const Objects checks = objects({"check"});
    tested.insert("check");
    QVERIFY(checks.size() > 5);
    for (const QJsonObject &each : checks)
        QVERIFY(each.contains("check") && each.contains("count"));
    check({"prune", "--keep", "1", "--include-unread", "--dry-run"},
          {{"link", "title", "type", "uri", "wouldDelete"}});
    check({"prune", "--keep", "1", "--include-unread"}, {deletedChannel});
    objects({"prune", "Notes", "--keep", "5", "--older-than", "900d", "--remember"});
    check({"prune", "--rules"}, {{"includesUnread", "keep", "link", "olderThan", "title", "type", "uri"}});
    check({"delete", beans}, {deleted});
    check({"clean"}, {deleted});
    check({"unsubscribe", "Notes", "--dry-run"},
          {{"favorites", "files", "link", "title", "type", "uri", "wouldDelete"}});
    check({"unsubscribe", "Notes"}, {deletedChannel});
    check({"restore", path("copy.ttl.gz")}, {{"channels", "enclosures", "messages"}});
    check({"restore", path("copy.ttl.gz"), "--merge"}, {{"channels", "enclosures", "messages"}});
    const QStringList names = Tidel::commandNames();
    for (const QString &name : names)
        QVERIFY2(tested.contains(name), qPrintable(name));
}

void TestJson::values()
{
    objects({"subscribe", path("garden.xml")});
    const QJsonObject message = objects({"messages", "Garden"}).value(0);
    QCOMPARE(message["published"].toString(), QString("2026-11-03T12:00:00Z"));
    QCOMPARE(message["favorite"].toBool(true), false);
    QCOMPARE(message["channels"].toArray(), QJsonArray{"Garden"});
    const QJsonObject shown = objects({"show", message["link"].toString()}).value(0);
    QCOMPARE(shown["link"].toString(), QString("https://example.org/beans"));
    QCOMPARE(shown["text"].toString(), QString("Poles first."));
    QCOMPARE(shown["author"].toString(), QString("Ada"));
    const QJsonObject file = shown["enclosures"].toArray().first().toObject();
    QCOMPARE(file["length"].toInt(), 4);
    QCOMPARE(file["type"].toString(), QString("audio/mpeg"));
    const QJsonObject channel = objects({"channels"}).value(0);
    QCOMPARE(channel["messages"].toInt(), 2);
    // The store has local times, and the program runs in another time zone.
    const QDateTime updated = QDateTime::fromString(channel["updated"].toString(), Qt::ISODate);
    QVERIFY(qAbs(updated.secsTo(QDateTime::currentDateTimeUtc())) < 600);
}

void TestJson::query()
{
    objects({"subscribe", path("garden.xml")});
    const QString sparql = "SELECT ?title ?date (1 + 1 AS ?two) (true AS ?yes) ?nothing WHERE { "
                           "?m nie:isLogicalPartOf ?c ; nie:title ?title ; nie:contentCreated ?date }";
    const QJsonObject row = objects({"query", sparql}).value(0);
    QCOMPARE(row,
             QJsonObject({{"title", "Beans"}, {"date", "2026-11-03T12:00:00Z"}, {"two", 2}, {"yes", true}}));
    QCOMPARE(run({"query", sparql}),
             QByteArray("title  date                  two  yes   nothing\n"
                        "Beans  2026-11-03T12:00:00Z  2    true\n"));
    QCOMPARE(run({"query", "SELECT ('a \"b\", c\' AS ?x) ('d\' AS ?y) {}", "--csv"}),
             QByteArray("x,y\n\"a \"\"b\"\", c\",d\n"));
    QCOMPARE(keys(objects({"query", "DELETE WHERE { ?s ?p ?o }"}, 1).value(0)), QStringList{"error"});
    QCOMPARE(objects({"channels"}).size(), 1);
}

// Each failure is an object beside the results, and the standard error stays empty.
void TestJson::errors()
{
    const Objects lines = objects({"subscribe", path("none.xml"), path("garden.xml"), path("page.html")}, 1);
    QCOMPARE(lines.size(), 3);
    Objects failures;
    for (const QJsonObject &line : lines) {
        if (line.contains("error"))
            failures.append(line);
        else
            QCOMPARE(line["title"].toString(), QString("Garden"));
    }
    QCOMPARE(failures.size(), 2);
    QCOMPARE(keys(failures.at(0)), QStringList({"error", "link"}));
    const QJsonArray feeds = failures.at(1)["feeds"].toArray();
    QCOMPARE(feeds.size(), 2);
    QCOMPARE(feeds.first().toObject()["title"].toString(), QString("One"));

    QVERIFY(QFile::remove(path("garden.xml")));
    const QJsonObject failed = objects({"refresh"}, 1).value(0);
    QCOMPARE(keys(failed), QStringList({"error", "link", "title", "type", "uri"}));
    QCOMPARE(objects({"channels"}).value(0)["error"].toString(), QString("no such file"));
    QCOMPARE(keys(objects({"show", "nothing"}, 1).value(0)), QStringList{"error"});
}

void TestJson::quiet()
{
    QCOMPARE(run({"subscribe", path("garden.xml"), "--quiet"}), QByteArray());
    QCOMPARE(run({"refresh", "--quiet"}), QByteArray());
    QVERIFY(run({"channels", "--quiet"}).contains("Garden"));
    QVERIFY(QFile::remove(path("garden.xml")));
    QCOMPARE(run({"refresh", "--quiet"}, 1), QByteArray());
}

QTEST_GUILESS_MAIN(TestJson)
#include "tst_json.moc"
