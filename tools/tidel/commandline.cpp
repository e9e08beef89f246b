// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandline.h"

#include "commands.h"
#include "logging.h"
#include "output.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

#include <TidelReader/store.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace Tidel {

namespace {

constexpr int anyNumber = -1;

struct Option
{
    const char *name;
    const char *value; ///< The name of the value in the help; null for an option without a value.
    const char *description;
};

struct Command
{
    const char *name;
    const char *syntax; ///< The arguments in the help.
    const char *summary;
    const char *details; ///< Describes the arguments.
    int minimumArguments;
    int maximumArguments;
    void (*run)(const Store &, const Arguments &,
                Output &); ///< Null for a command that opens the store itself.
    std::vector<Option> options = {};
    /// Returns what is wrong with the options; empty if they are valid. Null if there is nothing to check.
    QString (*misuse)(const Arguments &) = nullptr;
    void (*runAlone)(const Arguments &, Output &) = nullptr; ///< In place of run().
    bool takesEmptyArguments = false;
};

const char *const aChannel = "The title, link, file or URI of a channel.";
const char *const someChannels = "The titles, links, files or URIs of channels; all channels by default.";
const char *const aMessage = "The link or URI of a message.";

const Command commands[] = {
    {"subscribe",
     "FILE|URL... [--feed N | --all]",
     "Subscribe to RSS, Atom, RDF or JSON feeds, or to those of web pages.",
     "The http, https or file URLs of feeds or web pages, or paths of files.",
     1,
     anyNumber,
     subscribe,
     {{"feed", "N", "The feed of this number, if a web page has several."},
      {"all", nullptr, "All feeds, if a web page has several."}},
     misuseOfSubscribe},
    {"unsubscribe", "CHANNEL", "Delete a channel with its messages and their downloaded files.", aChannel, 1,
     1, unsubscribe},
    {"refresh", "[CHANNEL...]", "Download the feeds and store new messages.", someChannels, 0, anyNumber,
     refresh},
    {"download",
     "MESSAGE|ENCLOSURE...",
     "Download the files of messages.",
     "The links or URIs of messages, or the addresses or URIs of enclosures.",
     1,
     anyNumber,
     download,
     {{"into", "DIRECTORY", "The folder for the files; by default \"tidel\" in your download folder."}},
     misuseOfDownload},
    {"edit",
     "CHANNEL [--title TITLE] [--link FILE|URL]",
     "Change the title or link of a channel.",
     aChannel,
     1,
     1,
     edit,
     {{"title", "TITLE", "The new title."}, {"link", "FILE|URL", "The new address of the feed."}},
     misuseOfEdit},
    {"folder",
     "CHANNEL FOLDER",
     "Put a channel into a folder, such as News/World.",
     "A channel, and the names of folders within each other with / between them; \"\" for no folder.",
     2,
     2,
     moveToFolder,
     {},
     misuseOfFolder,
     nullptr,
     true},
    {"import",
     "FILE [--dry-run]",
     "Subscribe to the feeds in an OPML file, with their titles and folders.",
     "An OPML file that another feed reader has exported. Channels that exist already stay as they are.",
     1,
     1,
     importChannels,
     {{"dry-run", nullptr, "Shows what would be subscribed, and changes nothing."}}},
    {"export",
     "[FILE] [--opml | --json]",
     "Write a list of the channels with their titles and folders, for other feed readers.",
     "The file to write, which only you can read; by default the standard output.",
     0,
     1,
     exportChannels,
     {{"opml", nullptr, "Writes OPML 2.0; this is the default."},
      {"json", nullptr, "Writes a line of JSON for each channel."}},
     misuseOfExport},
    {"channels", "", "List the channels: title, folder if there are any, number of messages, link, URI.", "",
     0, 0, listChannels},
    {"messages", "CHANNEL", "List the messages of a channel, newest first; * marks favorites.", aChannel, 1,
     1, listMessages},
    {"show",
     "MESSAGE... [--html | --json] [--width N]",
     "Show what messages say, as text that fits the terminal.",
     "The links or URIs of messages.",
     1,
     anyNumber,
     showMessages,
     {{"html", nullptr, "Shows the text as the feed has it."},
      {"json", nullptr, "Shows all that is known of the messages, for other programs."},
      {"width", "N", "The number of columns; by default those of the terminal, or 80."}},
     misuseOfShow},
    {"search",
     "WORD... [OPTION...]",
     "Find the messages that have all of these words in their titles or texts, the best first.",
     "Words in any case; \"'two words'\" in double quotes for words that follow each other; word* for its "
     "beginning. Examples: tidel search runner bean*; tidel search '\"first frost\"' --since 30d.",
     1,
     anyNumber,
     search,
     {{"channel", "CHANNEL", "Only messages of this channel."},
      {"since", "TIME",
       "Only messages published since then: today, yesterday, 7d for seven days, 2026-11-03."},
      {"until", "TIME", "Only messages published until then; the day is included."},
      {"favorites", nullptr, "Only favorites."},
      {"limit", "N", "The number of messages to show; by default 20."},
      {"json", nullptr, "Writes a line of JSON for each message."}},
     misuseOfSearch},
    {"enclosures", "MESSAGE", "List the files of a message: size, type, address.", aMessage, 1, 1,
     listEnclosures},
    {"favorite", "MESSAGE", "Mark a message as a favorite, which is never pruned.", aMessage, 1, 1, favorite},
    {"unfavorite", "MESSAGE", "Remove the favorite mark from a message.", aMessage, 1, 1, unfavorite},
    {"prune",
     "[CHANNEL...] --keep N [--dry-run]",
     "Delete the oldest messages of each channel, except favorites.",
     someChannels,
     0,
     anyNumber,
     prune,
     {{"keep", "N", "The number of messages to keep in addition to favorites."},
      {"dry-run", nullptr, "Shows what would be deleted, and deletes nothing."}},
     misuseOfPrune},
    {"backup", "FILE", "Copy the whole archive, without downloaded files, into one file.",
     "The name of the copy, such as archive.ttl.gz: compressed Turtle. A file of this name is replaced.", 1,
     1, backup},
    {"restore", "FILE", "Fill an empty archive from a backup.", "A file that \"tidel backup\" has written.",
     1, 1, restore},
    {"clean", "", "Delete messages without a channel and enclosures without a message.", "", 0, 0, clean},
    {"check",
     "[--repair [--yes]]",
     "Check that the store is sound: its database, its contents and the downloaded files.",
     "",
     0,
     0,
     nullptr,
     {{"repair", nullptr,
       "Mends what can be mended without a loss, and saves what can be read of a damaged database."},
      {"yes", nullptr, "Repairs without asking."}},
     misuseOfCheck,
     check},
};

const Command *findCommand(const QString &name)
{
    const auto found = std::find_if(std::begin(commands), std::end(commands), [&](const Command &command) {
        return name == QLatin1String(command.name);
    });
    return found == std::end(commands) ? nullptr : found;
}

int exitCode(Output &output)
{
    const bool isFine = output.finish();
    if (output.signal() != 0)
        return Interrupted + output.signal();
    return isFine ? AllFine : SomethingFailed;
}

int show(Output &output, const QString &text)
{
    const QStringList lines = text.trimmed().split(QLatin1Char('\n'));
    for (const QString &line : lines)
        output.line(line);
    return exitCode(output);
}

int usageError(Output &output, const QString &problem, const QString &help)
{
    // The texts of Qt end with a full stop.
    const QString text = problem.endsWith(QLatin1Char('.')) ? problem.chopped(1) : problem;
    output.error(QStringLiteral("%1; see %2").arg(text, help));
    return UsageError;
}

QCommandLineOption helpOption()
{
    return QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")},
                              QStringLiteral("Displays this help."));
}

