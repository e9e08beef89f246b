// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storequery.h"

#include "store_p.h"

#include <QRegularExpression>
#include <QSparqlBinding>
#include <QSparqlResult>

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
        QSparqlResultRow truth;
        truth.append(QSparqlBinding(QStringLiteral("answer"), (*answer)->boolValue()));
        row(truth);
        return {};
    }
    while ((*answer)->next())
        row((*answer)->current());
    return {};
}

} // namespace Tidel
