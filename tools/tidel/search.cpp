// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "timeargument.h"

#include <TidelReader/search.h>
#include <TidelReader/usertext.h>

namespace Tidel {

namespace {

MarkedText operator+(const QString &before, MarkedText text)
{
    for (auto &[from, length] : text.marks)
        from += int(before.size());
    text.text.prepend(before);
    return text;
}

QJsonObject json(const SearchHit &hit)
{
    QJsonObject object = headlineJson(hit.uri, hit.message, hit.channels);
    addText(object, "excerpt", withoutPasswords(hit.excerpt.text));
    return object;
}

void show(const SearchHit &hit, Output &output)
{
    const QString head = QStringLiteral("%1  %2  ")
                             .arg(shownTime(hit.message.publishedDate()),
                                  hit.channels.isEmpty() ? QStringLiteral("(no channel)")
                                                         : hit.channels.join(QLatin1String(", ")));
    const MarkedText title =
        head + (hit.title.text.isEmpty() ? MarkedText{shownTitle(QString()), {}} : hit.title);
    output.line(title.text, title.marks);
    const QString indent(4, QLatin1Char(' '));
    const MarkedText excerpt = indent + hit.excerpt;
    if (!hit.excerpt.text.isEmpty())
        output.line(excerpt.text, excerpt.marks);
    output.line(indent + hit.message.link());
}

/// Tells the user once why the first search takes long, also where no progress is shown.
Search::Progress progressOn(Output &output)
{
    bool isTold = false;
    return [&output, isTold](int done, int all) mutable {
        if (!isTold)
            output.note(QStringLiteral("tidel: adding %1 to the index for searches, which takes a while once")
                            .arg(countedMessages(all - done)));
        isTold = true;
        output.progress(shownProgress(done, all, "messages"));
    };
}

int limitOf(const Arguments &arguments)
{
    return arguments.isSet("limit") ? arguments.value("limit").toInt() : SearchQuery().limit;
}

QString misuseOfSearch(const Arguments &arguments)
{
    for (const char *option : {"since", "until"}) {
        if (arguments.isSet(option)
            && !timeArgument(arguments.value(option), QDateTime::currentDateTime()).isValid())
            return QStringLiteral(
                       "--%1 needs today, yesterday, a number of days such as 7d, or a day such as "
                       "2026-11-03")
                .arg(QLatin1String(option));
    }
    return limitOf(arguments) >= 1 ? QString() : QStringLiteral("--limit needs a number, 1 or more");
}

void search(const Store &store, const Arguments &arguments, Output &output)
{
    SearchQuery query;
    query.words = arguments.names.join(QLatin1Char(' '));
    query.onlyFavorites = arguments.isSet("favorites");
    query.limit = limitOf(arguments);
    const QDateTime now = QDateTime::currentDateTime();
    query.since = timeArgument(arguments.value("since"), now);
    query.until = timeArgument(arguments.value("until"), now, true);
    if (arguments.isSet("channel")) {
        const auto channel = chooseChannel(store, arguments.value("channel"), output);
        if (!channel)
            return;
        query.channelUris = QStringList(channel->uri());
    }
    const auto hits = Search(store).find(query, progressOn(output));
    if (!hits) {
        output.failure(hits.error());
        return;
    }
    if (hits->isEmpty())
        output.note(QStringLiteral("%1: no message has these words").arg(query.words));
    for (const SearchHit &hit : *hits) {
        output.object(json(hit));
        show(hit, output);
    }
}

} // namespace

const Command searchCommand = {
    "search",
    "WORD... [OPTION...]",
    "Find the messages that have all of these words in their titles or texts, the best first.",
    "Words in any case; \"'two words'\" in double quotes for words that follow each other; word* for its beginning.",
    1,
    anyNumber,
    {{"channel", "CHANNEL", "Only messages of this channel."},
     {"since", "TIME",
      "Only messages published since then: today, yesterday, 7d for seven days, 2026-11-03."},
     {"until", "TIME", "Only messages published until then; the day is included."},
     {"favorites", nullptr, "Only favorites."},
     {"limit", "N", "The number of messages to show; by default 20."}},
    {"tidel search runner bean*", "tidel search '\"first frost\"' --since 30d"},
    search,
    misuseOfSearch};

} // namespace Tidel
