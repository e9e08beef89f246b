// SPDX-License-Identifier: LGPL-2.1-or-later
// Binds any value, stores it in a real store and reads it back. Nothing else in the store may change.
#include <fuzzing.h>

#include <QSparqlConnection>
#include <QSparqlQuery>
#include <QSparqlResult>

#include <QCoreApplication>
#include <QDataStream>
#include <QDateTime>
#include <QTemporaryDir>
#include <QTimeZone>
#include <QtMath>

#include <memory>

namespace {

using Result = std::unique_ptr<QSparqlResult>;

/// A store with one message, which no input may change.
class Store
{
public:
    Store() : m_connection(QStringLiteral("QTRACKER_DIRECT"), options())
    {
        run(QStringLiteral("INSERT { <urn:other> a mfo:FeedMessage ; nie:title \"other\" }"));
        require(messages() == 1, "the store works");
    }

    Result exec(const QSparqlQuery &query) { return Result(m_connection.exec(query)); }

    void run(const QString &update)
    {
        const Result result = exec(QSparqlQuery(update, QSparqlQuery::InsertStatement));
        require(!result->hasError(), "a statement without values runs");
    }

    int messages()
    {
        const Result result = exec(QSparqlQuery(QStringLiteral("SELECT ?m { ?m a mfo:FeedMessage }")));
        return result->size();
    }

    bool otherIsUnchanged()
    {
        const Result result =
            exec(QSparqlQuery(QStringLiteral("SELECT ?p ?o { <urn:other> ?p ?o FILTER(?p = nie:title) }")));
        return result->size() == 1 && result->first() && result->stringValue(1) == QLatin1String("other");
    }

private:
    QSparqlConnectionOptions options() const
    {
        QSparqlConnectionOptions options;
        options.setDatabaseName(m_folder.filePath(QStringLiteral("store")));
        return options;
    }

    const QTemporaryDir m_folder;
    QSparqlConnection m_connection;
};

/// Stores \a value as the value of \a property of a new message, and reads it back. Returns an invalid
/// binding if the store refuses the value.
QSparqlBinding stored(Store &store, const char *property, QSparqlBinding value)
{
    const QString statement = QStringLiteral("INSERT { <urn:message> a mfo:FeedMessage ; %1 ?:value }")
                                  .arg(QLatin1String(property));
    value.setName(QStringLiteral("value"));
    QSparqlQuery insert(statement, QSparqlQuery::InsertStatement);
    insert.bindValue(value);
    const Result insertion = store.exec(insert);
    const bool isTaken = !insertion->hasError();
    require(store.messages() == (isTaken ? 2 : 1), "an update adds what it says or nothing");
    require(store.otherIsUnchanged(), "an update changes nothing else");
    if (!isTaken)
        return QSparqlBinding();

    const Result found = store.exec(
        QSparqlQuery(QStringLiteral("SELECT ?o { <urn:message> %1 ?o }").arg(QLatin1String(property))));
    require(found->size() == 1 && found->first(), "a value that was taken is there once");
    const QSparqlBinding read = found->binding(0);
    store.run(QStringLiteral(
        "DELETE { ?m a rdfs:Resource } WHERE { ?m a mfo:FeedMessage FILTER(?m != <urn:other>) }"));
    require(store.messages() == 1, "a message can be deleted");
    return read;
}

/// What UTF-8 can express of \a text.
QString inUtf8(const QString &text) { return QString::fromUtf8(text.toUtf8()); }

void checkText(Store &store, const QString &text)
{
    const QSparqlBinding read = stored(store, "nie:title", QSparqlBinding(QString(), text));
    require(read.isValid() != text.contains(QChar(u'\0')), "each text without null characters is taken");
    require(!read.isValid() || read.value().toString() == inUtf8(text), "a text comes back");
}

void checkResource(Store &store, const QString &iri)
{
    QSparqlBinding resource;
    resource.setResource(iri);
    const QSparqlBinding read = stored(store, "nie:links", resource);
    if (!read.isValid())
        return;
    require(read.isUri(), "a resource comes back as a resource");
    const QSparqlBinding again = stored(store, "nie:links", read);
    require(again.value() == read.value(), "a resource that was read can be bound");
}

void checkUrl(Store &store, const QUrl &url)
{
    const QSparqlBinding read = stored(store, "nie:links", QSparqlBinding(QString(), url));
    const QString expected = QString::fromLatin1(url.toEncoded());
    require(!read.isValid() || read.value().toString() == expected, "an address comes back encoded");
}

void checkNumbers(Store &store, qint64 whole, double real)
{
    const QSparqlBinding size = stored(store, "nie:contentSize", QSparqlBinding(QString(), qlonglong(whole)));
    require(size.value().toLongLong() == whole, "a number comes back");
    const QSparqlBinding text = stored(store, "nie:title", QSparqlBinding(QString(), real));
    require(!text.isValid() || !qIsFinite(real) || text.value().toDouble() == real,
            "a real number comes back");
}

void checkTime(Store &store, const QDateTime &time)
{
    const QSparqlBinding read = stored(store, "nie:contentCreated", QSparqlBinding(QString(), time));
    // The store gets whole seconds. Only the time in UTC shows them: Qt 5 miscalculates absurd offsets.
    const qint64 expected = time.toMSecsSinceEpoch() - time.toUTC().time().msec();
    const bool isOrdinary = time.isValid() && time.date().year() >= 1900 && time.date().year() < 2200;
    require(read.isValid() || !isOrdinary, "an ordinary time is taken");
    require(!isOrdinary || read.value().toDateTime().toMSecsSinceEpoch() == expected, "a time comes back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static Store store;
    const QByteArray bytes = bytesOf(data, size);
    const QByteArray value = bytes.mid(1);
    QDataStream stream(value);
    switch (bytes.isEmpty() ? '\0' : bytes[0]) {
    case 'i': checkResource(store, textOf(value)); break;
    case 'u': checkUrl(store, QUrl(textOf(value))); break;
    case 'n': {
        qint64 whole = 0;
        double real = 0;
        stream >> whole >> real;
        checkNumbers(store, whole, real);
        break;
    }
    case 't': {
        QDateTime time;
        stream >> time;
        checkTime(store, time);
        break;
    }
    default: checkText(store, textOf(value));
    }
    return 0;
}
