// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <TidelReader/downloadfolder.h>

#include <feedtrackersparql.h>
#include <soon.h>

#include <QtTest>

#include <csignal>

#include <sys/resource.h>

using Tidel::DownloadFolder;

/// Tests that interrupted downloads of enclosures go on where they ended, and that no file gets wrong bytes.
class TestResumedDownloads : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init();
    void cleanup() { end(); }

    void resumed_data();
    void resumed();
    void shortRest();
    void redirected_data();
    void redirected();
    void redirectedToAnotherServer();
    void changedFile();
    void gone();
    void stays();
    void canceled();
    void fullDisk();
    void sizeLimit();
    void progress();
    void completePart();
    void longerPart();
    void brokenNote_data();
    void brokenNote();
    void emptiedFile();
    void emptyLocalFile();
    void partInUse();
    void twoAtATime();
    void linkInTheWay();
    void removed();

private:
    QString addEnclosure(const QString &path) const;
    Ending download(const QString &uri) const;
    Ending downloadTwice(const QString &path) const;
    QStringList files() const;
    QStringList statuses() const;
    QByteArray content(const QString &name) const;
    static void append(const QString &path, const QByteArray &bytes);
    QString folder() const { return m_target->filePath("new"); }
    /// The path of the file with the first bytes of what is at \a path of the server.
    QString part(const QString &path) const
    {
        return folder() + '/' + DownloadFolder::partName(m_server->url(path));
    }

    std::unique_ptr<QTemporaryDir> m_target;
    QByteArray m_body;
};

void TestResumedDownloads::init()
{
    QVERIFY(begin());
    m_target = std::make_unique<QTemporaryDir>();
    m_body.clear();
    for (int i = 0; i < 50000; ++i)
        m_body += QByteArray::number(i % 9973) + ' ';
    write("a.mp3", m_body);
}

QString TestResumedDownloads::addEnclosure(const QString &path) const
{
    FeedEnclosure enclosure;
    enclosure.setRemoteUrl(m_server->url(path));
    FeedTrackerSparql::instance()->addEnclosures({enclosure}, "urn:message:1");
    return m_store->texts("SELECT ?e { ?e mfo:remoteLink <" + enclosure.remoteUrl() + "> }").value(0);
}

Ending TestResumedDownloads::download(const QString &uri) const
{
    downloader().downloadEnclosure(uri, folder());
    return ending(downloader());
}

/// Downloads what is at \a path of the server, which interrupts the first download.
Ending TestResumedDownloads::downloadTwice(const QString &path) const
{
    const QString uri = addEnclosure(path);
    const Ending first = download(uri);
    if (first.signal != "downloadEnclosureFailed")
        qWarning() << first.signal;
    m_server->forgetRequests();
    return download(uri);
}

