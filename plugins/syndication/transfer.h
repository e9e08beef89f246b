// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TRANSFER_H
#define TIDEL_TRANSFER_H

#include "mimetype.h"
#include "outcome.h"
#include "validators.h"

#include <QNetworkRequest>
#include <QObject>
#include <QTimer>
#include <QUrl>

QT_FORWARD_DECLARE_CLASS(QIODevice)
QT_FORWARD_DECLARE_CLASS(QNetworkAccessManager)
QT_FORWARD_DECLARE_CLASS(QNetworkReply)

namespace Tidel {

/// The limits of a transfer. It fails when one of them is exceeded.
struct TransferLimits
{
    qint64 bytes; ///< The size after decompression.
    int silence; ///< The time without data, in milliseconds.
    int duration; ///< The total time, in milliseconds.
};

/// Returns a request for \a url that follows redirects, except unsafe ones, and stores no cookies.
QNetworkRequest safeRequest(const QUrl &url);

/// Returns true if \a url is a local file or an http or https address with a host; otherwise returns false.
bool canTransfer(const QUrl &url);

/// The reason of a failure because of the limit of \a limit bytes.
QString tooLarge(qint64 limit);

/// Transfers one document or file from a server or a local file into a device.
class Transfer : public QObject
{
    Q_OBJECT

public:
    /// Starts to write the answer to \a request to \a target, which must outlive this object.
    Transfer(QNetworkAccessManager &network, const QNetworkRequest &request, const TransferLimits &limits,
             QIODevice &target);
    /// Destroys the transfer. If it is running, it ends without a signal.
    ~Transfer() override;

    /// Ends the transfer; finished() is emitted.
    void cancel();

    /// \name Valid after finished()
    /// @{

    /// How the transfer ended.
    const Outcome &outcome() const { return m_outcome; }
    /// Returns true if the document has not changed since the validators of the request; otherwise returns
    /// false.
    bool isUnchanged() const;
    /// The address after all redirects.
    QUrl address() const { return m_address; }
    /// The validators of the document.
    Validators validators() const { return m_validators; }
    /// The media type as "type/subtype"; may be empty.
    QString mimeType() const { return cleanMimeType(m_contentType); }
    /// The character set that the server named; may be empty.
    QByteArray charset() const { return charsetOf(m_contentType); }
    /// The `Link:` header; may be empty.
    QByteArray linkHeader() const { return m_linkHeader; }
    /// @}

Q_SIGNALS:
    /// Emitted when bytes have arrived. \a bytesTotal is -1 if the size is unknown.
    void progressed(qint64 bytesReceived, qint64 bytesTotal);
    /// Emitted once, after the constructor has returned.
    void finished();

private:
    /// Reads the announced size and checks it.
    void readHeaders();
    /// Writes the received bytes to the target.
    void readBytes();
    /// Reads the last bytes and ends the transfer.
    void finish();
    /// Ends the transfer with \a outcome. Does nothing if it has already ended.
    void end(const Outcome &outcome);
    /// The outcome of a finished reply.
    Outcome replyOutcome() const;

    QIODevice &m_target;
    const TransferLimits m_limits;
    QNetworkReply *const m_reply;
    QTimer m_poll;
    QTimer m_silence;
    QTimer m_duration;
    QString m_certificateProblem;
    bool m_isOver = false;
    Outcome m_outcome;
    qint64 m_size = 0;
    qint64 m_announcedSize = -1;
    QUrl m_address;
    Validators m_validators;
    QString m_contentType;
    QByteArray m_linkHeader;
};

} // namespace Tidel

#endif
