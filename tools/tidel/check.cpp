// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "question.h"

#include <TidelReader/search.h>
#include <TidelReader/storecheck.h>
#include <TidelReader/storedatabase.h>

#include <algorithm>

namespace Tidel {

namespace {

/// What the command says of a kind of findings.
struct Words
{
    const char *name;
    const char *repair; ///< What a repair does; what the user can do if a repair does nothing.
};

// In the order of Finding::Kind.
const Words words[] = {
    {"Channels with the same link", "are made one, with all their messages"},
    {"Messages with the same link", "are made one, with all their marks and enclosures"},
    {"Enclosures with the same address", "are made one, of all their messages"},
    {"Channels and messages that no list shows", "get the title, text, link or time that they lack"},
    {"Several values where one is meant", "are not repaired; the next change of the feed replaces them"},
    {"Messages without a channel", "are deleted"},
    {"Enclosures without a message", "are deleted; their files stay"},
    {"Downloaded files that are missing", "are forgotten, so that they can be downloaded again"},
    {"Unfinished downloads", "are removed"},
    {"Other files in the download folder", "are not repaired; keep or remove them yourself"},
};

const Words &wordsOf(const Finding &finding) { return words[finding.kind]; }

/// Reports that the check \a name has \a problems: \a text for a person.
void report(const QString &text, const QString &name, const QStringList &problems, Output &output)
{
    QJsonObject json{{QStringLiteral("check"), name}, {QStringLiteral("count"), int(problems.size())}};
    addList(json, "problems", problems);
    output.object(json);
    output.line(text);
}

void show(const Finding &finding, Output &output)
{
    const int count = int(finding.places.size());
    const QString examples =
        finding.places.mid(0, 3).join(QLatin1String(", ")) + QLatin1String(count > 3 ? ", ..." : "");
    const QString name = QLatin1String(wordsOf(finding).name);
    report(QStringLiteral("%1: %2").arg(
               name,
               count == 0 ? QStringLiteral("ok")
                          : QStringLiteral("%1 (%2)").arg(QString::number(count), examples)),
           name, finding.places, output);
}

/// Returns true if the user wants the repair; otherwise returns false.
bool isConfirmed(const Arguments &arguments, Output &output)
{
    if (arguments.isSet("yes"))
        return true;
    if (!canAsk() || output.style() == Output::Json) {
        output.error(QStringLiteral("nothing was repaired; add --yes to repair without being asked"));
        return false;
    }
    const auto answer = ask(QStringLiteral("Repair? [y/N] "));
    const bool isYes = answer && answer->startsWith(QLatin1Char('y'), Qt::CaseInsensitive);
    if (!isYes)
        output.error(QStringLiteral("nothing was repaired"));
    return isYes;
}

int problems(const QList<Finding> &findings)
{
    return int(std::count_if(findings.cbegin(), findings.cend(), [](const Finding &finding) {
        return !finding.places.isEmpty() && !finding.isNote();
    }));
}

Result<QList<Finding>> find(const StoreCheck &check, Output &output)
{
    return check.find([&](int done, int all) { output.progress(shownProgress(done, all, "checks")); });
}

void repairContents(StoreCheck &check, const QList<Finding> &findings, const Arguments &arguments,
                    Output &output)
{
    output.line(QStringLiteral("The repair:"));
    for (const Finding &finding : findings) {
        if (!finding.places.isEmpty())
            output.line(QStringLiteral("  %1 %2").arg(QString::fromLatin1(wordsOf(finding).name).toLower(),
                                                      QLatin1String(wordsOf(finding).repair)));
    }
    if (!isConfirmed(arguments, output))
        return;
    const Result<void> repaired = check.repair(findings, [](int, const QList<FeedEnclosure> &) {});
    if (!repaired) {
        output.failure(repaired.error(), QStringLiteral("; what was repaired before stays; try again"));
        return;
    }
    const Result<QList<Finding>> left = find(check, output);
    if (!left)
        output.failure(left.error());
    else if (problems(*left) == 0)
        output.line(QStringLiteral("Repaired"));
    for (const Finding &finding : left.value_or(QList<Finding>())) {
        if (!finding.places.isEmpty() && !finding.isNote())
            output.error(QStringLiteral("%1: still there").arg(QLatin1String(wordsOf(finding).name)));
    }
}

void checkContents(const Arguments &arguments, Output &output)
{
    const Result<Store> store = Store::open();
    if (!store) {
        output.failure(store.error());
        return;
    }
    StoreCheck check(*store);
    const Result<QList<Finding>> findings = find(check, output);
    if (!findings) {
        output.failure(findings.error());
        return;
    }
    for (const Finding &finding : *findings)
        show(finding, output);
    const QString index = QStringLiteral("Index for searches");
    const QString state =
        QLatin1String(Search(*store).check() ? "ok" : "was damaged; the next search makes it again");
    report(index + QLatin1String(": ") + state, index,
           state == QLatin1String("ok") ? QStringList() : QStringList(state), output);
    if (problems(*findings) == 0)
        return;
    if (arguments.isSet("repair"))
        repairContents(check, *findings, arguments, output);
    else
        output.error(
            QStringLiteral("the store is not in order; \"tidel check --repair\" mends what can be mended"));
}

/// Saves what can be read of the damaged database. Returns true if there is a sound one then; otherwise
/// returns false.
bool salvage(const Arguments &arguments, Output &output)
{
    output.line(
        QStringLiteral(
            "The repair copies what can be read to a new database. The damaged files move to a folder "
            "\"damaged-DATE\" in %1. End other programs that use the store first.")
            .arg(StoreDatabase::folder()));
    if (!isConfirmed(arguments, output))
        return false;
    const Result<SavedContents> saved = StoreDatabase::salvage(
        [&](int done, int all) { output.progress(shownProgress(done, all, "tables")); });
    if (!saved) {
        output.failure(saved.error());
        return false;
    }
    output.line(QStringLiteral("Saved: %1, %2 (%3), %4; the damaged files are in %5")
                    .arg(countedChannels(saved->channels), countedMessages(saved->messages),
                         countedFavorites(saved->favorites), countedEnclosures(saved->enclosures),
                         saved->damagedFolder));
    return true;
}

/// Checks the database. Returns true if it is sound, maybe after a repair; otherwise returns false.
bool checkDatabase(const Arguments &arguments, Output &output)
{
    output.progress(QStringLiteral("Checking the database"));
    const Result<QStringList> damage = StoreDatabase::damage();
    if (!damage) {
        output.failure(damage.error());
        return false;
    }
    const QString state = damage->isEmpty()
        ? QStringLiteral("ok")
        : QStringLiteral("damaged (%1)").arg(damage->mid(0, 3).join(QLatin1String("; ")));
    report(QLatin1String("Database: ") + state, QStringLiteral("Database"), *damage, output);
    if (damage->isEmpty())
        return true;
    if (arguments.isSet("repair"))
        return salvage(arguments, output);
    output.error(QStringLiteral(
                     "the database is damaged; \"tidel check --repair\" saves what can be read of it, or put "
                     "back a copy of %1")
                     .arg(StoreDatabase::folder()));
    return false;
}

QString misuseOfCheck(const Arguments &arguments)
{
    return arguments.isSet("yes") && !arguments.isSet("repair") ? QStringLiteral("--yes belongs to --repair")
                                                                : QString();
}

void check(const Arguments &arguments, Output &output)
{
    if (!StoreDatabase::exists())
        output.line(QStringLiteral("There is no store yet"));
    else if (checkDatabase(arguments, output))
        checkContents(arguments, output);
}

} // namespace

const Command checkCommand = {
    "check",
    "[--repair [--yes]]",
    "Check that the store is sound: its database, its contents and the downloaded files.",
    "",
    0,
    0,
    {{"repair", nullptr,
      "Mends what can be mended without a loss, and saves what can be read of a damaged database."},
     {"yes", nullptr, "Repairs without asking."}},
    {"tidel check", "tidel check --repair"},
    check,
    misuseOfCheck};

} // namespace Tidel
