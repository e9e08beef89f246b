// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlquery.h"

#include "sparqllexer_p.h"

#include <QDebug>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcQuery, "tidel.sparql.query")

QSparqlQuery::QSparqlQuery(const QString &query, StatementType type) : m_query(query), m_type(type) { }

QString QSparqlQuery::query() const { return m_query; }

void QSparqlQuery::setQuery(const QString &query) { m_query = query; }

QSparqlQuery::StatementType QSparqlQuery::type() const { return m_type; }

void QSparqlQuery::setType(StatementType type) { m_type = type; }

void QSparqlQuery::bindValue(const QString &placeholder, const QVariant &value)
{
    bindValue(QSparqlBinding(placeholder, value));
}

void QSparqlQuery::bindValue(const QSparqlBinding &binding)
{
    if (binding.isValid())
        m_bindings.insert(binding.name(), binding);
    else
        m_bindings.remove(binding.name());
}

void QSparqlQuery::bindValues(const QSparqlResultRow &row)
{
    for (int i = 0; i < row.count(); ++i)
        bindValue(row.binding(i));
}

QVariant QSparqlQuery::boundValue(const QString &placeholder) const
{
    return m_bindings.value(placeholder).value();
}

QMap<QString, QVariant> QSparqlQuery::boundValues() const
{
    QMap<QString, QVariant> values;
    for (const QSparqlBinding &binding : m_bindings)
        values.insert(binding.name(), binding.value());
    return values;
}

void QSparqlQuery::unbindValues() { m_bindings.clear(); }

QString QSparqlQuery::preparedQueryText() const
{
    QString text;
    int copied = 0;
    SparqlLexer lexer(m_query);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next()) {
        if (token.kind != SparqlToken::Placeholder)
            continue;
        const QString name = token.text.mid(2).toString();
        const auto binding = m_bindings.constFind(name);
        if (binding == m_bindings.cend()) {
            qCWarning(lcQuery) << "No value is bound to the placeholder" << name;
            continue;
        }
        text.append(m_query.constData() + copied, token.start - copied);
        text += binding->toString();
        copied = token.end();
    }
    return copied == 0 ? m_query : text.append(m_query.constData() + copied, m_query.size() - copied);
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