QStringList TestResumedDownloads::files() const
{
    return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

/// How the server has answered since the first download.
QStringList TestResumedDownloads::statuses() const
{
    QStringList statuses;
    const QStringList requests = m_server->requests();
    for (const QString &request : requests)
        statuses.append(request.section(' ', -1));
    return statuses;
}

QByteArray TestResumedDownloads::content(const QString &name) const
{
    QFile file(folder() + '/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestResumedDownloads::append(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(bytes) != bytes.size())
        qWarning() << path << file.errorString();
}

void TestResumedDownloads::resumed_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QStringList>("statuses");

    const QStringList rest{"206"};
    const QStringList whole{"200"};
    const QStringList again{"206", "200"};
    QTest::newRow("by a tag") << "" << rest;
    QTest::newRow("by a date") << "&date" << rest;
    QTest::newRow("weak tag") << "&weak" << whole;
    QTest::newRow("date in the future") << "&new" << whole;
    QTest::newRow("nothing to recognize it by") << "&plain" << whole;
    QTest::newRow("no ranges") << "&ignore" << whole;
    QTest::newRow("no such range") << "&refuse" << QStringList{"416", "200"};
    QTest::newRow("another start") << "&start=1" << again;
    QTest::newRow("earlier start") << "&start=-1" << again;
    QTest::newRow("another end") << "&end=1" << again;
    QTest::newRow("another size") << "&total=1" << again;
    QTest::newRow("no name of the range") << "&unnamed" << again;
    QTest::newRow("no tag") << "&untagged" << again;
    QTest::newRow("date is left out") << "&date&untagged" << rest;
    QTest::newRow("compressed") << "&coded" << again;
    QTest::newRow("more than announced") << "&more" << again;
}

void TestResumedDownloads::resumed()
{
    QFETCH(QString, options);
    QFETCH(QStringList, statuses);
    const QString path = "/ranged/a.mp3?cut=100000" + options + "&row=" + QTest::currentDataTag();
    const QString uri = addEnclosure(QString(path).replace(' ', '-'));
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    m_server->forgetRequests();
    const Ending second = download(uri);
    VERIFY_ENDING(second, "downloadEnclosureFinished");
    QCOMPARE(this->statuses(), statuses);
    QCOMPARE(files(), QStringList("a.mp3"));
    QVERIFY(content("a.mp3") == m_body);
    QCOMPARE(second.map.value("length").toLongLong(), qint64(m_body.size()));
    QCOMPARE(second.map.value("mimeType").toString(), QString("audio/mpeg"));
}

void TestResumedDownloads::shortRest()
{
    const QString path = "/ranged/a.mp3?cut=100000&less";
    const Ending second = downloadTwice(path);
    VERIFY_ENDING(second, "downloadEnclosureFailed");
    QCOMPARE(second.error, int(FeedDownloadConnectionFailed));
    QCOMPARE(second.text, QString("the server closed the connection too early; try again later"));
    QCOMPARE(statuses(), QStringList("206"));
    QCOMPARE(QFileInfo(part(path)).size(), qint64(m_body.size() - 4));
}

void TestResumedDownloads::redirected_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QStringList>("statuses");

    QTest::newRow("to the same file") << "/ranged/a.mp3?cut=100000&r=1"
                                      << "/ranged/a.mp3?cut=100000&r=1" << QStringList{"302", "206"};
    QTest::newRow("with another signature") << "/ranged/a.mp3?cut=100000&r=2"
                                            << "/ranged/a.mp3?signature=2" << QStringList{"302", "206"};
    QTest::newRow("to another file") << "/ranged/a.mp3?cut=100000&r=3"
                                     << "/ranged/b.mp3" << QStringList{"302", "200"};
}

// The rest comes from where the beginning came from, whatever leads there.
void TestResumedDownloads::redirected()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QStringList, statuses);
    write("b.mp3", m_body);
    const QString path = QString("/turn/%1").arg(QTest::currentDataTag()).replace(' ', '-');
    const auto encoded = [](const QString &text) { return QString(QUrl::toPercentEncoding(text)); };
    const QString uri = addEnclosure(path + '?' + encoded(first) + '&' + encoded(second));
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    m_server->forgetRequests();
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(this->statuses(), statuses);
    QVERIFY(content(files().value(0)) == m_body);
}

// The same tag on another server says nothing, and is not told to it.
void TestResumedDownloads::redirectedToAnotherServer()
{
    FeedServer other(m_folder->path());
    const auto encoded = [](const QString &text) { return QString(QUrl::toPercentEncoding(text)); };
    const QString uri = addEnclosure("/turn/other?" + encoded(m_server->url("/ranged/a.mp3?cut=100000&o"))
                                     + '&' + encoded(other.url("/ranged/a.mp3?stubborn")));
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(other.requests(), QStringList("GET /ranged/a.mp3?stubborn 200"));
    QVERIFY(content(files().value(0)) == m_body);
}

// The server looks at If-Range, or ignores it and sends another tag with the part.
void TestResumedDownloads::changedFile()
{
    for (const QString &options :
         {QString("&changed"), QString("&stubborn"), QString("&date&stubborn&dated")}) {
        m_target = std::make_unique<QTemporaryDir>();
        write("a.mp3", m_body);
        const QString uri = addEnclosure("/ranged/a.mp3?cut=100000" + options);
        VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
        QByteArray later = m_body;
        later.replace('1', '2');
        write("a.mp3", later);
        VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
        QCOMPARE(files(), QStringList("a.mp3"));
        QVERIFY2(content("a.mp3") == later, qPrintable(options));
    }
}

void TestResumedDownloads::gone()
{
    const QString path = "/ranged/a.mp3?cut=100000&gone";
    const QString uri = addEnclosure(path);
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    QVERIFY(QFile::exists(part(path)));
    QVERIFY(QFile::remove(m_folder->filePath("a.mp3")));
    const Ending failed = download(uri);
    QCOMPARE(failed.error, 404);
    QCOMPARE(files(), QStringList());
}

