// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PLUGINFINDER_H
#define TIDEL_PLUGINFINDER_H

#include "error.h"
#include "tidelreaderglobal.h"

#include <QString>
#include <QStringList>

class FeedPluginInterface;

namespace Tidel {

/// The folder in which the download plug-ins are installed: `tidel/plugins` beside this library.
TIDELREADER_EXPORT QString pluginFolder();

/// Loads the download plug-in \a file, which stays loaded until the process ends. Fails with
/// Error::PluginUnusable.
TIDELREADER_EXPORT Result<FeedPluginInterface *> loadPlugin(const QString &file);

/// Loads the first file of \a folder, by name, that is a download plug-in. Fails with Error::PluginUnusable
/// if there is none. A line about each unusable file is appended to \a problems, which may be null.
TIDELREADER_EXPORT Result<FeedPluginInterface *> findPlugin(const QString &folder,
                                                            QStringList *problems = nullptr);

} // namespace Tidel

#endif
