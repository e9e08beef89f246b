// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PLUGINFINDER_H
#define TIDEL_PLUGINFINDER_H

#include "error.h"
#include "tidelreaderglobal.h"

#include <QList>
#include <QString>
#include <QStringList>

class FeedPluginInterface;

namespace Tidel {

/// The folder in which the download plug-ins are installed: `tidel/plugins` beside this library.
TIDELREADER_EXPORT QString pluginFolder();

/// Loads the download plug-in \a file, which stays loaded until the process ends. Fails with
/// Error::PluginUnusable.
TIDELREADER_EXPORT Result<FeedPluginInterface *> loadPlugin(const QString &file);

/// What a plug-in says of itself in its metadata.
struct PluginDescription
{
    QString file; ///< Its path.
    QString name; ///< Empty if it says nothing, as the other texts.
    QString version;
    QString description;
    QStringList addresses; ///< The beginnings of the addresses that it takes; all addresses if it is empty.
};

/// Describes the files of \a folder, by name, without running them.
TIDELREADER_EXPORT QList<PluginDescription> describePlugins(const QString &folder);

/// Loads the download plug-ins of \a folder. If there are several, returns one that passes each operation on
/// to the plug-in that takes the address: the one with the longest matching beginning, and of several the
/// first one by file name. That one is the same
/// for all calls in a thread and goes with the thread. Fails with Error::PluginUnusable if
/// there is none. A line about each unusable file is appended to \a problems, which may be null.
TIDELREADER_EXPORT Result<FeedPluginInterface *> findPlugin(const QString &folder,
                                                            QStringList *problems = nullptr);

} // namespace Tidel

#endif
