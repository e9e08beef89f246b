// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDOWNLOAD_H
#define TIDEL_FEEDDOWNLOAD_H

#include "download.h"
#include "feeddocument.h"
#include "itemdigests.h"
#include "webpage.h"

#include <QBuffer>
#include <QStringList>
#include <QUrl>

#include <feedmessage.h>

#include <TidelReader/feeds.h>

#include <optional>

namespace Tidel {

class FeedWriter;
class ParsedFeed;
class Parsing;

/// Downloads a feed and stores it, as a new channel or as new messages of a stored channel.
class FeedDownload : public Download
{
    Q_OBJECT

public:
    ~FeedDownload() override;
    /// Creates the download of the feed at \a address, which is stored as a new channel.
    static std::unique_ptr<FeedDownload> ofNewChannel(const DownloadTools &tools, const QUrl &address);
    /// Creates the download of the feed of the stored channel \a channelUri.
    static std::unique_ptr<FeedDownload> ofChannel(const DownloadTools &tools, const QString &channelUri);

    void start() override;

    /// The links of the messages that are new to the channel, the oldest first.
    QStringList newMessages() const;
    /// The links of the messages that say something else than before.
    QStringList changedMessages() const;
    /// Link, title and date of new messages, as far as they are known without the store.
    QList<FeedMessage> headlines() const;
    /// The notes about the document of a kind that the document before it did not have.
    QStringList newNotes() const;
    /// The feeds of the web page that the address of a new channel led to, or the one that was subscribed to
    /// in its place. Empty if the address led to a feed.
    QVector<FeedLink> foundFeeds() const;

protected:
    void transferred(const Transfer &transfer) override;
    /// Tries the next address at which a web page may have its feed.
    void failed(const Outcome &outcome) override;

private:
    /// Creates the download of a new channel if \a isSubscription is true, otherwise of a stored channel.
    FeedDownload(const DownloadTools &tools, bool isSubscription);

    /// Finds out the address of the document and reads its stored validators.
    Outcome prepare();
    /// Reads a local document.
    void readFile();
    /// Lets the parser thread parse \a document.
    void read(const FeedDocument &document);
    /// Begins to store the parsed feed.
    void parsed();
    /// Takes over \a feed.
    void setFeed(ParsedFeed &&feed);
    /// Stores the feed as a new channel, without its messages.
    Outcome addChannel();
    /// Notes that the document has not changed, and ends the download.
    void endUnchanged();
    /// Notes that the document could not be read because of \a outcome.
    void noteFailure(const Outcome &outcome);
    /// Gives the channel the new address of its document, which the server named permanently.
    void followMove();
    /// Reads what the store remembers of the channel.
    Outcome remember(FeedMemory *memory);
    /// Returns true if the items that were recognized are still stored as the document says them;
    /// otherwise returns false.
    bool recognizedRightly(const FeedMemory &memory) const;
    /// Stores messages for a short time, and what is left after the event loop has run.
    void writeSome();
    /// How the writing ended.
    Outcome writingOutcome() const;

    const bool m_isSubscription;
    QString m_channelUri;
    QUrl m_address;
    QString m_itemBase; // Empty for a new channel, whose items are named after its address.
    Validators m_known;
    QString m_lastError; // Of the attempt before this one.
    QStringList m_moves; // What the user should know of the address of the document.
    ItemNote m_itemNote; // What the store has noted of the items.
    QUrl m_subscribedPlace; // Where the address of a subscription led, if a channel has this link.
    std::optional<WebPage> m_page; // Where m_address comes from, in a subscription.
    QBuffer m_buffer;
    FeedDocument m_document;
    ItemDigests m_digests; // By which items are recognized.
    std::unique_ptr<Parsing> m_parsing;
    std::unique_ptr<ParsedFeed> m_feed;
    std::unique_ptr<FeedWriter> m_writer;
};

} // namespace Tidel

#endif
