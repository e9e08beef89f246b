// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlconnection.h"

#include "queryparameters_p.h"
#include "sharedstores_p.h"
#include "sparqltableresult_p.h"
#include "trackerstore_p.h"

#include <QUuid>

#include <chrono>

namespace {

QString trackerDriver() { return QStringLiteral("QTRACKER_DIRECT"); }

/// Returns a UUID of version 7, which begins with the time. Resources that are created together are then
/// neighbours in the store's index of names, and an update changes few pages of a large index.
QUuid timeOrderedUuid()
{
    using namespace std::chrono;
    const auto now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch());
    const auto wholeMs = duration_cast<milliseconds>(now);
    const quint64 ms = quint64(wholeMs.count());
    const qint64 rest = (now - wholeMs).count() * 0x1000 / 1000000; // of a millisecond, in 12 bits

    QUuid uuid = QUuid::createUuid();
    uuid.data1 = uint(ms >> 16);
    uuid.data2 = ushort(ms);
    uuid.data3 = ushort(0x7000 | rest);
    return uuid;
}

} // namespace

class QSparqlConnectionPrivate
{
public:
    const QString driverName;
    const QSparqlConnectionOptions options;
    QSparqlError error = QSparqlError();
    std::shared_ptr<TrackerStore> store = nullptr;
};

QSparqlConnection::QSparqlConnection(const QString &driverName, const QSparqlConnectionOptions &options,
                                     QObject *parent)
    : QObject(parent), d(new QSparqlConnectionPrivate{driverName, options})
{
    if (d->driverName == trackerDriver()) {
        d->store = sharedStore(d->options, &d->error);
    } else {
        d->error = QSparqlError(QStringLiteral("There is no driver \"%1\"; use one of these: %2")
                                    .arg(d->driverName, drivers().join(QLatin1String(", "))),
                                QSparqlError::ConnectionError);
    }
}

QSparqlConnection::~QSparqlConnection() = default;

QStringList QSparqlConnection::drivers() { return {trackerDriver()}; }

QString QSparqlConnection::driverName() const { return d->driverName; }

QSparqlConnectionOptions QSparqlConnection::options() const { return d->options; }

bool QSparqlConnection::isValid() const { return d->store != nullptr; }

bool QSparqlConnection::hasError() const { return d->error.isValid(); }

QSparqlError QSparqlConnection::lastError() const { return d->error; }

QSparqlResult *QSparqlConnection::exec(const QSparqlQuery &query)
{
    const QString statement = query.preparedQueryText();
    const QSparqlQuery::StatementType type = query.type();
    if (!isValid())
        return new SparqlTableResult(statement, type, d->error);

    const bool isUpdate = type == QSparqlQuery::InsertStatement || type == QSparqlQuery::DeleteStatement;
    SparqlTable table;
    QSparqlError error =
        isUpdate ? d->store->update(statement) : d->store->select(statement, QueryParameters(query), &table);
    if (isUpdate && !error.isValid() && d->options.option(QStringLiteral("durable")).toBool())
        error = d->store->sync();
    return error.isValid() ? new SparqlTableResult(statement, type, error)
                           : new SparqlTableResult(statement, type, std::move(table));
}

QUrl QSparqlConnection::createUrn() const
{
    return QUrl(QLatin1String("urn:uuid:") + timeOrderedUuid().toString(QUuid::WithoutBraces));
}
