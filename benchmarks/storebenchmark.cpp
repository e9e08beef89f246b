// SPDX-License-Identifier: LGPL-2.1-or-later
#include "measure.h"
#include "samples.h"
#include "sqlitearchive.h"

#include <feedtrackersparql.h>

#include <QCoreApplication>
#include <QSparqlConnection>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

/// Deletes released objects, like the event loop of a host.
void collectGarbage() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

constexpr int batch = 50;
constexpr int samplesPerRun = 20;
constexpr int channelSize = 1000;

/// The store and an SQLite archive with the same messages in channels of channelSize messages each.
class Archives
{
public:
    Archives() : m_sqlite(folder.filePath(QStringLiteral("sqlite.db")))
    {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        closeStore();
        channel = addChannel();
        otherChannel = addChannel();
    }

    /// Adds messages until there are \a count.
    void growTo(int count)
    {
        while (m_size < count) {
            const QString filled = addChannel();
            const QList<FeedMessage> messages = newMessages(channelSize);
            require(store()->addMessages(messages, filled));
            collectGarbage();
            m_sqlite.addMessages(messages, filled);
            if (filledChannel.isEmpty())
                filledChannel = filled;
        }
    }

    FeedTrackerSparql *store() { return FeedTrackerSparql::instance(); }
    void closeStore()
    {
        FeedTrackerSparql::releaseInstance();
        collectGarbage();
    }
    SqliteArchive &sqlite() { return m_sqlite; }

    /// Returns \a count messages that neither archive has, different ones on each call.
    QList<FeedMessage> newMessages(int count)
    {
        m_size += count;
        return sampleMessages(m_size - count, count);
    }

    static void require(bool done)
    {
        if (!done)
            qFatal("The store failed");
    }

    QString addChannel() { return store()->addChannel(sampleChannel(++m_channels)); }

    QTemporaryDir folder;
    QString channel; ///< For new messages.
    QString otherChannel; ///< For messages that another channel has.
    QString filledChannel; ///< One with channelSize messages.

private:
    SqliteArchive m_sqlite;
    int m_size = 0;
    int m_channels = 0;
};

/// Returns the archives with at least \a count messages. The benchmarks run in the order of these counts.
Archives &archivesOf(int count)
{
    static Archives archives;
    archives.growTo(count);
    return archives;
}

/// Measures \a store and \a sqlite. The counters are per call. \a prepare is called before and not measured.
void compare(
    benchmark::State &state, const std::function<void()> &store, const std::function<void()> &sqlite,
    const std::function<void()> &prepare = [] {})
{
    double cpu = 0;
    double sqliteCpu = 0;
    double peak = 0;
    for ([[maybe_unused]] auto _ : state) {
        prepare();
        const Cost cost = measure([&] {
            store();
            collectGarbage();
        });
        state.SetIterationTime(cost.cpuSeconds);
        cpu += cost.cpuSeconds;
        peak = std::max(peak, cost.peakMegabytes);
        sqliteCpu += measure(sqlite).cpuSeconds;
    }
    state.counters["sqlite_ms"] = benchmark::Counter(1000 * sqliteCpu / double(state.iterations()));
    state.counters["ratio"] = cpu / sqliteCpu;
    state.counters["peak_MB"] = peak;
}

void addNewMessages(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    QList<FeedMessage> messages;
    compare(
        state,
        [&] {
            messages = archives.newMessages(batch);
            Archives::require(archives.store()->addMessages(messages, archives.channel));
        },
        [&] { archives.sqlite().addMessages(messages, archives.channel); });
}

void addKnownMessages(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    const QList<FeedMessage> messages = sampleMessages(channelSize / 2, batch);
    compare(
        state, [&] { Archives::require(archives.store()->addMessages(messages, archives.otherChannel)); },
        [&] { archives.sqlite().addMessages(messages, archives.otherChannel); });
}

void messagesForChannel(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    compare(
        state,
        [&] { benchmark::DoNotOptimize(archives.store()->messagesForChannel(archives.filledChannel)); },
        [&] { benchmark::DoNotOptimize(archives.sqlite().messagesForChannel(archives.filledChannel)); });
}

/// New messages in a channel of their own.
struct Doomed
{
    explicit Doomed(Archives &archives) : channel(archives.addChannel())
    {
        const QList<FeedMessage> messages = archives.newMessages(batch);
        Archives::require(archives.store()->addMessages(messages, channel));
        archives.sqlite().addMessages(messages, channel);
        for (const QString &uri : archives.store()->allMessageUrls(channel))
            uris.append(QUrl(uri));
    }

    QString channel;
    QList<QUrl> uris;
};

void deleteMessage(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    std::unique_ptr<Doomed> doomed;
    compare(
        state,
        [&] {
            for (const QUrl &uri : doomed->uris)
                archives.store()->deleteMessage(uri.toString(), doomed->channel);
        },
        [&] { archives.sqlite().deleteNewest(batch); }, [&] { doomed = std::make_unique<Doomed>(archives); });
}

void deleteMessages(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    std::unique_ptr<Doomed> doomed;
    compare(
        state, [&] { archives.store()->deleteMessages(doomed->uris); },
        [&] { archives.sqlite().deleteNewest(batch); }, [&] { doomed = std::make_unique<Doomed>(archives); });
}

void openStore(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    // Connections of one thread share an open store.
    archives.closeStore();
    compare(
        state, [] { Archives::require(QSparqlConnection(QStringLiteral("QTRACKER_DIRECT")).isValid()); },
        [&] { SqliteArchive(archives.folder.filePath(QStringLiteral("sqlite.db"))); });
}

void createStore(benchmark::State &state)
{
    int number = 0;
    QTemporaryDir folder;
    compare(
        state,
        [&] {
            QSparqlConnectionOptions options;
            options.setDatabaseName(folder.filePath(QStringLiteral("store%1").arg(++number)));
            Archives::require(QSparqlConnection(QStringLiteral("QTRACKER_DIRECT"), options).isValid());
        },
        [&] { SqliteArchive(folder.filePath(QStringLiteral("sqlite%1").arg(number))); });
}

benchmark::internal::Benchmark *configured(benchmark::internal::Benchmark *benchmark, int iterations)
{
    return benchmark->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(iterations);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // Traces are not measured.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const auto add = [](const char *name, benchmark::internal::Function *function, int iterations) {
        return configured(benchmark::RegisterBenchmark(name, function), iterations);
    };
    for (const int size : {1000, 10000, 200000, 400000}) {
        add("addMessages/new", addNewMessages, samplesPerRun)->Arg(size);
        add("addMessages/known", addKnownMessages, samplesPerRun)->Arg(size);
        add("messagesForChannel", messagesForChannel, 3)->Arg(size);
        add("deleteMessage", deleteMessage, 3)->Arg(size);
        add("deleteMessages", deleteMessages, 3)->Arg(size);
        add("openStore", openStore, 5)->Arg(size);
    }
    add("createStore", createStore, 5);
    benchmark::RunSpecifiedBenchmarks();
    FeedTrackerSparql::releaseInstance();
    return 0;
}
