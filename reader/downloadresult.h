// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADRESULT_H
#define TIDEL_DOWNLOADRESULT_H

#include "tidelreaderglobal.h"

#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>
#include <QVector>

#include <feedmessage.h>

namespace Tidel {

class DownloadResultPrivate;

/// A feed of a web page.
struct FoundFeed
{
    QString title; ///< Plain text; may be empty.
    QUrl address; ///< Where it can be subscribed to.
};

/// How a download ended.
class TIDELREADER_EXPORT DownloadResult
{
public:
    /// Feeds were downloaded that brought messages with the links \a newMessages, changed those with the
    /// links \a changedMessages, and gave reason to \a newNotes.
    static DownloadResult ofFeeds(const QStringList &newMessages, const QStringList &changedMessages = {},
                                  const QStringList &newNotes = {});
    /// An enclosure was downloaded; \a map is that of FeedPluginInterface::downloadEnclosureFinished().
    static DownloadResult ofEnclosure(const QVariantMap &map);
    /// The download failed; \a error is a FeedDownloadError or an HTTP status.
    static DownloadResult failed(int error, const QString &reason);

    /// This result of a subscription to the address of a web page, which has \a feeds. Each is a map with the
    /// texts "title" and "address".
    DownloadResult withFoundFeeds(const QVariantList &feeds) const;

    /// This result with \a headlines of its new messages. Each is a map with the texts "link" and "title" and
    /// the date "date".
    DownloadResult withHeadlines(const QVariantList &headlines) const;

    /// Shares the value of \a other.
    DownloadResult(const DownloadResult &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    DownloadResult(DownloadResult &&other) noexcept;
    /// Shares the value of \a other.
    DownloadResult &operator=(const DownloadResult &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    DownloadResult &operator=(DownloadResult &&other) noexcept;
    /// Releases the value.
    ~DownloadResult();

    /// Returns true if the download succeeded; otherwise returns false.
    bool isOk() const;
    /// A FeedDownloadError or an HTTP status; FeedDownloadNoError if the download succeeded.
    int error() const;
    /// Why the download failed, one line for the user; empty if it succeeded.
    QString reason() const;

    /// The links of the messages that a feed brought its channel, the oldest first.
    QStringList newMessages() const;
    /// Link, title and date of newMessages(), the newest first. Empty if the plug-in does not know all of
    /// them; the store does, see Messages::headlines().
    QList<FeedMessage> headlines() const;
    /// The links of the messages that a feed changed.
    QStringList changedMessages() const;
    /// What was mended or is missing in the document and was not so in the one before, such as "was not
    /// well-formed: line 66, ...".
    QStringList newNotes() const;

    /// The feeds of the web page that a subscription was given instead of a feed. If the subscription
    /// succeeded, or failed with FeedDownloadAlreadyStored, it is the one that took the place of the page.
    /// Empty if the address was that of a feed.
    QVector<FoundFeed> foundFeeds() const;

    /// The path of the file of an enclosure; empty if the download failed.
    QString path() const;
    /// The `file:` URL of the same file, as the store has it.
    QString localUrl() const;
    /// The size of that file in bytes.
    qint64 length() const;
    /// The MIME type that the server named; empty if it named none.
    QString mimeType() const;

private:
    Q_DECL_HIDDEN explicit DownloadResult(DownloadResultPrivate *d);

    QSharedDataPointer<DownloadResultPrivate> d;
};

} // namespace Tidel

#endif
