// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storequery.h"

#include "store_p.h"

#include <QRegularExpression>
#include <QSparqlResult>
#include <QSparqlResultRow>

#include <optional>

namespace Tidel {

namespace {

/// The kind of query that \a sparql is, by the word after its declarations; nothing if it is neither SELECT
/// nor ASK.
std::optional<QSparqlQuery::StatementType> typeOf(const QString &sparql)
{
    static const QRegularExpression query(
        QStringLiteral(
            "\\A(?:\\s++|#[^\\n]*+\\n|PREFIX\\s++[^\\s:<]*+:\\s*+<[^>]*+>|BASE\\s*+<[^>]*+>)*+(SELECT|ASK)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    const QString word = query.match(sparql).captured(1).toUpper();
    if (word.isEmpty())
        return std::nullopt;
    return word == QLatin1String("ASK") ? QSparqlQuery::AskStatement : QSparqlQuery::SelectStatement;
}

QVector<QueryValue> values(const QSparqlResultRow &row)
{
    QVector<QueryValue> values;
    for (int i = 0; i < row.count(); ++i) {
        const QVariant value = row.value(i);
        values.append({row.variableName(i), value.userType() == QMetaType::QUrl ? value.toString() : value});
    }
    return values;
}

Error refused(const QString &reason)
{
    return Error(Error::QueryRefused, QStringLiteral("run the query"), reason);
}

} // namespace

StoreQuery::StoreQuery(const Store &store) : m_store(store) { }

Result<void> StoreQuery::run(const QString &sparql, const RowHandler &row) const
{
    const auto type = typeOf(sparql);
    if (!type)
        return Failure(refused(QStringLiteral("it is neither a SELECT nor an ASK query")));
    const Result<Answer> answer = StorePrivate::of(m_store).run(QSparqlQuery(sparql, *type), "run the query");
    if (!answer)
        return Failure(answer.error().kind() == Error::StoreRefused ? refused(answer.error().reason())
                                                                    : answer.error());
    if (type == QSparqlQuery::AskStatement) {
        row({{QStringLiteral("answer"), (*answer)->boolValue()}});
        return {};
    }
    while ((*answer)->next())
        row(values((*answer)->current()));
    return {};
}

} // namespace Tidel
