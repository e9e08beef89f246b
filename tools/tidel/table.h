// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TABLE_H
#define TIDEL_TABLE_H

#include <QSet>
#include <QStringList>
#include <QVector>

namespace Tidel {

/// Rows of text in aligned columns for a terminal.
class Table
{
public:
    /// Creates an empty table. The columns with the numbers \a rightAligned are aligned to the right.
    explicit Table(const QSet<int> &rightAligned = {});

    /// Appends a row.
    void addRow(const QStringList &cells);

    /// Lets the columns \a columns give way, the first one first, where a row must fit a width. None of them
    /// gets narrower than \a least.
    void setElastic(const QVector<int> &columns, int least);

    /// The rows as texts without trailing blanks.
    QStringList lines() const;
    /// As lines(), with the elastic columns cut so that each row has \a width columns, if that can be done.
    QStringList lines(int width) const;

private:
    /// The widths of the columns on the terminal. The columns \a unlimited are as wide as their longest
    /// cells.
    QVector<int> columnWidths(const QVector<int> &unlimited) const;
    /// Takes \a excess columns off the elastic ones of \a widths.
    void shrink(QVector<int> *widths, int excess) const;
    /// The row \a cells as text, with columns of \a widths.
    QString line(const QStringList &cells, const QVector<int> &widths) const;

    QSet<int> m_rightAligned;
    QVector<int> m_elastic;
    int m_least = 0;
    QVector<QStringList> m_rows;
};

} // namespace Tidel

#endif
