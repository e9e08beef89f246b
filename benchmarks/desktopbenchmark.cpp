// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: desktopbenchmark
// Measures the window of tidel-desktop on the archive of the user: until channels and messages are painted,
// until the next message is, and the memory. The settings are its own. The messages that it shows become
// read.
#include <articlepane.h>
#include <channelview.h>
#include <mainwindow.h>
#include <messageview.h>

#include <TidelReader/archive.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace Tidel;

namespace {

constexpr int steps = 200;

double milliseconds(const QElapsedTimer &timer) { return double(timer.nsecsElapsed()) / 1e6; }

void runUntil(const std::function<bool()> &isTrue)
{
    while (!isTrue())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// What is shown of \a view is painted now and not later.
void paint(QWidget *view) { view->grab(); }

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024;
    }
    return 0;
}

void measureSteps(MainWindow *window)
{
    auto *messages = window->findChild<MessageView *>();
    const auto *article = window->findChild<ArticlePane *>();
    std::vector<double> times;
    for (int row = 0; row < std::min(steps, messages->model()->rowCount()); ++row) {
        QElapsedTimer timer;
        timer.start();
        messages->setCurrentIndex(messages->model()->index(row, 2));
        runUntil([&] { return article->message().uri == messages->message(); });
        paint(window);
        times.push_back(milliseconds(timer));
    }
    std::sort(times.begin(), times.end());
    if (!times.empty())
        std::printf("next message: %.1f ms in the middle, %.1f ms at most\n", times[times.size() / 2],
                    times.back());
}

} // namespace

int main(int argc, char **argv)
{
    // The traces of the libraries.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QElapsedTimer timer;
    timer.start();
    QApplication application(argc, argv);
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QApplication::setOrganizationName(QStringLiteral("tidel-benchmark"));
    Archive archive;
    MainWindow window(&archive);
    window.show();
    std::printf("window: %.1f ms\n", milliseconds(timer));
    const auto *channels = window.findChild<ChannelView *>();
    runUntil([&] { return channels->model()->rowCount() > 3; });
    std::printf("channels: %.1f ms\n", milliseconds(timer));
    const auto *messages = window.findChild<MessageView *>();
    runUntil([&] { return messages->model()->rowCount() > 0; });
    paint(&window);
    std::printf("first usable window: %.1f ms\n", milliseconds(timer));
    runUntil([&] { return !messages->messages()->isLoading(); });
    std::printf("whole list of %d messages: %.1f ms\n", messages->model()->rowCount(), milliseconds(timer));
    measureSteps(&window);
    std::printf("memory: %.0f MB\n", residentMegabytes());
    return 0;
}
