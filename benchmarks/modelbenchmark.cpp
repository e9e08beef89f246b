// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: modelbenchmark fill FOLDER CHANNELS
//        modelbenchmark show FOLDER
// Makes an archive of 100,000 messages in FOLDER, or measures how long a view waits for lists of it.
#include "measure.h"
#include "samples.h"

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>
#include <TidelReader/messagemodel.h>

#include <feedtrackersparql.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <cstdio>
#include <cstdlib>

using namespace Tidel;

namespace {

constexpr int messages = 100000;
constexpr int visibleRows = 30;

void require(bool isTrue)
{
    if (isTrue)
        return;
    std::fprintf(stderr, "modelbenchmark: the archive could not be filled or read\n");
    std::exit(1);
}

void fill(int channels)
{
    constexpr int group = 100;
    FeedTrackerSparql *store = FeedTrackerSparql::instance();
    for (int number = 0; number < channels; ++number) {
        const QString uri = store->addChannel(sampleChannel(number));
        const int ofChannel = messages / channels;
        for (int done = 0; done < ofChannel; done += group) {
            require(store->addMessages(sampleMessages(number * ofChannel + done, group), uri));
            // The results of the statements.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    FeedTrackerSparql::releaseInstance();
}

void print(const char *what, const QElapsedTimer &timer)
{
    std::printf("  %-32s %7.1f ms\n", what, double(timer.nsecsElapsed()) / 1e6);
}

void print(const char *what, const Cost &cost)
{
    std::printf("  %-32s %7.1f MB at most, %.2f s of CPU\n", what, cost.peakMegabytes, cost.cpuSeconds);
}

/// Asks for what a view shows of the rows from \a first on.
void look(const MessageModel &model, int first)
{
    for (int row = first; row < qMin(first + visibleRows, model.rowCount()); ++row) {
        for (const int role : {int(Qt::DisplayRole), int(MessageModel::IsReadRole)})
            require(model.data(model.index(row), role).isValid());
    }
}

/// Calls \a step as a view would that has moved.
template <typename Step> void print(const char *what, const Step &step)
{
    QElapsedTimer timer;
    timer.start();
    step();
    print(what, timer);
}

void wait(const MessageModel &model)
{
    while (model.isLoading())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void show(Archive *archive, const char *title, const MessageQuery &query)
{
    std::printf("%s\n", title);
    MessageModel model(archive);
    QElapsedTimer timer;
    bool hasRows = false;
    QObject::connect(&model, &MessageModel::rowsInserted, &model, [&] {
        if (!hasRows) {
            look(model, 0);
            print("first rows", timer);
        }
        hasRows = true;
    });
    const Cost opening = measure([&] {
        timer.start();
        model.setQuery(query);
        while (!hasRows && model.isLoading())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
    const Cost completing = measure([&] {
        wait(model);
        print("all rows", timer);
    });
    require(hasRows && !model.error());
    const Cost scrolling = measure([&] {
        print("rows in the middle", [&] { look(model, model.rowCount() / 2); });
        print("last rows", [&] { look(model, model.rowCount() - visibleRows); });
        print("one row after another", [&] {
            for (int row = 0; row < model.rowCount(); row += visibleRows)
                look(model, row);
        });
    });
    print("to read the first rows", opening);
    print("to read all rows", completing);
    print("to see all of them", scrolling);
}

void showAll()
{
    Archive archive;
    const Result<Store> store = archive.store();
    require(store.has_value());
    const Result<QList<FeedChannel>> channels = Channels(*store).all();
    require(channels && !channels->isEmpty());
    // Changes begin after the archive has looked at the store.
    archive.change([](const Store &) { return Result<void>(); }).waitForFinished();
    MessageQuery query;
    query.channelUris.append(channels->constFirst().uri());
    show(&archive, "One channel", query);
    show(&archive, "All channels", {});
    MessageQuery unread;
    unread.onlyUnread = true;
    show(&archive, "Unread messages", unread);
    MessageQuery oldest;
    oldest.order = Qt::AscendingOrder;
    show(&archive, "Oldest first", oldest);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    require(arguments.size() >= 3);
    qputenv("XDG_DATA_HOME", arguments.at(2).toLocal8Bit());
    if (arguments.at(1) == QLatin1String("fill"))
        fill(arguments.value(3).toInt());
    else
        showAll();
    return 0;
}
