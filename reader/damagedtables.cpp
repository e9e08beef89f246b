// SPDX-License-Identifier: LGPL-2.1-or-later
#include "damagedtables_p.h"

namespace Tidel {

namespace {

QString quoted(const QString &name)
{
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\""))
        + QLatin1Char('"');
}

QString quoted(const QStringList &names)
{
    QStringList parts;
    for (const QString &name : names)
        parts.append(quoted(name));
    return parts.join(QLatin1String(", "));
}

constexpr qint64 maximumGap = qint64(1) << 48;

/// Reads a table in the order of its row numbers. Where a page is damaged, goes on behind it.
class GapReader
{
public:
    GapReader(SqliteFile &file, const Table &table)
        : m_file(file), m_select(QStringLiteral("SELECT rowid, %1 FROM %2 WHERE rowid >= ?1 ORDER BY rowid")
                                     .arg(quoted(table.columns), quoted(table.name)))
    {
    }

    /// Returns true if nothing was damaged; otherwise returns false.
    bool read(const Row &row)
    {
        qint64 next = 0;
        const Row noted = [&](const QVariantList &values) {
            next = values.first().toLongLong() + 1;
            row(values.mid(1));
        };
        if (m_file.read(m_select, noted, next) == SqliteFile::Done)
            return true;
        while (findBehindGap(&next) && m_file.read(m_select, noted, next) != SqliteFile::Done) { }
        return false;
    }

private:
    bool isReadable(qint64 from) const
    {
        return m_file.read(
                   m_select + QLatin1String(" LIMIT 1"), [](const QVariantList &) {}, from)
            == SqliteFile::Done;
    }

    /// Sets \a place, which cannot be read, to the next row number from which on the table can be read.
    /// Returns false if there is none; otherwise returns true.
    bool findBehindGap(qint64 *place) const
    {
        qint64 gap = 1;
        while (gap < maximumGap && !isReadable(*place + gap))
            gap *= 2;
        if (gap >= maximumGap)
            return false;
        qint64 damaged = gap / 2;
        while (gap - damaged > 1) {
            const qint64 middle = damaged + (gap - damaged) / 2;
            (isReadable(*place + middle) ? gap : damaged) = middle;
        }
        *place += gap;
        return true;
    }

    SqliteFile &m_file;
    const QString m_select;
};

} // namespace

Table namesTable() { return {QStringLiteral("Resource"), {QStringLiteral("ID"), QStringLiteral("Uri")}}; }

QVector<Table> tablesOf(SqliteFile &file)
{
    QVector<Table> tables;
    file.read(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND sql LIKE 'CREATE TABLE%'"),
        [&](const QVariantList &row) {
            tables.append({row.first().toString(), {}});
        });
    for (Table &table : tables)
        file.read(
            QStringLiteral("SELECT name FROM pragma_table_info(?1)"),
            [&](const QVariantList &row) { table.columns.append(row.first().toString()); }, table.name);
    return tables;
}

void readRows(SqliteFile &file, const Table &table, const Row &row)
{
    if (GapReader(file, table).read(row) || table.columns.size() != 2)
        return;
    // An index of both columns is a second copy. It is read from both ends.
    const QString columns = quoted(table.columns);
    for (const QString &order : {columns, quoted(table.columns.last())}) {
        for (const char *direction : {"ASC", "DESC"})
            file.read(QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                          .arg(columns, quoted(table.name),
                               QString(order).replace(QLatin1String(", "),
                                                      QLatin1Char(' ') + QLatin1String(direction)
                                                          + QLatin1String(", "))
                                   + QLatin1Char(' ') + QLatin1String(direction)),
                      row);
    }
}

} // namespace Tidel
