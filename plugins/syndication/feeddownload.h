// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDOWNLOAD_H
#define TIDEL_FEEDDOWNLOAD_H

#include "download.h"
#include "feednotes.h"

#include <QBuffer>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <feedmessage.h>

namespace Tidel {

class ParsedFeed;

/// Downloads a feed and stores it, as a new channel or as new messages of one.
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
    /// What the links of a feed stand for in the store.
    struct LinkUse
    {
        QSet<QString> known; ///< of messages that the channel has, or has dropped
        QSet<QString> reserved; ///< of channels: no new message may have one
    };

    FeedDownload(const DownloadTools &tools, bool isSubscription);

    Outcome prepare();
    void readFile();
    Outcome read(const QByteArray &document, const QUrl &source, const Validators &validators);
    Outcome addChannel(const ParsedFeed &feed, const Validators &validators);
    Outcome addMessages(const ParsedFeed &feed, const Validators &validators);
    bool write(const QList<FeedMessage> &messages, const Validators &validators);
    LinkUse linkUse(const ParsedFeed &feed, const QSet<QString> &dropped) const;

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
