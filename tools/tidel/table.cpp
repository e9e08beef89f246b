// SPDX-License-Identifier: LGPL-2.1-or-later
#include "table.h"

#include "terminaltext.h"

namespace Tidel {

namespace {

// A longer cell moves the rest of its row to the right, but not the other rows.
constexpr int maximumColumnWidth = 60;
constexpr int gap = 2;

} // namespace

Table::Table(const QSet<int> &rightAligned) : m_rightAligned(rightAligned) { }

void Table::addRow(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells)
        row.append(terminalText(cell));
    m_rows.append(row);
}

QStringList Table::lines() const
{
    const QVector<int> widths = columnWidths({});
    QStringList lines;
    for (const QStringList &row : m_rows)
        lines.append(line(row, widths));
    return lines;
}

void Table::setElastic(const QVector<int> &columns, int least)
{
    m_elastic = columns;
    m_least = least;
}

QStringList Table::lines(int width) const
{
    QVector<int> widths = columnWidths(m_elastic);
    int needed = gap * (int(widths.size()) - 1);
    for (int column : qAsConst(widths))
        needed += column;
    shrink(&widths, needed - width);
    QStringList lines;
    for (QStringList row : m_rows) {
        for (int column : m_elastic) {
            if (column < row.size())
                row[column] = cut(row.at(column), widths.at(column));
        }
        lines.append(line(row, widths));
    }
    return lines;
}

void Table::shrink(QVector<int> *widths, int excess) const
{
    for (int column : m_elastic) {
        if (column >= widths->size() || excess <= 0)
            continue;
        const int taken = qBound(0, widths->at(column) - m_least, excess);
        (*widths)[column] -= taken;
        excess -= taken;
    }
}

QVector<int> Table::columnWidths(const QVector<int> &unlimited) const
{
    QVector<int> widths;
    for (const QStringList &row : m_rows) {
        while (widths.size() < row.size())
            widths.append(0);
        for (int i = 0; i < row.size(); ++i)
            widths[i] = qMax(widths.at(i),
                             unlimited.contains(i) ? displayWidth(row.at(i))
                                                   : qMin(displayWidth(row.at(i)), maximumColumnWidth));
    }
    return widths;
}

QString Table::line(const QStringList &cells, const QVector<int> &widths) const
{
    QString text;
    for (int i = 0; i < cells.size(); ++i) {
        const QString padding(qMax(0, widths.at(i) - displayWidth(cells.at(i))), QLatin1Char(' '));
        if (i > 0)
            text += QString(gap, QLatin1Char(' '));
        text += m_rightAligned.contains(i) ? padding + cells.at(i) : cells.at(i) + padding;
    }
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace Tidel