QCommandLineOption parserOption(const Option &option)
{
    QCommandLineOption result(QString::fromLatin1(option.name), QString::fromLatin1(option.description));
    if (option.value)
        result.setValueName(QString::fromLatin1(option.value));
    return result;
}

Arguments givenArguments(const Command &command, const QCommandLineParser &parser)
{
    Arguments given{parser.positionalArguments()};
    for (const Option &option : command.options) {
        const QString name = QString::fromLatin1(option.name);
        if (parser.isSet(name))
            given.options.insert(name, parser.value(name));
    }
    return given;
}

/// Returns what is wrong with \a arguments; empty if they are valid.
QString misuse(const Command &command, const Arguments &arguments)
{
    if (arguments.names.size() < command.minimumArguments)
        return QStringLiteral("an argument is missing");
    if (command.maximumArguments != anyNumber && arguments.names.size() > command.maximumArguments)
        return QStringLiteral("too many arguments");
    if (arguments.names.contains(QString()) && !command.takesEmptyArguments)
        return QStringLiteral("an argument is empty");
    return command.misuse ? command.misuse(arguments) : QString();
}

/// Returns the help of \a parser. Replaces the path of the program by \a call.
QString helpText(const QCommandLineParser &parser, const QString &call)
{
    const QString program = QCoreApplication::arguments().constFirst();
    QString text = parser.helpText();
    const int place = text.indexOf(program);
    return place < 0 ? text : text.replace(place, program.size(), call);
}

