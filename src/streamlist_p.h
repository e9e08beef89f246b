// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STREAMLIST_P_H
#define STREAMLIST_P_H

#include <QDataStream>
#include <QIODevice>
#include <QList>

/// Returns true if the next element of \a stream consumes bytes; otherwise returns false. The stream is not
/// at its end. After a failure it reads nothing while its device is in a transaction or when its device
/// fails.
inline bool canReadNext(const QDataStream &stream)
{
    if (stream.status() == QDataStream::Ok)
        return true;
    char next = 0;
    return !stream.device()->isTransactionStarted() && stream.device()->peek(&next, 1) == 1;
}

/// Replaces \a list by the list that QDataStream has written. Reading stops after the element that ends the
/// stream, even if the count promises more elements. A count without any element sets the status ReadPastEnd.
///
/// Qt's own reader reserves memory for the whole count and drops all elements when one of them is broken.
/// This one uses no more memory than the bytes of the stream justify, and keeps every element that was read.
template <typename T> QDataStream &readStreamList(QDataStream &stream, QList<T> &list)
{
    list.clear();
    quint32 count = 0;
    stream >> count;
    if (count > 0 && stream.atEnd()) {
        stream.setStatus(QDataStream::ReadPastEnd);
        return stream;
    }
    for (quint32 i = 0; i < count; ++i) {
        T element;
        stream >> element;
        list.append(element);
        if (stream.atEnd() || !canReadNext(stream))
            break;
    }
    return stream;
}

#endif
