// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef LOGSETTINGS_P_H
#define LOGSETTINGS_P_H

#include "linelayout_p.h"

#include <QHash>

/// What a logger's settings file says; never changed once the logger has it.
struct LogSettings
{
    QHash<QString, QstLogger::CategorySettings> categories;
    QString logFilePath;
    LineLayout layout;
    bool showUnlogged = false; ///< whether suppressed messages go to standard output
    bool hasLogFolder = false;
};

/// The settings file at \a path. What it has no group for stays as in \a previous, except for categories.
LogSettings readLogSettings(const QString &path, const LogSettings &previous);

#endif
