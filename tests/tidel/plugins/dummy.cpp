// SPDX-License-Identifier: LGPL-2.1-or-later
// A download plug-in that does what it is told without any network, and fails where an address says so.
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
        QMetaObject::invokeMethod(
            this, [this] { m_error.isEmpty() ? downloadFeedsFinished() : downloadFeedsFailed(599); },
            Qt::QueuedConnection);
    }
    // Not invokable by name, unlike what the interface asks for.
    void downloadFeeds(const QStringList &) override { }
    Q_INVOKABLE void downloadEnclosure(const QString &, const QString &) override { }
    Q_INVOKABLE void cancel() override { }
    Q_INVOKABLE QString errorString() const override { return m_error; }

private:
    QString m_error;
};

#include "dummy.moc"
