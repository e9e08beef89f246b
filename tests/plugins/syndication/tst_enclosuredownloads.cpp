// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <feedtrackersparql.h>
#include <soon.h>

#include <QtTest>

#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/resource.h>
#include <sys/stat.h>

class TestEnclosureDownloads : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init();
    void cleanup() { end(); }

    void download();
    void otherValuesAreKept();
    void invalidContentType();
    void fromFile();
    void names_data();
    void names();
    void sameName();
    void sameNameInParallel();
    void alreadyDownloaded();
    void removedFileIsDownloadedAgain();
    void failures_data();
    void failures();
    void unknownEnclosure();
    void folders();
    void fullDisk();
    void sizeLimit();
    void progress();
    void cancel();
    void deletedDuringDownload();
    void redirected();

private:
    QString addEnclosure(const QString &address, const QString &mimeType = "audio/ogg") const;
    Ending download(const QString &uri) const;
    /// The names of all files in the folder, including hidden files.
    QStringList files() const;
    QString folder() const { return m_target->filePath("new folder"); }

    std::unique_ptr<QTemporaryDir> m_target;
};

void TestEnclosureDownloads::init()
{
    QVERIFY(begin());
    m_target = std::make_unique<QTemporaryDir>();
    QVERIFY(m_target->isValid());
}

QString TestEnclosureDownloads::addEnclosure(const QString &address, const QString &mimeType) const
{
    FeedEnclosure enclosure;
    enclosure.setRemoteUrl(address);
    enclosure.setMimeType(mimeType);
    enclosure.setLength(7);
    enclosure.setTypeIcon("audio-icon");
    enclosure.setGroupId(3);
    FeedTrackerSparql::instance()->addEnclosures({enclosure}, "urn:message:1");
    return m_store->texts("SELECT ?e { ?e mfo:remoteLink <" + address + "> }").value(0);
}

Ending TestEnclosureDownloads::download(const QString &uri) const
{
    downloader().downloadEnclosure(uri, folder());
    return ending(downloader());
}

QStringList TestEnclosureDownloads::files() const
{
    return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void TestEnclosureDownloads::download()
{
    const QString address = m_server->url("/bytes/100000/episode.mp3");
    const QString uri = addEnclosure(address);
    const Ending done = download(uri);
    VERIFY_ENDING(done, "downloadEnclosureFinished");
    QCOMPARE(done.text, QString());
    const QString local = QUrl::fromLocalFile(folder() + "/episode.mp3").toEncoded();
    QCOMPARE(done.map,
             QVariantMap({{"uri", uri},
                          {"remoteUrl", address},
                          {"localUrl", local},
                          {"length", Q_INT64_C(100000)},
                          {"mimeType", "audio/mpeg"}}));
    QCOMPARE(done.map.value("length").userType(), int(QMetaType::LongLong));
    QCOMPARE(files(), QStringList("episode.mp3"));
    QFile file(folder() + "/episode.mp3");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray(100000, 'x'));
    const mode_t mask = umask(0);
    umask(mask);
    struct stat status = {};
    QCOMPARE(stat(qPrintable(file.fileName()), &status), 0);
    QCOMPARE(status.st_mode & 0777, 0666 & ~mask);
}

void TestEnclosureDownloads::otherValuesAreKept()
{
    const QString address = m_server->url("/bytes/1000/episode.mp3");
    const QString uri = addEnclosure(address);
    QVERIFY(!addEnclosure("https://example.org/other.ogg").isEmpty());
    const QString others = "SELECT ?p ?o { ?e mfo:remoteLink <https://example.org/other.ogg> ; ?p ?o } "
                           "ORDER BY ?p ?o";
    const QStringList before = m_store->texts(others);
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    const FeedEnclosure stored = FeedTrackerSparql::instance()->enclosureForUri(uri);
    QCOMPARE(stored.remoteUrl(), address);
    QCOMPARE(QUrl(stored.localUrl()), QUrl::fromLocalFile(folder() + "/episode.mp3"));
    QCOMPARE(m_store->count("<" + uri + "> mfo:localLink ?l"), 1);
    QCOMPARE(stored.length(), 1000u);
    QCOMPARE(stored.mimeType(), QString("audio/mpeg"));
    QCOMPARE(stored.typeIcon(), QString("audio-icon"));
    QCOMPARE(stored.groupId(), 3u);
    QCOMPARE(m_store->texts(others), before);
}

