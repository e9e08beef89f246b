// SPDX-License-Identifier: LGPL-2.1-or-later
#include "programrun.h"

#include <feedserver.h>
#include <scratchstore.h>

#include <QtTest>

#include <sys/stat.h>

namespace {

QString query(const char *text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); }

} // namespace

/// How the program spares servers, and what it says of it.
class TestRefresh : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void notDue();
    void nextDay();
    void ownInterval();
    void wrongIntervals_data();
    void wrongIntervals();
    void refused();
    void hostIsHeldBack();
    void removedPermanently();
    void equalFailures();
    void moved();
    void subscribeToWhatLeadsToChannel();
    void loginOfAddress();
    void loginIsAsked();
    void loginThatFails();
    void loginIsForgotten();
    void noPassword();
    void damagedLogins();

private:
    Run run(const QStringList &arguments, const QByteArray &input = {}) const;
    /// Makes the times in the store as if \a seconds had passed.
    void letPass(int seconds) const;
    QJsonObject channel(const QString &title) const;
    QString loginsFile() const { return m_dir->filePath("data/tidel/logins.json"); }
    /// Returns true if \a secret is in a file other than that of the logins, or in \a runs.
    bool isSecretTold(const QString &secret, const QList<Run> &runs) const;
    QString lockedLink(const QString &user) const
    {
        return m_server->url("/locked").replace("://", "://" + user + '@');
    }

    QTemporaryDir m_served;
    std::unique_ptr<FeedServer> m_server;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestRefresh::initTestCase()
{
    m_server = std::make_unique<FeedServer>(m_served.path());
    QVERIFY(m_server->isRunning());
}

void TestRefresh::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_server->forgetRequests();
}

Run TestRefresh::run(const QStringList &arguments, const QByteArray &input) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_dir->filePath("data"));
    environment.insert("HOME", m_dir->path());
    environment.insert("LC_ALL", "C.UTF-8");
    environment.insert("TZ", "UTC");
    process.setProcessEnvironment(environment);
    process.start(TIDEL_PROGRAM, arguments);
    process.write(input);
    process.closeWriteChannel();
    return finishedRun(process);
}

void TestRefresh::letPass(int seconds) const
{
    const auto connection = ScratchStore::connect(m_dir->filePath("data/tidel/store"));
    for (const char *property : {"tidel:notBefore", "tidel:retryAfter"}) {
        const QString name = QString::fromLatin1(property);
        const QStringList rows =
            ScratchStore::rows(*connection, QString("SELECT ?c ?t { ?c %1 ?t }").arg(name));
        for (const QString &row : rows) {
            const QString uri = row.section(' ', 0, 0);
            const QDateTime time = QDateTime::fromString(row.section(' ', 1), Qt::ISODate).addSecs(-seconds);
            ScratchStore::run(*connection,
                              QString("DELETE { <%1> %2 ?t } WHERE { <%1> %2 ?t } INSERT { <%1> %2 \"%3\" }")
                                  .arg(uri, name, time.toUTC().toString(Qt::ISODate)),
                              QSparqlQuery::InsertStatement);
        }
    }
}

QJsonObject TestRefresh::channel(const QString &title) const
{
    const QStringList lines = run({"channels", "--json"}).out.split('\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        if (object["title"].toString() == title)
            return object;
    }
    return {};
}

bool TestRefresh::isSecretTold(const QString &secret, const QList<Run> &runs) const
{
    for (const Run &each : runs) {
        if (each.out.contains(secret) || each.err.contains(secret))
            return true;
    }
    QDirIterator files(m_dir->path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.fileName() != loginsFile() && file.open(QIODevice::ReadOnly)
            && file.readAll().contains(secret.toUtf8()))
            return true;
    }
    return false;
}

