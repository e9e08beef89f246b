// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERMESSAGES_P_H
#define TRACKERMESSAGES_P_H

#include "qsparqlerror.h"

/**
 * What Tracker writes to the log of GLib. The messages are for developers, but the only sign of a commit that
 * failed, for example because the disk is full, is one of them.
 */
namespace TrackerMessages {

/// Keeps the messages out of the terminal.
void route();
/// Forgets what was said before an update on this thread.
void forget();
/// Returns the error of the last commit on this thread. Tracker logs it and reports success.
QSparqlError failureOfCommit();

} // namespace TrackerMessages

#endif
