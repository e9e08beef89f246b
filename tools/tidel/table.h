// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TABLE_H
#define TIDEL_TABLE_H

#include <QSet>
#include <QStringList>
#include <QVector>

namespace Tidel {

/// Rows of text in aligned columns, fit for a terminal.
class Table
{
public:
    /// The columns of \a rightAligned are numbers.
    explicit Table(const QSet<int> &rightAligned = {});

    void addRow(const QStringList &cells);

    bool isEmpty() const { return m_rows.isEmpty(); }
    /// One text a row, without blanks at its end.
    QStringList lines() const;

private:
    QVector<int> columnWidths() const;
    QString line(const QStringList &cells, const QVector<int> &widths) const;

    QSet<int> m_rightAligned;
    QVector<QStringList> m_rows;
};

} // namespace Tidel

#endif
