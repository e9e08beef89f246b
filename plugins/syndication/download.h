// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOAD_H
#define TIDEL_DOWNLOAD_H

#include "outcome.h"
#include "transfer.h"

#include <QObject>

#include <TidelReader/store.h>

#include <functional>
#include <memory>

QT_FORWARD_DECLARE_CLASS(QNetworkAccessManager)

namespace Tidel {

/// What a download works with.
struct DownloadTools
{
    Store store;
    std::function<QNetworkAccessManager &()> network; ///< makes the manager when it is first needed
    TransferLimits limits;
};

/// The download of one feed or file, from its address into the store.
class Download : public QObject
{
    Q_OBJECT

public:
    explicit Download(const DownloadTools &tools);
    ~Download() override;

    /// Starts the download. finished() may be emitted before it returns.
    virtual void start() = 0;
    /// Cancels the download. What is not stored yet will not be stored.
    void cancel();

    /// How the download ended.
    const Outcome &outcome() const { return m_outcome; }

Q_SIGNALS:
    /// The download has ended. Emitted once.
    void finished();

protected:
    const Store &store() const { return m_tools.store; }
    qint64 maximumSize() const { return m_tools.limits.bytes; }

    /// Starts to write the answer to \a request to \a target. Calls transferred() or finish() at its end.
    Transfer *transfer(const QNetworkRequest &request, QIODevice &target);
    /// Called when the transfer has succeeded.
    virtual void transferred(const Transfer &transfer) = 0;

    /// Ends the download.
    void finish(const Outcome &outcome = {});

private:
    const DownloadTools m_tools;
    std::unique_ptr<Transfer> m_transfer;
    Outcome m_outcome;
    bool m_isOver = false;
};

} // namespace Tidel

#endif
