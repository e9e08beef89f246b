// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDOWNLOAD_H
#define TIDEL_FEEDDOWNLOAD_H

#include "download.h"
#include "feeddocument.h"
#include "webpage.h"

#include <QBuffer>
#include <QStringList>
#include <QUrl>

#include <TidelReader/feeds.h>
#include <TidelReader/messagewriter.h>

#include <optional>

namespace Tidel {

class ParsedFeed;

/// Downloads a feed and stores it, as a new channel or as new messages of a stored channel.
class FeedDownload : public Download
{
    Q_OBJECT

public:
    /// Creates the download of the feed at \a address, which is stored as a new channel.
    static std::unique_ptr<FeedDownload> ofNewChannel(const DownloadTools &tools, const QUrl &address);
    /// Creates the download of the feed of the stored channel \a channelUri.
    static std::unique_ptr<FeedDownload> ofChannel(const DownloadTools &tools, const QString &channelUri);

    void start() override;

    /// The links of the messages that are new to the channel, the oldest first.
    const QStringList &newMessages() const { return m_written.added; }
    /// The links of the messages that say something else than before.
    const QStringList &changedMessages() const { return m_written.changed; }
    /// The notes about the document of a kind that the document before it did not have.
    const QStringList &newNotes() const { return m_newNotes; }
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
    /// Parses \a document, stores the feed and ends the download.
    void read(const FeedDocument &document);
    /// Stores \a feed as a new channel.
    Outcome addChannel(const ParsedFeed &feed, const Validators &validators);
    /// Stores what is new in \a feed.
    Outcome addMessages(const ParsedFeed &feed, const Validators &validators);
    /// Stores what \a feed says, and then \a validators.
    Result<void> write(const ParsedFeed &feed, const Validators &validators, const FeedMemory &memory);

    const bool m_isSubscription;
    QString m_channelUri;
    QUrl m_address;
    QString m_itemBase; // Empty for a new channel, whose items are named after its address.
    Validators m_known;
    std::optional<WebPage> m_page; // Where m_address comes from, in a subscription.
    QBuffer m_document;
    WrittenMessages m_written;
    QStringList m_newNotes;
};

} // namespace Tidel

#endif