void TestRefresh::notDue()
{
    const QString fresh = m_server->url("/with/200?" + query("Cache-Control: max-age=90"));
    VERIFY_RUN(run({"subscribe", fresh, m_server->url("/feed/Plain")}), 0);
    const QDateTime due = QDateTime::fromString(channel("With")["due"].toString(), Qt::ISODate);
    const qint64 wait = QDateTime::currentDateTimeUtc().secsTo(due);
    QVERIFY2(wait > 0 && wait <= 90, qPrintable(QString::number(wait)));
    QVERIFY(!channel("With").contains("error"));
    QVERIFY(channel("With")["updated"].toString().endsWith('Z'));
    m_server->forgetRequests();
    // The server may say so for longer than the test waits.
    letPass(-86400 * 3);
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 0);
    QCOMPARE(refreshed.out, QString("Plain: nothing new\n"));
    QCOMPARE(refreshed.err.section(" at ", 0, 0), QString("1 channel is not due; the next one is due"));
    QVERIFY(refreshed.err.endsWith("; --force asks for it too\n"));
    QCOMPARE(m_server->takeRequests(), QStringList("GET /feed/Plain 200"));
    QCOMPARE(run({"refresh", "--quiet"}).err, QString());

    const Run named = run({"refresh", "With"});
    QCOMPARE(named.out + named.err, QString("With: nothing new\n"));
    const Run forced = run({"refresh", "--force"});
    QCOMPARE(forced.err, QString("--force asks for 1 channel before the time\n"));
    QCOMPARE(forced.out, QString("2 channels: 0 new messages\n"));
    letPass(90);
    QCOMPARE(run({"refresh"}).err, QString());
}

void TestRefresh::nextDay()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/with/200?" + query("Cache-Control: max-age=172800"))}), 0);
    const QString day = QDateTime::currentDateTimeUtc().addDays(2).toString("yyyy-MM-dd");
    QCOMPARE(run({"refresh"}).err.section(' ', 0, 11).section(' ', -1), day);
}

void TestRefresh::ownInterval()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    QVERIFY(run({"edit", "Plain", "--every", "2h"}).out.startsWith("Changed: Plain ("));
    QCOMPARE(run({"refresh"}).out, QString("Plain: nothing new\n"));
    QCOMPARE(run({"refresh"}).out, QString());
    letPass(7200);
    QCOMPARE(run({"refresh"}).out, QString("Plain: nothing new\n"));
    QVERIFY(run({"edit", "Plain", "--every", "default"}).out.startsWith("Changed: Plain ("));
    for (int i = 0; i < 2; ++i)
        QCOMPARE(run({"refresh"}).out, QString("Plain: nothing new\n"));
}

void TestRefresh::wrongIntervals_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"0h", "2", "h", "-1h", "2w", "366d", "999999d", "2h ", ""})
        QTest::newRow(text) << QString(text);
}

void TestRefresh::wrongIntervals()
{
    QFETCH(QString, text);
    const Run wrong = run({"edit", "Plain", "--every", text});
    VERIFY_RUN(wrong, 2);
    QVERIFY(wrong.err.contains("--every needs a time such as 30m, 2h or 1d, or \"default\""));
}

void TestRefresh::refused()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain"), m_server->url("/feed/Other")}), 0);
    VERIFY_RUN(run({"edit", "Plain", "--link", m_server->url("/with/503?" + query("Retry-After: 900"))}), 0);
    VERIFY_RUN(run({"refresh"}), 1);
    QCOMPARE(channel("Plain")["error"].toString(), QString("the server answered 503 Service Unavailable"));
    m_server->forgetRequests();
    const Run named = run({"refresh", "Plain"});
    VERIFY_RUN(named, 0);
    QVERIFY(named.err.startsWith("Plain: not asked for: its server refuses to answer before "));
    QVERIFY(named.err.endsWith("; --force asks nevertheless\n"));
    QCOMPARE(run({"refresh"}).out, QString("Other: nothing new\n"));
    QCOMPARE(m_server->takeRequests(), QStringList("GET /feed/Other 200"));
    VERIFY_RUN(run({"refresh", "Plain", "--force"}), 1);
    QCOMPARE(m_server->takeRequests().size(), 1);
}

// The requests that wait for their turn are not sent any more, nor are those of the next refresh.
void TestRefresh::hostIsHeldBack()
{
    QStringList addresses;
    for (int i = 0; i < 9; ++i)
        addresses.append(m_server->url(QString("/feed/F%1").arg(i)));
    VERIFY_RUN(run(QStringList("subscribe") + addresses), 0);
    for (int i = 0; i < 2; ++i)
        VERIFY_RUN(run({"edit", QString("F%1").arg(i), "--link",
                        m_server->url(QString("/with/429/%1?").arg(i) + query("Retry-After: 900"))}),
                   0);
    m_server->forgetRequests();
    const Run refreshed = run({"refresh"});
    VERIFY_RUN(refreshed, 1);
    QCOMPARE(m_server->takeRequests().size(), 2);
    QVERIFY(refreshed.err.contains("tidel: 7 channels (F2, F3, F4 and 4 more): the host ... has refused"));
    QVERIFY(run({"refresh"}).err.startsWith("9 channels are not due; "));
    QVERIFY(run({"refresh", "F8"}).err.startsWith("F8: not asked for: its server refuses to answer"));
    QCOMPARE(m_server->takeRequests(), QStringList());
}

