// SPDX-License-Identifier: LGPL-2.1-or-later
#include "transfer.h"

#include "localfile.h"

#include <QIODevice>

namespace Tidel {

namespace {

constexpr int maximumRedirects = 10;
// Longer validators are ignored, because they would be sent with every request.
constexpr int maximumValidatorSize = 1024;

bool isWeb(const QUrl &url)
{
    const QString scheme = url.scheme();
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https")) && !url.host().isEmpty();
}

bool isSecure(const QUrl &url) { return url.scheme() == QLatin1String("https"); }

int portOf(const QUrl &url) { return url.port(isSecure(url) ? 443 : 80); }

/// Returns true if what is meant for the server of \a one may be sent to the server of \a other; otherwise
/// returns false. A server may send its readers from http to https.
bool areOfOneServer(const QUrl &one, const QUrl &other)
{
    const bool isMadeSecure = portOf(one) == 80 && portOf(other) == 443;
    return one.host() == other.host() && (portOf(one) == portOf(other) || isMadeSecure);
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool isPermanent(int status) { return status == 301 || status == 308; }

QString validator(const QByteArray &value)
{
    return value.size() > maximumValidatorSize ? QString() : QString::fromLatin1(value);
}

/// Writes all bytes. A write to a full disk may be incomplete; only the next one knows why.
bool writeAll(QIODevice &target, const char *bytes, qint64 size)
{
    qint64 written = 0;
    for (int failures = 0; written < size && failures < 2;) {
        const qint64 more = target.write(bytes + written, size - written);
        if (more > 0)
            written += more;
        else
            ++failures;
    }
    return written == size;
}

/// The outcome of a status that is not a success.
Outcome refusal(const AnswerHead &head)
{
    const int status = head.status();
    const QString hint = status == 410 ? QStringLiteral(": the file was removed permanently") : QString();
    return {status,
            QStringLiteral("the server answered %1 %2").arg(QString::number(status), head.phrase()).trimmed()
                + hint};
}

Outcome noAnswer()
{
    return {FeedDownloadTimedOut, QStringLiteral("the server does not answer; try again later")};
}

} // namespace

bool canTransfer(const QUrl &url) { return url.isValid() && (isWeb(url) || url.isLocalFile()); }

QString tooLarge(qint64 limit)
{
    constexpr qint64 mebibyte = 1024LL * 1024;
    return limit % mebibyte == 0
        ? QStringLiteral("the file is larger than the limit of %1 MiB").arg(limit / mebibyte)
        : QStringLiteral("the file is larger than the limit of %1 bytes").arg(limit);
}

Transfer::Transfer(const std::shared_ptr<Connections> &connections, const TransferRequest &request,
                   const TransferLimits &limits, QIODevice &target)
    : m_connections(connections), m_firstAddress(request.address), m_request(request), m_limits(limits),
      m_target(target)
{
    for (QTimer *timer : {&m_silence, &m_duration}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] {
            const QString tooSlow = QStringLiteral("the download takes too long; try again later");
            end(m_size > 0 ? Outcome{FeedDownloadTimedOut, tooSlow} : noAnswer());
        });
    }
    if (!m_request.address.isLocalFile())
        m_request.login = Logins::of(m_request.address);
    startSource();
}

Transfer::~Transfer() = default;

void Transfer::cancel() { end(canceledOutcome()); }

void Transfer::startSource()
{
    const auto receiver = [this](const char *bytes, qint64 size) { return receive(bytes, size); };
    m_silence.stop();
    if (m_request.address.isLocalFile()) {
        m_source = std::make_unique<LocalFile>(m_request.address.toLocalFile(), receiver);
    } else {
        // Another file may have the same tag, and another server is not to see it.
        const bool isSame = m_request.part.isValid() && m_request.part.isOf(m_request.address);
        m_part = isSame ? m_request.part : ResumePoint();
        TransferRequest request = m_request;
        request.part = m_part;
        auto exchange = std::make_unique<Exchange>(m_connections, request, receiver);
        m_exchange = exchange.get();
        m_source = std::move(exchange);
    }
    connect(m_source.get(), &Source::started, this, &Transfer::startTimers);
    connect(m_source.get(), &Source::finished, this, &Transfer::endSource, Qt::QueuedConnection);
    m_source->start();
}

// The time in which a request waits for its turn is not that of the server.
void Transfer::startTimers()
{
    m_silence.start(m_limits.silence);
    if (!m_duration.isActive())
        m_duration.start(m_limits.duration);
}

