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
    QString signal; ///< the name of the signal that told of it; empty when none did in time
    int error = 0;
    QString text; ///< errorString() after it
    QVariantMap map; ///< of downloadEnclosureFinished()
};

/// A test of the real plug-in, loaded as a host loads it, against a real server and a store of its own.
class PluginTest : public QObject
{
    Q_OBJECT

protected:
    /// Loads the plug-in and starts the server on a folder of its own.
    bool prepare();
    /// Makes a new store and a downloader with short time-outs; false when that fails.
    bool begin();
    void end();

    FeedPluginInterface &downloader() const { return *m_downloader; }
    /// Another one with the same settings.
    std::unique_ptr<FeedPluginInterface> another() const;
    /// What \a downloader says next of an operation that has begun.
    Ending ending(FeedPluginInterface &downloader) const;

    Ending subscribe(const QString &address);
    Ending refresh(const QStringList &channelUris);
    /// Refreshes the only channel.
    Ending refresh();

    /// The only one of the store, or that of the link \a link.
    QString channelUri(const QString &link = QString()) const;
    QStringList messageLinks() const;

    /// Writes a file of the server and makes it old enough to be trusted; returns its path.
    QString write(const QString &name, const QByteArray &content) const;
    /// A feed with such items.
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
        const Ending heard = (ending);                                                                       \
        QVERIFY2(heard.signal == QLatin1String(name),                                                        \
                 qPrintable(QString("%1 %2 %3").arg(heard.signal).arg(heard.error).arg(heard.text)));        \
    } while (false)

#endif
