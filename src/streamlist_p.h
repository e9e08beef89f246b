// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STREAMLIST_P_H
#define STREAMLIST_P_H

#include <QDataStream>
#include <QList>

/// Reads what QDataStream writes for \a list. Where Qt's own reading trusts the count, and leaves nothing in
/// the list when an element is missing, this one takes the elements that are there and no memory for others;
/// a missing one leaves the status ReadPastEnd.
template <typename T> QDataStream &readStreamList(QDataStream &stream, QList<T> &list)
{
    list.clear();
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        if (stream.atEnd()) {
            stream.setStatus(QDataStream::ReadPastEnd);
            break;
        }
        T element;
        stream >> element;
        list.append(element);
    }
    return stream;
}

#endif