void TestEnclosureDownloads::invalidContentType()
{
    const QString uri = addEnclosure(m_server->url("/bytes/10/a?nonsense"));
    QCOMPARE(download(uri).map.value("mimeType"), QVariant("audio/ogg"));
    const QString typed = addEnclosure(m_server->url("/bytes/10/b?Video/MP4%3Bq%3D1"));
    QCOMPARE(download(typed).map.value("mimeType"), QVariant("video/mp4"));
    QCOMPARE(FeedTrackerSparql::instance()->enclosureForUri(typed).mimeType(), QString("video/mp4"));
}

void TestEnclosureDownloads::fromFile()
{
    const QString path = write("speech.ogg", "a speech");
    const Ending done = download(addEnclosure("file://" + path));
    VERIFY_ENDING(done, "downloadEnclosureFinished");
    QCOMPARE(done.map.value("length"), QVariant(8));
    QCOMPARE(files(), QStringList("speech.ogg"));
    QVERIFY(QFile::exists(path));
    for (const QString &bad : {QString("/no/such/file"), m_folder->path(), QString("/dev/zero")}) {
        const Ending failed = download(addEnclosure("file://" + bad));
        VERIFY_ENDING(failed, "downloadEnclosureFailed");
        QCOMPARE(failed.error, int(FeedDownloadNotFound));
        QCOMPARE(failed.text, QString("no such file"));
    }
    QCOMPARE(files(), QStringList("speech.ogg"));
}

void TestEnclosureDownloads::names_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << "a.mp3"
                           << "a.mp3";
    QTest::newRow("query") << "a.mp3?audio/mpeg"
                           << "a.mp3";
    QTest::newRow("blank") << "two%20words.mp3"
                           << "two words.mp3";
    QTest::newRow("non-ASCII") << "%E4%BA%80.mp3" << QString::fromUtf8("\xe4\xba\x80.mp3");
    QTest::newRow("no UTF-8") << "a%FFb.mp3" << QString("a%1b.mp3").arg(QChar(0xfffd));
    QTest::newRow("nothing") << ""
                             << "enclosure";
    QTest::newRow("dots") << "..%2F..%2F..%2Fetc%2Fpasswd"
                          << "_.._.._etc_passwd";
    QTest::newRow("slash") << "%2Fetc%2Fpasswd"
                           << "_etc_passwd";
    QTest::newRow("backslashes") << "..%5C..%5Cboot.ini"
                                 << "_.._boot.ini";
    QTest::newRow("dots and blanks") << "%20..%20"
                                     << "enclosure";
    QTest::newRow("hidden") << ".bashrc"
                            << "bashrc";
    QTest::newRow("hidden behind blanks") << "%20.%20.bashrc"
                                          << "bashrc";
    QTest::newRow("controls") << "a%0A%1B%5B2Jb%00c%7F.mp3"
                              << "a[2Jbc.mp3";
    QTest::newRow("turned") << "a%E2%80%AE3pm.exe"
                            << "a3pm.exe";
    QTest::newRow("percent twice") << "%252e%252e%252fx"
                                   << "%2e%2e%2fx";
    QTest::newRow("dash") << "-rf"
                          << "rf";
    QTest::newRow("long") << QString(400, 'a') + ".mp3" << QString(200, 'a') + ".mp3";
    QTest::newRow("long suffix") << "a." + QString(400, 'b') << "a." + QString(198, 'b');
    QTest::newRow("long, non-ASCII") << QString("%F0%9F%98%80").repeated(80) + ".mp3"
                                     << QString::fromUtf8("\xf0\x9f\x98\x80").repeated(50) + ".mp3";
}

void TestEnclosureDownloads::names()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    const QString uri = addEnclosure(m_server->url("/bytes/10/" + path));
    QVERIFY(!uri.isEmpty());
    const Ending done = download(uri);
    VERIFY_ENDING(done, "downloadEnclosureFinished");
    QCOMPARE(files(), QStringList(expected));
    const QString local = done.map.value("localUrl").toString();
    QCOMPARE(QUrl(local).toLocalFile(), folder() + '/' + expected);
    QCOMPARE(FeedTrackerSparql::instance()->enclosureForUri(uri).localUrl(), local);
    QCOMPARE(QDir(m_target->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList("new folder"));
}

void TestEnclosureDownloads::sameName()
{
    QVERIFY(QDir().mkpath(folder()));
    QFile own(folder() + "/a.mp3");
    QVERIFY(own.open(QIODevice::WriteOnly));
    own.write("mine");
    own.close();
    QVERIFY(QFile::link("/nowhere", folder() + "/a-2.mp3"));
    QVERIFY(QDir().mkpath(folder() + "/a-3.mp3"));
    for (int i = 1; i <= 2; ++i) {
        const QString uri = addEnclosure(m_server->url(QString("/bytes/10/%1/a.mp3").arg(i)));
        const Ending done = download(uri);
        VERIFY_ENDING(done, "downloadEnclosureFinished");
        QCOMPARE(QUrl(done.map.value("localUrl").toString()).fileName(), QString("a-%1.mp3").arg(3 + i));
    }
    QVERIFY(own.open(QIODevice::ReadOnly));
    QCOMPARE(own.readAll(), QByteArray("mine"));
    QVERIFY(!QFileInfo::exists("/nowhere"));
}

