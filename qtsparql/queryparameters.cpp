// SPDX-License-Identifier: LGPL-2.1-or-later
#include "queryparameters_p.h"

#include "filteredvalue_p.h"
#include "qsparqlquery.h"
#include "sparqllexer_p.h"

#include <array>

namespace {

/// Follows the tokens of a query and says what the next one can be.
class TriplePosition
{
public:
    /// Continues with \a token, which is neither white space nor a comment.
    void pass(const SparqlToken &token)
    {
        if (isSign(token, u'{') || isSign(token, u'('))
            m_brackets = m_brackets << 1 | quint64(isSign(token, u'{'));
        else if (isSign(token, u'}') || isSign(token, u')'))
            m_brackets >>= 1;
        m_isInValues = isWord(token, "VALUES") || (m_isInValues && !isSign(token, u'}'));
        for (size_t i = m_last.size() - 1; i > 0; --i)
            m_last[i] = m_last[i - 1];
        m_last[0] = token;
    }

    bool isAtSubject() const
    {
        return isInTriples() && (isSign(last(), u'{') || isSign(last(), u'.') || isSign(last(), u'}'));
    }

    /// Returns the property if the next token is its object; otherwise returns an empty text.
    QString property() const
    {
        if (!isInTriples())
            return QString();
        const bool isIri = last().kind == SparqlToken::Iri;
        const bool isName = m_last[2].kind == SparqlToken::Other && isSign(m_last[1], u':')
            && m_last[2].end() == m_last[1].start && m_last[1].end() == last().start;
        const SparqlToken &before = m_last[isIri ? 1 : 3];
        // The class in a triple is a part of the query for Tracker. A path can end in an inverse property.
        const bool isType = last().text.contains(QLatin1String("type"), Qt::CaseInsensitive);
        if ((!isIri && !isName) || isType || QStringView(u"/|^!-").contains(before.text.left(1)))
            return QString();
        const QString name = last().text.toString();
        return isIri ? name.mid(1, name.size() - 2) : m_last[2].text.toString() + QLatin1Char(':') + name;
    }

private:
    const SparqlToken &last() const { return m_last[0]; }
    bool isInTriples() const { return (m_brackets & 1) != 0 && !m_isInValues; }

    std::array<SparqlToken, 4> m_last; // the newest first
    quint64 m_brackets = 0; // a bit for each open bracket, the lowest for the innermost; 1 is a brace
    bool m_isInValues = false;
};

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
    const QString statement = query.query();
    const bool isTable =
        query.type() == QSparqlQuery::SelectStatement || query.type() == QSparqlQuery::AskStatement;
    // A statement can declare prefixes of its own, and Tracker can be asked for parameters directly.
    if (!isTable || query.bindings().isEmpty() || statement.contains(QLatin1Char('~'))
        || statement.contains(QLatin1String("PREFIX"), Qt::CaseInsensitive))
        return;
    const std::optional<FilteredValue> filtered = FilteredValue::of(statement);
    const QSparqlBinding value = filtered ? query.bindings().value(filtered->placeholder) : QSparqlBinding();
    if (!isComparedAsResource(value)) {
        parametrize(statement, query.bindings());
    } else if (!parametrize(filtered->text, query.bindings(), filtered->placeholder)) {
        m_parameters.clear();
    } else if (filtered->column != -1) {
        m_column = Column{filtered->column, plainValue(value, true).toUtf8()};
    }
}

/// Makes parameters of the values in \a statement. Returns false if one named \a filtered cannot be one.
bool QueryParameters::parametrize(const QString &statement, const QMap<QString, QSparqlBinding> &bindings,
                                  const QString &filtered)
{
    int copied = 0;
    bool isDone = true;
    TriplePosition position;
    SparqlLexer lexer(statement);
    for (SparqlToken token = lexer.nextMeaningful(); token.kind != SparqlToken::End;
         token = lexer.nextMeaningful()) {
        const QString name =
            token.kind == SparqlToken::Placeholder ? token.text.mid(2).toString() : QString();
        const auto binding = name.isNull() ? bindings.cend() : bindings.constFind(name);
        if (binding != bindings.cend()) {
            const int before = m_parameters.size();
            m_text.append(statement.constData() + copied, token.start - copied);
            m_text += term(*binding, position.isAtSubject(), position.property());
            copied = token.end();
            const bool isParameter = m_parameters.size() > before;
            if (isParameter)
                m_parameters.last().isFiltered = name == filtered;
            isDone = isDone && (isParameter || name != filtered);
        }
        position.pass(token);
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
