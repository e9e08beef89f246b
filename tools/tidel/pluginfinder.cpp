// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pluginfinder.h"

#include "output.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

#include <feedplugininterface.h>

namespace Tidel {

namespace {

/// The object that the plug-in gives; null when it gives none, or fails to make it.
QObject *pluginObject(QPluginLoader &loader)
{
    try {
        return loader.instance();
    } catch (...) {
        return nullptr;
    }
}

} // namespace

QString pluginFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/')
                           + QLatin1String(TIDEL_PLUGIN_DIR));
}

FeedPluginInterface *loadPlugin(const QString &file, QString *error)
{
    QPluginLoader loader(file);
    // What is missing is missed here, and not when it is first called.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    const QJsonObject metaData = loader.metaData();
    const QString interface = metaData.value(QLatin1String("IID")).toString();
    // A file that says nothing of itself is asked for the reason; Qt does not run it.
    if (metaData.isEmpty()) {
        loader.load();
        *error = QStringLiteral("is not a plug-in: ") + loader.errorString();
        return nullptr;
    }
    if (interface != QLatin1String(FeedPluginInterface_iid)) {
        *error = QStringLiteral("is a plug-in for something else: \"%1\"").arg(interface);
        return nullptr;
    }
    if (!loader.load()) {
        *error = QStringLiteral("cannot be loaded: ") + loader.errorString();
        return nullptr;
    }
    QObject *object = pluginObject(loader);
    auto *plugin = qobject_cast<FeedPluginInterface *>(object);
    if (!plugin)
        *error = object ? QStringLiteral("does not download feeds, whatever it says of itself")
                        : QStringLiteral("fails to start");
    return plugin;
}

FeedPluginInterface *findPlugin(const QString &folder, QStringList *problems)
{
    const QDir dir(folder);
    const QStringList names = dir.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QString error;
        if (FeedPluginInterface *plugin = loadPlugin(dir.filePath(name), &error))
            return plugin;
        problems->append(dir.filePath(name) + QLatin1Char(' ') + error);
    }
    return nullptr;
}

FeedPluginInterface *downloadPlugin(Output &output)
{
    const QString folder = pluginFolder();
    QStringList problems;
    FeedPluginInterface *plugin = findPlugin(folder, &problems);
    for (const QString &problem : qAsConst(problems))
        output.note(QLatin1String("tidel: ") + problem);
    if (!plugin)
        output.error(
            QStringLiteral("no download plug-in in %1; building tidel with KDE Syndication makes one")
                .arg(folder));
    return plugin;
}

} // namespace Tidel
