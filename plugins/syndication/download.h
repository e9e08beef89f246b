// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOAD_H
#define TIDEL_DOWNLOAD_H

#include "outcome.h"
#include "transfer.h"

#include <QObject>

#include <functional>
#include <memory>

QT_FORWARD_DECLARE_CLASS(QNetworkAccessManager)

namespace Tidel {

class FeedStore;

/// What a download works with; all of it outlives the download.
struct DownloadTools
{
    FeedStore &store;
    std::function<QNetworkAccessManager &()> network; ///< made when it is first needed
    TransferLimits limits;
};

/// A download of one thing, from its address into the store.
class Download : public QObject
{
    Q_OBJECT

public:
    explicit Download(const DownloadTools &tools);
    ~Download() override;

    /// Begins; finished() may be emitted before it returns.
    virtual void start() = 0;
    /// Breaks it off. Nothing of what it has not stored yet will be.
    void cancel();

    /// How it ended.
    const Outcome &outcome() const { return m_outcome; }

Q_SIGNALS:
    /// Once.
    void finished();

protected:
    FeedStore &store() const { return m_tools.store; }
    qint64 maximumSize() const { return m_tools.limits.bytes; }

    /// Starts to write what \a request is answered with to \a target; transferred() tells of its end.
    Transfer *transfer(const QNetworkRequest &request, QIODevice &target);
    /// What follows a transfer that ended well.
    virtual void transferred(const Transfer &transfer) = 0;

    void finish(const Outcome &outcome = {});

private:
    const DownloadTools m_tools;
    std::unique_ptr<Transfer> m_transfer;
    Outcome m_outcome;
    bool m_isOver = false;
};

} // namespace Tidel

#endif