void TestResumedDownloads::stays()
{
    const QString path = "/ranged/a.mp3?cut=100000&stays";
    const QString uri = addEnclosure(path);
    const Ending failed = download(uri);
    QCOMPARE(failed.error, int(FeedDownloadConnectionFailed));
    QCOMPARE(files(),
             QStringList({DownloadFolder::partName(m_server->url(path)),
                          QFileInfo(DownloadFolder::noteOfPart(part(path))).fileName()}));
    QVERIFY(content(files().value(0)) == m_body.left(100000));
    for (const QString &name : files()) {
        const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
        QVERIFY(!(QFileInfo(folder() + '/' + name).permissions() & others));
    }
}

void TestResumedDownloads::canceled()
{
    const QString path = "/ranged/a.mp3?cut=100000&hold&canceled";
    const QString uri = addEnclosure(path);
    downloader().downloadEnclosure(uri, folder());
    COMPARE_SOON(QFileInfo(part(path)).size(), qint64(100000));
    downloader().cancel();
    QCOMPARE(ending(downloader()).error, int(FeedDownloadCanceled));
    QCOMPARE(QFileInfo(part(path)).size(), qint64(100000));

    // The program of another downloader ends.
    auto other = another();
    other->downloadEnclosure(uri, folder());
    other.reset();
    QCOMPARE(QFileInfo(part(path)).size(), qint64(100000));
    m_server->forgetRequests();
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(statuses(), QStringList("206"));
    QVERIFY(content("a.mp3") == m_body);
}

void TestResumedDownloads::fullDisk()
{
    const QString path = "/ranged/a.mp3?full";
    const QString uri = addEnclosure(path);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 90001;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const Ending failed = download(uri);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(failed.error, int(FeedDownloadNotWritten));
    QCOMPARE(QFileInfo(part(path)).size(), qint64(90001));
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QVERIFY(content("a.mp3") == m_body);
}

void TestResumedDownloads::sizeLimit()
{
    const QString path = "/ranged/a.mp3?cut=100000&limit";
    const QString uri = addEnclosure(path);
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    downloader().setProperty("maximumEnclosureSize", m_body.size() - 1);
    QCOMPARE(download(uri).error, int(FeedDownloadTooLarge));
    QCOMPARE(files(), QStringList());
}

void TestResumedDownloads::progress()
{
    const QString uri = addEnclosure("/ranged/a.mp3?cut=100000&progress");
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    QSignalSpy progress(&downloader(), &FeedPluginInterface::enclosureDownloadProgress);
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QVERIFY(progress.first().at(0).toLongLong() > 100000);
    QCOMPARE(progress.last(), QList<QVariant>({qint64(m_body.size()), qint64(m_body.size())}));
}

// The program was killed after the last byte.
void TestResumedDownloads::completePart()
{
    const QString path = "/ranged/a.mp3?cut=100000&complete";
    const QString uri = addEnclosure(path);
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    append(part(path), m_body.mid(100000));
    m_server->forgetRequests();
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(statuses(), QStringList());
    QCOMPARE(files(), QStringList("a.mp3"));
    QVERIFY(content("a.mp3") == m_body);
}

void TestResumedDownloads::longerPart()
{
    const QString path = "/ranged/a.mp3?cut=100000&longer";
    const QString uri = addEnclosure(path);
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    append(part(path), m_body);
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QVERIFY(content("a.mp3") == m_body);
}

void TestResumedDownloads::brokenNote_data()
{
    QTest::addColumn<QByteArray>("note");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("cut") << QByteArray("{\"address\":\"http://127");
    QTest::newRow("of another kind") << QByteArray("[1]");
    QTest::newRow("wrong values") << QByteArray("{\"address\":1,\"validator\":{},\"total\":\"x\"}");
    QTest::newRow("line break") << QByteArray(
        "{\"address\":\"http://127.0.0.1/\",\"validator\":\"\\\"x\\\"\\r\\nX: y\",\"total\":1e300}");
}

