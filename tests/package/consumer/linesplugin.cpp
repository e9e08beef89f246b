// SPDX-License-Identifier: LGPL-2.1-or-later
// A whole download plug-in, for feeds of its own kind: files with a message in each line, its link and its
// title.
#include <TidelReader/channels.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/writeturn.h>

#include <feedplugininterface.h>

#include <QFile>
#include <QFileInfo>

using namespace Tidel;

class LinesPlugin : public FeedPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)
    Q_PROPERTY(QStringList newMessages MEMBER m_newMessages)

public:
    explicit LinesPlugin(QObject *parent = nullptr) : FeedPluginInterface(parent) { }

    FeedPluginInterface *createDownloader(QObject *parent) const override { return new LinesPlugin(parent); }
    void subscribe(const QUrl &address) override
    {
        QMetaObject::invokeMethod(
            this, [this, address] { read(address.toLocalFile(), Link::encoded(address)); },
            Qt::QueuedConnection);
    }
    void downloadFeeds(const QStringList &) override { end(FeedDownloadBadAddress, "is never refreshed"); }
    void downloadEnclosure(const QString &, const QString &) override { Q_EMIT downloadEnclosureFailed(1); }
    void cancel() override { }
    QString errorString() const override { return m_error; }

private:
    void read(const QString &path, const QString &link)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return end(FeedDownloadNotFound, file.errorString());
        const Result<Store> store = Store::open();
        const Result<void> stored =
            store.and_then([&](const Store &open) { return add(open, file.readAll(), link); });
        stored ? end(FeedDownloadNoError, {}) : end(FeedDownloadStoreFailed, stored.error().text());
    }

    Result<void> add(const Store &store, const QByteArray &text, const QString &link)
    {
        FeedChannel channel;
        channel.setLink(link);
        channel.setTitle(QFileInfo(link).fileName());
        QList<StorableMessage> messages;
        QList<Link> links;
        for (const QByteArray &line : text.trimmed().split('\n')) {
            FeedMessage message;
            message.setTitle(QString::fromUtf8(line).section(' ', 1));
            links.append(Link::fromText(QString::fromUtf8(line).section(' ', 0, 0)));
            messages.append(StorableMessage(links.last(), message));
            m_newMessages.append(links.last().toString());
        }
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return Channels(store).add(channel).and_then([&](const QString &uri) {
            return LinkUse::of(store, links, uri).and_then([&](const LinkUse &use) {
                return MessageWriter(store).write(messages, uri, use);
            });
        });
    }

    void end(int error, const QString &reason)
    {
        m_error = reason;
        error == FeedDownloadNoError ? downloadFeedsFinished() : downloadFeedsFailed(error);
    }

    QString m_error;
    QStringList m_newMessages;
};

#include "linesplugin.moc"
