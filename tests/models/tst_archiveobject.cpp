// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedserver.h"
#include "rawserver.h"
#include "readertest.h"

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>
#include <TidelReader/messages.h>

#include <feedplugininterface.h>
#include <soon.h>

#include <QFutureWatcher>
#include <QSemaphore>
#include <QSignalSpy>
#include <QThread>

using namespace Tidel;

namespace {

QUrl sampleFeed(const QString &name)
{
    return QUrl::fromLocalFile(QStringLiteral(TIDEL_TEST_DATA "/feeds/") + name);
}

/// Never answers.
RawAnswer silence()
{
    RawAnswer answer;
    answer.end = RawAnswer::Hold;
    return answer;
}

template <typename T> void wait(const QFuture<T> &future) { VERIFY_SOON(future.isFinished()); }

/// "SUBJECT ok" or "SUBJECT ERROR" for each result.
QStringList ends(const QFuture<ArchiveDownload> &future)
{
    QStringList lines;
    const QList<ArchiveDownload> results = future.results();
    for (const ArchiveDownload &end : results)
        lines.append(end.subject + ' '
                     + (end.result.isOk() ? QString("ok") : QString::number(end.result.error())));
    return lines;
}

} // namespace

class TestArchiveObject : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void answersByFuture();
    void threads();
    void order();
    void changesDoNotDelayReads();
    void longReadsDoNotDelayShortOnes();
    void canceledWork();
    void goneReceiver();
    void storeThatCannotBeOpened();
    void closingWaitsForChanges();
    void closingWaitsNotForever();
    void afterClosing();
    void subscribe();
    void refresh();
    void enclosures();
    void cancelDownloads();
    void closingCancelsDownloads();
    void downloadsWithoutStore();
};

void TestArchiveObject::answersByFuture()
{
    addChannel("news");
    addMessages({"a"}, "news");
    Archive archive;
    const auto changed =
        archive.change([](const Store &store) { return Messages(store).setFavorite(messageUri("a"), true); });
    QFutureWatcher<Result<QList<FeedChannel>>> watcher;
    QSignalSpy finished(&watcher, &QFutureWatcherBase::finished);
    watcher.setFuture(archive.read([](const Store &store) { return Channels(store).all(); }));
    QVERIFY(finished.wait(60000));
    QCOMPARE(watcher.result()->size(), 1);
    QCOMPARE(watcher.result()->constFirst().uri(), channelUri("news"));
    wait(changed);
    VERIFY_OK(changed.result());
    QVERIFY(Messages(*archive.store()).get(messageUri("a"))->isFavorite());
}

/// Changes and reads have a thread each, which is always the same one and not that of the archive.
void TestArchiveObject::threads()
{
    Archive archive;
    const auto current = [](const Store &) { return Result<QThread *>(QThread::currentThread()); };
    const auto change = archive.change(current);
    const auto read = archive.read(current);
    const auto nextChange = archive.change(current);
    wait(change);
    wait(read);
    wait(nextChange);
    QCOMPARE(*change.result(), *nextChange.result());
    QVERIFY(*change.result() != *read.result());
    QVERIFY(*change.result() != thread());
    QVERIFY(*read.result() != thread());
}

void TestArchiveObject::order()
{
    Archive archive;
    QVector<int> changes; // Changed by the thread for changes only.
    QFuture<Result<void>> last;
    for (int i = 0; i < 100; ++i) {
        last = archive.change([&changes, i](const Store &) {
            changes.append(i);
            return Result<void>();
        });
    }
    wait(last);
    QCOMPARE(changes.size(), 100);
    QVERIFY(std::is_sorted(changes.cbegin(), changes.cend()));
}

void TestArchiveObject::changesDoNotDelayReads()
{
    addChannel("news");
    QSemaphore isRead;
    Archive archive;
    const auto change =
        archive.change([&isRead](const Store &) { return Result<bool>(isRead.tryAcquire(1, 60000)); });
    const auto read = archive.read([](const Store &store) { return Channels(store).all(); });
    wait(read);
    QVERIFY(!change.isFinished());
    isRead.release();
    wait(change);
    QVERIFY(*change.result());
}