void TestRefresh::removedPermanently()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    VERIFY_RUN(run({"edit", "Plain", "--link", m_server->url("/status/410")}), 0);
    VERIFY_RUN(run({"refresh"}), 1);
    QVERIFY(!channel("Plain").contains("due"));
    m_server->forgetRequests();
    QCOMPARE(run({"refresh"}).err, QString("1 channel is not due; --force asks for it too\n"));
    QCOMPARE(run({"refresh", "Plain"}).err,
             QString("Plain: not asked for: the server answered 410 Gone: the file was removed permanently; "
                     "--force asks nevertheless\n"));
    QCOMPARE(m_server->takeRequests(), QStringList());
    VERIFY_RUN(run({"refresh", "--force"}), 1);
    VERIFY_RUN(run({"edit", "Plain", "--link", m_server->url("/feed/Again")}), 0);
    QCOMPARE(run({"refresh"}).out, QString("Plain: nothing new\n"));
}

void TestRefresh::equalFailures()
{
    for (const QString name : {"A", "B", "C", "D"}) {
        VERIFY_RUN(run({"subscribe", m_server->url("/feed/" + name)}), 0);
        VERIFY_RUN(run({"edit", name, "--link", "http://" + name.toLower() + ".invalid/feed"}), 0);
    }
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/E")}), 0);
    VERIFY_RUN(run({"edit", "E", "--link", m_server->url("/status/404")}), 0);
    const Run failed = run({"refresh", "--quiet"});
    VERIFY_RUN(failed, 1);
    QCOMPARE(failed.err,
             QString("tidel: 4 channels (A, B, C and 1 more): the host ... was not found; check the address "
                     "and the network connection\n"
                     "tidel: E (%1): the server answered 404 Not Found\n")
                 .arg(m_server->url("/status/404")));
    const QString json = run({"refresh", "--force", "--json"}).out;
    QCOMPARE(json.count("\"error\""), 5);
    QVERIFY(json.contains("the host b.invalid was not found"));
}

void TestRefresh::moved()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    VERIFY_RUN(run({"edit", "Plain", "--link", m_server->url("/redirect/308?/redirect/301?/feed/New")}), 0);
    for (int i = 0; i < 2; ++i)
        QCOMPARE(run({"refresh"}).err, QString());
    QCOMPARE(run({"refresh"}).err,
             QString("tidel: Plain: the feed has moved permanently to %1, which is the link of the channel "
                     "now\n")
                 .arg(m_server->url("/feed/New")));
    QCOMPARE(channel("Plain")["link"].toString(), m_server->url("/feed/New"));
    // What follows a redirect that is not permanent is not.
    VERIFY_RUN(run({"edit", "Plain", "--link", m_server->url("/redirect/301?/redirect/302?/feed/New")}), 0);
    for (int i = 0; i < 3; ++i)
        VERIFY_RUN(run({"refresh"}), 0);
    QCOMPARE(channel("Plain")["link"].toString(), m_server->url("/redirect/302?/feed/New"));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(run({"refresh"}).err, QString());
}

void TestRefresh::subscribeToWhatLeadsToChannel()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    const Run again = run({"subscribe", m_server->url("/redirect/302?/feed/Plain")});
    VERIFY_RUN(again, 0);
    QCOMPARE(again.out, QString("Already subscribed: Plain (\"tidel refresh\" downloads new messages)\n"));
    QCOMPARE(run({"channels"}).out.count('\n'), 1);
}

