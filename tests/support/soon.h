// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SOON_H
#define SOON_H

#include <QTest>

/// How long tests wait for what has to happen, in milliseconds. A busy machine may need many seconds.
constexpr int longestWait = 60000;

#define VERIFY_SOON(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, longestWait)
#define COMPARE_SOON(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, longestWait)

#endif