void TestArchiveObject::longReadsDoNotDelayShortOnes()
{
    QSemaphore isRead;
    Archive archive;
    const auto longRead = archive.read(
        [&isRead](const Store &) { return Result<bool>(isRead.tryAcquire(1, 60000)); }, Archive::LongRead);
    const auto shortRead = archive.read([](const Store &store) { return Channels(store).all(); });
    wait(shortRead);
    QVERIFY(!longRead.isFinished());
    isRead.release();
    wait(longRead);
    QVERIFY(*longRead.result());
}

void TestArchiveObject::canceledWork()
{
    QSemaphore isCanceled;
    Archive archive;
    archive.change([&isCanceled](const Store &) { return Result<bool>(isCanceled.tryAcquire(1, 60000)); });
    bool hasRun = false;
    auto canceled = archive.change([&hasRun](const Store &) {
        hasRun = true;
        return Result<void>();
    });
    canceled.cancel();
    isCanceled.release();
    wait(canceled);
    QVERIFY(!hasRun);
    QCOMPARE(canceled.resultCount(), 0);
}

/// A result for a receiver that is gone is dropped.
void TestArchiveObject::goneReceiver()
{
    QSemaphore isGone;
    Archive archive;
    bool isCalled = false;
    {
        QFutureWatcher<Result<bool>> watcher;
        connect(&watcher, &QFutureWatcherBase::finished, this, [&isCalled] { isCalled = true; });
        watcher.setFuture(
            archive.change([&isGone](const Store &) { return Result<bool>(isGone.tryAcquire(1, 60000)); }));
    }
    isGone.release();
    wait(archive.change([](const Store &) { return Result<void>(); }));
    QVERIFY(!isCalled);
}

void TestArchiveObject::storeThatCannotBeOpened()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("file");
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", QFile::encodeName(file));
    Archive archive;
    const auto change = archive.change([](const Store &) { return Result<int>(1); });
    const auto read = archive.read([](const Store &) { return Result<int>(1); });
    wait(change);
    wait(read);
    QCOMPARE(change.result().error().kind(), Error::StoreUnavailable);
    QCOMPARE(read.result().error().kind(), Error::StoreUnavailable);
    QCOMPARE(archive.store().error().kind(), Error::StoreUnavailable);
}

void TestArchiveObject::closingWaitsForChanges()
{
    addChannel("news");
    const QStringList names = numberedNames("a", 50);
    addMessages(names, "news");
    QFuture<Result<void>> last;
    {
        Archive archive;
        for (const QString &name : names)
            last = archive.change(
                [name](const Store &store) { return Messages(store).setFavorite(messageUri(name), true); });
    }
    QVERIFY(last.isFinished());
    VERIFY_OK(last.result());
    QVERIFY(Messages(reader()).get(messageUri("a1"))->isFavorite());
    QVERIFY(Messages(reader()).get(messageUri("a50"))->isFavorite());
}

void TestArchiveObject::closingWaitsNotForever()
{
    const auto isOver = std::make_shared<QSemaphore>();
    const auto hasEnded = std::make_shared<QSemaphore>();
    Archive archive;
    archive.change([isOver, hasEnded](const Store &) {
        const bool isReleased = isOver->tryAcquire(1, 60000);
        hasEnded->release();
        return Result<bool>(isReleased);
    });
    bool hasRun = false;
    const auto later = archive.change([&hasRun](const Store &) {
        hasRun = true;
        return Result<void>();
    });
    QVERIFY(!archive.close(50));
    isOver->release();
    QVERIFY(hasEnded->tryAcquire(1, 60000));
    wait(later);
    QVERIFY(later.isCanceled());
    QVERIFY(!hasRun);
}

void TestArchiveObject::afterClosing()
{
    Archive archive;
    QVERIFY(archive.close());
    const auto change = archive.change([](const Store &) { return Result<int>(1); });
    QVERIFY(change.isFinished());
    QVERIFY(change.isCanceled());
    QVERIFY(archive.read([](const Store &) { return Result<int>(1); }).isCanceled());
    QVERIFY(archive.refresh().isCanceled());
    QVERIFY(archive.close());
}

