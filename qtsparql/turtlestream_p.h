// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TURTLESTREAM_P_H
#define TURTLESTREAM_P_H

#include "tracker_p.h"

#include <QByteArray>
#include <QString>

class QIODevice;

/// Returns the number of bytes of the Turtle in the file \a fileName after decompression, or 0 if it cannot
/// be read.
qint64 sizeOfTurtle(const QString &fileName);

// The following functions block until Tracker has finished. On failure they set error and return false.

/// Writes what \a description describes to \a device, as Turtle that is compressed with gzip.
bool writeTurtle(TrackerSparqlConnection *connection, const QByteArray &description, QIODevice *device,
                 GError **error);
/// Adds what the file \a fileName says to the store. The file is Turtle, and may be compressed with gzip. On
/// failure nothing is added.
bool readTurtle(TrackerSparqlConnection *connection, const QString &fileName, GError **error);

#endif
