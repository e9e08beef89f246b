// SPDX-License-Identifier: LGPL-2.1-or-later
#include "refresher.h"

namespace Tidel {

namespace {

constexpr int pauseOfRefreshes = 5 * 60 * 1000; // In milliseconds. The schedule decides what is due.

RefreshOutcome outcomeOf(const QList<ArchiveDownload> &downloads)
{
    RefreshOutcome outcome;
    for (const ArchiveDownload &download : downloads) {
        if (download.subject.isEmpty()) {
            outcome.problem = download.result.reason();
        } else if (!download.result.isOk()) {
            ++outcome.failedChannels;
        } else if (const int count = int(download.result.newMessages().size())) {
            outcome.newMessages += count;
            outcome.newsChannels.append(download.subject);
            const QList<FeedMessage> headlines = download.result.headlines();
            if (!headlines.isEmpty())
                outcome.headlines.append(headlines.constFirst().title());
        }
    }
    return outcome;
}

} // namespace

QString RefreshOutcome::toString() const
{
    if (!problem.isEmpty())
        return Refresher::tr("Nothing could be refreshed: %1").arg(problem);
    QString text = newMessages == 0 ? Refresher::tr("No new messages")
                                    : Refresher::tr("%n new message(s)", nullptr, newMessages)
            + Refresher::tr(" in %n channel(s)", nullptr, int(newsChannels.size()));
    if (failedChannels > 0)
        text += Refresher::tr("; %n channel(s) could not be refreshed", nullptr, failedChannels);
    return text;
}

Refresher::Refresher(Archive *archive, QObject *parent) : QObject(parent), m_archive(archive)
{
    m_timer.setInterval(pauseOfRefreshes);
    connect(&m_timer, &QTimer::timeout, this, &Refresher::refreshDue);
    connect(&m_watcher, &QFutureWatcherBase::progressValueChanged, this,
            [this](int ended) { Q_EMIT advanced(ended, m_watcher.progressMaximum()); });
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &Refresher::finish);
}

void Refresher::start()
{
    refreshDue();
    m_timer.start();
}

void Refresher::refreshDue()
{
    if (!isRunning())
        refresh({}, Archive::DueOnly);
}

void Refresher::refresh(const QStringList &uris, Archive::RefreshMode mode)
{
    if (isRunning()) {
        m_next = [this, uris, mode] { refresh(uris, mode); };
        return;
    }
    m_watcher.setFuture(m_archive->refresh(uris, mode));
    Q_EMIT started();
}

void Refresher::stop()
{
    m_next = nullptr;
    m_watcher.cancel();
}

void Refresher::finish()
{
    Q_EMIT finished(outcomeOf(m_watcher.future().results()));
    if (const auto next = std::exchange(m_next, nullptr))
        next();
}

} // namespace Tidel
