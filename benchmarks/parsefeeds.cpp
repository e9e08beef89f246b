// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: parsefeeds [ARGUMENT OF GOOGLE BENCHMARK...] FILE...
// Reads feeds from their bytes to their messages, without the store. If KDE Syndication is installed, reads
// them with it too, as the plug-in did before it had a reader of its own.
#include "measure.h"

#include <feedparser.h>

#include <QFile>

#include <benchmark/benchmark.h>

#ifdef TIDEL_HAVE_SYNDICATION
#include <Syndication/DocumentSource>
#include <Syndication/Feed>
#include <Syndication/Item>
#include <Syndication/ParserCollection>
#endif

namespace {

QByteArray contentOf(const char *path)
{
    QFile file(QFile::decodeName(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("could not read %s", path);
    return file.readAll();
}

size_t readWithTidel(const char *path)
{
    const QUrl address(QStringLiteral("https://example.org/feed"));
    const auto feed = Tidel::ParsedFeed::parse({contentOf(path), address, {}, {}, {}}, address);
    if (!feed)
        qFatal("%s: %s", path, qPrintable(feed.error().reason));
    benchmark::DoNotOptimize(feed->channel());
    const std::vector<Tidel::ClaimedItem> items = feed->claimedItems();
    for (const Tidel::ClaimedItem &item : items)
        benchmark::DoNotOptimize(feed->message(item));
    return items.size();
}

#ifdef TIDEL_HAVE_SYNDICATION
size_t readWithSyndication(const char *path)
{
    const Syndication::DocumentSource source(contentOf(path), QString());
    const Syndication::FeedPtr feed = Syndication::parserCollection()->parse(source);
    const QList<Syndication::ItemPtr> items = feed->items();
    for (const Syndication::ItemPtr &item : items) {
        for (const QString &text :
             {item->title(), item->link(), item->content(), item->description(), item->id()})
            benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(item->datePublished());
    }
    return size_t(items.size());
}
#endif

using Reader = size_t (*)(const char *path);

void readAll(benchmark::State &state, Reader read, const std::vector<const char *> &paths)
{
    size_t items = 0;
    double peak = 0;
    for ([[maybe_unused]] auto _ : state) {
        items = 0;
        const Cost cost = measure([&] {
            for (const char *path : paths)
                items += read(path);
        });
        state.SetIterationTime(cost.cpuSeconds);
        peak = std::max(peak, cost.peakMegabytes);
    }
    state.counters["items"] = double(items);
    state.counters["peak_MB"] = peak;
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    const std::vector<const char *> paths(argv + 1, argv + argc);
    const auto add = [&](const char *name, Reader reader) {
        benchmark::RegisterBenchmark(name, readAll, reader, paths)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(10);
    };
    add("read", readWithTidel);
#ifdef TIDEL_HAVE_SYNDICATION
    add("read/KDE Syndication", readWithSyndication);
#endif
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
