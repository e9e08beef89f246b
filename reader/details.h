// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DETAILS_H
#define TIDEL_DETAILS_H

#include "link.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace Tidel {

// The store keeps at most 50 values of a list, in alphabetical order and each once, and 4000 characters of a
// text. It leaves out an address that is longer.

/// What a feed says of a message in addition to FeedMessage.
struct MessageDetails
{
    QStringList authors; ///< Names, or mail addresses where no name is given.
    QStringList categories;
    QDateTime updatedDate; ///< The last update, in UTC; invalid if unknown.
    Link comments; ///< The page with comments; null if there is none.
    QString language; ///< A language tag such as "pt-BR"; empty if unknown.
    Link thumbnail; ///< A picture that stands for the message; null if there is none.
    QUrl baseUrl; ///< What relative links in the texts are relative to; empty if it is the link of the
                  ///< message.
};

/// What a message said before its feed changed it.
struct EarlierVersion
{
    QDateTime replaced; ///< When it was replaced, in UTC.
    QString title;
    QString text; ///< HTML.
    QString summary; ///< HTML.
};

/// What a feed says of an enclosure in addition to FeedEnclosure.
struct EnclosureDetails
{
    int duration = 0; ///< In seconds; 0 if unknown.
    QString title; ///< Plain text.
    int season = 0; ///< 0 if there is none.
    int episode = 0; ///< 0 if there is none.
    Link chapters; ///< The list of chapters; null if there is none.
    std::optional<bool> isExplicit; ///< Nothing if the feed does not say it.
};

/// What a feed says of itself in addition to FeedChannel.
struct ChannelDetails
{
    Link website; ///< Null if there is none.
    QString description; ///< HTML.
    QString language; ///< A language tag; empty if unknown.
    QString copyright; ///< Plain text.
    Link image; ///< The address of the image; null if there is none.
    int minutesToLive = 0; ///< How long the document may be kept; 0 if unknown.
    QList<int> skipHours; ///< Hours in UTC, 0 to 23, in which the feed does not change.
    QStringList skipDays; ///< English names of days on which the feed does not change.
    QString updatePeriod; ///< "hourly", "daily", "weekly", "monthly", "yearly", or empty.
    int updateFrequency = 0; ///< How often the feed changes in one period; 0 if unknown.
    QDateTime updateBase; ///< When the periods begin, in UTC; invalid if unknown.
    Link hub; ///< The WebSub hub; null if there is none.
    Link self; ///< The address that the feed gives itself; null if there is none.
    QStringList notes; ///< What was mended or is missing in the document that was read last.
};

} // namespace Tidel

#endif
