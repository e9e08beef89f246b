// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDOWNLOAD_H
#define TIDEL_FEEDDOWNLOAD_H

#include "download.h"
#include "validators.h"

#include <QBuffer>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <TidelReader/linkuse.h>

namespace Tidel {

class ParsedFeed;
struct ClaimedItem;

/// Downloads a feed and stores it, as a new channel or as new messages of a stored channel.
class FeedDownload : public Download
{
    Q_OBJECT

public:
    static std::unique_ptr<FeedDownload> ofNewChannel(const DownloadTools &tools, const QUrl &address);
    static std::unique_ptr<FeedDownload> ofChannel(const DownloadTools &tools, const QString &channelUri);

    void start() override;

    /// The links of the messages that are new to the channel, the oldest first.
    const QStringList &newMessages() const { return m_newMessages; }

protected:
    void transferred(const Transfer &transfer) override;

private:
    /// The items of a feed with their links, and what the store uses these links for.
    struct Claims;

    FeedDownload(const DownloadTools &tools, bool isSubscription);

    Outcome prepare();
    void readFile();
    Outcome read(const QByteArray &document, const QUrl &source, const Validators &validators);
    Outcome addChannel(const ParsedFeed &feed, const Validators &validators);
    Outcome addMessages(const ParsedFeed &feed, const Validators &validators);
    Result<Claims> claim(const ParsedFeed &feed, const QSet<QString> &dropped) const;
    Result<void> write(const ParsedFeed &feed, const Claims &claims, const QSet<QString> &dropped,
                       const Validators &validators);
    Result<void> forgetDropped(const Claims &claims, QSet<QString> dropped);

    const bool m_isSubscription;
    QString m_channelUri;
    QUrl m_address;
    QString m_itemBase; // empty for a new channel, whose items are named after its address
    Validators m_known;
    QBuffer m_document;
    QStringList m_newMessages;
};

} // namespace Tidel

#endif
