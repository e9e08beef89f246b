// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include "../../qtsparql/filelock_p.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

/**
 * The part of the tests that runs in processes of its own. The program writes "ready", waits for a line on
 * its standard input, does its work, and writes the outcome to its standard output. Only the library writes
 * to its standard error.
 */
namespace {

void say(const QString &line) { QTextStream(stdout) << line << '\n'; }

void waitForLine()
{
    while (true) {
        const int character = std::getchar();
        if (character == '\n' || character == EOF)
            return;
    }
}

bool done(const ScratchStore::Result &result)
{
    if (result->hasError())
        say(result->lastError().message());
    return !result->hasError();
}

bool write(QSparqlConnection &connection, const QString &prefix, int count)
{
    for (int i = 0; i < count; ++i) {
        const QString statement =
            QStringLiteral("INSERT { <urn:%1:%2> a mfo:FeedMessage ; nie:title \"%1 %2\" } "
                           "INSERT { <urn:%1:%2> nie:comment \"%2\" }")
                .arg(prefix)
                .arg(i);
        if (!done(ScratchStore::run(connection, statement, QSparqlQuery::InsertStatement)))
            return false;
    }
    return true;
}

/// Increments a number by updates that read it before they write it.
bool raise(QSparqlConnection &connection, int count)
{
    for (int i = 0; i < count; ++i) {
        const QString statement =
            QStringLiteral("DELETE { <urn:n> nie:contentSize ?n } INSERT { <urn:n> nie:contentSize ?next } "
                           "WHERE { <urn:n> nie:contentSize ?n BIND(?n + 1 AS ?next) }");
        if (!done(ScratchStore::run(connection, statement, QSparqlQuery::InsertStatement)))
            return false;
    }
    return true;
}

/// Runs statements about which the store logs messages.
bool provoke(QSparqlConnection &connection)
{
    const auto insert =
        ScratchStore::run(connection,
                          QStringLiteral("INSERT { <urn:m> a mfo:FeedMessage ; nie:links </tmp/a.mp3> ; "
                                         "nie:isLogicalPartOf \"no iri\" }"),
                          QSparqlQuery::InsertStatement);
    for (const char *refused : {"INSERT {", "INSERT { <urn:m> a \"x\" }", "INSERT { <urn:m> nie:nothing 1 }",
                                "DROP GRAPH <urn:nowhere>", "LOAD <file:///nowhere>"})
        ScratchStore::run(connection, QString::fromLatin1(refused), QSparqlQuery::InsertStatement);
    return done(insert)
        && ScratchStore::rows(connection, QStringLiteral("SELECT ?l { <urn:m> nie:links ?l }"))
        == QStringList(QStringLiteral("/tmp/a.mp3"));
}

/// Reads all messages again and again.
bool read(QSparqlConnection &connection)
{
    while (done(ScratchStore::run(connection, QStringLiteral("SELECT ?s ?t { ?s nie:title ?t }"),
                                  QSparqlQuery::SelectStatement))) { }
    return false;
}

bool run(const QString &command, const QString &folder, const QStringList &rest)
{
    if (command == QLatin1String("lock")) {
        FileLock lock(folder + QLatin1String("/opening.lock"));
        const bool locked = lock.tryLock();
        lock.note();
        say(locked ? QStringLiteral("locked") : QStringLiteral("not locked"));
        waitForLine();
        return locked;
    }
    const auto connection = ScratchStore::connect(folder);
    if (!connection->isValid()) {
        say(connection->lastError().message());
        return false;
    }
    if (command == QLatin1String("write"))
        return write(*connection, rest.value(0), rest.value(1).toInt());
    if (command == QLatin1String("read"))
        return read(*connection);
    if (command == QLatin1String("raise"))
        return raise(*connection, rest.value(0).toInt());
    if (command == QLatin1String("provoke"))
        return provoke(*connection);
    return command == QLatin1String("open");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    say(QStringLiteral("ready"));
    waitForLine();
    return run(arguments.value(1), arguments.value(2), arguments.mid(3)) ? 0 : 1;
}
