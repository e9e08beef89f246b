// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "headlinelist.h"
#include "jsonobjects.h"
#include "lastlist.h"
#include "listfilter.h"
#include "searchprogress.h"

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

QJsonObject json(const SearchHit &hit, const MessageHeadline &message)
{
    QJsonObject object = headlineJson(message);
    addText(object, "excerpt", withoutPasswords(hit.excerpt.text));
    return object;
}

/// Breaks \a text into lines of at most \a width characters, between words.
QVector<MarkedText> wrapped(const MarkedText &text, int width)
{
    QVector<MarkedText> lines;
    for (int from = 0; from < text.text.size();) {
        int end = int(text.text.size());
        if (end - from > width) {
            const int blank = int(text.text.lastIndexOf(QLatin1Char(' '), from + width));
            end = blank > from ? blank : from + width;
        }
        MarkedText line{text.text.mid(from, end - from), {}};
        for (const auto &[at, length] : text.marks) {
            const int first = std::max(at, from);
            const int last = std::min(at + length, end);
            if (first < last)
                line.marks.append({first - from, last - first});
        }
        lines.append(line);
        from = end;
        while (from < text.text.size() && text.text.at(from) == QLatin1Char(' '))
            ++from;
    }
    return lines;
}

/// Shows \a hit in several lines. The first one begins with \a start, the others with as many blanks.
void show(const SearchHit &hit, const QString &start, Output &output)
{
    const QString head = start
        + QStringLiteral("%1  %2  ")
              .arg(shownTime(hit.message.publishedDate()),
                   hit.channels.isEmpty() ? QStringLiteral("(no channel)")
                                          : hit.channels.join(QLatin1String(", ")));
    const MarkedText title =
        head + (hit.title.text.isEmpty() ? MarkedText{shownTitle(QString()), {}} : hit.title);
    output.line(title.text, title.marks);
    const QString indent(start.size(), QLatin1Char(' '));
    const auto excerpt = wrapped(hit.excerpt, std::max(20, output.width() - int(indent.size())));
    for (const MarkedText &line : excerpt) {
        const MarkedText indented = indent + line;
        output.line(indented.text, indented.marks);
    }
    output.line(indent + hit.message.link());
}

SearchQuery queryOf(const MessageFilter &filter, const Arguments &arguments)
{
    SearchQuery query;
    static_cast<MessageFilter &>(query) = filter;
    query.words = arguments.names.join(QLatin1Char(' '));
    query.limit = limitOf(arguments, query.limit);
    return query;
}

/// Shows \a hits with the numbers and the marks of their messages.
void show(const QList<SearchHit> &hits, const QList<MessageHeadline> &messages, Output &output)
{
    QHash<QString, MessageHeadline> byUri;
    for (const MessageHeadline &message : messages)
        byUri.insert(message.uri, message);
    QStringList uris;
    const int width = int(QString::number(hits.size()).size());
    for (const SearchHit &hit : hits) {
        uris.append(hit.uri);
        const MessageHeadline message = byUri.value(hit.uri);
        output.object(json(hit, message));
        show(hit, QStringLiteral("%1  %2  ").arg(uris.size(), width).arg(shownMarks(message)), output);
    }
    if (output.style() == Output::Text && !uris.isEmpty())
        LastList(LastList::Messages).remember(uris);
}

void search(const Store &store, const Arguments &arguments, Output &output)
{
    const QStringList channels =
        arguments.isSet("channel") ? QStringList(arguments.value("channel")) : QStringList();
    const auto filter = messageFilter(store, channels, arguments, output);
    if (!filter)
        return;
    const SearchQuery query = queryOf(*filter, arguments);
    const auto hits = Search(store).find(query, searchProgress(output));
    if (!hits) {
        output.failure(hits.error());
        return;
    }
    if (hits->isEmpty())
        output.note(QStringLiteral("%1: no message has these words").arg(query.words));
    QStringList uris;
    for (const SearchHit &hit : *hits)
        uris.append(hit.uri);
    const auto messages = MessageList(store).headlines(uris);
    if (messages)
        show(*hits, *messages, output);
    else
        output.failure(messages.error());
}

std::vector<Option> options()
{
    std::vector<Option> options{{"channel", "CHANNEL", "Only messages of this channel."}};
    options.insert(options.end(), filterOptions().begin(), filterOptions().end());
    options.push_back({"limit", "N", "The number of messages to show; by default 20."});
    return options;
}

} // namespace

const Command searchCommand = {
    "search",
    "WORD... [OPTION...]",
    "Find the messages that have all of these words in their titles or texts, the best first.",
    "Words in any case; \"'two words'\" in double quotes for words that follow each other; word* for its beginning.",
    1,
    anyNumber,
    options(),
    {"tidel search runner bean*", "tidel search '\"first frost\"' --since 30d"},
    search,
    misuseOfFilter};

} // namespace Tidel
