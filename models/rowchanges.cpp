// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rowchanges_p.h"

#include <algorithm>
#include <unordered_map>

namespace Tidel {

namespace {

/// Makes runs of rows that come in their order.
class Runs
{
public:
    void add(int row)
    {
        if (!m_runs.isEmpty() && m_runs.constLast().first + m_runs.constLast().count == row)
            ++m_runs.last().count;
        else
            m_runs.append({row, 1});
    }
    QVector<RowRun> all() const { return m_runs; }

private:
    QVector<RowRun> m_runs;
};

/// The number of rows that are the same at the beginning of both lists.
int commonStart(const UriList &from, const UriList &to)
{
    int count = 0;
    while (count < qMin(from.size(), to.size()) && from.viewAt(count) == to.viewAt(count))
        ++count;
    return count;
}

/// The number of rows that are the same at the end of both lists, of at most \a limit.
int commonEnd(const UriList &from, const UriList &to, int limit)
{
    int count = 0;
    while (count < limit && from.viewAt(from.size() - count - 1) == to.viewAt(to.size() - count - 1))
        ++count;
    return count;
}

} // namespace

std::vector<bool> longestAscent(const QVector<int> &values)
{
    QVector<int> ends; // Where the ascent of each length ends whose end is the least.
    QVector<int> before(values.size(), -1);
    const auto isLess = [&values](int index, int value) { return values.at(index) < value; };
    for (int i = 0; i < values.size(); ++i) {
        if (values.at(i) < 0)
            continue;
        const auto end = std::lower_bound(ends.begin(), ends.end(), values.at(i), isLess);
        before[i] = end == ends.begin() ? -1 : *(end - 1);
        if (end == ends.end())
            ends.append(i);
        else
            *end = i;
    }
    std::vector<bool> belongs(size_t(values.size()), false);
    for (int i = ends.isEmpty() ? -1 : ends.constLast(); i >= 0; i = before.at(i))
        belongs[size_t(i)] = true;
    return belongs;
}

RowChanges rowChanges(const UriList &from, const UriList &to)
{
    // Most changes concern a few rows that are near each other.
    const int start = commonStart(from, to);
    const int end = commonEnd(from, to, qMin(from.size(), to.size()) - start);
    std::unordered_map<std::string_view, int> rows;
    for (int row = start; row < from.size() - end; ++row)
        rows.emplace(from.viewAt(row), row);
    QVector<int> oldRows;
    for (int row = start; row < to.size() - end; ++row) {
        const auto old = rows.find(to.viewAt(row));
        oldRows.append(old == rows.end() ? -1 : old->second);
    }
    const std::vector<bool> stays = longestAscent(oldRows);
    std::vector<bool> isKept(size_t(from.size()), false);
    Runs inserted;
    for (int i = 0; i < oldRows.size(); ++i) {
        if (stays[size_t(i)])
            isKept[size_t(oldRows.at(i))] = true;
        else
            inserted.add(start + i);
    }
    Runs removed;
    for (int row = start; row < from.size() - end; ++row) {
        if (!isKept[size_t(row)])
            removed.add(row);
    }
    return {removed.all(), inserted.all()};
}

} // namespace Tidel
