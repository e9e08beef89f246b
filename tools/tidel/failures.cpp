// SPDX-License-Identifier: LGPL-2.1-or-later
#include "failures.h"

#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"

#include <QHash>
#include <QStringList>
#include <QUrl>

namespace Tidel {

namespace {

constexpr int namedChannels = 3;

/// \a reason without the host of \a channel, which would make reasons differ that are the same.
QString commonReason(const FeedChannel &channel, QString reason)
{
    const QString host = QUrl(channel.link()).host();
    return host.isEmpty() ? reason : reason.replace(host, QLatin1String("..."));
}

/// Returns the names of the first channels with \a titles, and the number of the others.
QString shownChannels(const QStringList &titles)
{
    const int others = int(titles.size()) - namedChannels;
    const QString more = others > 0 ? QStringLiteral(" and %1 more").arg(others) : QString();
    return QStringLiteral("%1 (%2%3)")
        .arg(countedChannels(int(titles.size())), titles.mid(0, namedChannels).join(QLatin1String(", ")),
             more);
}

} // namespace

void Failures::add(const FeedChannel &channel, const QString &reason)
{
    m_failures.append({channel, reason});
}

void Failures::report(Output &output) const
{
    const auto reportOne = [&](const Failure &failure) {
        output.error(QStringLiteral("%1 (%2): %3")
                         .arg(failure.channel.title(), failure.channel.link(), failure.reason),
                     channelJson(failure.channel));
    };
    QHash<QString, QStringList> titles;
    for (const Failure &failure : m_failures)
        titles[commonReason(failure.channel, failure.reason)].append(failure.channel.title());
    for (const Failure &failure : m_failures) {
        const QString reason = commonReason(failure.channel, failure.reason);
        const QStringList alike = titles.value(reason);
        if (output.style() == Output::Json || alike.size() == 1)
            reportOne(failure);
        else if (titles.remove(reason) > 0)
            output.error(shownChannels(alike) + QLatin1String(": ") + reason);
    }
}

} // namespace Tidel
