// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storedlinks.h"

#include "sparqltext.h"

#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>

#include <memory>

namespace Tidel {

namespace {

// What a question about many links costs grows faster than their number.
constexpr int linksAtOnce = 100;

} // namespace

std::optional<QSet<QString>> storedLinks(QSparqlConnection &connection, const QSet<QString> &links,
                                         const QString &pattern)
{
    const QStringList wanted = links.values();
    QSet<QString> found;
    for (int from = 0; from < wanted.size(); from += linksAtOnce) {
        const QSparqlQuery question(QLatin1String("SELECT ?l WHERE { ")
                                    + valuesOf("l", wanted.mid(from, linksAtOnce)) + pattern
                                    + QLatin1String(" }"));
        const std::unique_ptr<QSparqlResult> result(connection.exec(question));
        if (result)
            result->waitForFinished();
        if (!result || result->hasError())
            return std::nullopt;
        while (result->next())
            found.insert(result->value(0).toString());
    }
    return found;
}

} // namespace Tidel
