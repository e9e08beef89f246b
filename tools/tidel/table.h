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

    /// The rows as texts without trailing blanks.
    QStringList lines() const;

private:
    /// The widths of the columns on the terminal.
    QVector<int> columnWidths() const;
    /// The row \a cells as text, with columns of \a widths.
    QString line(const QStringList &cells, const QVector<int> &widths) const;

    QSet<int> m_rightAligned;
    QVector<QStringList> m_rows;
};

} // namespace Tidel

#endif
