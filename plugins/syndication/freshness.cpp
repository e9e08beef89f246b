// SPDX-License-Identifier: LGPL-2.1-or-later
#include "freshness.h"

#include "outcome.h"

#include <TidelReader/feedanswer.h>

#include <curl/curl.h>

namespace Tidel {

qint64 dateOf(const QByteArray &text)
{
    // Without a colon it is not one, but libcurl reads some numbers as years.
    return text.contains(':') ? qint64(curl_getdate(text.constData(), nullptr)) : -1;
}

namespace {

// For a host that wants to be asked less often and does not say how often.
constexpr qint64 usualPause = 60 * qint64(60);

/// The number \a text; 0 if it is none or negative.
qint64 seconds(const QByteArray &text)
{
    bool isNumber = false;
    const qint64 number = text.trimmed().toLongLong(&isNumber);
    return isNumber ? qMax(number, qint64(0)) : 0;
}

/// The seconds from \a now until the date \a text; 0 if it is none or past.
qint64 secondsUntil(const QByteArray &text, qint64 now)
{
    const qint64 date = dateOf(text);
    return date < 0 ? 0 : qMax(date - now, qint64(0));
}

/// How long caches may keep the document; -1 if the Cache-Control header \a control does not say.
qint64 maximumAge(const QByteArray &control)
{
    qint64 age = -1;
    const QList<QByteArray> directives = control.toLower().split(',');
    for (const QByteArray &directive : directives) {
        const QList<QByteArray> parts = directive.split('=');
        const QByteArray name = parts.first().trimmed();
        if (name == "no-cache" || name == "no-store")
            return 0;
        if (name == "max-age")
            age = seconds(parts.value(1).replace('"', ""));
    }
    return age;
}

qint64 secondsFresh(const AnswerHead &head, qint64 now)
{
    const qint64 age = maximumAge(head.header("cache-control"));
    if (age >= 0)
        return qMax(age - seconds(head.header("age")), qint64(0));
    // The clock of the server may differ.
    const qint64 serverTime = dateOf(head.header("date"));
    return secondsUntil(head.header("expires"), serverTime < 0 ? now : serverTime);
}

} // namespace

qint64 secondsToWait(const AnswerHead &head, qint64 now)
{
    qint64 wait = 0;
    if (head.status() == 200 || head.status() == 304) {
        wait = secondsFresh(head, now);
    } else {
        const QByteArray retry = head.header("retry-after");
        wait = qMax(seconds(retry), secondsUntil(retry, now));
        if (wait == 0 && head.status() == tooManyRequests)
            wait = usualPause;
    }
    return qMin(wait, FeedAnswer::longestWait);
}

} // namespace Tidel
