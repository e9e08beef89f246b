// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_REFRESHER_H
#define TIDEL_DESKTOP_REFRESHER_H

#include <TidelReader/archive.h>

#include <QFutureWatcher>
#include <QTimer>

namespace Tidel {

/// How a refresh has ended.
struct RefreshOutcome
{
    QStringList headlines; ///< Titles of new messages, the newest of each channel.
    int newMessages = 0;
    QStringList newsChannels; ///< The URIs of the channels with new messages.
    int failedChannels = 0; ///< Channels that could not be refreshed.
    QString problem; ///< Why nothing could be refreshed; empty if it could.

    /// One line for the user.
    QString toString() const;
};

/// Refreshes channels in the background, when the user asks for it and from time to time.
class Refresher : public QObject
{
    Q_OBJECT

public:
    explicit Refresher(Archive *archive, QObject *parent = nullptr);

    /// Refreshes what is due now, and from now on every few minutes.
    void start();
    /// Refreshes the channels \a uris, or all if it is empty. If a refresh is under way, waits for its end.
    void refresh(const QStringList &uris, Archive::RefreshMode mode);
    /// Cancels what is under way.
    void stop();
    /// Returns true if a refresh is under way; otherwise returns false.
    bool isRunning() const { return m_watcher.isRunning(); }

Q_SIGNALS:
    void started();
    /// \a ended of \a all channels are done.
    void advanced(int ended, int all);
    void finished(const Tidel::RefreshOutcome &outcome);

private:
    void refreshDue();
    void finish();

    Archive *const m_archive;
    QFutureWatcher<ArchiveDownload> m_watcher;
    QTimer m_timer;
    std::function<void()> m_next; // What waits for the end of the refresh under way.
};

} // namespace Tidel

#endif
