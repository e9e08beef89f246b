// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storedfacts_p.h"

#include "statements_p.h"

#include <algorithm>

namespace Tidel {

namespace {

/// Returns true if a resource may have several values of \a property; otherwise returns false.
bool isList(const QString &property)
{
    static const QStringList names{
        QStringLiteral("isLogicalPartOf"), QStringLiteral("hasTag"),     QStringLiteral("itemKey"),
        QStringLiteral("droppedLink"),     QStringLiteral("droppedKey"), QStringLiteral("author"),
        QStringLiteral("category"),        QStringLiteral("skipHour"),   QStringLiteral("skipDay"),
    };
    return names.contains(Statements::detailName(property));
}

/// Returns true if the store itself writes \a property; otherwise returns false.
bool isOfTheStore(const QString &property)
{
    return property.contains(QLatin1String("/nrl#")) || property.contains(QLatin1String("www.w3.org/"));
}

bool isEmpty(const QString &term)
{
    return term == Statements::iri(QString()) || term == Statements::literal(QString());
}

} // namespace

Result<QHash<QString, StoredFacts>> storedFacts(StorePrivate &store, const QStringList &uris,
                                                const char *attempt)
{
    QHash<QString, StoredFacts> facts;
    const Result<void> read = inChunks(uris, [&](const QStringList &some) {
        return store.run(Statements::everythingOf(some), attempt).map([&](const Answer &answer) {
            while (answer->next()) {
                const QString property = answer->value(1).toString();
                if (!isOfTheStore(property))
                    facts[answer->value(0).toString()][property].append(answer->binding(2).toString());
            }
        });
    });
    return read.map([&] { return facts; });
}

QStringList valuesNamed(const StoredFacts &facts, const char *name)
{
    const auto fact = std::find_if(facts.keyBegin(), facts.keyEnd(), [name](const QString &property) {
        return Statements::detailName(property) == QLatin1String(name);
    });
    return fact == facts.keyEnd() ? QStringList() : facts.value(*fact);
}

void removeNamed(StoredFacts *facts, std::initializer_list<const char *> names)
{
    for (auto fact = facts->begin(); fact != facts->end();) {
        const QString name = Statements::detailName(fact.key());
        const bool isNamed = std::any_of(names.begin(), names.end(),
                                         [&name](const char *each) { return name == QLatin1String(each); });
        fact = isNamed ? facts->erase(fact) : std::next(fact);
    }
}

QString takeOver(const QString &uri, StoredFacts *own, const StoredFacts &others)
{
    QString text;
    for (auto other = others.cbegin(); other != others.cend(); ++other) {
        QStringList &values = (*own)[other.key()];
        for (const QString &term : other.value()) {
            if (isList(other.key()) && !values.contains(term)) {
                text += Statements::insertValue(uri, other.key(), term);
                values.append(term);
            } else if (!isList(other.key())
                       && (values.isEmpty() || (isEmpty(values.first()) && !isEmpty(term)))) {
                text += Statements::replaceValue(uri, other.key(), term);
                values = QStringList(term);
            }
        }
    }
    return text;
}

} // namespace Tidel
