// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "droppedlinks.h"
#include "feedstore.h"
#include "output.h"
#include "phrases.h"

#include <QDateTime>
#include <QSparqlBinding>
#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

#include <feedtrackersparql.h>

#include <algorithm>

namespace Tidel {

namespace {

// So many at a time that an update is worth its while, and so few that its text stays small.
constexpr int messagesAtOnce = 500;

struct Candidate
{
    QUrl uri;
    QString link;
    QString title;
    QDateTime date;
    bool isShared = false; ///< another channel holds it too
};

QString iri(const QUrl &uri) { return QSparqlBinding(QStringLiteral("uri"), uri).toString(); }

/// What there is to know of the messages \a uris of the channel, in their order.
QList<Candidate> candidates(const FeedStore &store, const QString &channelUri, const QStringList &uris)
{
    QString values;
    for (const QString &uri : uris)
        values += iri(QUrl(uri)) + QLatin1Char(' ');
    QSparqlQuery query(QStringLiteral("SELECT ?m ?link ?title ?date ?other WHERE { VALUES ?m { ") + values
                       + QStringLiteral("} ?m a mfo:FeedMessage . OPTIONAL { ?m nie:links ?link } "
                                        "OPTIONAL { ?m nie:title ?title } "
                                        "OPTIONAL { ?m nie:contentCreated ?date } "
                                        "OPTIONAL { ?m nie:isLogicalPartOf ?other . ?other a mfo:FeedChannel "
                                        "FILTER(?other != ?:channel) } }"));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    QHash<QString, Candidate> found;
    const QList<QSparqlResultRow> rows = store.rows(query);
    for (const QSparqlResultRow &row : rows) {
        Candidate &candidate = found[row.value(0).toString()];
        candidate.uri = QUrl(row.value(0).toString());
        candidate.link = row.value(1).toString();
        candidate.title = row.value(2).toString();
        candidate.date = row.value(3).toDateTime();
        candidate.isShared = candidate.isShared || row.value(4).isValid();
    }
    QList<Candidate> ordered;
    for (const QString &uri : uris) {
        if (found.contains(uri))
            ordered.append(found.value(uri));
    }
    return ordered;
}

/// Deletes that each of \a messages has the value \a value of \a property.
bool deleteStatements(FeedStore &store, const QList<QUrl> &messages, const char *property,
                      const QString &value)
{
    if (messages.isEmpty())
        return true;
    QString update = QStringLiteral("DELETE DATA { ");
    for (const QUrl &message : messages)
        update += QStringLiteral("%1 %2 %3 . ").arg(iri(message), QLatin1String(property), value);
    return store.run(QSparqlQuery(update + QLatin1Char('}'), QSparqlQuery::DeleteStatement));
}

/// Those of \a messages that have enclosures.
QSet<QString> withEnclosures(const FeedStore &store, const QList<QUrl> &messages)
{
    QString values;
    for (const QUrl &message : messages)
        values += iri(message) + QLatin1Char(' ');
    QSet<QString> uris;
    const QList<QSparqlResultRow> rows =
        store.rows(QSparqlQuery(QStringLiteral("SELECT DISTINCT ?m WHERE { VALUES ?m { ") + values
                                + QStringLiteral("} ?e nie:isLogicalPartOf ?m }")));
    for (const QSparqlResultRow &row : rows)
        uris.insert(row.value(0).toString());
    return uris;
}

/// Deletes messages that no other channel holds. The library asks the whole store for the enclosures of each,
/// which those that have none are spared.
bool deleteMessages(FeedStore &store, const QList<QUrl> &messages)
{
    if (messages.isEmpty())
        return true;
    const QSet<QString> holders = withEnclosures(store, messages);
    if (!store.failure().isEmpty())
        return false;
    QList<QUrl> plain;
    QList<QUrl> others;
    for (const QUrl &message : messages)
        (holders.contains(message.toString()) ? others : plain).append(message);
    if (!others.isEmpty())
        store.library().deleteMessages(others);
    return deleteStatements(store, plain, "a", QStringLiteral("rdfs:Resource"));
}

class Pruner
{
public:
    Pruner(FeedStore &store, const Arguments &arguments, Output &output);

