// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackermessages_p.h"

#include "tracker_p.h"

#include <QLoggingCategory>

// They appear in a terminal only if this category is enabled.
Q_LOGGING_CATEGORY(lcTracker, "tidel.sparql.tracker", QtFatalMsg)

namespace {

/// The last critical message of Tracker on this thread. The call that caused it can still report success.
thread_local QString lastCriticalMessage;

void logFromGLib(const gchar *, GLogLevelFlags level, const gchar *message, gpointer)
{
    if (level & G_LOG_LEVEL_CRITICAL)
        lastCriticalMessage = QString::fromUtf8(message);
    qCDebug(lcTracker) << message;
}

} // namespace

namespace TrackerMessages {

void route()
{
    static const guint handler =
        g_log_set_handler("Tracker", GLogLevelFlags(G_LOG_LEVEL_MASK), logFromGLib, nullptr);
    Q_UNUSED(handler)
}

void forget() { lastCriticalMessage.clear(); }

QSparqlError failureOfCommit()
{
    return lastCriticalMessage.isEmpty()
        ? QSparqlError()
        : QSparqlError(QStringLiteral("The update failed: ") + lastCriticalMessage,
                       QSparqlError::BackendError);
}

} // namespace TrackerMessages
