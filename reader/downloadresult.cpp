// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloadresult.h"

#include "messageorder.h"

#include <feedplugininterface.h>

namespace Tidel {

class DownloadResultPrivate : public QSharedData
{
public:
    int error = FeedDownloadNoError;
    QString reason;
    QStringList newMessages;
    QList<FeedMessage> headlines;
    QStringList changedMessages;
    QStringList newNotes;
    QVector<FoundFeed> foundFeeds;
    QString localUrl;
    qint64 length = 0;
    QString mimeType;
};

DownloadResult DownloadResult::ofFeeds(const QStringList &newMessages, const QStringList &changedMessages,
                                       const QStringList &newNotes)
{
    DownloadResult result(new DownloadResultPrivate);
    result.d->newMessages = newMessages;
    result.d->changedMessages = changedMessages;
    result.d->newNotes = newNotes;
    return result;
}

DownloadResult DownloadResult::ofEnclosure(const QVariantMap &map)
{
    DownloadResult result(new DownloadResultPrivate);
    result.d->localUrl = map.value(QStringLiteral("localUrl")).toString();
    result.d->length = map.value(QStringLiteral("length")).toLongLong();
    result.d->mimeType = map.value(QStringLiteral("mimeType")).toString();
    return result;
}

DownloadResult DownloadResult::failed(int error, const QString &reason)
{
    DownloadResult result(new DownloadResultPrivate);
    result.d->error = error;
    result.d->reason = reason;
    return result;
}

DownloadResult DownloadResult::withFoundFeeds(const QVariantList &feeds) const
{
    DownloadResult result(*this);
    for (const QVariant &feed : feeds) {
        const QVariantMap map = feed.toMap();
        result.d->foundFeeds.append({map.value(QStringLiteral("title")).toString(),
                                     QUrl(map.value(QStringLiteral("address")).toString())});
    }
    return result;
}

DownloadResult::DownloadResult(DownloadResultPrivate *result) : d(result) { }
DownloadResult DownloadResult::withHeadlines(const QVariantList &headlines) const
{
    DownloadResult result(*this);
    QStringList links;
    for (const QVariant &value : headlines) {
        const QVariantMap map = value.toMap();
        FeedMessage headline;
        headline.setLink(map.value(QStringLiteral("link")).toString());
        headline.setTitle(map.value(QStringLiteral("title")).toString());
        headline.setPublishedDate(map.value(QStringLiteral("date")).toDateTime());
        links.append(headline.link());
        result.d->headlines.append(headline);
    }
    if (links == result.d->newMessages)
        sortNewestFirst(result.d->headlines);
    else
        result.d->headlines.clear();
    return result;
}

DownloadResult::DownloadResult(const DownloadResult &other) = default;
DownloadResult::DownloadResult(DownloadResult &&other) noexcept = default;
DownloadResult &DownloadResult::operator=(const DownloadResult &other) = default;
DownloadResult &DownloadResult::operator=(DownloadResult &&other) noexcept = default;
DownloadResult::~DownloadResult() = default;

bool DownloadResult::isOk() const { return d->error == FeedDownloadNoError; }

int DownloadResult::error() const { return d->error; }

QString DownloadResult::reason() const { return d->reason; }

QStringList DownloadResult::newMessages() const { return d->newMessages; }

QList<FeedMessage> DownloadResult::headlines() const { return d->headlines; }

QStringList DownloadResult::changedMessages() const { return d->changedMessages; }

QStringList DownloadResult::newNotes() const { return d->newNotes; }

QVector<FoundFeed> DownloadResult::foundFeeds() const { return d->foundFeeds; }

QString DownloadResult::path() const { return QUrl(d->localUrl).toLocalFile(); }

QString DownloadResult::localUrl() const { return d->localUrl; }

qint64 DownloadResult::length() const { return d->length; }

QString DownloadResult::mimeType() const { return d->mimeType; }

} // namespace Tidel
