// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SAMPLES_H
#define SAMPLES_H

#include <feedchannel.h>

/// Returns the sample channel \a number.
FeedChannel sampleChannel(int number);

/// Returns \a count messages with 1 KB of HTML each, from number \a first. Each number has its own link.
QList<FeedMessage> sampleMessages(int first, int count);

#endif
