// SPDX-License-Identifier: LGPL-2.1-or-later
// A download plug-in without a network. A subscription fails if its address names a host, waits to be
// canceled if its scheme is "wait", and ends before the call returns if its scheme is "atonce".
#include <feedplugininterface.h>

#include <QUrl>

class Dummy : public FeedPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)

public:
    explicit Dummy(QObject *parent = nullptr) : FeedPluginInterface(parent) { }

    Q_INVOKABLE FeedPluginInterface *createDownloader(QObject *parent) const override
    {
        return new Dummy(parent);
    }

    Q_INVOKABLE void subscribe(const QUrl &address) override
    {
        m_error = address.host();
        if (address.scheme() == QLatin1String("wait"))
            return;
        if (address.scheme() == QLatin1String("atonce"))
            downloadFeedsFinished();
        else
            later([this] { m_error.isEmpty() ? downloadFeedsFinished() : downloadFeedsFailed(599); });
    }

    // Not invokable by name, unlike the interface demands.
    void downloadFeeds(const QStringList &) override { }

    Q_INVOKABLE void downloadEnclosure(const QString &enclosureUri, const QString &folder) override
    {
        later([this, enclosureUri, folder] {
            enclosureDownloadProgress(2000000000, enclosureUri == "urn:unsized" ? -1 : 6000000000);
            enclosureDownloadProgress(5000000000, enclosureUri == "urn:unsized" ? -1 : 6000000000);
            downloadEnclosureFinished(
                {{"uri", enclosureUri},
                 {"localUrl",
                  QString::fromLatin1(QUrl::fromLocalFile(folder + '/' + enclosureUri).toEncoded())},
                 {"length", Q_INT64_C(5000000000)},
                 {"mimeType", "audio/ogg"}});
        });
    }

    Q_INVOKABLE void cancel() override
    {
        later([this] { downloadFeedsFailed(FeedDownloadCanceled); });
    }

    Q_INVOKABLE QString errorString() const override { return m_error; }

private:
    template <typename Work> void later(const Work &work)
    {
        QMetaObject::invokeMethod(this, work, Qt::QueuedConnection);
    }

    QString m_error;
};

#include "dummy.moc"
