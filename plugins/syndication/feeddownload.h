// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDOWNLOAD_H
#define TIDEL_FEEDDOWNLOAD_H

#include "download.h"
#include "feeddocument.h"
#include "webpage.h"

#include <QBuffer>
#include <QSet>
#include <QStringList>
#include <QUrl>

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
    const QStringList &newMessages() const { return m_newMessages; }
    /// The feeds of the web page that the address of a new channel led to, or the one that was subscribed to
    /// in its place. Empty if the address led to a feed.
    QVector<FeedLink> foundFeeds() const;

protected:
    void transferred(const Transfer &transfer) override;
    /// Tries the next address at which a web page may have its feed.
    void failed(const Outcome &outcome) override;

private:
    /// The items of a feed with their links, and how the store uses these links.
    struct Claims;

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
    /// Stores the new messages of \a feed.
    Outcome addMessages(const ParsedFeed &feed, const Validators &validators);
    /// Gives each item a link. An item whose link belongs to a channel gets another one.
    Result<Claims> claim(const ParsedFeed &feed, const QSet<QString> &dropped) const;
    /// Stores the messages that the channel neither has nor has dropped, and then \a validators.
    Result<void> write(const ParsedFeed &feed, const Claims &claims, const QSet<QString> &dropped,
                       const Validators &validators);
    /// Forgets the dropped links that the feed no longer contains.
    Result<void> forgetDropped(const Claims &claims, QSet<QString> dropped);

    const bool m_isSubscription;
    QString m_channelUri;
    QUrl m_address;
    QString m_itemBase; // Empty for a new channel, whose items are named after its address.
    Validators m_known;
    std::optional<WebPage> m_page; // Where m_address comes from, in a subscription.
    QBuffer m_document;
    QStringList m_newMessages;
};

} // namespace Tidel

#endif
