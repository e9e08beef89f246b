// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqltable_p.h"

#include "trackerdialect_p.h"

#include <QDateTime>

#include <array>
#include <cstring>

namespace {

constexpr size_t smallestBlock = 256;
constexpr size_t largestBlock = 65536; // unless a text is larger

/// Returns the time \a iso if it has the form of most: 2009-12-24T18:00:00Z. Qt's function for all forms
/// takes ten times as long.
QDateTime utcTime(const QString &iso)
{
    constexpr QStringView form = u"dddd-dd-ddTdd:dd:ddZ";
    std::array<int, 6> numbers{};
    size_t number = 0;
    for (int i = 0; iso.size() == form.size() && i < form.size(); ++i) {
        const bool isDigit = iso[i] >= u'0' && iso[i] <= u'9';
        if (isDigit != (form[i] == u'd') || (!isDigit && iso[i] != form[i]))
            return QDateTime();
        if (isDigit)
            numbers[number] = 10 * numbers[number] + (iso[i].unicode() - u'0');
        else
            ++number;
    }
    const QTime time(numbers[3], numbers[4], numbers[5]);
    // Qt takes midnight for an invalid time.
    return time.isValid() ? QDateTime(QDate(numbers[0], numbers[1], numbers[2]), time, Qt::UTC) : QDateTime();
}

/// Returns the time \a iso; the text itself if it is none.
QVariant readTime(const QString &iso)
{
    QDateTime time = utcTime(iso);
    if (!time.isValid())
        time = QDateTime::fromString(iso, Qt::ISODateWithMs);
    return time.isValid() ? QVariant(time) : QVariant(iso);
}

} // namespace

SparqlTable::Cell SparqlTable::cell(int row, int column) const
{
    const Value &value = m_values[size_t(row) * size_t(m_names.size()) + size_t(column)];
    const auto text = [&value] { return QString::fromUtf8(value.utf8, int(value.length)); };
    switch (value.type) {
    case Type::Nothing: return {};
    case Type::Boolean: return {value.number != 0};
    case Type::Integer: return {qlonglong(value.number)};
    case Type::Double: return {value.real};
    case Type::Literal: return {text()};
    case Type::Time: return {readTime(text())};
    case Type::Resource: return {TrackerDialect::iriFromTracker(text()), CellKind::Resource};
    case Type::BlankNode: return {text(), CellKind::BlankNode};
    }
    Q_UNREACHABLE();
}

void SparqlTable::append(double value)
{
    m_values.emplace_back(Type::Double, 0);
    m_values.back().real = value;
}

void SparqlTable::append(TextType type, const char *utf8, size_t length)
{
    constexpr Type types[] = {Type::Literal, Type::Time, Type::Resource, Type::BlankNode};
    m_values.push_back(keep(types[int(type)], utf8, length));
}

void SparqlTable::fillColumn(int column, const QByteArray &iri)
{
    const Value value = keep(Type::Resource, iri.constData(), size_t(iri.size()));
    for (size_t i = size_t(column); i < m_values.size(); i += size_t(m_names.size()))
        m_values[i] = value;
}

/// Copies a text into a block.
SparqlTable::Value SparqlTable::keep(Type type, const char *utf8, size_t length)
{
    if (!m_free || length > m_freeSize) {
        // The first blocks are small, because most results are.
        const size_t next = std::min(smallestBlock << std::min<size_t>(m_blocks.size(), 8), largestBlock);
        m_freeSize = std::max(length, next);
        m_blocks.emplace_back(new char[m_freeSize]);
        m_free = m_blocks.back().get();
    }
    Value value(type, 0);
    value.utf8 = m_free;
    value.length = quint32(length);
    if (length > 0)
        std::memcpy(m_free, utf8, length);
    m_free += length;
    m_freeSize -= length;
    return value;
}
