// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlerror.h"

#include <QDebug>

QSparqlError::QSparqlError(const QString &message, ErrorType type, int number)
    : m_message(message), m_type(type), m_number(number)
{
}

QString QSparqlError::message() const { return m_message; }

void QSparqlError::setMessage(const QString &message) { m_message = message; }

QSparqlError::ErrorType QSparqlError::type() const { return m_type; }

void QSparqlError::setType(ErrorType type) { m_type = type; }

int QSparqlError::number() const { return m_number; }

void QSparqlError::setNumber(int number) { m_number = number; }

bool QSparqlError::isValid() const { return m_type != NoError; }

QDebug operator<<(QDebug debug, const QSparqlError &error)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "QSparqlError(" << int(error.type()) << ", " << error.number() << ", "
                    << error.message() << ")";
    return debug;
}
