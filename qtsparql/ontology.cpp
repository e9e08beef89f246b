// SPDX-License-Identifier: LGPL-2.1-or-later
#include "ontology_p.h"

#include <QRegularExpression>

#include <gio/gio.h>

const char *const ontologyPath = "/tidel/ontology";

const char *const rangeQuestion = "SELECT ?range { ~property rdfs:range ?range }";

namespace {

/// Returns the name and the date of the ontology that \a file declares, in the form of a statement.
QString declaration(const char *file)
{
    static const QRegularExpression pattern(
        QStringLiteral(
            "^(\\w+:) a [^\"]*nrl:Ontology ;\\s+nrl:prefix \"\\w+\" ;\\s+(nrl:lastModified \"[^\"]+\")"),
        QRegularExpression::MultilineOption);
    const QByteArray path = QByteArray(ontologyPath) + "/" + file;
    GBytes *content = g_resources_lookup_data(path.constData(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr);
    gsize size = 0;
    const char *text = static_cast<const char *>(g_bytes_get_data(content, &size));
    const QRegularExpressionMatch match = pattern.match(QString::fromUtf8(text, int(size)));
    g_bytes_unref(content);
    return match.captured(1) + QLatin1Char(' ') + match.captured(2);
}

} // namespace

QByteArray ontologyQuestion()
{
    QStringList declarations;
    gchar **files = g_resources_enumerate_children(ontologyPath, G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr);
    for (gchar **file = files; *file; ++file)
        declarations.append(declaration(*file));
    g_strfreev(files);
    // An older ontology of the same date can have left the index of titles.
    return QStringLiteral("ASK { %1 FILTER NOT EXISTS { nie:title nrl:fulltextIndexed true } }")
        .arg(declarations.join(QLatin1String(" . ")))
        .toUtf8();
}
