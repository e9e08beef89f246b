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
    QVector<int> columnWidths() const;
    QString line(const QStringList &cells, const QVector<int> &widths) const;

    QSet<int> m_rightAligned;
    QVector<QStringList> m_rows;
};

} // namespace Tidel

#endif
