// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlerror.h"

#include "sharedrecord_p.h"

#include <QDebug>

class QSparqlErrorPrivate : public QSharedData
{
public:
    QString message;
    QSparqlError::ErrorType type = QSparqlError::NoError;
    int number = -1;
};

QSparqlError::QSparqlError(const QString &message, ErrorType type, int number)
{
    if (message.isNull() && type == NoError && number == -1)
        return;
    d = new QSparqlErrorPrivate;
    d->message = message;
    d->type = type;
    d->number = number;
}

QSparqlError::QSparqlError(const QSparqlError &other) = default;

QSparqlError::QSparqlError(QSparqlError &&other) noexcept = default;

QSparqlError::~QSparqlError() = default;

QSparqlError &QSparqlError::operator=(const QSparqlError &other) = default;

QSparqlError &QSparqlError::operator=(QSparqlError &&other) noexcept = default;

QString QSparqlError::message() const { return readable(d).message; }

void QSparqlError::setMessage(const QString &message) { writable(d).message = message; }

QSparqlError::ErrorType QSparqlError::type() const { return readable(d).type; }

void QSparqlError::setType(ErrorType type) { writable(d).type = type; }

int QSparqlError::number() const { return readable(d).number; }

void QSparqlError::setNumber(int number) { writable(d).number = number; }

bool QSparqlError::isValid() const { return type() != NoError; }

QDebug operator<<(QDebug debug, const QSparqlError &error)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "QSparqlError(" << int(error.type()) << ", " << error.number() << ", "
                    << error.message() << ")";
    return debug;
}
