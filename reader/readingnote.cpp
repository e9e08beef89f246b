// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readingnote_p.h"

#include "detailfields_p.h"
#include "feednotes_p.h"
#include "statements_p.h"

#include <algorithm>

namespace Tidel {

namespace {

/// \a values in an order that does not depend on that of the document.
QVector<DetailValue> sorted(QVector<DetailValue> values)
{
    std::sort(values.begin(), values.end(), [](const DetailValue &a, const DetailValue &b) {
        return a.first != b.first ? a.first < b.first : a.second.toString() < b.second.toString();
    });
    return values;
}

/// Replaces what the store has of the feed, \a before, by \a details.
QString replaceDetails(const QString &channelUri, const ChannelDetails &details,
                       const std::optional<ChannelDetails> &before)
{
    const QVector<DetailValue> values = detailValues(details);
    const QVector<DetailValue> known = before ? detailValues(*before) : QVector<DetailValue>();
    if (before && sorted(values) == sorted(known))
        return QString();
    const bool mayHaveDetails = !before || !known.isEmpty();
    return (mayHaveDetails ? Statements::deleteDetails({channelUri}, detailNames<ChannelDetails>())
                           : QString())
        + Statements::insertDetails(channelUri, values);
}

} // namespace

QString itemNoteStamp(int parts, const QString &time)
{
    return QString::number(parts) + QLatin1Char(' ') + time.left(19) + QLatin1Char(' ');
}

QString noteOf(const Reading &reading, const QString &channelUri)
{
    const QString time = Statements::localTimeText();
    const QString items = reading.items.text.isEmpty()
        ? QString()
        : itemNoteStamp(reading.items.parts, time) + reading.items.text;
    FeedPlan plan = reading.plan;
    plan.details = reading.details;
    return Statements::noteReading(channelUri, reading.entityTag, reading.lastModified, time, items)
        + replaceDetails(channelUri, reading.details, reading.before)
        + noteOfAnswer(channelUri, reading.answer, plan, QDateTime::currentDateTimeUtc());
}

} // namespace Tidel
