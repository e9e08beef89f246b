// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlconnectionoptions.h"

#include "sharedrecord_p.h"

class QSparqlConnectionOptionsPrivate : public QSharedData
{
public:
    QMap<QString, QVariant> options;
};

namespace {

QString databaseNameOption() { return QStringLiteral("databaseName"); }

} // namespace

QSparqlConnectionOptions::QSparqlConnectionOptions() = default;

QSparqlConnectionOptions::QSparqlConnectionOptions(const QSparqlConnectionOptions &other) = default;

QSparqlConnectionOptions::QSparqlConnectionOptions(QSparqlConnectionOptions &&other) noexcept = default;

QSparqlConnectionOptions::~QSparqlConnectionOptions() = default;

QSparqlConnectionOptions &
QSparqlConnectionOptions::operator=(const QSparqlConnectionOptions &other) = default;

QSparqlConnectionOptions &
QSparqlConnectionOptions::operator=(QSparqlConnectionOptions &&other) noexcept = default;

void QSparqlConnectionOptions::setOption(const QString &name, const QVariant &value)
{
    if (value.isValid())
        writable(d).options.insert(name, value);
    else
        writable(d).options.remove(name);
}

QVariant QSparqlConnectionOptions::option(const QString &name) const
{
    return readable(d).options.value(name);
}

void QSparqlConnectionOptions::setDatabaseName(const QString &databaseName)
{
    setOption(databaseNameOption(), databaseName);
}

QString QSparqlConnectionOptions::databaseName() const { return option(databaseNameOption()).toString(); }

bool QSparqlConnectionOptions::operator==(const QSparqlConnectionOptions &other) const
{
    return readable(d).options == readable(other.d).options;
}
