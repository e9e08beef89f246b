// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/retention.h>

#include <storable.h>

#include <functional>

#include <sys/syscall.h>
#include <unistd.h>

using namespace Tidel;

namespace {

/// The end of what the process did to the log of the database: "write" or "sync".
QByteArray lastEvent;

void note(const char *event, int descriptor)
{
    const QString path = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    if (path.endsWith("/meta.db-wal"))
        lastEvent = event;
}

} // namespace

/// \name Called by SQLite and the library in place of those of the C library
/// @{
extern "C" ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off64_t at)
{
    note("write", descriptor);
    return syscall(SYS_pwrite64, descriptor, bytes, size, at);
}

extern "C" int fdatasync(int descriptor)
{
    note("sync", descriptor);
    return int(syscall(SYS_fdatasync, descriptor));
}
/// @}

using Change = std::function<Result<void>(const Store &)>;
Q_DECLARE_METATYPE(Change)

/// What is on the disk before an operation says that it is done.
class TestSyncedChanges : public ReaderTestCase
{
    Q_OBJECT

private slots:
    void operations_data();
    void operations();
};

void TestSyncedChanges::operations_data()
{
    QTest::addColumn<Change>("operation");
    QTest::addColumn<QByteArray>("end");
    const auto add = [](const char *name, const char *end, const Change &operation) {
        QTest::newRow(name) << operation << QByteArray(end);
    };
    const auto ignored = [](auto) {};
    const RemovalStep noStep = [](int, const QList<FeedEnclosure> &) {};
    add("subscribe", "sync", [=](const Store &store) {
        FeedChannel channel;
        channel.setTitle("New");
        channel.setLink(linkOf("new"));
        return Channels(store).add(channel).map(ignored);
    });
    add("edit", "sync", [=](const Store &store) {
        return Channels(store).all().and_then([&](const QList<FeedChannel> &channels) {
            return Channels(store).edit(channels.first(), "Edited", channels.first().link());
        });
    });
    add("unsubscribe", "sync", [=](const Store &store) {
        return Channels(store).all().and_then([&](const QList<FeedChannel> &channels) {
            return Channels(store).remove(channels.first(), noStep);
        });
    });
    add("favorite", "sync",
        [](const Store &store) { return Messages(store).setFavorite(messageUri("a"), true); });
    add("unfavorite", "sync",
        [](const Store &store) { return Messages(store).setFavorite(messageUri("b"), false); });
    add("delete", "sync",
        [=](const Store &store) { return Messages(store).remove({messageUri("a")}, noStep); });
    add("prune", "sync", [=](const Store &store) {
        return Retention(store).drop(channelUri("news"), messageUris({"a"}), RetentionRule{0, {}, true},
                                     noStep);
    });
    // The next refresh does it again.
    add("refresh", "write", [](const Store &store) {
        FeedMessage message;
        message.setTitle("c");
        message.setLink(linkOf("c"));
        const auto messages = storable(QList<FeedMessage>{message});
        return LinkUse::of(store, linksOf(messages), channelUri("news")).and_then([&](const LinkUse &use) {
            return MessageWriter(store).write(messages, channelUri("news"), use);
        });
    });
}

void TestSyncedChanges::operations()
{
    QFETCH(Change, operation);
    QFETCH(QByteArray, end);
    addChannel("news");
    addMessages({"a", "b"}, "news");
    addFavorite("b");
    lastEvent.clear();
    VERIFY_OK(operation(reader()));
    QCOMPARE(lastEvent, end);
}

QTEST_GUILESS_MAIN(TestSyncedChanges)
#include "tst_syncedchanges.moc"
