// SPDX-License-Identifier: LGPL-2.1-or-later
#include "syndicationplugin.h"

#include "connections.h"
#include "enclosuredownload.h"
#include "feeddownload.h"
#include "parserthread.h"

#include <QUrl>

#include <TidelReader/link.h>
#include <TidelReader/usertext.h>

#include <deque>
#include <limits>

namespace Tidel {

namespace {

// The maximum duration of a download, as a multiple of the timeout.
constexpr int feedPatience = 10;
constexpr int enclosurePatience = 1000;

/// What all downloaders of the thread share. It goes with the last one.
template <typename T> std::shared_ptr<T> sharedInThread()
{
    thread_local std::weak_ptr<T> shared;
    std::shared_ptr<T> object = shared.lock();
    if (!object)
        shared = object = std::make_shared<T>();
    return object;
}

QVariantList listOf(const QVector<FeedLink> &feeds)
{
    QVariantList list;
    for (const FeedLink &feed : feeds)
        list.append(QVariantMap{{QStringLiteral("title"), feed.title},
                                {QStringLiteral("address"), Link::encoded(feed.address)}});
    return list;
}

QVariantList listOf(const QList<FeedMessage> &headlines)
{
    QVariantList list;
    for (const FeedMessage &headline : headlines)
        list.append(QVariantMap{{QStringLiteral("link"), headline.link()},
                                {QStringLiteral("title"), headline.title()},
                                {QStringLiteral("date"), headline.publishedDate()}});
    return list;
}

} // namespace

struct SyndicationPlugin::Task
{
    bool isEnclosure;
    std::deque<std::function<std::unique_ptr<Download>()>> waiting;
    std::unique_ptr<Download> current;
    Outcome outcome; ///< The first failure.
    QVariantMap results;
    QStringList newMessages;
    QVariantList headlines;
    QStringList changedMessages;
    QStringList newNotes;
    QVariantList foundFeeds;
};

SyndicationPlugin::SyndicationPlugin(QObject *parent)
    : FeedPluginInterface(parent), m_connections(sharedInThread<Connections>()),
      m_parser(sharedInThread<ParserThread>())
{
}

SyndicationPlugin::~SyndicationPlugin() = default;

FeedPluginInterface *SyndicationPlugin::createDownloader(QObject *parent) const
{
    auto *downloader = new SyndicationPlugin(parent);
    downloader->m_timeout = m_timeout;
    downloader->m_maximumFeedSize = m_maximumFeedSize;
    downloader->m_maximumEnclosureSize = m_maximumEnclosureSize;
    return downloader;
}

void SyndicationPlugin::subscribe(const QUrl &address)
{
    begin(false, {[this, address] {
              return FeedDownload::ofNewChannel(tools(m_maximumFeedSize, feedPatience), address);
          }});
}

void SyndicationPlugin::downloadFeeds(const QStringList &channelUris)
{
    Makers makers;
    for (const QString &uri : channelUris)
        makers.push_back(
            [this, uri] { return FeedDownload::ofChannel(tools(m_maximumFeedSize, feedPatience), uri); });
    begin(false, makers);
}

void SyndicationPlugin::downloadEnclosure(const QString &enclosureUri, const QString &folder)
{
    begin(true, {[this, enclosureUri, folder] {
              auto download = std::make_unique<EnclosureDownload>(
                  tools(m_maximumEnclosureSize, enclosurePatience), enclosureUri, folder);
              connect(download.get(), &EnclosureDownload::progressed, this,
                      &FeedPluginInterface::enclosureDownloadProgress);
              return download;
          }});
}

void SyndicationPlugin::cancel()
{
    if (!m_task)
        return;
    if (!m_task->waiting.empty())
        m_task->outcome = canceledOutcome();
    m_task->waiting.clear();
    if (m_task->current)
        m_task->current->cancel();
}

QString SyndicationPlugin::errorString() const { return m_errorString; }

void SyndicationPlugin::begin(bool isEnclosure, const Makers &makers)
{
    if (m_task) {
        QMetaObject::invokeMethod(
            this,
            [this, isEnclosure] {
                report(isEnclosure, {FeedDownloadBusy, QStringLiteral("another download is running")});
            },
            Qt::QueuedConnection);
        return;
    }
    m_task = std::make_unique<Task>();
    m_task->isEnclosure = isEnclosure;
    m_task->waiting.assign(makers.begin(), makers.end());
    QMetaObject::invokeMethod(this, &SyndicationPlugin::startNext, Qt::QueuedConnection);
}

void SyndicationPlugin::startNext()
{
    if (!m_store)
        openStore();
    if (m_task->waiting.empty()) {
        end();
        return;
    }
    m_task->current = m_task->waiting.front()();
    m_task->waiting.pop_front();
    connect(m_task->current.get(), &Download::finished, this, &SyndicationPlugin::endDownload,
            Qt::QueuedConnection);
    m_task->current->start();
}

void SyndicationPlugin::openStore()
{
    const Result<Store> store = Store::open();
    if (store) {
        m_store = *store;
        return;
    }
    m_task->waiting.clear();
    m_task->outcome = {FeedDownloadStoreFailed, store.error().text()};
}

void SyndicationPlugin::endDownload()
{
    const std::unique_ptr<Download> download = std::move(m_task->current);
    const Outcome &outcome = download->outcome();
    if (m_task->outcome.isFine() || outcome.error == FeedDownloadCanceled)
        m_task->outcome = outcome;
    if (const auto *enclosure = qobject_cast<EnclosureDownload *>(download.get()))
        m_task->results = enclosure->results();
    if (const auto *feed = qobject_cast<FeedDownload *>(download.get())) {
        m_task->newMessages += feed->newMessages();
        m_task->headlines += listOf(feed->headlines());
        m_task->changedMessages += feed->changedMessages();
        m_task->newNotes += feed->newNotes();
        m_task->foundFeeds += listOf(feed->foundFeeds());
    }
    startNext();
}

void SyndicationPlugin::end()
{
    const std::unique_ptr<Task> task = std::move(m_task);
    m_newMessages = task->newMessages;
    m_headlines = task->headlines;
    m_changedMessages = task->changedMessages;
    m_newNotes = task->newNotes;
    m_foundFeeds = task->foundFeeds;
    report(task->isEnclosure, task->outcome, task->results);
}

void SyndicationPlugin::report(bool isEnclosure, const Outcome &outcome, const QVariantMap &results)
{
    m_errorString = shownReason(outcome.reason);
    if (isEnclosure && outcome.isFine())
        Q_EMIT downloadEnclosureFinished(results);
    else if (isEnclosure)
        Q_EMIT downloadEnclosureFailed(outcome.error);
    else if (outcome.isFine())
        Q_EMIT downloadFeedsFinished();
    else
        Q_EMIT downloadFeedsFailed(outcome.error);
}

DownloadTools SyndicationPlugin::tools(qint64 maximumSize, int patience)
{
    const qint64 duration = qMin(qint64(m_timeout) * patience, qint64(std::numeric_limits<int>::max()));
    return {*m_store, m_connections, m_parser, {maximumSize, m_timeout, int(duration)}};
}

} // namespace Tidel
