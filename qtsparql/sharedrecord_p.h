// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SHAREDRECORD_P_H
#define SHAREDRECORD_P_H

#include <QSharedDataPointer>

// A default-constructed value has no record and allocates nothing. It reads as if it had an empty record.

/// Returns the record for reading.
template <typename Record> const Record &readable(const QSharedDataPointer<Record> &d)
{
    static const Record empty;
    return d ? *d : empty;
}

/// Returns the record for writing, which no other value shares.
template <typename Record> Record &writable(QSharedDataPointer<Record> &d)
{
    if (!d)
        d = new Record;
    return *d;
}

#endif
