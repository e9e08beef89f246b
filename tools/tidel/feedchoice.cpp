// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedchoice.h"

#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "question.h"
#include "table.h"

#include <QJsonArray>

#include <TidelReader/link.h>
#include <TidelReader/usertext.h>

#include <optional>

namespace Tidel {

namespace {

const QString allOfThem = QStringLiteral("a");

/// Returns those of \a feeds that \a answer means: one by its number, all, or none. Returns nothing if the
/// answer is something else.
std::optional<QVector<FoundFeed>> meant(const QString &answer, const QVector<FoundFeed> &feeds)
{
    if (answer.isEmpty())
        return QVector<FoundFeed>();
    if (answer == allOfThem)
        return feeds;
    const int number = answer.toInt();
    return number >= 1 && number <= feeds.size() ? std::make_optional(feeds.mid(number - 1, 1))
                                                 : std::nullopt;
}

void list(const QVector<FoundFeed> &feeds, Output &output)
{
    Table table({0});
    for (int i = 0; i < feeds.size(); ++i)
        table.addRow(
            {QString::number(i + 1), shownTitle(feeds.at(i).title), Link::encoded(feeds.at(i).address)});
    output.table(table);
}

QJsonArray json(const QVector<FoundFeed> &feeds)
{
    QJsonArray array;
    for (const FoundFeed &feed : feeds) {
        QJsonObject object;
        addText(object, "title", feed.title);
        addText(object, "link", withoutPasswords(Link::encoded(feed.address)));
        array.append(object);
    }
    return array;
}

/// Asks until the answer can be understood. The end of the input means none.
QVector<FoundFeed> asked(const QVector<FoundFeed> &feeds)
{
    const QString question =
        QStringLiteral("Which feed? 1-%1, a for all, Enter for none: ").arg(feeds.size());
    while (const std::optional<QString> answer = ask(question)) {
        if (const auto chosen = meant(*answer, feeds))
            return *chosen;
    }
    return {};
}

} // namespace

QVector<FoundFeed> chosenFeeds(const QString &page, const DownloadResult &result, const Arguments &arguments,
                               Output &output)
{
    const QVector<FoundFeed> feeds = result.foundFeeds();
    const QString answer = arguments.isSet("all") ? allOfThem : arguments.value("feed");
    const auto chosen = meant(answer, feeds);
    if (chosen && !chosen->isEmpty())
        return *chosen;
    if (answer.isEmpty() && canAsk() && output.style() == Output::Text) {
        output.line(QStringLiteral("%1: %2").arg(page, result.reason()));
        list(feeds, output);
        return asked(feeds);
    }
    list(feeds, output);
    output.error(QStringLiteral("%1: %2; choose one with \"--feed N\", or take them with \"--all\"")
                     .arg(page, result.reason()),
                 {{QStringLiteral("feeds"), json(feeds)}});
    return {};
}

} // namespace Tidel
