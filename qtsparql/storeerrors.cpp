// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storeerrors_p.h"

#include "tracker_p.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace {

QSparqlError::ErrorType kindOf(const GError *error)
{
    // This is an error of the statement too. Tracker has no public name for the domain.
    if (error->domain == g_quark_try_string("tracker_date_error-quark"))
        return QSparqlError::StatementError;
    if (error->domain != TRACKER_SPARQL_ERROR)
        return QSparqlError::BackendError;
    switch (error->code) {
    case TRACKER_SPARQL_ERROR_PARSE:
    case TRACKER_SPARQL_ERROR_TYPE:
    case TRACKER_SPARQL_ERROR_UNKNOWN_CLASS:
    case TRACKER_SPARQL_ERROR_UNKNOWN_GRAPH:
    case TRACKER_SPARQL_ERROR_UNKNOWN_PROPERTY:
    case TRACKER_SPARQL_ERROR_UNSUPPORTED: return QSparqlError::StatementError;
    case TRACKER_SPARQL_ERROR_CONSTRAINT: return QSparqlError::TransactionError;
    default: return QSparqlError::BackendError;
    }
}

/// What the store says, and what that means for the user.
struct Meaning
{
    const char *said;
    const char *meant;
};

const Meaning meaningsOfRefusals[] = {
    {"Corrupt db file",
     "its database is damaged; put back a copy of the folder, or move the folder away to start with an empty store"},
    {"database disk image is malformed",
     "its database is damaged; put back a copy of the folder, or move the folder away to start with an empty store"},
    {"does not have enough space", "the disk is full; free some space and try again"},
    {"got version 0,",
     "there is no database in it, or a damaged one; put back a copy of the folder, or move the folder away to start with an empty store"},
    {"version is too old",
     "its database was made by an older version of Tracker; open it with that version, or move the folder away to start with an empty store"},
    {"version is too new",
     "its database was made by a newer version of Tracker; update Tracker, or move the folder away to start with an empty store"},
};

const Meaning meaningsOfFailures[] = {
    {"database or disk is full", "the disk is full; free some space and try again"},
    {"No space left on device", "the disk is full; free some space and try again"},
    {"database disk image is malformed",
     "the database is damaged; put back a copy of the folder of the store"},
};

template <int size> QString meaning(const Meaning (&meanings)[size], const QString &said)
{
    const auto found = std::find_if(std::begin(meanings), std::end(meanings), [&](const Meaning &each) {
        return said.contains(QLatin1String(each.said));
    });
    return found == std::end(meanings) ? QString() : QString::fromLatin1(found->meant);
}

} // namespace

const QString updateRefused = QStringLiteral("The update is refused");

QSparqlError fromGError(const QString &what, GError *error)
{
    const QString text = what + QLatin1String(": ") + QString::fromUtf8(error->message);
    const QSparqlError result(text, kindOf(error), error->code);
    g_error_free(error);
    return result;
}

QSparqlError connectionError(const QString &message)
{
    return QSparqlError(message, QSparqlError::ConnectionError);
}

QSparqlError refuseNull(const QString &statement)
{
    // Tracker reads a statement up to the first null character only.
    if (!statement.contains(QChar(u'\0')))
        return QSparqlError();
    return QSparqlError(
        QStringLiteral(
            "The statement contains a null character, which the store cannot read; remove the character"),
        QSparqlError::StatementError);
}

QString meaningOfRefusal(const QString &said) { return meaning(meaningsOfRefusals, said); }

QString meaningOfFailure(const QString &said) { return meaning(meaningsOfFailures, said); }

bool isDamage(const QSparqlError &error)
{
    const QString message = error.message();
    return message.contains(QLatin1String("Corrupt db file"))
        || message.contains(QLatin1String("database disk image is malformed"));
}

bool isUseless(const QSparqlError &error)
{
    return isDamage(error) || error.message().contains(QLatin1String("got version 0,"));
}

bool isOutOfDate(const QSparqlError &error)
{
    static const QRegularExpression locked(
        QLatin1Char('^') + updateRefused
        + QLatin1String(": (?:Could not \\w+ FTS text: )?database is locked"));
    return locked.match(error.message()).hasMatch();
}