void TestEnclosureDownloads::sameNameInParallel()
{
    constexpr int count = 12;
    std::vector<std::unique_ptr<FeedPluginInterface>> downloaders;
    int finished = 0;
    for (int i = 0; i < count; ++i) {
        const QString uri = addEnclosure(m_server->url(QString("/bytes/%1/%2/a.mp3").arg(50000 + i).arg(i)));
        downloaders.push_back(another());
        connect(downloaders.back().get(), &FeedPluginInterface::downloadEnclosureFinished, this,
                [&] { ++finished; });
        downloaders.back()->downloadEnclosure(uri, folder());
    }
    COMPARE_SOON(finished, count);
    QCOMPARE(files().size(), count);
    QSet<qint64> sizes;
    for (const QFileInfo &file : QDir(folder()).entryInfoList(QDir::Files))
        sizes.insert(file.size());
    QCOMPARE(sizes.size(), count);
    QCOMPARE(m_store->texts("SELECT DISTINCT ?l { ?e a mfo:Enclosure ; mfo:localLink ?l }").size(), count);
}

void TestEnclosureDownloads::alreadyDownloaded()
{
    const QString uri = addEnclosure(m_server->url("/bytes/10/a.mp3"));
    const Ending first = download(uri);
    VERIFY_ENDING(first, "downloadEnclosureFinished");
    m_server->forgetRequests();
    const Ending again = download(uri);
    VERIFY_ENDING(again, "downloadEnclosureFinished");
    QCOMPARE(again.map, first.map);
    QCOMPARE(m_server->requests(), QStringList());
    QCOMPARE(files(), QStringList("a.mp3"));
}

void TestEnclosureDownloads::removedFileIsDownloadedAgain()
{
    const QString uri = addEnclosure(m_server->url("/bytes/10/a.mp3"));
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QVERIFY(QFile::remove(folder() + "/a.mp3"));
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    QCOMPARE(files(), QStringList("a.mp3"));
    QCOMPARE(m_store->count("<" + uri + "> mfo:localLink ?l"), 1);
}

void TestEnclosureDownloads::failures_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("text");

    QTest::newRow("404") << "/nothing" << 404 << "the server answered 404 Not Found";
    QTest::newRow("410") << "/status/410" << 410
                         << "the server answered 410 Gone: the file was removed permanently";
    QTest::newRow("silent") << "/silent" << int(FeedDownloadTimedOut)
                            << "the server does not answer; try again later";
    QTest::newRow("stalled") << "/stalled" << int(FeedDownloadTimedOut)
                             << "the download takes too long; try again later";
    QTest::newRow("truncated") << "/truncated" << int(FeedDownloadConnectionFailed)
                               << "the server closed the connection too early; try again later";
    QTest::newRow("endless") << "/endless" << int(FeedDownloadTooLarge)
                             << "the file is larger than the limit of 1 MiB";
    QTest::newRow("huge") << "/huge" << int(FeedDownloadTooLarge)
                          << "the file is larger than the limit of 1 MiB";
    QTest::newRow("bomb") << "/bomb" << int(FeedDownloadTooLarge)
                          << "the file is larger than the limit of 1 MiB";
    QTest::newRow("to a file") << "/redirect/302?file:///etc/hostname" << int(FeedDownloadUnsafeRedirect)
                               << "the server redirects to an unsafe address";
    QTest::newRow("magnet") << "magnet:?xt=urn:sha1:YNCKHTQC" << int(FeedDownloadBadAddress)
                            << "only files and http and https addresses are supported";
}

void TestEnclosureDownloads::failures()
{
    QFETCH(QString, address);
    QFETCH(int, error);
    QFETCH(QString, text);
    if (error == FeedDownloadTimedOut)
        downloader().setProperty("timeout", 1000);
    downloader().setProperty("maximumEnclosureSize", 1024 * 1024);
    const QString uri = addEnclosure(address.startsWith('/') ? m_server->url(address) : address);
    const QString everything = "SELECT ?s ?p ?o { ?s ?p ?o } ORDER BY ?s ?p ?o";
    const QStringList before = m_store->texts(everything);
    const Ending failed = download(uri);
    VERIFY_ENDING(failed, "downloadEnclosureFailed");
    QCOMPARE(failed.error, error);
    QCOMPARE(failed.text, text);
    QCOMPARE(files(), QStringList());
    QCOMPARE(m_store->texts(everything), before);
}

