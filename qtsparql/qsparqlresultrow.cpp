// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlresultrow.h"

#include "sharedrecord_p.h"

#include <QDebug>

#include <algorithm>

class QSparqlResultRowPrivate : public QSharedData
{
public:
    explicit QSparqlResultRowPrivate(QVector<QSparqlBinding> givenBindings = {})
        : bindings(std::move(givenBindings))
    {
    }

    QVector<QSparqlBinding> bindings;
};

QSparqlResultRow::QSparqlResultRow() = default;

QSparqlResultRow::QSparqlResultRow(QVector<QSparqlBinding> bindings)
    : d(new QSparqlResultRowPrivate(std::move(bindings)))
{
}

QSparqlResultRow::QSparqlResultRow(const QSparqlResultRow &other) = default;

QSparqlResultRow::QSparqlResultRow(QSparqlResultRow &&other) noexcept = default;

QSparqlResultRow::~QSparqlResultRow() = default;

QSparqlResultRow &QSparqlResultRow::operator=(const QSparqlResultRow &other) = default;

QSparqlResultRow &QSparqlResultRow::operator=(QSparqlResultRow &&other) noexcept = default;

void QSparqlResultRow::append(const QSparqlBinding &binding) { writable(d).bindings.append(binding); }

void QSparqlResultRow::clear() { *this = QSparqlResultRow(); }

bool QSparqlResultRow::isEmpty() const { return readable(d).bindings.isEmpty(); }

int QSparqlResultRow::count() const { return int(readable(d).bindings.size()); }

QSparqlBinding QSparqlResultRow::binding(int index) const { return readable(d).bindings.value(index); }

QSparqlBinding QSparqlResultRow::binding(const QString &name) const { return binding(indexOf(name)); }

QVariant QSparqlResultRow::value(int index) const { return binding(index).value(); }

QVariant QSparqlResultRow::value(const QString &name) const { return binding(name).value(); }

QString QSparqlResultRow::variableName(int index) const { return binding(index).name(); }

int QSparqlResultRow::indexOf(const QString &name) const
{
    const QVector<QSparqlBinding> &bindings = readable(d).bindings;
    const auto found =
        std::find_if(bindings.cbegin(), bindings.cend(),
                     [&name](const QSparqlBinding &binding) { return binding.name() == name; });
    return found == bindings.cend() ? -1 : int(found - bindings.cbegin());
}

bool QSparqlResultRow::contains(const QString &name) const { return indexOf(name) != -1; }

bool QSparqlResultRow::operator==(const QSparqlResultRow &other) const
{
    return readable(d).bindings == readable(other.d).bindings;
}

QDebug operator<<(QDebug debug, const QSparqlResultRow &row)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "QSparqlResultRow(" << row.count() << ")";
    for (int i = 0; i < row.count(); ++i)
        debug << "\n " << row.binding(i);
    return debug;
}
