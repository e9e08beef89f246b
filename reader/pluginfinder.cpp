// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pluginfinder.h"

#include "pluginswitch_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QThreadStorage>

#include <feedplugininterface.h>

#include <map>
#include <memory>
#include <vector>

#include <dlfcn.h>

namespace Tidel {

namespace {

Failure unusable(const QString &reason) { return Failure(Error(Error::PluginUnusable, {}, reason)); }

/// The object of the plug-in; null if it has none, or if making it throws an exception.
QObject *pluginObject(QPluginLoader &loader)
{
    try {
        return loader.instance();
    } catch (...) {
        return nullptr;
    }
}

/// The file that this library was loaded from.
QString libraryFile()
{
    Dl_info info = {};
    dladdr(reinterpret_cast<void *>(&pluginFolder), &info);
    return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath();
}

} // namespace

QString pluginFolder() { return QFileInfo(libraryFile()).path() + QLatin1String("/tidel/plugins"); }

Result<FeedPluginInterface *> loadPlugin(const QString &file)
{
    QPluginLoader loader(file);
    // A missing symbol is reported when the plug-in is loaded, not when it is first called.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    const QJsonObject metaData = loader.metaData();
    const QString interface = metaData.value(QLatin1String("IID")).toString();
    if (metaData.isEmpty()) {
        // Qt does not run a file without metadata, but says why it is not a plug-in.
        loader.load();
        return unusable(QStringLiteral("is not a plug-in: ") + loader.errorString());
    }
    if (interface != QLatin1String(FeedPluginInterface_iid))
        return unusable(QStringLiteral("is a plug-in for another interface: \"%1\"").arg(interface));
    if (!loader.load())
        return unusable(QStringLiteral("cannot be loaded: ") + loader.errorString());
    QObject *object = pluginObject(loader);
    if (!object)
        return unusable(QStringLiteral("fails to start"));
    auto *plugin = qobject_cast<FeedPluginInterface *>(object);
    if (!plugin)
        return unusable(QStringLiteral("is not a download plug-in, although its metadata say so"));
    return plugin;
}

QList<PluginDescription> describePlugins(const QString &folder)
{
    const QDir dir(folder);
    const QStringList names = dir.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
    QList<PluginDescription> plugins;
    for (const QString &name : names) {
        const QString file = dir.filePath(name);
        const QJsonObject data = QPluginLoader(file).metaData().value(QLatin1String("MetaData")).toObject();
        const auto text = [&data](const char *key) { return data.value(QLatin1String(key)).toString(); };
        QStringList addresses;
        const QJsonArray beginnings = data.value(QLatin1String("addresses")).toArray();
        for (const QJsonValue &beginning : beginnings)
            addresses.append(beginning.toString());
        plugins.append({file, text("name"), text("version"), text("description"), addresses});
    }
    return plugins;
}

namespace {

using Switches = std::map<std::vector<FeedPluginInterface *>, std::unique_ptr<PluginSwitch>>;

/// What passes operations on to \a choices in this thread. It lives as long as the thread, and the plug-ins
/// until the process ends.
FeedPluginInterface *switchOf(const QVector<PluginChoice> &choices)
{
    // A thread_local variable may outlive QThread::wait().
    static QThreadStorage<Switches *> storage; // It owns them.
    if (!storage.hasLocalData())
        storage.setLocalData(new Switches);
    std::vector<FeedPluginInterface *> plugins; // Their addresses are in the same files.
    for (const PluginChoice &choice : choices)
        plugins.push_back(choice.plugin);
    std::unique_ptr<PluginSwitch> &known = (*storage.localData())[plugins];
    if (!known)
        known = std::make_unique<PluginSwitch>(choices);
    return known.get();
}

} // namespace

Result<FeedPluginInterface *> findPlugin(const QString &folder, QStringList *problems)
{
    QVector<PluginChoice> choices;
    const QList<PluginDescription> descriptions = describePlugins(folder);
    for (const PluginDescription &description : descriptions) {
        const Result<FeedPluginInterface *> plugin = loadPlugin(description.file);
        if (plugin)
            choices.append({*plugin, description.addresses});
        else if (problems)
            problems->append(description.file + QLatin1Char(' ') + plugin.error().reason());
    }
    if (choices.isEmpty())
        return unusable(QStringLiteral("no download plug-in in ") + folder);
    if (choices.size() == 1)
        return choices.constFirst().plugin;
    return switchOf(choices);
}

} // namespace Tidel
