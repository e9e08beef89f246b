// SPDX-License-Identifier: LGPL-2.1-or-later
#include "merge_p.h"

#include "writeturn.h"

#include <QHash>

namespace Tidel {

namespace {

const char *const attempt = "merge what the store has twice";

/// The terms of a resource by the full names of properties.
using Values = QHash<QString, QStringList>;

Result<Values> valuesOf(StorePrivate &store, const QString &uri)
{
    return store.run(Statements::everythingOf(uri), attempt).map([](const Answer &answer) {
        Values values;
        while (answer->next())
            values[answer->value(0).toString()].append(answer->binding(1).toString());
        return values;
    });
}

/// Returns true if a resource may have several values of \a property; otherwise returns false.
bool isList(const QString &property)
{
    static const QStringList names{
        QStringLiteral("isLogicalPartOf"), QStringLiteral("hasTag"),     QStringLiteral("itemKey"),
        QStringLiteral("droppedLink"),     QStringLiteral("droppedKey"), QStringLiteral("author"),
        QStringLiteral("category"),        QStringLiteral("skipHour"),   QStringLiteral("skipDay"),
    };
    return names.contains(property.section(QLatin1Char('#'), -1));
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

/// Gives \a uri, which has \a own values, what it lacks of \a others.
QString takeOver(const QString &uri, Values *own, const Values &others)
{
    QString text;
    for (auto other = others.cbegin(); other != others.cend(); ++other) {
        if (isOfTheStore(other.key()))
            continue;
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

Result<void> merge(StorePrivate &store, const QStringList &uris)
{
    if (uris.size() < 2)
        return {};
    Result<Values> own = valuesOf(store, uris.first());
    if (!own)
        return Failure(own.error());
    QString text;
    const QStringList others = uris.mid(1);
    for (const QString &uri : others) {
        const Result<Values> values = valuesOf(store, uri);
        if (!values)
            return Failure(values.error());
        text += takeOver(uris.first(), &*own, *values) + Statements::moveParts(uri, uris.first());
    }
    return store.update(Statements::update(text + Statements::deleteResources(others)), attempt);
}

} // namespace

Result<void> mergeSameLinks(StorePrivate &store, Statements::Kind kind, const QStringList &links)
{
    return inChunks(links, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        for (const QString &link : some) {
            const Result<void> merged = store.texts(Statements::resourcesWithLink(kind, link), attempt)
                                            .and_then([&](QStringList found) {
                                                found.removeDuplicates();
                                                return merge(store, found);
                                            });
            if (!merged)
                return merged;
        }
        return {};
    });
}

} // namespace Tidel
