// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STREAMBYTES_H
#define STREAMBYTES_H

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

/// Returns the bytes of \a values, one after the other, in the default version and byte order of QDataStream.
template <typename... Values> QByteArray streamed(const Values &...values)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    (stream << ... << values);
    return bytes;
}

#endif
