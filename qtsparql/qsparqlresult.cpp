// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlresult.h"

QSparqlResult::QSparqlResult(const QString &query, QSparqlQuery::StatementType type)
    : m_query(query), m_type(type)
{
}

QSparqlResult::~QSparqlResult() = default;

QString QSparqlResult::query() const { return m_query; }

QSparqlQuery::StatementType QSparqlResult::statementType() const { return m_type; }

bool QSparqlResult::isTable() const { return m_type == QSparqlQuery::SelectStatement; }

bool QSparqlResult::isBool() const { return m_type == QSparqlQuery::AskStatement; }

void QSparqlResult::waitForFinished() { }

bool QSparqlResult::isFinished() const { return true; }

bool QSparqlResult::hasError() const { return m_error.isValid(); }

QSparqlError QSparqlResult::lastError() const { return m_error; }

void QSparqlResult::setLastError(const QSparqlError &error) { m_error = error; }

int QSparqlResult::pos() const { return m_pos; }

bool QSparqlResult::isValid() const { return m_pos >= 0; }

bool QSparqlResult::setPos(int pos)
{
    if (pos < 0)
        m_pos = QSparql::BeforeFirstRow;
    else
        m_pos = pos < size() ? pos : QSparql::AfterLastRow;
    return isValid();
}

bool QSparqlResult::next() { return m_pos != QSparql::AfterLastRow && setPos(m_pos + 1); }

bool QSparqlResult::previous() { return setPos((m_pos == QSparql::AfterLastRow ? size() : m_pos) - 1); }

bool QSparqlResult::first() { return setPos(0); }

bool QSparqlResult::last() { return setPos(size() - 1); }

QString QSparqlResult::stringValue(int index) const { return value(index).toString(); }

bool QSparqlResult::boolValue() const { return m_boolValue; }

void QSparqlResult::setBoolValue(bool value) { m_boolValue = value; }
