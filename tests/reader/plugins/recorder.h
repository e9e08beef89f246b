// SPDX-License-Identifier: LGPL-2.1-or-later
// The body of download plug-ins that report which of them was called, and for what.
#include <feedplugininterface.h>

#include <QUrl>

class Recorder : public FeedPluginInterface
{
    Q_OBJECT
    Q_PROPERTY(QStringList newMessages MEMBER m_calls)

public:
    Recorder(const QString &name, QObject *parent) : FeedPluginInterface(parent), m_name(name) { }

    FeedPluginInterface *createDownloader(QObject *parent) const override
    {
        return new Recorder(m_name, parent);
    }

    void subscribe(const QUrl &address) override { end({address.toString()}); }

    void downloadFeeds(const QStringList &channelUris) override { end(channelUris); }

    void downloadEnclosure(const QString &enclosureUri, const QString &folder) override
    {
        QMetaObject::invokeMethod(
            this,
            [this, enclosureUri, folder] {
                enclosureDownloadProgress(1, 2);
                downloadEnclosureFinished(
                    {{"uri", enclosureUri}, {"mimeType", m_name}, {"localUrl", folder}});
            },
            Qt::QueuedConnection);
    }

    void cancel() override
    {
        QMetaObject::invokeMethod(
            this, [this] { downloadFeedsFailed(FeedDownloadCanceled); }, Qt::QueuedConnection);
    }

    QString errorString() const override { return m_name + " failed"; }

private:
    /// Fails if one of \a called has "fail" in it, and waits to be canceled if one has "wait".
    void end(const QStringList &called)
    {
        m_calls.clear();
        for (const QString &each : called)
            m_calls.append(m_name + ' ' + each);
        if (!called.filter("wait").isEmpty())
            return;
        const bool fails = !called.filter("fail").isEmpty();
        QMetaObject::invokeMethod(
            this, [this, fails] { fails ? downloadFeedsFailed(599) : downloadFeedsFinished(); },
            Qt::QueuedConnection);
    }

    const QString m_name;
    QStringList m_calls;
};
