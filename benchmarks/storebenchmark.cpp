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

/// The store and an SQLite archive with the same messages in one channel, and a second, empty channel.
class Archives
{
public:
    explicit Archives(int messageCount)
        : m_sqlite(folder.filePath(QStringLiteral("sqlite.db"))), m_next(messageCount)
    {
        qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
        closeStore();
        channel = store()->addChannel(sampleChannel(1));
        otherChannel = store()->addChannel(sampleChannel(2));
        for (int first = 0; first < messageCount; first += 1000) {
            const QList<FeedMessage> messages = sampleMessages(first, 1000);
            require(store()->addMessages(messages, channel));
            collectGarbage();
            m_sqlite.addMessages(messages, channel);
        }
    }

    FeedTrackerSparql *store() { return FeedTrackerSparql::instance(); }
    void closeStore()
    {
        FeedTrackerSparql::releaseInstance();
        collectGarbage();
    }
    SqliteArchive &sqlite() { return m_sqlite; }

    /// Returns messages that neither archive has, different ones on each call.
    QList<FeedMessage> newMessages()
    {
        m_next += batch;
        return sampleMessages(m_next - batch, batch);
    }

    static void require(bool done)
    {
        if (!done)
            qFatal("The store failed");
    }

    QTemporaryDir folder;
    QString channel;
    QString otherChannel;

private:
    SqliteArchive m_sqlite;
    int m_next;
};

/// Returns archives with \a messageCount messages. Only one pair exists at a time, because the benchmarks run
/// in the order of their sizes.
Archives &archivesOf(int messageCount)
{
    static std::unique_ptr<Archives> archives;
    static int count = 0;
    if (!archives || count != messageCount) {
        archives.reset();
        archives = std::make_unique<Archives>(messageCount);
        count = messageCount;
    }
    return *archives;
}

/// Measures \a store and \a sqlite. The counters are per call.
void compare(benchmark::State &state, const std::function<void()> &store, const std::function<void()> &sqlite)
{
    double cpu = 0;
    double sqliteCpu = 0;
    double peak = 0;
    for ([[maybe_unused]] auto _ : state) {
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
            messages = archives.newMessages();
            Archives::require(archives.store()->addMessages(messages, archives.channel));
        },
        [&] { archives.sqlite().addMessages(messages, archives.channel); });
}

void addKnownMessages(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    const QList<FeedMessage> messages = sampleMessages(int(state.range(0)) / 2, batch);
    compare(
        state, [&] { Archives::require(archives.store()->addMessages(messages, archives.otherChannel)); },
        [&] { archives.sqlite().addMessages(messages, archives.otherChannel); });
}

void messagesForChannel(benchmark::State &state)
{
    Archives &archives = archivesOf(int(state.range(0)));
    compare(
        state, [&] { benchmark::DoNotOptimize(archives.store()->messagesForChannel(archives.channel)); },
        [&] { benchmark::DoNotOptimize(archives.sqlite().messagesForChannel(archives.channel)); });
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
    for (const int size : {1000, 50000, 100000}) {
        add("addMessages/new", addNewMessages, samplesPerRun)->Arg(size);
        add("addMessages/known", addKnownMessages, samplesPerRun)->Arg(size);
        add("messagesForChannel", messagesForChannel, 3)->Arg(size);
        add("openStore", openStore, 5)->Arg(size);
    }
    add("createStore", createStore, 5);
    benchmark::RunSpecifiedBenchmarks();
    FeedTrackerSparql::releaseInstance();
    return 0;
}
