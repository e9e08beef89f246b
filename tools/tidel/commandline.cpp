// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandline.h"

#include "commands.h"
#include "feedstore.h"
#include "output.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace Tidel {

namespace {

constexpr int anyNumber = -1;

struct Command
{
    const char *name;
    const char *syntax;
    const char *summary;
    const char *details;
    int minimumArguments;
    int maximumArguments;
    void (*run)(FeedStore &, const QStringList &, Output &);
};

const Command commands[] = {
    {"subscribe", "FILE|URL...", "Subscribe to feeds: RSS, Atom or RDF files.",
     "Feed files, as paths or file: URLs.", 1, anyNumber, subscribe},
    {"refresh", "[CHANNEL...]", "Read the feeds again and store what is new.",
     "Channels by title, link, file or URI; all of them when none is named.", 0, anyNumber, refresh},
    {"channels", "", "List the channels: title, messages, link, URI.", "", 0, 0, listChannels},
    {"messages", "CHANNEL", "List a channel's messages, newest first; * marks favourites.",
     "A channel by title, link, file or URI.", 1, 1, listMessages},
    {"enclosures", "MESSAGE", "List a message's files: size, type, address.", "A message by link or URI.", 1,
     1, listEnclosures},
};

const Command *findCommand(const QString &name)
{
    const auto found = std::find_if(std::begin(commands), std::end(commands), [&](const Command &command) {
        return name == QLatin1String(command.name);
    });
    return found == std::end(commands) ? nullptr : found;
}

ExitCode outcome(Output &output) { return output.finish() ? AllFine : SomethingFailed; }

ExitCode show(Output &output, const QString &text)
{
    const QStringList lines = text.trimmed().split(QLatin1Char('\n'));
    for (const QString &line : lines)
        output.line(line);
    return outcome(output);
}

ExitCode usageError(Output &output, const QString &problem, const QString &help)
{
    output.error(QStringLiteral("%1; see %2").arg(problem, help));
    return UsageError;
}

QCommandLineOption helpOption()
{
    return QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")},
                              QStringLiteral("Shows this help."));
}

/// Qt's help begins with the program as it was called, path and all.
QString helpText(const QCommandLineParser &parser)
{
    const QString program = QCoreApplication::arguments().constFirst();
    QString text = parser.helpText();
    const int place = text.indexOf(program);
    return place < 0 ? text : text.replace(place, program.size(), QStringLiteral("tidel"));
}

QString commandList()
{
    QString text =
        QStringLiteral("A feed reader that keeps its feeds in the desktop's store.\n\nCommands:\n");
    for (const Command &command : commands) {
        const QString call =
            QString::fromLatin1(command.name) + QLatin1Char(' ') + QLatin1String(command.syntax);
        text += QStringLiteral("  %1\n      %2\n").arg(call.trimmed(), QLatin1String(command.summary));
    }
    return text + QStringLiteral("\n\"tidel COMMAND --help\" tells more.");
}

ExitCode runWithStore(const Command &command, const QStringList &arguments, Output &output)
{
    QString error;
    const std::unique_ptr<FeedStore> store = FeedStore::open(&error);
    if (!store) {
        output.error(QLatin1String("the store cannot be used: ") + error);
        return SomethingFailed;
    }
    command.run(*store, arguments, output);
    return outcome(output);
}

bool isCountFine(const Command &command, int count)
{
    return count >= command.minimumArguments
        && (command.maximumArguments == anyNumber || count <= command.maximumArguments);
}

ExitCode runCommand(const Command &command, const QStringList &arguments, Output &output)
{
    const QString name = QLatin1String(command.name);
    const QString help = QStringLiteral("\"tidel %1 --help\"").arg(name);
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(command.summary));
    parser.addOption(helpOption());
    parser.addPositionalArgument(name, QStringLiteral("The command."), name);
    if (command.maximumArguments != 0) {
        const QString syntax = QLatin1String(command.syntax);
        parser.addPositionalArgument(syntax, QLatin1String(command.details), syntax);
    }

    if (!parser.parse(QStringList{name} + arguments))
        return usageError(output, parser.errorText(), help);
    if (parser.isSet(helpOption()))
        return show(output, helpText(parser));
    const QStringList values = parser.positionalArguments();
    if (!isCountFine(command, values.size())) {
        const bool isShort = values.size() < command.minimumArguments;
        return usageError(output,
                          QStringLiteral("%1: %2").arg(name,
                                                       isShort ? QStringLiteral("an argument is missing")
                                                               : QStringLiteral("too many arguments")),
                          help);
    }
    return runWithStore(command, values, output);
}

} // namespace

ExitCode runCommandLine(const QStringList &arguments)
{
    const QString help = QStringLiteral("\"tidel --help\"");
    Output output(stdout, stderr);
    QCommandLineParser parser;
    parser.setApplicationDescription(commandList());
    parser.addOption(helpOption());
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("What to do."),
                                 QStringLiteral("COMMAND [ARGUMENT...]"));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

    if (!parser.parse(arguments))
        return usageError(output, parser.errorText(), help);
    if (parser.isSet(version))
        return show(output, QLatin1String("tidel ") + QCoreApplication::applicationVersion());
    if (parser.isSet(helpOption()))
        return show(output, helpText(parser));
    const QStringList values = parser.positionalArguments();
    if (values.isEmpty())
        return usageError(output, QStringLiteral("no command given"), help);
    const Command *command = findCommand(values.first());
    if (!command)
        return usageError(output, QStringLiteral("unknown command \"%1\"").arg(values.first()), help);
    return runCommand(*command, values.mid(1), output);
}

} // namespace Tidel