void TestResumedDownloads::brokenNote()
{
    QFETCH(QByteArray, note);
    const QString path = QString("/ranged/a.mp3?cut=100000&broken=") + QTest::currentDataTag();
    const QString uri = addEnclosure(QString(path).replace(' ', '-'));
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    const QString name = DownloadFolder::noteOfPart(part(QString(path).replace(' ', '-')));
    QVERIFY(QFile::remove(name));
    if (!note.isEmpty())
        append(name, note);
    m_server->forgetRequests();
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(statuses(), QStringList("200"));
    QCOMPARE(files(), QStringList("a.mp3"));
    QVERIFY(content("a.mp3") == m_body);
}

// No byte says that the file begins again.
void TestResumedDownloads::emptiedFile()
{
    const QString uri = addEnclosure("/ranged/a.mp3?cut=100000&empty");
    VERIFY_ENDING(download(uri), "downloadEnclosureFailed");
    write("a.mp3", "");
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(files(), QStringList("a.mp3"));
    QCOMPARE(QFileInfo(folder() + "/a.mp3").size(), qint64(0));
}

void TestResumedDownloads::emptyLocalFile()
{
    const QString address = "file://" + write("b.mp3", "");
    FeedEnclosure enclosure;
    enclosure.setRemoteUrl(address);
    FeedTrackerSparql::instance()->addEnclosures({enclosure}, "urn:message:1");
    const QString uri = m_store->texts("SELECT ?e { ?e mfo:remoteLink <" + address + "> }").value(0);
    QVERIFY(QDir().mkpath(folder()));
    append(folder() + '/' + DownloadFolder::partName(address), "left by a killed program");
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(files(), QStringList("b.mp3"));
    QCOMPARE(QFileInfo(folder() + "/b.mp3").size(), qint64(0));
}

// Who comes second does not write into the file of the first one.
void TestResumedDownloads::partInUse()
{
    const QString path = "/ranged/a.mp3?cut=100000&hold&use";
    const QString uri = addEnclosure(path);
    const auto other = another();
    other->downloadEnclosure(uri, folder());
    COMPARE_SOON(QFileInfo(part(path)).size(), qint64(100000));
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(QFileInfo(part(path)).size(), qint64(100000));
    QVERIFY(content("a.mp3") == m_body);
    other->cancel();
    QCOMPARE(ending(*other).error, int(FeedDownloadCanceled));
}

// The first one, which ends last, finds the file of the second one.
void TestResumedDownloads::twoAtATime()
{
    const QString path = "/ranged/a.mp3?pause=2";
    const QString uri = addEnclosure(path);
    const auto other = another();
    other->downloadEnclosure(uri, folder());
    VERIFY_SOON(QFileInfo(part(path)).size() > 0);
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    VERIFY_ENDING(ending(*other), "downloadEnclosureFinished");
    QCOMPARE(files(), QStringList("a.mp3"));
    QVERIFY(content("a.mp3") == m_body);
}

void TestResumedDownloads::linkInTheWay()
{
    const QString path = "/ranged/a.mp3?link";
    const QString uri = addEnclosure(path);
    const QString own = write("own", "mine");
    QVERIFY(QDir().mkpath(folder()));
    for (const QString &target : {own, m_target->filePath("nowhere")}) {
        QFile::remove(part(path));
        QFile::remove(folder() + "/a.mp3");
        QVERIFY(QFile::link(target, part(path)));
        VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
        QVERIFY(content("a.mp3") == m_body);
    }
    QCOMPARE(QFileInfo(own).size(), qint64(4));
    QVERIFY(!QFile::exists(m_target->filePath("nowhere")));
}

// An unfinished file goes with its enclosure.
void TestResumedDownloads::removed()
{
    const QString path = "/ranged/a.mp3?cut=100000&removed";
    FeedEnclosure enclosure;
    enclosure.setRemoteUrl(m_server->url(path));
    const QString uri = addEnclosure(path);
    qputenv("HOME", m_target->path().toLocal8Bit());
    downloader().downloadEnclosure(uri, DownloadFolder::path());
    VERIFY_ENDING(ending(downloader()), "downloadEnclosureFailed");
    const QDir downloads(DownloadFolder::path());
    QCOMPARE(downloads.entryList(QDir::Files | QDir::Hidden).size(), 2);
    QStringList failed;
    QCOMPARE(DownloadFolder::removeFiles({enclosure}, &failed), 0);
    QCOMPARE(failed, QStringList());
    QCOMPARE(downloads.entryList(QDir::Files | QDir::Hidden).size(), 0);
}

QTEST_GUILESS_MAIN(TestResumedDownloads)
#include "tst_resumeddownloads.moc"