void TestRefresh::loginOfAddress()
{
    const Run subscribed = run({"subscribe", lockedLink("Ann:open%20sesame")});
    VERIFY_RUN(subscribed, 0);
    QCOMPARE(channel("Locked")["link"].toString(), lockedLink("Ann"));
    struct stat status = {};
    QCOMPARE(stat(qPrintable(loginsFile()), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0600);
    const Run refreshed = run({"refresh"});
    QCOMPARE(refreshed.out, QString("Locked: nothing new\n"));
    const Run exported = run({"export"});
    const Run saved = run({"backup", m_dir->filePath("copy.ttl")});
    VERIFY_RUN(saved, 0);
    QVERIFY(!isSecretTold("sesame", {subscribed, refreshed, exported, saved, run({"channels"})}));
    // The channel has this link, with and without its user.
    QVERIFY(run({"refresh", m_server->url("/locked")}).out == refreshed.out);
    QVERIFY(run({"subscribe", lockedLink("Ann:open%20sesame")}).out.startsWith("Already subscribed"));

    QFile list(m_dir->filePath("list.opml"));
    QVERIFY(list.open(QIODevice::WriteOnly));
    list.write("<opml version='2.0'><body><outline text='Two' xmlUrl='"
               + lockedLink("Ann:open%20sesame").toUtf8() + "?2'/></body></opml>");
    list.close();
    VERIFY_RUN(run({"import", list.fileName()}), 0);
    QCOMPARE(channel("Two")["link"].toString(), lockedLink("Ann") + "?2");
    QVERIFY(list.remove());
    QVERIFY(!isSecretTold("sesame", {}));
}

void TestRefresh::loginIsAsked()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    VERIFY_RUN(run({"edit", "Plain", "--link", m_server->url("/locked")}), 0);
    VERIFY_RUN(run({"refresh"}), 1);
    VERIFY_RUN(run({"edit", "Plain", "--login", "Ann"}, "open sesame\nmore\n"), 0);
    VERIFY_RUN(run({"refresh"}), 0);
    VERIFY_RUN(run({"edit", "Plain", "--login", "Ann"}, "wrong\n"), 0);
    VERIFY_RUN(run({"refresh"}), 1);
    // Another server gets no password.
    FeedServer other(m_served.path());
    VERIFY_RUN(run({"edit", "Plain", "--login", "Ann"}, "open sesame\n"), 0);
    VERIFY_RUN(run({"edit", "Plain", "--link",
                    m_server->url("/redirect/302?" + other.url("/locked")).replace("://127", "://Ann@127")}),
               0);
    VERIFY_RUN(run({"refresh"}), 1);
}

/// A password that the server refuses does not take the place of a good one.
void TestRefresh::loginThatFails()
{
    VERIFY_RUN(run({"subscribe", lockedLink("Bob:wrong")}), 1);
    QVERIFY(!isSecretTold("wrong", {}));
    VERIFY_RUN(run({"subscribe", lockedLink("Ann:open%20sesame")}), 0);
    VERIFY_RUN(run({"subscribe", lockedLink("Ann:wrong") + "?2"}), 1);
    VERIFY_RUN(run({"refresh", "--force"}), 0);
}

void TestRefresh::loginIsForgotten()
{
    VERIFY_RUN(run({"subscribe", lockedLink("Ann:open%20sesame"), lockedLink("Ann:open%20sesame") + "?2"}),
               0);
    const QString second = lockedLink("Ann") + "?2";
    VERIFY_RUN(run({"edit", lockedLink("Ann"), "--login", ""}), 0);
    VERIFY_RUN(run({"refresh", second}), 0);
    VERIFY_RUN(run({"edit", second, "--login", ""}), 0);
    QVERIFY(!QFile(loginsFile()).exists() || !isSecretTold("sesame", {}));
    QFile file(loginsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().simplified(), QByteArray("{ }"));
    VERIFY_RUN(run({"refresh"}), 1);
}

void TestRefresh::noPassword()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    for (const char *input : {"", "\n"}) {
        const Run none = run({"edit", "Plain", "--login", "Ann"}, input);
        VERIFY_RUN(none, 1);
        QCOMPARE(none.err, QString("tidel: Plain: no password was given; nothing was changed\n"));
    }
    QCOMPARE(channel("Plain")["link"].toString(), m_server->url("/feed/Plain"));
    QVERIFY(!QFile::exists(loginsFile()));
}

// A file that cannot be read may have passwords that nobody remembers.
void TestRefresh::damagedLogins()
{
    VERIFY_RUN(run({"subscribe", m_server->url("/feed/Plain")}), 0);
    QFile file(loginsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{ \"http://");
    file.close();
    const Run refused = run({"edit", "Plain", "--login", "Ann"}, "secret\n");
    VERIFY_RUN(refused, 1);
    QVERIFY(refused.err.contains("the file is damaged, correct or remove it"));
    QCOMPARE(file.size(), Q_INT64_C(10));
    VERIFY_RUN(run({"refresh"}), 0);
}

QTEST_GUILESS_MAIN(TestRefresh)
#include "tst_refresh.moc"
