// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlresult.h"

#include <QEvent>

class QSparqlResultPrivate
{
public:
    QString query;
    const QSparqlQuery::StatementType type;
    QSparqlError error = QSparqlError();
    int pos = QSparql::BeforeFirstRow;
    bool boolValue = false;
};

QSparqlResult::QSparqlResult(const QString &query, QSparqlQuery::StatementType type)
    : d(new QSparqlResultPrivate{query, type})
{
}

QSparqlResult::~QSparqlResult() = default;

QString QSparqlResult::query() const { return d->query; }

QSparqlQuery::StatementType QSparqlResult::statementType() const { return d->type; }

bool QSparqlResult::isTable() const { return d->type == QSparqlQuery::SelectStatement; }

bool QSparqlResult::isBool() const { return d->type == QSparqlQuery::AskStatement; }

void QSparqlResult::waitForFinished() { }

bool QSparqlResult::isFinished() const { return true; }

bool QSparqlResult::hasError() const { return d->error.isValid(); }

QSparqlError QSparqlResult::lastError() const { return d->error; }

void QSparqlResult::setLastError(const QSparqlError &error) { d->error = error; }

int QSparqlResult::pos() const { return d->pos; }

bool QSparqlResult::isValid() const { return d->pos >= 0; }

bool QSparqlResult::setPos(int pos)
{
    if (pos < 0)
        d->pos = QSparql::BeforeFirstRow;
    else
        d->pos = pos < size() ? pos : QSparql::AfterLastRow;
    return isValid();
}

bool QSparqlResult::next() { return d->pos != QSparql::AfterLastRow && setPos(d->pos + 1); }

bool QSparqlResult::previous() { return setPos((d->pos == QSparql::AfterLastRow ? size() : d->pos) - 1); }

bool QSparqlResult::first() { return setPos(0); }

bool QSparqlResult::last() { return setPos(size() - 1); }

QString QSparqlResult::stringValue(int index) const { return value(index).toString(); }

bool QSparqlResult::boolValue() const { return d->boolValue; }

void QSparqlResult::setBoolValue(bool value) { d->boolValue = value; }

bool QSparqlResult::event(QEvent *event)
{
    if (event->type() != QEvent::Close)
        return QObject::event(event);
    d->query.clear();
    d->pos = QSparql::BeforeFirstRow;
    return true;
}
