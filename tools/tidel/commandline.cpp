// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandline.h"

#include "commandhelp.h"
#include "commandtable.h"
#include "complete.h"
#include "output.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLoggingCategory>

#include <TidelReader/logging.h>
#include <TidelReader/store.h>

#include <memory>

namespace Tidel {

namespace {

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
    const QString place = QLatin1String(text.endsWith(QLatin1Char('?')) ? " See " : "; see ") + help;
    output.error(text + place);
    return UsageError;
}

QCommandLineOption helpOption()
{
    return QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")},
                              QStringLiteral("Displays this help."));
}

QCommandLineOption parserOption(const Option &option)
{
    QCommandLineOption result(QString::fromLatin1(option.name));
    if (option.value)
        result.setValueName(QString::fromLatin1(option.value));
    return result;
}

/// The options of \a command and those of all commands.
std::vector<Option> optionsOf(const Command &command)
{
    std::vector<Option> options = command.options;
    options.insert(options.end(), commonOptions().begin(), commonOptions().end());
    return options;
}

Arguments givenArguments(const std::vector<Option> &options, const QCommandLineParser &parser)
{
    Arguments given{parser.positionalArguments()};
    for (const Option &option : options) {
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

/// Returns what \a parser found wrong with the arguments, and what the user may have meant.
QString parserProblem(const QCommandLineParser &parser, const std::vector<Option> &options)
{
    QStringList names;
    for (const Option &option : options)
        names.append(QString::fromLatin1(option.name));
    const QStringList unknown = parser.unknownOptionNames();
    const QString meant = unknown.isEmpty() ? QString() : similarWord(unknown.first(), names);
    return meant.isEmpty()
        ? parser.errorText()
        : QStringLiteral("unknown option --%1; did you mean --%2?").arg(unknown.first(), meant);
}

QString unknownCommand(const QString &name)
{
    const QString meant = similarWord(name, commandNames());
    const QString question =
        meant.isEmpty() ? QString() : QStringLiteral("; did you mean \"%1\"?").arg(meant);
    return QStringLiteral("unknown command \"%1\"").arg(name) + question;
}

int run(const Command &command, const Arguments &arguments, Output &output)
{
    if (const auto *alone = std::get_if<Command::Alone>(&command.run)) {
        (*alone)(arguments, output);
        return exitCode(output);
    }
    const Result<Store> store = Store::open();
    if (store)
        std::get<Command::OnStore>(command.run)(*store, arguments, output);
    else
        output.failure(store.error());
    return exitCode(output);
}

int runCommand(const Command &command, const QStringList &arguments, Output &output)
{
    const QString name = QLatin1String(command.name);
    const QString help = QStringLiteral("\"tidel %1 --help\"").arg(name);
    const std::vector<Option> options = optionsOf(command);
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption(helpOption());
    for (const Option &option : options)
        parser.addOption(parserOption(option));

    const bool isParsed = parser.parse(QStringList{name} + arguments);
    if (parser.isSet(helpOption()))
        return show(output, commandHelp(command, output.width()));
    if (!isParsed)
        return usageError(output, parserProblem(parser, options), help);
    const Arguments given = givenArguments(options, parser);
    const QString problem = misuse(command, given);
    if (!problem.isEmpty())
        return usageError(output, QStringLiteral("%1: %2").arg(name, problem), help);
    output.setStyle(given.isSet("json") ? Output::Json : Output::Text, given.isSet("quiet"));
    if (given.isSet("quiet"))
        QLoggingCategory::setFilterRules(QStringLiteral("tidel.*.info=false"));
    return run(command, given, output);
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    const QString help = QStringLiteral("\"tidel --help\"");
    Output output(stdout, stderr);
    if (arguments.value(1) == QLatin1String("--complete")) {
        complete(arguments.mid(2), output);
        return exitCode(output);
    }
    QCommandLineParser parser;
    parser.addOption(helpOption());
    const QCommandLineOption version = parser.addVersionOption();
    QCommandLineOption logSettings(QStringLiteral("log-settings"));
    logSettings.setValueName(QStringLiteral("FILE"));
    parser.addOption(logSettings);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

    if (!parser.parse(arguments))
        return usageError(output, parser.errorText(), help);
    if (parser.isSet(version))
        return show(output, QLatin1String("tidel ") + QCoreApplication::applicationVersion());
    if (parser.isSet(helpOption()))
        return show(output, programHelp(output.width()));
    const QStringList values = parser.positionalArguments();
    if (values.isEmpty())
        return usageError(output, QStringLiteral("no command given"), help);
    const Command *command = findCommand(values.first());
    if (!command)
        return usageError(output, unknownCommand(values.first()), help);

    std::unique_ptr<QstLogger> logger;
    if (parser.isSet(logSettings)) {
        auto started = startLogging(parser.value(logSettings));
        if (!started) {
            output.error(parser.value(logSettings) + QLatin1String(": ") + started.error().text());
            return SomethingFailed;
        }
        logger = std::move(*started);
    }
    return runCommand(*command, values.mid(1), output);
}

} // namespace Tidel