void TestArchiveObject::subscribe()
{
    Archive archive;
    const QList<QUrl> addresses = {sampleFeed("county-news.xml"), sampleFeed("missing.xml"),
                                   sampleFeed("harbour-log.xml")};
    QFutureWatcher<ArchiveDownload> watcher;
    QSignalSpy ready(&watcher, &QFutureWatcherBase::resultReadyAt);
    watcher.setFuture(archive.subscribe(addresses));
    wait(watcher.future());
    QCOMPARE(ends(watcher.future()),
             (QStringList{addresses.at(0).toString() + " ok", addresses.at(1).toString() + " 4",
                          addresses.at(2).toString() + " ok"}));
    COMPARE_SOON(ready.size(), 3);
    QCOMPARE(watcher.progressMaximum(), 3);
    QCOMPARE(watcher.progressValue(), 3);
    QCOMPARE(Channels(reader()).all()->size(), 2);
}

void TestArchiveObject::refresh()
{
    Archive archive;
    wait(archive.subscribe({sampleFeed("county-news.xml"), sampleFeed("harbour-log.xml")}));
    const auto all = Channels(reader()).all();
    QStringList uris;
    for (const FeedChannel &channel : *all)
        uris.append(channel.uri());
    const auto one = archive.refresh({uris.constFirst()});
    const auto some = archive.refresh();
    const auto everything = archive.refresh({}, Archive::Forced);
    wait(everything);
    QCOMPARE(ends(one), QStringList{uris.constFirst() + " ok"});
    QCOMPARE(some.resultCount(), 2);
    QCOMPARE(everything.resultCount(), 2);
    const auto none = archive.refresh({"urn:missing"});
    wait(none);
    QCOMPARE(none.resultCount(), 0);
    QVERIFY(!none.isCanceled());
}

/// The progress is told while the file comes, and begins where an interrupted download ended.
void TestArchiveObject::enclosures()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("beans.mp3"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(400 * 1024, 'x'));
    file.close();
    FeedServer server(folder.path());
    addChannel("news");
    addMessages({"a"}, "news");
    const QString uri = enclosureUri("beans");
    store().update(QString("INSERT { <%1> a mfo:Enclosure ; mfo:remoteLink <%2> ; nie:isLogicalPartOf <%3> }")
                       .arg(uri, server.url("/ranged/beans.mp3?cut=204800&hold"), messageUri("a")));
    Archive archive;
    const QString target = folder.filePath("files");
    QFutureWatcher<ArchiveDownload> watcher;
    watcher.setFuture(archive.downloadEnclosures({uri}, target));
    COMPARE_SOON(watcher.progressValue(), 200);
    QCOMPARE(watcher.progressMaximum(), 400);
    watcher.cancel();
    VERIFY_SOON(watcher.isFinished());

    QFutureWatcher<ArchiveDownload> again;
    QSignalSpy progress(&again, &QFutureWatcherBase::progressValueChanged);
    again.setFuture(archive.downloadEnclosures({uri}, target));
    VERIFY_SOON(again.isFinished());
    QCOMPARE(ends(again.future()), QStringList(uri + " ok"));
    QCOMPARE(again.progressValue(), 400);
    for (const QList<QVariant> &values : qAsConst(progress))
        QVERIFY(values.constFirst().toInt() == 0 || values.constFirst().toInt() >= 200);
}

void TestArchiveObject::cancelDownloads()
{
    const RawServer silent(silence());
    Archive archive;
    auto canceled =
        archive.subscribe({sampleFeed("county-news.xml"), QUrl(silent.url()), QUrl(silent.url() + "b")});
    COMPARE_SOON(canceled.resultCount(), 1);
    canceled.cancel();
    wait(canceled);
    QVERIFY(canceled.isCanceled());
    const auto next = archive.subscribe({sampleFeed("harbour-log.xml")});
    wait(next);
    QCOMPARE(ends(next), QStringList{sampleFeed("harbour-log.xml").toString() + " ok"});
}

void TestArchiveObject::closingCancelsDownloads()
{
    const RawServer silent(silence());
    Archive archive;
    const auto download = archive.subscribe({QUrl(silent.url())});
    VERIFY_SOON(silent.clients() > 0);
    QVERIFY(archive.close());
    QVERIFY(download.isFinished());
    QVERIFY(download.isCanceled());
}

void TestArchiveObject::downloadsWithoutStore()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("file");
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", QFile::encodeName(file));
    Archive archive;
    const auto refresh = archive.refresh();
    wait(refresh);
    QCOMPARE(ends(refresh), QStringList{QString(" %1").arg(FeedDownloadStoreFailed)});
    QVERIFY(refresh.result().result.reason().startsWith("could not open the store: "));
}

QTEST_GUILESS_MAIN(TestArchiveObject)
#include "tst_archiveobject.moc"
