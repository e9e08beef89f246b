// SPDX-License-Identifier: LGPL-2.1-or-later
#include "worddiff.h"

#include <QStringList>

#include <algorithm>

namespace Tidel {

namespace {

constexpr int maximumDistance = 2000;

QStringList wordsOf(const QString &text)
{
    QStringList words;
    int begin = 0;
    for (int i = 1; i < text.size(); ++i) {
        // A line break is a word of its own.
        const bool isLineEnd = text.at(i - 1) == QLatin1Char('\n') || text.at(i) == QLatin1Char('\n');
        if (isLineEnd || (text.at(i - 1).isSpace() && !text.at(i).isSpace())) {
            words.append(text.mid(begin, i - begin));
            begin = i;
        }
    }
    if (begin < text.size())
        words.append(text.mid(begin));
    return words;
}

/// Collects the pieces of a comparison. Joins neighbours of one kind.
class Pieces
{
public:
    void append(DiffPiece::Kind kind, const QString &text)
    {
        if (!m_pieces.isEmpty() && m_pieces.constLast().kind == kind)
            m_pieces.last().text += text;
        else
            m_pieces.append({kind, text});
    }
    void append(DiffPiece::Kind kind, const QStringList &words)
    {
        for (const QString &word : words)
            append(kind, word);
    }
    QVector<DiffPiece> value() const { return m_pieces; }

private:
    QVector<DiffPiece> m_pieces;
};

/// The greedy algorithm of Myers: how far one gets into both lists of words with each number of changes.
class Comparison
{
public:
    Comparison(const QStringList &before, const QStringList &after) : m_before(before), m_after(after) { }

    void appendTo(Pieces *pieces);

private:
    using Row = std::vector<int>; // how far into m_before, for each diagonal from -distance to distance

    /// Returns how far one gets from \a x on the diagonal x - y without a change.
    int slide(int x, int diagonal) const
    {
        while (x < m_before.size() && x - diagonal < m_after.size()
               && m_before.at(x) == m_after.at(x - diagonal))
            ++x;
        return x;
    }
    /// Returns true if the way to \a diagonal with \a distance changes ends with an added word.
    static bool isAddition(const Row &last, int distance, int diagonal)
    {
        return diagonal == -distance
            || (diagonal != distance
                && at(last, distance - 1, diagonal - 1) < at(last, distance - 1, diagonal + 1));
    }
    static size_t place(int distance, int diagonal)
    {
        const int index = diagonal + distance;
        return size_t(index);
    }
    static int at(const Row &row, int distance, int diagonal) { return row[place(distance, diagonal)]; }
    bool search();

    const QStringList &m_before;
    const QStringList &m_after;
    std::vector<Row> m_rows;
};

/// Returns false if there are too many changes.
bool Comparison::search()
{
    const int goal = int(m_before.size() - m_after.size());
    for (int distance = 0; distance <= maximumDistance; ++distance) {
        Row row(size_t(2 * distance + 1), 0);
        for (int diagonal = -distance; diagonal <= distance; diagonal += 2) {
            int x = 0;
            if (distance > 0) {
                const Row &last = m_rows.back();
                x = isAddition(last, distance, diagonal) ? at(last, distance - 1, diagonal + 1)
                                                         : at(last, distance - 1, diagonal - 1) + 1;
            }
            row[place(distance, diagonal)] = slide(x, diagonal);
            if (diagonal == goal && at(row, distance, diagonal) >= m_before.size()) {
                m_rows.push_back(row);
                return true;
            }
        }
        m_rows.push_back(row);
    }
    return false;
}

void Comparison::appendTo(Pieces *pieces)
{
    if (!search()) {
        pieces->append(DiffPiece::Removed, m_before);
        pieces->append(DiffPiece::Added, m_after);
        return;
    }
    QVector<DiffPiece> backwards;
    int x = int(m_before.size());
    int y = int(m_after.size());
    for (int distance = int(m_rows.size()) - 1; distance >= 0; --distance) {
        const int diagonal = x - y;
        const Row *last = distance > 0 ? &m_rows[size_t(distance) - 1] : nullptr;
        const bool isAdded = last && isAddition(*last, distance, diagonal);
        int from = 0;
        if (last)
            from =
                isAdded ? at(*last, distance - 1, diagonal + 1) : at(*last, distance - 1, diagonal - 1) + 1;
        for (; x > from; --x, --y)
            backwards.append({DiffPiece::Same, m_before.at(x - 1)});
        if (last && isAdded)
            backwards.append({DiffPiece::Added, m_after.at(--y)});
        else if (last)
            backwards.append({DiffPiece::Removed, m_before.at(--x)});
    }
    for (auto piece = backwards.crbegin(); piece != backwards.crend(); ++piece)
        pieces->append(piece->kind, piece->text);
}

} // namespace

QVector<DiffPiece> wordDiff(const QString &before, const QString &after)
{
    QStringList one = wordsOf(before);
    QStringList other = wordsOf(after);
    const auto ends = std::mismatch(one.cbegin(), one.cend(), other.cbegin(), other.cend());
    const int same = int(ends.first - one.cbegin());
    const int shorter = int(std::min(one.size(), other.size())) - same;
    int sameAtEnd = 0;
    while (sameAtEnd < shorter
           && one.at(one.size() - 1 - sameAtEnd) == other.at(other.size() - 1 - sameAtEnd))
        ++sameAtEnd;

    Pieces pieces;
    pieces.append(DiffPiece::Same, one.mid(0, same));
    const QStringList end = one.mid(one.size() - sameAtEnd);
    one = one.mid(same, one.size() - same - sameAtEnd);
    other = other.mid(same, other.size() - same - sameAtEnd);
    Comparison(one, other).appendTo(&pieces);
    pieces.append(DiffPiece::Same, end);
    return pieces.value();
}

} // namespace Tidel
