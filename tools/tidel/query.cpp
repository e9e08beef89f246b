// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "output.h"
#include "table.h"

#include <QDateTime>

#include <TidelReader/storequery.h>
#include <TidelReader/usertext.h>

namespace Tidel {

namespace {

QStringList names(const QVector<QueryValue> &row)
{
    QStringList names;
    for (const QueryValue &each : row)
        names.append(each.variable);
    return names;
}

QString text(const QVariant &value)
{
    const QString text = value.userType() == QMetaType::QDateTime
        ? value.toDateTime().toUTC().toString(Qt::ISODate)
        : value.toString();
    return withoutPasswords(text);
}

/// \a row as a line of comma-separated values as of RFC 4180.
QByteArray csv(const QStringList &cells)
{
    QStringList quoted;
    for (QString cell : cells) {
        const bool needsQuotes = cell.contains(QLatin1Char('"')) || cell.contains(QLatin1Char(','))
            || cell.contains(QLatin1Char('\n')) || cell.contains(QLatin1Char('\r'));
        quoted.append(needsQuotes ? QLatin1Char('"') + cell.replace(QLatin1Char('"'), QLatin1String("\"\""))
                              + QLatin1Char('"')
                                  : cell);
    }
    return quoted.join(QLatin1Char(',')).toUtf8() + '\n';
}

QStringList cells(const QVector<QueryValue> &row)
{
    QStringList cells;
    for (const QueryValue &each : row)
        cells.append(text(each.value));
    return cells;
}

QJsonObject json(const QVector<QueryValue> &row)
{
    QJsonObject object;
    for (const QueryValue &each : row) {
        if (!each.value.isValid())
            continue;
        const QJsonValue json = QJsonValue::fromVariant(each.value);
        object.insert(each.variable, json.isDouble() || json.isBool() ? json : QJsonValue(text(each.value)));
    }
    return object;
}

void query(const Store &store, const Arguments &arguments, Output &output)
{
    Table table;
    QByteArray lines;
    int count = 0;
    const auto add = [&](const QVector<QueryValue> &row) {
        if (count++ == 0) {
            table.addRow(names(row));
            lines += csv(names(row));
        }
        if (output.style() == Output::Json)
            output.object(json(row));
        else if (arguments.isSet("csv"))
            lines += csv(cells(row));
        else
            table.addRow(cells(row));
    };
    const Result<void> run = StoreQuery(store).run(arguments.names.first(), add);
    if (!run)
        output.failure(run.error());
    else if (count == 0)
        output.note(QStringLiteral("tidel: the answer has no rows"));
    else if (arguments.isSet("csv"))
        output.document(lines);
    else
        output.table(table);
}

QString misuseOfQuery(const Arguments &arguments)
{
    return arguments.isSet("csv") && arguments.isSet("json")
        ? QStringLiteral("--csv and --json exclude each other")
        : QString();
}

} // namespace

const Command queryCommand = {
    "query",
    "SPARQL [--csv]",
    "Ask the store a question in SPARQL, without changing it.",
    "A SELECT or ASK query. The prefixes nie, mfo, nao, tidel and the others of the store are declared.",
    1,
    1,
    {{"csv", nullptr, "Writes comma-separated values, with the names of the variables first."}},
    {"tidel query 'SELECT ?title WHERE { ?c a mfo:FeedChannel ; nie:title ?title }'",
     "tidel query 'SELECT (COUNT(?m) AS ?n) WHERE { ?m a mfo:FeedMessage }' --csv"},
    query,
    misuseOfQuery};

} // namespace Tidel
