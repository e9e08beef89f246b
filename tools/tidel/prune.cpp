// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "feedstore.h"
#include "output.h"
#include "phrases.h"
#include "retention.h"

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

// So many at a time that an update is worth its while, and so few that its text stays small.
constexpr int messagesAtOnce = 500;

class Pruner
{
public:
    Pruner(FeedStore &store, const Arguments &arguments, Output &output);

    void prune(const FeedChannel &channel);

private:
    void show(const FeedChannel &channel, const QStringList &uris);
    void drop(const FeedChannel &channel, const QStringList &uris);

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
    const int count = m_store.library().deletableMessageCount(channel.uri());
    QStringList uris;
    if (count > m_keep)
        uris = m_store.library().deletableMessages(channel.uri(), count - m_keep);
    uris.removeDuplicates();
    // A library that fails counts and lists nothing.
    const bool hasFailed =
        count == 0 ? hasDroppableMessages(m_store, channel.uri()) : count > m_keep && uris.isEmpty();
    if (hasFailed)
        m_output.error(
            QStringLiteral("%1: the store does not tell its oldest messages").arg(channel.title()));
    else if (uris.isEmpty())
        m_output.line(QStringLiteral("%1: nothing to delete").arg(channel.title()));
    else if (m_isDryRun)
        show(channel, uris);
    else
        drop(channel, uris);
}

void Pruner::show(const FeedChannel &channel, const QStringList &uris)
{
    m_output.line(QStringLiteral("%1: would delete %2").arg(channel.title(), countedMessages(uris.size())));
    for (int from = 0; from < uris.size(); from += messagesAtOnce) {
        const QList<DroppableMessage> messages = droppableMessages(m_store, uris.mid(from, messagesAtOnce));
        for (const DroppableMessage &message : messages)
            m_output.line(QStringLiteral("  %1  %2").arg(shownTime(message.date), shownTitle(message.title)));
    }
}

void Pruner::drop(const FeedChannel &channel, const QStringList &uris)
{
    const DownloadRemover remover(m_store, m_output);
    int dropped = 0;
    bool isDone = true;
    for (int from = 0; from < uris.size() && isDone; from += messagesAtOnce) {
        const QStringList some = uris.mid(from, messagesAtOnce);
        isDone = dropMessages(m_store, channel.uri(), droppableMessages(m_store, some));
        const int left = messagesOf(m_store, channel.uri(), some);
        dropped += some.size() - left;
        isDone = isDone && left == 0;
        m_store.collectGarbage();
    }
    if (dropped > 0)
        m_output.line(QStringLiteral("%1: deleted %2, %3")
                          .arg(channel.title(), countedMessages(dropped), countedFiles(remover.files())));
    if (dropped < uris.size())
        m_output.error(QStringLiteral("%1: the store did not delete all of %2")
                           .arg(channel.title(), countedMessages(uris.size())));
    else if (!isDone)
        m_output.error(QStringLiteral("%1: the store did not delete all enclosures; \"tidel clean\" does")
                           .arg(channel.title()));
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
    const QList<FeedChannel> chosen = chooseChannels(store, arguments.names, output);
    Pruner pruner(store, arguments, output);
    for (const FeedChannel &channel : chosen)
        pruner.prune(channel);
}

} // namespace Tidel
