// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TRANSFER_H
#define TIDEL_TRANSFER_H

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

/// What a transfer may cost.
struct TransferLimits
{
    qint64 bytes; ///< after decompression
    int silence; ///< milliseconds without a byte
    int duration; ///< milliseconds in all
};

/// The request for \a url that this program makes: redirects are followed, but not to where they are less
/// safe, and no cookies are kept.
QNetworkRequest politeRequest(const QUrl &url);

/// Whether \a url can be transferred: http or https with a host, or file.
bool canTransfer(const QUrl &url);

/// "is too large: more than 32 MiB".
QString tooLarge(qint64 limit);

/// One document or file on its way from a server, or from a file, into a device.
class Transfer : public QObject
{
    Q_OBJECT

public:
    /// Starts to write what is sent for \a request to \a target, which must stay while this object lives.
    Transfer(QNetworkAccessManager &network, const QNetworkRequest &request, const TransferLimits &limits,
             QIODevice &target);
    ~Transfer() override;

    /// Breaks it off; finished() is emitted.
    void cancel();

    /// \name Known when it has finished
    /// @{
    const Outcome &outcome() const { return m_outcome; }
    /// Whether the server said that what the request's validators are about is still the same.
    bool isUnchanged() const;
    /// Where it came from in the end.
    QUrl address() const { return m_address; }
    Validators validators() const { return m_validators; }
    /// "type/subtype", or empty.
    QString mimeType() const { return m_mimeType; }
    qint64 size() const { return m_size; }
    /// @}

Q_SIGNALS:
    void progressed(qint64 bytesReceived, qint64 bytesTotal);
    /// Once, and not before the constructor has returned.
    void finished();

private:
    void readHeaders();
    void readBytes();
    void finish();
    void end(const Outcome &outcome);
    Outcome replyOutcome() const;

    QIODevice &m_target;
    const TransferLimits m_limits;
    QNetworkReply *const m_reply;
    QTimer m_silence;
    QTimer m_duration;
    QString m_certificateProblem;
    bool m_isOver = false;
    Outcome m_outcome;
    qint64 m_size = 0;
    qint64 m_announcedSize = -1;
    QUrl m_address;
    Validators m_validators;
    QString m_mimeType;
};

} // namespace Tidel

#endif
