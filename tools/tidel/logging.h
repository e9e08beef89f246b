// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LOGGING_H
#define TIDEL_LOGGING_H

#include <QString>

#include <qstlogger.h>

#include <memory>

namespace Tidel {

/**
 * Creates a logger with the settings file \a settingsPath. Returns null on failure, and sets \a error to the
 * reason.
 *
 * Messages that are not structured get the name of their Qt logging category, which is usually "default".
 */
std::unique_ptr<QstLogger> startLogging(const QString &settingsPath, QString *error);

} // namespace Tidel

#endif