    void prune(const FeedChannel &channel);

private:
    void show(const FeedChannel &channel, const QStringList &uris);
    bool drop(const QString &channelUri, const QStringList &uris);

    FeedStore &m_store;
    const int m_keep;
    const bool m_isDryRun;
    Output &m_output;
};

Pruner::Pruner(FeedStore &store, const Arguments &arguments, Output &output)
    : m_store(store), m_keep(arguments.value("keep").toInt()), m_isDryRun(arguments.isSet("dry-run")),
      m_output(output)
{
}

void Pruner::prune(const FeedChannel &channel)
{
    const int before = m_store.library().deletableMessageCount(channel.uri());
    QStringList uris;
    if (before > m_keep)
        uris = m_store.library().deletableMessages(channel.uri(), before - m_keep);
    uris.removeDuplicates();
    if (uris.isEmpty()) {
        m_output.line(QStringLiteral("%1: nothing to delete").arg(channel.title()));
        return;
    }
    if (m_isDryRun) {
        show(channel, uris);
        return;
    }
    const DownloadRemover remover(m_store, m_output);
    bool isDone = true;
    for (int from = 0; from < uris.size() && isDone; from += messagesAtOnce) {
        isDone = drop(channel.uri(), uris.mid(from, messagesAtOnce));
        m_store.collectGarbage();
    }
    const int deleted = before - m_store.library().deletableMessageCount(channel.uri());
    if (!isDone || deleted < uris.size())
        m_output.error(QStringLiteral("%1: the store did not delete all of %2")
                           .arg(channel.title(), countedMessages(uris.size())));
    if (deleted > 0)
        m_output.line(QStringLiteral("%1: deleted %2, %3")
                          .arg(channel.title(), countedMessages(deleted), countedFiles(remover.files())));
}

void Pruner::show(const FeedChannel &channel, const QStringList &uris)
{
    m_output.line(QStringLiteral("%1: would delete %2").arg(channel.title(), countedMessages(uris.size())));
    for (int from = 0; from < uris.size(); from += messagesAtOnce) {
        const QList<Candidate> messages = candidates(m_store, channel.uri(), uris.mid(from, messagesAtOnce));
        for (const Candidate &message : messages)
            m_output.line(QStringLiteral("  %1  %2").arg(shownTime(message.date), shownTitle(message.title)));
    }
}

// Remembered before it is deleted: cut short in between, a message is still there and nothing is lost.
bool Pruner::drop(const QString &channelUri, const QStringList &uris)
{
    QStringList links;
    QList<QUrl> shared;
    QList<QUrl> own;
    const QList<Candidate> messages = candidates(m_store, channelUri, uris);
    for (const Candidate &message : messages) {
        if (!message.link.isEmpty())
            links.append(message.link);
        (message.isShared ? shared : own).append(message.uri);
    }
    return rememberDropped(m_store, channelUri, links)
        && deleteStatements(m_store, shared, "nie:isLogicalPartOf", iri(QUrl(channelUri)))
        && deleteMessages(m_store, own);
}

} // namespace

QString misuseOfPrune(const Arguments &arguments)
{
    bool isNumber = false;
    const int keep = arguments.value("keep").toInt(&isNumber);
    return isNumber && keep >= 0 ? QString()
                                 : QStringLiteral("say how many messages stay: --keep N, 0 or more");
}

void prune(FeedStore &store, const Arguments &arguments, Output &output)
{
    const QList<FeedChannel> chosen = findChannels(store.channels(), arguments.names, output);
    Pruner pruner(store, arguments, output);
    for (const FeedChannel &channel : chosen)
        pruner.prune(channel);
}

} // namespace Tidel
