// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqltext.h"

#include <QSparqlBinding>
#include <QUrl>

namespace Tidel {

QString literal(const QString &text) { return QSparqlBinding(QString(), text).toString(); }

QString iri(const QString &address) { return QSparqlBinding(QString(), QUrl(address)).toString(); }

QString valuesOf(const char *variable, const QStringList &addresses)
{
    QString text = QLatin1String("VALUES ?") + QLatin1String(variable) + QLatin1String(" { ");
    for (const QString &address : addresses)
        text += iri(address) + QLatin1Char(' ');
    return text + QLatin1String("} ");
}

} // namespace Tidel