bool Transfer::beginBody()
{
    m_hasBegun = true;
    if (m_exchange) {
        const AnswerHead &head = m_exchange->head();
        m_isRest = head.status() == partialContent;
        if (m_isRest && !m_part.isContinuedBy(head)) {
            m_failure = refusal(head);
            return false;
        }
        m_size = m_isRest ? m_part.offset : 0;
        m_total = m_isRest ? m_part.total : head.announcedSize();
    }
    Q_EMIT began(m_size);
    return true;
}

ResumePoint Transfer::origin() const
{
    return m_exchange ? ResumePoint::of(m_exchange->head(), m_request.address) : ResumePoint();
}

bool Transfer::receive(const char *bytes, qint64 size)
{
    m_silence.start();
    if (!m_hasBegun && !beginBody())
        return false;
    m_size += size;
    if (qMax(m_size, m_total) > m_limits.bytes)
        m_failure = {FeedDownloadTooLarge, tooLarge(m_limits.bytes)};
    else if (m_isRest && m_size > m_total)
        m_failure = refusal(m_exchange->head());
    else if (!writeAll(m_target, bytes, size))
        m_failure = notWritten(m_target.errorString());
    if (m_failure.isFine() && !m_isProgressDue) {
        m_isProgressDue = true;
        // Who is told may end the transfer, which the source does not expect here.
        const auto tell = [this] {
            m_isProgressDue = false;
            if (!m_isOver)
                Q_EMIT progressed(m_size, m_total);
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    }
    return m_failure.isFine();
}

void Transfer::endSource()
{
    if (m_isOver)
        return;
    const Outcome ended = m_failure.isFine() ? m_source->outcome() : m_failure;
    if (!ended.isFine()) {
        end(ended);
        return;
    }
    if (!m_exchange) {
        endBody();
        return;
    }
    const AnswerHead &head = m_exchange->head();
    const QByteArray location = head.header("location");
    const bool isConditional =
        !m_request.known.entityTag.isEmpty() || !m_request.known.lastModified.isEmpty();
    m_isUnchanged = head.status() == 304 && isConditional;
    const bool isDocument = head.status() == 200 || (head.status() == partialContent && m_part.isValid());
    if (isRedirect(head.status()) && !location.isEmpty())
        follow(m_request.address.resolved(QUrl::fromEncoded(location)), isPermanent(head.status()));
    else if (!isDocument)
        end(m_isUnchanged ? Outcome() : refusal(head));
    else
        endBody();
}

// An empty document has not begun.
void Transfer::endBody()
{
    if (!m_hasBegun && !beginBody())
        end(m_failure);
    else
        end(m_isRest && m_size < m_total ? closedTooEarly() : Outcome());
}

void Transfer::follow(const QUrl &target, bool isMoved)
{
    if (!isWeb(target) || (isSecure(m_request.address) && !isSecure(target))) {
        end({FeedDownloadUnsafeRedirect, QStringLiteral("the server redirects to an unsafe address")});
        return;
    }
    if (++m_redirects > maximumRedirects) {
        end({FeedDownloadUnsafeRedirect,
             QStringLiteral("the server redirects more than %1 times").arg(maximumRedirects)});
        return;
    }
    QUrl next = target;
    const bool isSameServer = areOfOneServer(m_request.address, target);
    next.setUserInfo(isSameServer ? m_request.address.userInfo(QUrl::FullyEncoded) : QString());
    m_request.address = next;
    if (!isSameServer) {
        m_request.known = {};
        m_request.login = {};
    }
    // Behind a redirect that holds for now alone, the document may be elsewhere tomorrow.
    m_isMoved = m_isMoved && isMoved;
    if (m_isMoved)
        m_movedTo = next;
    startSource();
}

void Transfer::end(const Outcome &outcome)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_silence.stop();
    m_duration.stop();
    m_outcome = outcome;
    if (m_exchange) {
        m_head = m_exchange->head();
        m_wait = m_exchange->wait();
    }
    m_exchange = nullptr;
    m_source.reset();
    Q_EMIT finished();
}

FeedAnswer Transfer::answer() const
{
    return {m_outcome.error, m_outcome.reason, m_wait, m_request.address.host(),
            Link::fromText(Link::encoded(m_movedTo))};
}

Validators Transfer::validators() const
{
    if (!areOfOneServer(m_firstAddress, m_request.address))
        return {};
    return {validator(m_head.header("etag")), validator(m_head.header("last-modified"))};
}

} // namespace Tidel
