// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LOGGING_H
#define TIDEL_LOGGING_H

#include <QString>

#include <qstlogger.h>

#include <memory>

namespace Tidel {

/**
 * A logger with the settings file \a settingsPath; null when it cannot log, and why in \a error.
 *
 * Messages without the fields of a structured one are filed under their Qt logging category, which is
 * "default" for most.
 */
std::unique_ptr<QstLogger> startLogging(const QString &settingsPath, QString *error);

} // namespace Tidel

#endif
