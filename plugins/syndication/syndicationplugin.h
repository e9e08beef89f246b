// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SYNDICATIONPLUGIN_H
#define TIDEL_SYNDICATIONPLUGIN_H

#include <feedplugininterface.h>

#include <TidelReader/store.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Tidel {

class Connections;
class ParserThread;
class Download;
struct DownloadTools;
struct Outcome;

/// Downloads RSS, Atom, RDF and JSON feeds and enclosures over http and https and from files.
class SyndicationPlugin : public FeedPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid FILE "syndicationplugin.json")

    /// The time in milliseconds after which a transfer from a silent server fails. A feed may take ten times
    /// as long in total, an enclosure a thousand times.
    Q_PROPERTY(int timeout MEMBER m_timeout)
    /// The maximum size of a feed in bytes, after decompression.
    Q_PROPERTY(qint64 maximumFeedSize MEMBER m_maximumFeedSize)
    /// The maximum size of an enclosure in bytes.
    Q_PROPERTY(qint64 maximumEnclosureSize MEMBER m_maximumEnclosureSize)
    /// The links of the messages that the last operation added.
    Q_PROPERTY(QStringList newMessages READ newMessages)
    /// What can be shown of newMessages without asking the store, see FeedPluginInterface.
    Q_PROPERTY(QVariantList headlines READ headlines)
    /// The links of the messages that the last operation changed.
    Q_PROPERTY(QStringList changedMessages READ changedMessages)
    /// What the last operation mended or missed in documents, where it had not done so before.
    Q_PROPERTY(QStringList newNotes READ newNotes)
    /// The feeds of the web page that the last subscribe() was given instead of a feed, or the one that was
    /// subscribed to in its place. Each is a map with the texts "title" and "address".
    Q_PROPERTY(QVariantList foundFeeds READ foundFeeds)

public:
    /// Creates a downloader that shares network connections with those of its thread.
    explicit SyndicationPlugin(QObject *parent = nullptr);
    ~SyndicationPlugin() override;

    Q_INVOKABLE FeedPluginInterface *createDownloader(QObject *parent) const override;
    Q_INVOKABLE void subscribe(const QUrl &address) override;
    Q_INVOKABLE void downloadFeeds(const QStringList &channelUris) override;
    Q_INVOKABLE void downloadEnclosure(const QString &enclosureUri, const QString &folder) override;
    Q_INVOKABLE void cancel() override;
    Q_INVOKABLE QString errorString() const override;
    /// The links of the messages that the last operation added.
    QStringList newMessages() const { return m_newMessages; }
    /// What can be shown of newMessages() without asking the store.
    QVariantList headlines() const { return m_headlines; }
    /// The links of the messages that the last operation changed.
    QStringList changedMessages() const { return m_changedMessages; }
    /// What the last operation mended or missed in documents, where it had not done so before.
    QStringList newNotes() const { return m_newNotes; }
    /// The feeds that the last subscribe() has found.
    QVariantList foundFeeds() const { return m_foundFeeds; }

private:
    /// A running operation.
    struct Task;
    /// Functions that create the downloads of an operation.
    using Makers = std::vector<std::function<std::unique_ptr<Download>()>>;

    /// Begins an operation that runs the downloads of \a makers one after the other.
    void begin(bool isEnclosure, const Makers &makers);
    /// Starts the next download, or ends the operation.
    void startNext();
    /// Opens the store. Ends the operation on failure.
    void openStore();
    /// Takes the results of the current download.
    void endDownload();
    /// Ends the operation.
    void end();
    /// Emits the signal for \a outcome. The receiver may start another operation or delete this object.
    void report(bool isEnclosure, const Outcome &outcome, const QVariantMap &results = {});
    /// The tools of a download that may take \a patience times the timeout.
    DownloadTools tools(qint64 maximumSize, int patience);

    int m_timeout = 30 * 1000;
    qint64 m_maximumFeedSize = Q_INT64_C(32) * 1024 * 1024;
    qint64 m_maximumEnclosureSize = Q_INT64_C(4) * 1024 * 1024 * 1024 - 1; // The limit of FeedEnclosure.

    std::shared_ptr<Connections> m_connections; // Shared by the downloaders of one thread, as the next.
    std::shared_ptr<ParserThread> m_parser;
    std::optional<Store> m_store;
    std::unique_ptr<Task> m_task;
    QString m_errorString;
    QStringList m_newMessages;
    QVariantList m_headlines;
    QStringList m_changedMessages;
    QStringList m_newNotes;
    QVariantList m_foundFeeds;
};

} // namespace Tidel

#endif
