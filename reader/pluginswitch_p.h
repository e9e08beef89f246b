// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PLUGINSWITCH_P_H
#define TIDEL_PLUGINSWITCH_P_H

#include "error.h"

#include <QHash>
#include <QVariant>
#include <QVector>

#include <feedplugininterface.h>

namespace Tidel {

/// A plug-in and the beginnings of the addresses that it takes; all addresses if there are none.
struct PluginChoice
{
    FeedPluginInterface *plugin;
    QStringList addresses;
};

/// Returns the index of the one of \a choices that takes \a address: the one with the longest matching
/// beginning, and of several the first one; -1 if none does.
int choiceFor(const QVector<PluginChoice> &choices, const QString &address);

/// Passes each operation on to the plug-in that takes its address. Hosts with several plug-ins see one.
class PluginSwitch : public FeedPluginInterface
{
    Q_OBJECT

public:
    /// The plug-ins of \a choices must outlive this object.
    explicit PluginSwitch(const QVector<PluginChoice> &choices, QObject *parent = nullptr);

    Q_INVOKABLE FeedPluginInterface *createDownloader(QObject *parent) const override;
    Q_INVOKABLE void subscribe(const QUrl &address) override;
    Q_INVOKABLE void downloadFeeds(const QStringList &channelUris) override;
    Q_INVOKABLE void downloadEnclosure(const QString &enclosureUri, const QString &folder) override;
    Q_INVOKABLE void cancel() override;
    Q_INVOKABLE QString errorString() const override;

private:
    /// Channels that one plug-in downloads.
    struct Group
    {
        int choice;
        QStringList channels;
    };
    using Failed = void (FeedPluginInterface::*)(int);

    /// Returns true if an operation can begin; otherwise lets this one fail, and returns false.
    bool begin(Failed failed);
    /// Lets the operation fail from the event loop.
    void fail(Failed failed, int error, const QString &reason);
    /// Makes the downloader of the plug-in \a choice the current one, and returns it.
    FeedPluginInterface *use(int choice);
    void listenTo(FeedPluginInterface *downloader);
    void downloadNextGroup();
    /// Takes over the results of the group of channels that ended with \a error.
    void endGroup(int error);
    /// The choice for a resource of the store with \a address; the first plug-in reports one that is unknown.
    int choiceForStored(const Result<QString> &address) const;

    const QVector<PluginChoice> m_choices;
    QHash<int, FeedPluginInterface *> m_downloaders;
    FeedPluginInterface *m_current = nullptr; ///< Null if no operation is under way.
    QVector<Group> m_groups;
    int m_firstError = FeedDownloadNoError;
    QString m_errorString;
};

} // namespace Tidel

#endif
