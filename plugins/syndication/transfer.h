// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TRANSFER_H
#define TIDEL_TRANSFER_H

#include "exchange.h"
#include "mimetype.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <TidelReader/feedanswer.h>

QT_FORWARD_DECLARE_CLASS(QIODevice)

namespace Tidel {

/// The limits of a transfer. It fails when one of them is exceeded.
struct TransferLimits
{
    qint64 bytes; ///< The size after decompression.
    int silence; ///< The time without data, in milliseconds.
    int duration; ///< The total time, in milliseconds.
};

/// Returns true if \a url is a local file or an http or https address with a host; otherwise returns false.
bool canTransfer(const QUrl &url);

/// The reason of a failure because of the limit of \a limit bytes.
QString tooLarge(qint64 limit);

/// Transfers one document or file from a server or a local file into a device. Follows redirects, except
/// unsafe ones. What belongs to one server, user name, password and validators, is not sent to another one.
class Transfer : public QObject
{
    Q_OBJECT

public:
    /// Starts to write the answer to \a request to \a target, which must outlive this object.
    Transfer(const std::shared_ptr<Connections> &connections, const TransferRequest &request,
             const TransferLimits &limits, QIODevice &target);
    /// Destroys the transfer. If it is running, it ends without a signal.
    ~Transfer() override;

    /// Ends the transfer; finished() is emitted.
    void cancel();
    /// What can be resumed if the transfer ends early; valid when began() is emitted.
    ResumePoint origin() const;

    /// \name Valid after finished()
    /// @{

    /// How the transfer ended.
    const Outcome &outcome() const { return m_outcome; }
    /// Returns true if the document has not changed since the validators of the request; otherwise returns
    /// false.
    bool isUnchanged() const { return m_isUnchanged; }
    /// The address after all redirects.
    QUrl address() const { return m_request.address; }
    /// The validators of the document. Empty if they are those of another server than the request went to.
    Validators validators() const;
    /// The media type as "type/subtype"; may be empty.
    QString mimeType() const { return cleanMimeType(contentType()); }
    /// The character set that the server named; may be empty.
    QByteArray charset() const { return charsetOf(contentType()); }
    /// How the server answered.
    FeedAnswer answer() const;
    /// The `Link:` header; may be empty.
    QByteArray linkHeader() const { return m_head.header("link"); }
    /// @}

Q_SIGNALS:
    /// Emitted before the first byte is written. It follows \a offset bytes that the target has: 0, or those
    /// of the part in the request. A receiver must not end the transfer.
    void began(qint64 offset);
    /// Emitted when bytes have arrived. \a bytesTotal is -1 if the size is unknown.
    void progressed(qint64 bytesReceived, qint64 bytesTotal);
    /// Emitted once, after the constructor has returned.
    void finished();

private:
    /// Asks for the address of the request.
    void startSource();
    /// Begins to count the time, unless a request before this one has.
    void startTimers();
    /// Looks what the source is going to send. Returns false if the transfer has failed.
    bool beginBody();
    /// Writes bytes of the source to the target. Returns false if the transfer has failed.
    bool receive(const char *bytes, qint64 size);
    /// Ends the transfer, or follows a redirect.
    void endSource();
    /// Ends the transfer after the last byte of a document.
    void endBody();
    /// Asks for the document at \a target instead. \a isMoved says that it will stay there.
    void follow(const QUrl &target, bool isMoved);
    /// Ends the transfer with \a outcome. Does nothing if it has already ended.
    void end(const Outcome &outcome);

    QString contentType() const { return QString::fromLatin1(m_head.header("content-type")); }

    const std::shared_ptr<Connections> m_connections;
    const QUrl m_firstAddress;
    TransferRequest m_request;
    const TransferLimits m_limits;
    QIODevice &m_target;
    std::unique_ptr<Source> m_source;
    const Exchange *m_exchange = nullptr; // The source, if it is a web server.
    AnswerHead m_head; // Of the answer that ended the transfer.
    QTimer m_silence;
    QTimer m_duration;
    int m_redirects = 0;
    bool m_isMoved = true; // All redirects were permanent.
    QUrl m_movedTo; // Where the document has moved permanently; empty if it has not.
    qint64 m_wait = 0; // How long the server wants to be left alone, in seconds.
    ResumePoint m_part; // What the server was told that is there.
    qint64 m_size = 0;
    qint64 m_total = -1; // -1 if it is unknown.
    bool m_hasBegun = false;
    bool m_isRest = false; // The answer follows the part.
    Outcome m_failure; // Why bytes were not taken.
    bool m_isProgressDue = false;
    bool m_isUnchanged = false;
    bool m_isOver = false;
    Outcome m_outcome;
};

} // namespace Tidel

#endif