void TestEnclosureDownloads::unknownEnclosure()
{
    for (const char *uri : {"urn:nothing", "", "> } INSERT { <urn:x> a mfo:Enclosure } #"}) {
        const Ending failed = download(uri);
        VERIFY_ENDING(failed, "downloadEnclosureFailed");
        QCOMPARE(failed.error, int(FeedDownloadNotFound));
        QCOMPARE(failed.text, QString("no such enclosure"));
    }
}

void TestEnclosureDownloads::folders()
{
    const QString file = write("in-the-way", "x");
    const QString uri = addEnclosure(m_server->url("/bytes/10/a.mp3"));
    for (const QString &bad : {file, file + "/below", QString("/proc/nothing")}) {
        downloader().downloadEnclosure(uri, bad);
        const Ending failed = ending(downloader());
        VERIFY_ENDING(failed, "downloadEnclosureFailed");
        QCOMPARE(failed.error, int(FeedDownloadNotWritten));
        QCOMPARE(failed.text, "the folder " + bad + " cannot be written to");
    }
    const QString deep = m_target->filePath("one/two/three");
    downloader().downloadEnclosure(uri, deep);
    VERIFY_ENDING(ending(downloader()), "downloadEnclosureFinished");
    QVERIFY(QFile::exists(deep + "/a.mp3"));
}

void TestEnclosureDownloads::fullDisk()
{
    const QString uri = addEnclosure(m_server->url("/bytes/1000000/a.mp3"));
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 500000;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const Ending failed = download(uri);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    VERIFY_ENDING(failed, "downloadEnclosureFailed");
    QCOMPARE(failed.error, int(FeedDownloadNotWritten));
    QCOMPARE(failed.text, QString("could not write the file: ") + strerror(EFBIG));
    QCOMPARE(files(), QStringList());
}

void TestEnclosureDownloads::sizeLimit()
{
    downloader().setProperty("maximumEnclosureSize", 999);
    const QString uri = addEnclosure(m_server->url("/bytes/1000/a.mp3"));
    QCOMPARE(download(uri).error, int(FeedDownloadTooLarge));
    downloader().setProperty("maximumEnclosureSize", 1000);
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
}

void TestEnclosureDownloads::progress()
{
    QSignalSpy progress(&downloader(), &FeedPluginInterface::enclosureDownloadProgress);
    VERIFY_ENDING(download(addEnclosure(m_server->url("/bytes/3000000/a.mp3"))), "downloadEnclosureFinished");
    QVERIFY(!progress.isEmpty());
    qint64 last = -1;
    for (const QList<QVariant> &step : progress) {
        QVERIFY(step.at(0).toLongLong() >= last);
        last = step.at(0).toLongLong();
        QCOMPARE(step.at(1).toLongLong(), Q_INT64_C(3000000));
    }
    QCOMPARE(last, Q_INT64_C(3000000));
    progress.clear();
    VERIFY_ENDING(download(addEnclosure(m_server->url("/unsized/70000"))), "downloadEnclosureFinished");
    QCOMPARE(progress.last(), QList<QVariant>({Q_INT64_C(70000), Q_INT64_C(-1)}));
}

void TestEnclosureDownloads::cancel()
{
    const QString uri = addEnclosure(m_server->url("/stalled"));
    QSignalSpy progress(&downloader(), &FeedPluginInterface::enclosureDownloadProgress);
    downloader().downloadEnclosure(uri, folder());
    VERIFY_SOON(!progress.isEmpty());
    downloader().cancel();
    const Ending canceled = ending(downloader());
    VERIFY_ENDING(canceled, "downloadEnclosureFailed");
    QCOMPARE(canceled.error, int(FeedDownloadCanceled));
    QCOMPARE(files(), QStringList());
}

void TestEnclosureDownloads::deletedDuringDownload()
{
    auto other = another();
    QSignalSpy progress(other.get(), &FeedPluginInterface::enclosureDownloadProgress);
    other->downloadEnclosure(addEnclosure(m_server->url("/stalled")), folder());
    VERIFY_SOON(!progress.isEmpty());
    other.reset();
    QCOMPARE(files(), QStringList());
}

void TestEnclosureDownloads::redirected()
{
    const QString uri = addEnclosure(m_server->url("/redirect/302?/bytes/10/there.mp3"));
    VERIFY_ENDING(download(uri), "downloadEnclosureFinished");
    // The name comes from the address in the feed, not from the target of the redirect.
    QCOMPARE(files(), QStringList("302"));
}

QTEST_GUILESS_MAIN(TestEnclosureDownloads)
#include "tst_enclosuredownloads.moc"