/// Returns the first argument of \a syntax, such as "CHANNEL" of "[CHANNEL...] --keep N".
QString argumentName(const QString &syntax)
{
    return syntax.section(QLatin1Char(' '), 0, 0).remove(QRegularExpression(QStringLiteral("[][.]")));
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
    return text
        + QStringLiteral(
               "\n\"tidel COMMAND --help\" describes a command. Put arguments that begin with - after --.");
}

int run(const Command &command, const Arguments &arguments, Output &output)
{
    if (command.runAlone) {
        command.runAlone(arguments, output);
        return exitCode(output);
    }
    const Result<Store> store = Store::open();
    if (store)
        command.run(*store, arguments, output);
    else
        output.failure(store.error());
    return exitCode(output);
}

int runCommand(const Command &command, const QStringList &arguments, Output &output)
{
    const QString name = QLatin1String(command.name);
    const QString help = QStringLiteral("\"tidel %1 --help\"").arg(name);
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QLatin1String(command.summary));
    parser.addOption(helpOption());
    for (const Option &option : command.options)
        parser.addOption(parserOption(option));
    const QString syntax = QLatin1String(command.syntax);
    if (*command.details)
        parser.addPositionalArgument(argumentName(syntax), QLatin1String(command.details), syntax);

    if (!parser.parse(QStringList{name} + arguments))
        return usageError(output, parser.errorText(), help);
    if (parser.isSet(helpOption()))
        return show(output, helpText(parser, QLatin1String("tidel ") + name));
    const Arguments given = givenArguments(command, parser);
    const QString problem = misuse(command, given);
    if (!problem.isEmpty())
        return usageError(output, QStringLiteral("%1: %2").arg(name, problem), help);
    return run(command, given, output);
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    const QString help = QStringLiteral("\"tidel --help\"");
    Output output(stdout, stderr);
    QCommandLineParser parser;
    parser.setApplicationDescription(commandList());
    parser.addOption(helpOption());
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption logSettings(QStringLiteral("log-settings"),
                                         QStringLiteral("Writes log messages as configured in FILE."),
                                         QStringLiteral("FILE"));
    parser.addOption(logSettings);
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("The command to run."),
                                 QStringLiteral("COMMAND [ARGUMENT...]"));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

    if (!parser.parse(arguments))
        return usageError(output, parser.errorText(), help);
    if (parser.isSet(version))
        return show(output, QLatin1String("tidel ") + QCoreApplication::applicationVersion());
    if (parser.isSet(helpOption()))
        return show(output, helpText(parser, QStringLiteral("tidel")));
    const QStringList values = parser.positionalArguments();
    if (values.isEmpty())
        return usageError(output, QStringLiteral("no command given"), help);
    const Command *command = findCommand(values.first());
    if (!command)
        return usageError(output, QStringLiteral("unknown command \"%1\"").arg(values.first()), help);

    std::unique_ptr<QstLogger> logger;
    if (parser.isSet(logSettings)) {
        QString error;
        logger = startLogging(parser.value(logSettings), &error);
        if (!logger) {
            output.error(error);
            return SomethingFailed;
        }
    }
    return runCommand(*command, values.mid(1), output);
}

} // namespace Tidel
