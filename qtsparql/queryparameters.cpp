// SPDX-License-Identifier: LGPL-2.1-or-later
#include "queryparameters_p.h"

#include "qsparqlquery.h"
#include "queryshape_p.h"

namespace {

/// Returns the text that \a binding stands for if it is an IRI or, unless \a isSubject, a plain text. Returns
/// a null text otherwise, and for an empty IRI.
QString plainValue(const QSparqlBinding &binding, bool isSubject)
{
    const QString term = binding.toString();
    if (binding.isUri())
        return term.size() > 2 ? term.mid(1, term.size() - 2) : QString();
    const QString text = binding.value().toString();
    return !isSubject && term == QSparqlBinding(QString(), text).toString() ? text : QString();
}

/// Returns true if a filter compares resources with \a binding as a triple does; otherwise returns false.
bool isComparedAsResource(const QSparqlBinding &binding)
{
    const QString resource = plainValue(binding, true);
    // The store has no names of blank nodes.
    return !resource.isEmpty() && !resource.startsWith(QLatin1String("urn:bnode:"));
}

} // namespace

QueryParameters::QueryParameters(const QSparqlQuery &query)
{
    const bool isTable =
        query.type() == QSparqlQuery::SelectStatement || query.type() == QSparqlQuery::AskStatement;
    if (!isTable || query.bindings().isEmpty())
        return;
    const QString statement = query.query();
    const auto shape = QueryShape::of(statement);
    if (!shape->mayHaveParameters)
        return;
    const auto &filtered = shape->filtered;
    const QSparqlBinding value = filtered ? query.bindings().value(filtered->placeholder) : QSparqlBinding();
    if (!isComparedAsResource(value)) {
        parametrize(statement, *shape, query.bindings());
    } else if (!parametrize(filtered->text, *QueryShape::of(filtered->text), query.bindings(),
                            filtered->placeholder)) {
        m_parameters.clear();
    } else if (filtered->column != -1) {
        m_column = Column{filtered->column, plainValue(value, true).toUtf8()};
    }
}

/// Makes parameters of the values in \a statement. Returns false if one named \a filtered cannot be one.
bool QueryParameters::parametrize(const QString &statement, const QueryShape &shape,
                                  const QMap<QString, QSparqlBinding> &bindings, const QString &filtered)
{
    int copied = 0;
    bool isDone = true;
    for (const QueryShape::Place &place : shape.places) {
        const auto binding = bindings.constFind(place.name);
        if (binding == bindings.cend())
            continue;
        const auto before = m_parameters.size();
        m_text.append(statement.constData() + copied, place.start - copied);
        m_text += term(*binding, place.isSubject, place.property);
        copied = place.end;
        const bool isParameter = m_parameters.size() > before;
        if (isParameter)
            m_parameters.last().isFiltered = place.name == filtered;
        isDone = isDone && (isParameter || place.name != filtered);
    }
    m_text.append(statement.constData() + copied, statement.size() - copied);
    return isDone;
}

/// Adds \a binding as a parameter if it can be one. Returns its place in the text.
QString QueryParameters::term(const QSparqlBinding &binding, bool isSubject, const QString &property)
{
    const QString value = plainValue(binding, isSubject);
    if (value.isNull() || value.contains(QChar(u'\0')) || (!isSubject && property.isEmpty()))
        return binding.toString();
    m_parameters.append({value.toUtf8(), property, false});
    return QLatin1Char('~') + QString::fromLatin1(name(m_parameters.size() - 1));
}
