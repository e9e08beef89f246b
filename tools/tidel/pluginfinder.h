// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PLUGINFINDER_H
#define TIDEL_PLUGINFINDER_H

#include <QString>
#include <QStringList>

class FeedPluginInterface;

namespace Tidel {

class Output;

/// Where the plug-ins of this program are, seen from the place of its executable.
QString pluginFolder();

/// The download plug-in \a file, which stays loaded; on failure null, and \a error says why.
FeedPluginInterface *loadPlugin(const QString &file, QString *error);

/// The first file of \a folder, by name, that is a download plug-in; null when none is. \a problems has a
/// line about each that came before it.
FeedPluginInterface *findPlugin(const QString &folder, QStringList *problems);

/// The plug-in that downloads for this program; null when there is none, which \a output is told.
FeedPluginInterface *downloadPlugin(Output &output);

} // namespace Tidel

#endif
