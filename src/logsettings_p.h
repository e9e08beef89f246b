// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef LOGSETTINGS_P_H
#define LOGSETTINGS_P_H

#include "linelayout_p.h"

#include <QHash>

/// The contents of a settings file. The logger never changes an object, but replaces it.
struct LogSettings
{
    QHash<QString, QstLogger::CategorySettings> categories;
    QString logFilePath;
    LineLayout layout;
    bool showUnlogged = false; ///< true if suppressed messages go to standard output
    bool hasLogFolder = false; ///< true if the folder of the log file exists
};

/// Reads the settings file at \a path. Settings whose group is missing stay as in \a previous, except
/// categories.
LogSettings readLogSettings(const QString &path, const LogSettings &previous);

#endif
