// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PLUGINTEST_H
#define PLUGINTEST_H

#include <feedserver.h>
#include <messagelog.h>
#include <teststore.h>

#include <feedplugininterface.h>

#include <QObject>
#include <QVariantMap>

#include <memory>

/// How an operation of a downloader ended.
struct Ending
{
    QString signal; ///< The name of the emitted signal; empty after a timeout.
    int error = 0; ///< The argument of the signal.
    QString text; ///< The errorString() after the signal.
    QVariantMap map; ///< The argument of downloadEnclosureFinished().
};

/// The base of tests of the plug-in. It is loaded in the same way as in a host, and uses a real server and a
/// temporary store.
class PluginTest : public QObject
{
    Q_OBJECT

protected:
    /// Loads the plug-in and starts the server on a temporary folder. Returns false on failure.
    bool prepare();
    /// Creates a new store and a downloader. Returns false on failure.
    bool begin();
    /// Deletes the downloader and the store.
    void end();

    /// The downloader under test.
    FeedPluginInterface &downloader() const { return *m_downloader; }
    /// Creates another downloader with the default settings.
    std::unique_ptr<FeedPluginInterface> another() const;
    /// Waits until the running operation of \a downloader has ended.
    Ending ending(FeedPluginInterface &downloader) const;

    /// Subscribes to the feed at \a address.
    Ending subscribe(const QString &address);
    /// Refreshes the channels \a channelUris.
    Ending refresh(const QStringList &channelUris);
    /// Refreshes the only channel.
    Ending refresh();

    /// The URI of the channel with the link \a link, or of the only channel if \a link is empty.
    QString channelUri(const QString &link = QString()) const;
    /// The links of all messages, sorted.
    QStringList messageLinks() const;

    /// Writes a file of the server that is an hour old; returns its path.
    QString write(const QString &name, const QByteArray &content) const;
    /// A feed with \a items.
    static QByteArray feed(const QByteArray &items, const QByteArray &title = "Feed");

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FeedServer> m_server;
    std::unique_ptr<TestStore> m_store;

private:
    FeedPluginInterface *m_plugin = nullptr;
    std::unique_ptr<FeedPluginInterface> m_downloader;
    std::unique_ptr<MessageLog> m_log;
};

#define VERIFY_ENDING(ending, name)                                                                          \
    do {                                                                                                     \
        const Ending actual = (ending);                                                                      \
        QVERIFY2(actual.signal == QLatin1String(name),                                                       \
                 qPrintable(QString("%1 %2 %3").arg(actual.signal).arg(actual.error).arg(actual.text)));     \
    } while (false)

#endif
