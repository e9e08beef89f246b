// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDRECORD_H
#define TIDEL_FEEDRECORD_H

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>
#include <vector>

namespace Tidel {

/// An address as a document writes it.
struct Address
{
    QString text; ///< May be relative or no address at all; empty if there is none.
    QString base; ///< The `xml:base` that applies, which may be relative itself; empty if there is none.
};

/// A file of an item.
struct FileRecord
{
    Address address;
    QString mimeType; ///< As written; may be empty or invalid.
    quint64 bytes = 0; ///< The size; 0 if it is unknown.
    int seconds = 0; ///< The duration; 0 if it is unknown.
    QString title; ///< Plain text.
    int season = 0; ///< 0 if there is none.
    int episode = 0; ///< 0 if there is none.
    Address chapters; ///< The list of chapters.
    std::optional<bool> isExplicit; ///< Nothing if the feed does not say it.
};

/// One item of a feed. Texts have no control characters and no lone surrogates.
struct ItemRecord
{
    QString id; ///< The identifier that the document gives; empty if there is none.
    bool isPermalink = false; ///< True if the identifier is an address that may also be the link.
    Address link; ///< What the item leads to.
    QString title; ///< Plain text in one line.
    QString text; ///< The longest text, as HTML.
    QString summary; ///< A shorter text, as HTML; empty if text is the only one.
    QDateTime published; ///< In UTC; invalid if there is none.
    QDateTime updated; ///< In UTC; invalid if there is none.
    QStringList authors; ///< Names, or mail addresses where no name is given.
    QStringList categories;
    Address comments; ///< The page with comments.
    QString language; ///< A language tag such as "en" or "pt-BR"; empty if the item has none of its own.
    Address thumbnail; ///< The largest picture that stands for the item.
    QString base; ///< The `xml:base` of the text; empty if there is none.
    QVector<FileRecord> files;
    QByteArray digest; ///< A hash of the item in the document; empty if it must be read each time.
    bool isRecognized = false; ///< True if only identifier and digest were read, because the digest is known.
};

/// A feed as its document says it.
struct FeedRecord
{
    QString format; ///< "rss", "atom", "rdf" or "json".
    QString title; ///< Plain text in one line.
    QString description; ///< HTML.
    Address website;
    Address image; ///< The largest image of the feed.
    Address icon; ///< A small image of the feed; empty if it names none.
    QString language; ///< A language tag; empty if there is none.
    QString copyright; ///< Plain text.
    int minutesToLive = 0; ///< How long the document may be kept; 0 if unknown.
    QVector<int> skipHours; ///< Hours in UTC, 0 to 23, in which the feed does not change.
    QStringList skipDays; ///< English names of days on which the feed does not change.
    QString updatePeriod; ///< "hourly", "daily", "weekly", "monthly", "yearly", or empty.
    int updateFrequency = 0; ///< How often the feed changes in one period; 0 if unknown.
    QDateTime updateBase; ///< When the periods begin, in UTC; invalid if unknown.
    Address hub; ///< The WebSub hub.
    Address self; ///< The address that the feed gives itself.
    std::vector<ItemRecord> items; ///< In the order of the document.
    QStringList notes; ///< What was mended or is missing, such as "was not well-formed: line 66, ...".
};

} // namespace Tidel

#endif
