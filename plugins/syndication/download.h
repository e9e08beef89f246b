// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOAD_H
#define TIDEL_DOWNLOAD_H

#include "outcome.h"
#include "transfer.h"

#include <QObject>

#include <TidelReader/store.h>

#include <memory>

namespace Tidel {

class Connections;
class ParserThread;

/// What a download needs.
struct DownloadTools
{
    Store store; ///< Where the results are stored.
    std::shared_ptr<Connections> connections; ///< The connections to web servers.
    std::shared_ptr<ParserThread> parser; ///< The thread that parses feeds.
    TransferLimits limits; ///< When the download fails.
};

/// Downloads one feed or file and stores the result.
class Download : public QObject
{
    Q_OBJECT

public:
    /// Creates a download that uses \a tools.
    explicit Download(const DownloadTools &tools);
    /// Destroys the download. A running transfer ends.
    ~Download() override;

    /// Starts the download. finished() may be emitted before it returns.
    virtual void start() = 0;
    /// Cancels the download. Nothing more is stored.
    void cancel();

    /// How the download ended.
    const Outcome &outcome() const { return m_outcome; }

Q_SIGNALS:
    /// Emitted once, when the download has ended.
    void finished();

protected:
    /// Where the results are stored.
    const Store &store() const { return m_tools.store; }
    /// The thread that parses feeds.
    ParserThread &parser() const { return *m_tools.parser; }
    /// The maximum size of the document or file, in bytes.
    qint64 maximumSize() const { return m_tools.limits.bytes; }

    /// How the server of the last transfer answered.
    FeedAnswer answer() const { return m_transfer ? m_transfer->answer() : FeedAnswer(); }
    /// Starts a transfer of the answer to \a request into \a target. Calls transferred() or failed(), which
    /// may start another one.
    Transfer *transfer(const TransferRequest &request, QIODevice &target);
    /// Called when the transfer has succeeded.
    virtual void transferred(const Transfer &transfer) = 0;
    /// Called when the transfer has failed. Ends the download with \a outcome.
    virtual void failed(const Outcome &outcome) { finish(outcome); }

    /// Returns true after the end; otherwise returns false.
    bool isOver() const { return m_isOver; }
    /// Ends the download with \a outcome. Does nothing if it has already ended.
    void finish(const Outcome &outcome = {});

private:
    const DownloadTools m_tools;
    std::unique_ptr<Transfer> m_transfer;
    Outcome m_outcome;
    bool m_isOver = false;
};

} // namespace Tidel

#endif
