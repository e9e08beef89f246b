// SPDX-License-Identifier: LGPL-2.1-or-later
#include "measure.h"
#include "samples.h"

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messagelist.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/writeturn.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

using namespace Tidel;

namespace {

constexpr int channels = 100;
constexpr int newMessages = 2000;

/// The value of \a result; ends the program if there is none.
template <typename T> T valueOf(Result<T> result)
{
    if (!result)
        qFatal("%s", qPrintable(result.error().text()));
    return std::move(*result);
}

QString addChannel(const Store &store, int number)
{
    const auto turn = valueOf(WriteTurn::take());
    return valueOf(Channels(store).add(sampleChannel(number)));
}

/// Stores messages as a refresh does, and returns the URI of the last one.
QString store(const Store &store, const QString &channel, int first, int count)
{
    QString uri;
    for (int from = first; from < first + count; from += 100) {
        QList<StorableMessage> messages;
        QList<Link> links;
        const QList<FeedMessage> samples = sampleMessages(from, qMin(100, first + count - from));
        for (const FeedMessage &sample : samples) {
            links.append(Link::fromEncoded(sample.link()));
            messages.append(StorableMessage(links.constLast(), sample));
        }
        const auto turn = valueOf(WriteTurn::take());
        WrittenMessages written;
        const auto use = valueOf(LinkUse::of(store, links, channel));
        if (const auto done = MessageWriter(store).write(messages, channel, use, {}, &written); !done)
            qFatal("%s", qPrintable(done.error().text()));
        uri = valueOf(Messages(store).uri(samples.constLast().link()));
    }
    return uri;
}

/// Runs the event loop until \a future has ended.
template <typename T> T wait(const QFuture<T> &future)
{
    QFutureWatcher<T> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(future);
    loop.exec();
    return future.result();
}

/// How late a timer of 10 ms is at most while it exists, in milliseconds.
class Lateness
{
public:
    Lateness()
    {
        m_clock.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_worst = qMax(m_worst, double(m_clock.nsecsElapsed()) / 1e6 - interval);
            m_clock.start();
        });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(interval);
    }
    double worst() const { return m_worst; }

private:
    static constexpr int interval = 10;

    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_worst = 0;
};

/// Reads the newest messages of a channel, or of all if there is none.
Result<int> readNewest(const Store &store, const QStringList &channelUris)
{
    MessageQuery query;
    query.channelUris = channelUris;
    query.limit = 50;
    return MessageList(store).find(query).map([](const auto &headlines) { return int(headlines.size()); });
}

struct Durations
{
    QVector<double> milliseconds;

    template <typename Work> void add(const Work &work)
    {
        QElapsedTimer clock;
        clock.start();
        work();
        milliseconds.append(double(clock.nsecsElapsed()) / 1e6);
    }
    void print(const char *name)
    {
        std::sort(milliseconds.begin(), milliseconds.end());
        std::printf("%s: median %.1f ms, longest %.1f ms, %d times\n", name,
                    milliseconds.at(milliseconds.size() / 2), milliseconds.constLast(),
                    int(milliseconds.size()));
    }
};

/// Starts an archive, and waits until it knows the store.
void measureStart()
{
    std::unique_ptr<Archive> archive;
    double wall = 0;
    const Cost cost = measure([&] {
        QElapsedTimer clock;
        clock.start();
        archive = std::make_unique<Archive>();
        wait(archive->change([](const Store &) { return Result<void>(); }));
        wall = double(clock.nsecsElapsed()) / 1e6;
    });
    std::printf("first look: %.0f ms, CPU %.0f ms, %.1f MB more at most\n", wall, cost.cpuSeconds * 1000,
                cost.peakMegabytes);
}

/// Stores new messages, and calls \a read until this has ended.
template <typename Work>
void whileStoring(Archive &archive, const QString &channel, int first, const Work &read)
{
    const auto change = archive.change(
        [=](const Store &target) { return Result<QString>(store(target, channel, first, newMessages)); });
    while (!change.isFinished())
        read();
}

void measureStoring(Archive &archive, const QString &channel, int first)
{
    Durations ofArchive;
    Durations ofStore;
    Durations ofAll;
    const Store own = valueOf(archive.store());
    const auto readChannel = [=](const Store &store) { return readNewest(store, {channel}); };
    const auto readAll = [](const Store &store) { return readNewest(store, {}); };
    Lateness lateness;
    whileStoring(archive, channel, first, [&] { ofArchive.add([&] { wait(archive.read(readChannel)); }); });
    const double late = lateness.worst();
    whileStoring(archive, channel, first + newMessages, [&] { ofStore.add([&] { readChannel(own); }); });
    whileStoring(archive, channel, first + 2 * newMessages,
                 [&] { ofAll.add([&] { wait(archive.read(readAll)); }); });
    std::printf("while %d messages are stored, a timer of 10 ms is %.1f ms late at most\n", newMessages,
                late);
    ofArchive.print("  50 messages of a channel by archive.read()");
    ofStore.print("  50 messages of a channel by archive.store()");
    ofAll.print("  50 messages of all by archive.read()");
}

/// Marks a message of a store beside \a archive, and waits until it is told.
void measureLook(Archive &archive, const QString &message)
{
    const Store beside = valueOf(Store::open());
    Durations delays;
    Cost cost;
    for (int i = 0; i < 20; ++i) {
        QEventLoop loop;
        QObject::connect(&archive, &Archive::favoritesChanged, &loop, &QEventLoop::quit);
        cost = measure([&] {
            static_cast<void>(Messages(beside).setFavorite(message, i % 2 == 0));
            delays.add([&] { loop.exec(); });
        });
    }
    delays.print("from a change to its signal");
    std::printf("  CPU of the change and the look: %.1f ms\n", cost.cpuSeconds * 1000);
}

/// Leaves out the traces, which a program for users does not print either.
void printMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

/// usage: archivebenchmark [MESSAGES]
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const int count = app.arguments().value(1, QStringLiteral("100000")).toInt();
    qInstallMessageHandler(printMessage);
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    QString channel;
    QString message;
    {
        const Store target = valueOf(Store::open());
        const int each = count / channels;
        for (int i = 0; i < channels; ++i) {
            channel = addChannel(target, i);
            message = store(target, channel, i * each, each);
        }
    }
    std::printf("%d messages in %d channels\n", count, channels);
    measureStart();
    Archive archive;
    wait(archive.change([](const Store &) { return Result<void>(); }));
    measureLook(archive, message);
    measureStoring(archive, channel, count);
    return 0;
}
