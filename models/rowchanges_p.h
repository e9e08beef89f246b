// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ROWCHANGES_P_H
#define TIDEL_ROWCHANGES_P_H

#include <TidelReader/urilist.h>

#include <QVector>

#include <vector>

namespace Tidel {

/// Rows that follow each other.
struct RowRun
{
    int first = 0;
    int count = 0;
};

/// How one list becomes another one: first the removed rows go, then the inserted rows come.
struct RowChanges
{
    QVector<RowRun> removed; ///< Rows of the one list, in its order.
    QVector<RowRun> inserted; ///< Rows of the other list, in its order.
};

/// The fewest changes that make \a to of \a from. Both have each URI once.
RowChanges rowChanges(const UriList &from, const UriList &to);

/// For each of \a values, whether it belongs to the longest ascending sequence among them. Leaves out
/// negative ones. No other value may occur twice.
std::vector<bool> longestAscent(const QVector<int> &values);

} // namespace Tidel

#endif
