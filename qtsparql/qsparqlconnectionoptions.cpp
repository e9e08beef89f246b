// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlconnectionoptions.h"

namespace {

QString databaseNameOption() { return QStringLiteral("databaseName"); }

} // namespace

QSparqlConnectionOptions::QSparqlConnectionOptions() = default;

void QSparqlConnectionOptions::setOption(const QString &name, const QVariant &value)
{
    if (value.isValid())
        m_options.insert(name, value);
    else
        m_options.remove(name);
}

QVariant QSparqlConnectionOptions::option(const QString &name) const { return m_options.value(name); }

void QSparqlConnectionOptions::setDatabaseName(const QString &databaseName)
{
    setOption(databaseNameOption(), databaseName);
}

QString QSparqlConnectionOptions::databaseName() const { return option(databaseNameOption()).toString(); }

bool QSparqlConnectionOptions::operator==(const QSparqlConnectionOptions &other) const
{
    return m_options == other.m_options;
}
