// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: desktoppictures SOURCES FOLDER
// Draws the window on the sample feeds of SOURCES, light and dark, narrow and wide, into FOLDER.
#include <articlepane.h>
#include <channelview.h>
#include <installtranslations.h>
#include <mainwindow.h>
#include <messageview.h>
#include <pendingremovals.h>
#include <propertiesdialog.h>
#include <subscribedialog.h>

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>
#include <TidelReader/folders.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPalette>
#include <QSettings>
#include <QTemporaryDir>

using namespace Tidel;

namespace {

/// Runs the event loop until \a isTrue, for at most a minute.
void waitUntil(const std::function<bool()> &isTrue)
{
    QElapsedTimer timer;
    timer.start();
    while (!isTrue() && timer.elapsed() < 60000)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
}

void pause(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    waitUntil([&] { return timer.elapsed() > milliseconds; });
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x2b, 0x2d, 0x31));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2c));
    palette.setColor(QPalette::Text, QColor(0xe6, 0xe6, 0xe6));
    palette.setColor(QPalette::WindowText, QColor(0xe6, 0xe6, 0xe6));
    palette.setColor(QPalette::ButtonText, QColor(0xe6, 0xe6, 0xe6));
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9a, 0x9a));
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xff));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xc4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3d, 0x43));
    palette.setColor(QPalette::ToolTipText, QColor(0xe6, 0xe6, 0xe6));
    return palette;
}

void fill(Archive *archive, const QDir &feeds)
{
    QList<QUrl> addresses;
    const QFileInfoList files = feeds.entryInfoList(QDir::Files);
    for (const QFileInfo &file : files)
        addresses.append(QUrl::fromLocalFile(file.absoluteFilePath()));
    const auto subscribed = archive->subscribe(addresses);
    waitUntil([&] { return subscribed.isFinished(); });
    const auto arranged = archive->change([](const Store &store) {
        return Channels(store).all().and_then([&store](const QList<FeedChannel> &channels) {
            return Channels::find(channels, QStringLiteral("Riverside Courier"))
                .and_then([&store](const FeedChannel &channel) {
                    return Folders(store).move(channel.uri(), QStringLiteral("News"));
                });
        });
    });
    waitUntil([&] { return arranged.isFinished(); });
}

void draw(MainWindow *window, const QString &path)
{
    pause(300);
    window->grab().save(path);
}

void drawViews(Archive *archive, const QDir &folder, const QString &theme, int width)
{
    const auto path = [&](const char *view) {
        return folder.filePath(
            QStringLiteral("desktop-%1-%2-%3.png").arg(QLatin1String(view), theme).arg(width));
    };
    MainWindow window(archive);
    window.resize(width, width * 10 / 16);
    window.show();
    auto *messages = window.findChild<MessageView *>();
    waitUntil([&] { return messages->model()->rowCount() > 10; });
    draw(&window, path("start"));
    messages->setCurrentIndex(messages->model()->index(1, 2));
    waitUntil([&] { return !window.findChild<ArticlePane *>()->message().uri.isEmpty(); });
    pause(700);
    draw(&window, path("message"));
    window.findChild<QLineEdit *>()->setText(QStringLiteral("soup"));
    pause(1000);
    draw(&window, path("search"));
    window.findChild<QLineEdit *>()->actions().constFirst()->trigger();
    waitUntil([&] { return window.findChild<ChannelView *>()->kind() == ChannelModel::SearchKind; });
    pause(1000);
    messages->setCurrentIndex(messages->model()->index(0, 2));
    window.findChild<PendingRemovals *>()->removeMessages(messages->selected());
    draw(&window, path("deleted"));
    SubscribeDialog subscribe(archive, {QStringLiteral("News")}, {}, &window);
    subscribe.show();
    pause(200);
    subscribe.grab().save(path("subscribe"));
    ChannelProperties sample;
    sample.channel.setTitle(QStringLiteral("Kitchen Notes"));
    sample.channel.setLink(QStringLiteral("https://kitchen.example.net/feed.atom"));
    PropertiesDialog properties(sample, &window);
    properties.show();
    pause(200);
    properties.grab().save(path("properties"));
}

} // namespace

int main(int argc, char **argv)
{
    // The traces of the libraries.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(data.path()));
    QApplication application(argc, argv);
    installTranslations(application, QLocale(QLocale::English)); // for the plurals
    if (argc != 3)
        return 2;
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setOrganizationName(QStringLiteral("tidel-pictures"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, data.path());
    Archive archive;
    fill(&archive, QDir(QFile::decodeName(argv[1]) + QStringLiteral("/tools/tidel/demo")));
    const QPalette light = QApplication::palette();
    for (const int width : {800, 1920}) {
        for (const bool isDark : {false, true}) {
            QApplication::setPalette(isDark ? darkPalette() : light);
            drawViews(&archive, QDir(QFile::decodeName(argv[2])),
                      isDark ? QStringLiteral("dark") : QStringLiteral("light"), width);
        }
    }
    return 0;
}
