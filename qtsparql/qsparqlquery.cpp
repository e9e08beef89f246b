// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlquery.h"

#include "queryshape_p.h"
#include "sharedrecord_p.h"
#include "sparqllexer_p.h"

#include <QDebug>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcQuery, "tidel.sparql.query")

class QSparqlQueryPrivate : public QSharedData
{
public:
    QString query;
    QMap<QString, QSparqlBinding> bindings;
    QSparqlQuery::StatementType type = QSparqlQuery::SelectStatement;
};

QSparqlQuery::QSparqlQuery(const QString &query, StatementType type)
{
    if (query.isNull() && type == SelectStatement)
        return;
    d = new QSparqlQueryPrivate;
    d->query = query;
    d->type = type;
}

QSparqlQuery::QSparqlQuery(const QSparqlQuery &other) = default;

QSparqlQuery::QSparqlQuery(QSparqlQuery &&other) noexcept = default;

QSparqlQuery::~QSparqlQuery() = default;

QSparqlQuery &QSparqlQuery::operator=(const QSparqlQuery &other) = default;

QSparqlQuery &QSparqlQuery::operator=(QSparqlQuery &&other) noexcept = default;

QString QSparqlQuery::query() const { return readable(d).query; }

void QSparqlQuery::setQuery(const QString &query) { writable(d).query = query; }

QSparqlQuery::StatementType QSparqlQuery::type() const { return readable(d).type; }

void QSparqlQuery::setType(StatementType type) { writable(d).type = type; }

void QSparqlQuery::bindValue(const QString &placeholder, const QVariant &value)
{
    bindValue(QSparqlBinding(placeholder, value));
}

void QSparqlQuery::bindValue(const QSparqlBinding &binding)
{
    if (binding.isValid())
        writable(d).bindings.insert(binding.name(), binding);
    else
        writable(d).bindings.remove(binding.name());
}

void QSparqlQuery::bindValues(const QSparqlResultRow &row)
{
    for (int i = 0; i < row.count(); ++i)
        bindValue(row.binding(i));
}

const QMap<QString, QSparqlBinding> &QSparqlQuery::bindings() const { return readable(d).bindings; }

QVariant QSparqlQuery::boundValue(const QString &placeholder) const
{
    return readable(d).bindings.value(placeholder).value();
}

QMap<QString, QVariant> QSparqlQuery::boundValues() const
{
    QMap<QString, QVariant> values;
    for (const QSparqlBinding &binding : readable(d).bindings)
        values.insert(binding.name(), binding.value());
    return values;
}

void QSparqlQuery::unbindValues()
{
    if (d)
        d->bindings.clear();
}

QString QSparqlQuery::preparedQueryText() const
{
    const QString &statement = readable(d).query;
    if (!hasPair(statement, u'?', u':') && !hasPair(statement, u'$', u':'))
        return statement;
    const QMap<QString, QSparqlBinding> &bindings = readable(d).bindings;
    QString text;
    int copied = 0;
    const auto shape = QueryShape::of(statement);
    for (const QueryShape::Place &place : shape->places) {
        const auto binding = bindings.constFind(place.name);
        if (binding == bindings.cend()) {
            qCWarning(lcQuery) << "No value is bound to the placeholder" << place.name;
            continue;
        }
        text.append(statement.constData() + copied, place.start - copied);
        text += binding->toString();
        copied = place.end;
    }
    return copied == 0 ? statement : text.append(statement.constData() + copied, statement.size() - copied);
}

QDebug operator<<(QDebug debug, const QSparqlQuery &query)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "QSparqlQuery(" << int(query.type()) << ", " << query.query() << ")";
    const QMap<QString, QVariant> values = query.boundValues();
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        debug << "\n " << QSparqlBinding(value.key(), value.value());
    return debug;
}
