// SPDX-License-Identifier: LGPL-2.1-or-later
#include "complete.h"

#include "commandtable.h"
#include "output.h"
#include "terminaltext.h"

#include <TidelReader/channels.h>
#include <TidelReader/folders.h>
#include <TidelReader/storedatabase.h>

namespace Tidel {

namespace {

/// A word that can be typed, and what it means.
struct Candidate
{
    QString word;
    QString meaning;
};

QVector<Candidate> commandCandidates()
{
    QVector<Candidate> candidates;
    const auto commands = allCommands();
    for (const Command *command : commands)
        candidates.append({QLatin1String(command->name), QLatin1String(command->summary)});
    return candidates;
}

QVector<Candidate> optionCandidates(const Command &command)
{
    QVector<Candidate> candidates;
    for (const std::vector<Option> &options : {command.options, commonOptions()}) {
        for (const Option &option : options)
            candidates.append(
                {QLatin1String("--") + QLatin1String(option.name), QLatin1String(option.description)});
    }
    return candidates;
}

QVector<Candidate> channelCandidates(const Store &store)
{
    QVector<Candidate> candidates;
    const auto channels = Channels(store).all();
    for (const FeedChannel &channel : channels.value_or(QList<FeedChannel>()))
        candidates.append({channel.title(), channel.link()});
    return candidates;
}

QVector<Candidate> folderCandidates(const Store &store)
{
    QVector<Candidate> candidates;
    const auto folders = Folders(store).all();
    QStringList names = folders.value_or(QHash<QString, QString>()).values();
    names.removeDuplicates();
    for (const QString &name : qAsConst(names))
        candidates.append({name, QStringLiteral("folder")});
    return candidates;
}

/// The candidates for an argument that the help calls \a name, such as "CHANNEL". There are none for files,
/// which the shell knows.
QVector<Candidate> argumentCandidates(const QString &name)
{
    const bool isChannel = name.contains(QLatin1String("CHANNEL"));
    const bool isFolder = name.contains(QLatin1String("FOLDER"));
    if (!(isChannel || isFolder) || !StoreDatabase::exists())
        return {};
    const Result<Store> store = Store::open();
    if (!store)
        return {};
    QVector<Candidate> candidates;
    if (isChannel)
        candidates += channelCandidates(*store);
    if (isFolder)
        candidates += folderCandidates(*store);
    return candidates;
}

/// The name of the value of the option \a word, such as "--channel"; empty if it has none.
QString valueName(const Command &command, const QString &word)
{
    for (const Option &option : command.options) {
        if (option.value && word == QLatin1String("--") + QLatin1String(option.name))
            return QLatin1String(option.value);
    }
    return {};
}

/// The candidates for the last of \a words, which follow the name of the program.
QVector<Candidate> candidatesFor(const QStringList &words)
{
    if (words.size() < 2)
        return commandCandidates();
    const Command *command = findCommand(words.first());
    if (!command)
        return {};
    const QString value = valueName(*command, words.at(words.size() - 2));
    if (!value.isEmpty())
        return argumentCandidates(value);
    if (words.last().startsWith(QLatin1Char('-')))
        return optionCandidates(*command);
    return argumentCandidates(QString::fromLatin1(command->syntax).section(QLatin1String("[--"), 0, 0));
}

} // namespace

void complete(const QStringList &words, Output &output)
{
    const QString begun = words.isEmpty() ? QString() : words.last();
    QByteArray lines;
    const auto candidates = candidatesFor(words);
    for (const Candidate &candidate : candidates) {
        if (candidate.word.startsWith(begun, Qt::CaseInsensitive))
            lines += terminalText(candidate.word).toUtf8() + '\t' + terminalText(candidate.meaning).toUtf8()
                + '\n';
    }
    output.document(lines);
}

} // namespace Tidel
