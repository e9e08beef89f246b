// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <QDateTime>
#include <QEventLoop>
#include <QFile>
#include <QPluginLoader>
#include <QTest>
#include <QTimer>

bool PluginTest::prepare()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<FeedServer>(m_folder->path());
    m_plugin = qobject_cast<FeedPluginInterface *>(QPluginLoader(TIDEL_SYNDICATION_PLUGIN).instance());
    return m_plugin && m_folder->isValid() && m_server->isRunning();
}

bool PluginTest::begin()
{
    m_log = std::make_unique<MessageLog>();
    m_store = std::make_unique<TestStore>();
    m_downloader = another();
    m_server->forgetRequests();
    return m_downloader != nullptr;
}

void PluginTest::end()
{
    m_downloader.reset();
    m_store.reset();
    m_log.reset();
}

std::unique_ptr<FeedPluginInterface> PluginTest::another() const
{
    return std::unique_ptr<FeedPluginInterface>(m_plugin->createDownloader(nullptr));
}

Ending PluginTest::ending(FeedPluginInterface &downloader) const
{
    Ending ending;
    QEventLoop loop;
    const auto note = [&](const char *name, int error, const QVariantMap &map) {
        // A second signal is appended, so that the comparison with the expected name fails.
        ending = {ending.signal + name, error, downloader.errorString(), map};
        loop.quit();
    };
    QObject context;
    connect(&downloader, &FeedPluginInterface::downloadFeedsFinished, &context,
            [&] { note("downloadFeedsFinished", 0, {}); });
    connect(&downloader, &FeedPluginInterface::downloadFeedsFailed, &context,
            [&](int error) { note("downloadFeedsFailed", error, {}); });
    connect(&downloader, &FeedPluginInterface::downloadEnclosureFinished, &context,
            [&](const QVariantMap &map) { note("downloadEnclosureFinished", 0, map); });
    connect(&downloader, &FeedPluginInterface::downloadEnclosureFailed, &context,
            [&](int error) { note("downloadEnclosureFailed", error, {}); });
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    loop.exec();
    QTest::qWait(0);
    return ending;
}

Ending PluginTest::subscribe(const QString &address)
{
    downloader().subscribe(QUrl(address));
    return ending(downloader());
}

Ending PluginTest::refresh(const QStringList &channelUris)
{
    downloader().downloadFeeds(channelUris);
    return ending(downloader());
}

Ending PluginTest::refresh() { return refresh({channelUri()}); }

QString PluginTest::channelUri(const QString &link) const
{
    const QString filter = link.isEmpty() ? QString() : QString(" ; nie:links <%1>").arg(link);
    return m_store->texts("SELECT ?c { ?c a mfo:FeedChannel" + filter + " }").value(0);
}

QStringList PluginTest::messageLinks() const
{
    return m_store->texts("SELECT ?l { ?m a mfo:FeedMessage ; nie:links ?l } ORDER BY ?l");
}

QString PluginTest::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return QString();
    file.flush();
    file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
    return file.fileName();
}

QByteArray PluginTest::feed(const QByteArray &items, const QByteArray &title)
{
    return "<rss version='2.0'><channel><title>" + title + "</title>" + items + "</channel></rss>";
}
