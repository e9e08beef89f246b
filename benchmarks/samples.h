// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SAMPLES_H
#define SAMPLES_H

#include <feedchannel.h>

/// A channel that is told from others by its number.
FeedChannel sampleChannel(int number);

/// Messages with 1 KB of HTML each; the same numbers give the same links.
QList<FeedMessage> sampleMessages(int first, int count);

#endif
