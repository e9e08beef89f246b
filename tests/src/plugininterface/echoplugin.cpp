// SPDX-License-Identifier: LGPL-2.1-or-later
#include <feedplugininterface.h>

#include <QTimer>

/// A plug-in that downloads nothing and reports what it was asked for.
class EchoPlugin : public FeedPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)

public:
    explicit EchoPlugin(QObject *parent = nullptr) : FeedPluginInterface(parent) { }

    Q_INVOKABLE FeedPluginInterface *createDownloader(QObject *parent) const override
    {
        return new EchoPlugin(parent);
    }

    Q_INVOKABLE void subscribe(const QUrl &address) override
    {
        m_error = address.toString();
        QTimer::singleShot(0, this, &FeedPluginInterface::downloadFeedsFinished);
    }

    Q_INVOKABLE void downloadFeeds(const QStringList &channelUris) override
    {
        QTimer::singleShot(0, this, [this, count = channelUris.size()] { downloadFeedsFailed(int(count)); });
    }

    Q_INVOKABLE void downloadEnclosure(const QString &enclosureUri, const QString &folder) override
    {
        QTimer::singleShot(0, this, [this, enclosureUri, folder] {
            enclosureDownloadProgress(qint64(1) << 40, -1);
            downloadEnclosureFinished({{"uri", enclosureUri}, {"localUrl", folder}});
        });
    }

    Q_INVOKABLE void cancel() override
    {
        QTimer::singleShot(0, this, [this] { downloadEnclosureFailed(FeedDownloadCanceled); });
    }

    Q_INVOKABLE QString errorString() const override { return m_error; }

private:
    QString m_error;
};

#include "echoplugin.moc"
