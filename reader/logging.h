// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LOGGING_H
#define TIDEL_LOGGING_H

#include "error.h"
#include "tidelreaderglobal.h"

#include <QString>

#include <qstlogger.h>

#include <memory>

namespace Tidel {

/**
 * Creates the logger of the process with the settings file \a settingsPath, and keeps other messages than
 * traces for a person. Fails with Error::FileFailed if the settings or the log file cannot be opened, or if
 * the process has had a logger before; the message handler stays as it was then.
 *
 * \code
 * const auto logger = startLogging("/etc/reader/log-settings.ini");
 * if (!logger)
 *     return fail(logger.error());
 * qWarning("The window does not fit"); // is logged, and printed to standard error as before
 * \endcode
 *
 * A QstLogger alone takes every message of the process, and writes an empty line to standard output for each
 * one that is not a trace. Here, such a message goes to the message handler that was installed before, and to
 * the log in the category of QLoggingCategory, which is usually "default". Traces go to the log alone. A
 * trace is a message with at least five line breaks whose third line is a number. Passwords of addresses are
 * left out of all messages.
 *
 * Call this, and destroy the logger, while no other thread writes messages. The message handler stays when
 * the logger has gone.
 */
TIDELREADER_EXPORT Result<std::unique_ptr<QstLogger>> startLogging(const QString &settingsPath);

} // namespace Tidel

#endif
