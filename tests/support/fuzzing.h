// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FUZZING_H
#define FUZZING_H

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <cstdlib>

/// Ends the program, and so the search for such an input, if \a holds is false. \a what says what should
/// hold.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

/// The input as text. UTF-16 behind a byte order mark can have surrogates without their partners.
inline QString textOf(const QByteArray &bytes)
{
    if (!bytes.startsWith("\xff\xfe"))
        return QString::fromUtf8(bytes);
    QString text;
    for (int i = 2; i + 1 < bytes.size(); i += 2)
        text += QChar(ushort(uchar(bytes[i]) | uchar(bytes[i + 1]) << 8));
    return text;
}

#endif
