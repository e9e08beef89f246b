// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef OBSTACLE_P_H
#define OBSTACLE_P_H

#include <QString>

/// Returns why something cannot be written and what to do. \a error is the error number of the system.
QString obstacle(int error);

/// Returns why this process cannot write new files in \a folder and what to do; empty if it can.
QString obstacleIn(const QString &folder);

#endif
