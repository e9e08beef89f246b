// SPDX-License-Identifier: LGPL-2.1-or-later
#include "iconsearch.h"

#include "anonymousrequest.h"
#include "decodedicon.h"

#include <TidelReader/pageicons.h>
#include <TidelReader/promise.h>

#include <QFutureWatcher>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThreadPool>
#include <QTimer>

#include <memory>

namespace Tidel {

namespace {

constexpr qint64 maximumSize = 256LL * 1024; // The head of a page is at its beginning.
constexpr int maximumTime = 15 * 1000; // milliseconds
constexpr int maximumRedirects = 2;

/// Runs \a work on another thread, and \a use with its result unless \a context goes first.
template <typename Work, typename Use> void runElsewhere(QObject *context, Work work, Use use)
{
    using Value = std::invoke_result_t<Work>;
    const auto promise = std::make_shared<Promise<Value>>();
    auto *watcher = new QFutureWatcher<Value>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, use] {
        watcher->deleteLater();
        use(watcher->result());
    });
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, work] {
        promise->add(work());
        promise->finish();
    });
}

} // namespace

IconSearch::IconSearch(QNetworkAccessManager *network, const IconPlaces &places, QSet<QUrl> *missing,
                       QObject *parent)
    : QObject(parent), m_network(network), m_places(places), m_missing(missing), m_next(places.named)
{
}

bool IconSearch::mayAsk(const QUrl &address)
{
    const bool isMissing = m_missing->contains(anonymousRequest(address).url());
    m_isAnswered |= isMissing;
    return !isMissing && m_places.mayAsk(address) && !m_asked.contains(address);
}

void IconSearch::tryNext()
{
    while (!m_next.isEmpty()) {
        const QUrl address = m_next.takeFirst();
        const auto use = [this](const QByteArray &bytes, const QUrl &) { useIcon(bytes); };
        if (mayAsk(address))
            return fetch(address, {use, true, maximumRedirects});
    }
    if (m_hasReadPage) {
        Q_EMIT ended(QImage(), m_isAnswered || m_asked.isEmpty());
        return;
    }
    m_hasReadPage = true;
    m_next.append(m_places.usualIcon());
    const QUrl page = m_places.page();
    const auto use = [this](const QByteArray &bytes, const QUrl &address) { usePage(bytes, address); };
    if (mayAsk(page))
        fetch(page, {use, false, maximumRedirects});
    else
        tryNext();
}

void IconSearch::fetch(const QUrl &address, const Taking &taking)
{
    m_asked.insert(address);
    QNetworkRequest request = anonymousRequest(address);
    // Each redirect has to pass mayAsk().
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = m_network->get(request);
    reply->setParent(this);
    const auto beginning = std::make_shared<QByteArray>();
    connect(reply, &QNetworkReply::readyRead, this, [reply, beginning, taking] {
        if (reply->bytesAvailable() <= maximumSize)
            return;
        if (!taking.needsAll)
            *beginning = reply->read(maximumSize);
        reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, beginning, taking] { finish(reply, *beginning, taking); });
    QTimer::singleShot(maximumTime, reply, &QNetworkReply::abort);
}

/// Takes what has come, which is \a beginning if there was more.
void IconSearch::finish(QNetworkReply *reply, const QByteArray &beginning, const Taking &taking)
{
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    m_isAnswered |= status > 0;
    if (status >= 400)
        m_missing->insert(reply->url());
    const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!target.isEmpty())
        follow(reply->url().resolved(target), taking);
    else if (!beginning.isEmpty())
        taking.use(beginning, reply->url());
    else if (reply->error() == QNetworkReply::NoError)
        taking.use(reply->readAll(), reply->url());
    else
        tryNext();
}

void IconSearch::follow(const QUrl &target, const Taking &taking)
{
    if (taking.redirects > 0 && m_places.mayAsk(target))
        fetch(target, {taking.use, taking.needsAll, taking.redirects - 1});
    else
        tryNext();
}

void IconSearch::useIcon(const QByteArray &bytes)
{
    runElsewhere(
        this, [bytes] { return decodedIcon(bytes); },
        [this](const QImage &icon) {
            if (icon.isNull())
                tryNext();
            else
                Q_EMIT ended(icon, true);
        });
}

void IconSearch::usePage(const QByteArray &bytes, const QUrl &address)
{
    runElsewhere(
        this, [bytes, address] { return iconsOfPage(bytes, address, iconSide); },
        [this](const QVector<QUrl> &icons) {
            m_next = QList<QUrl>(icons.cbegin(), icons.cend()) + m_next;
            tryNext();
        });
}

} // namespace Tidel
