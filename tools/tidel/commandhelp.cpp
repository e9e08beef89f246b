// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandhelp.h"

#include "commandtable.h"

#include <QRegularExpression>

namespace Tidel {

namespace {

constexpr int widestText = 100;
constexpr int nameWidth = 19; // Of arguments and options.

/// Breaks \a text into lines of at most \a width columns. The first one begins with \a first, the others with
/// as many blanks.
QString wrapped(const QString &first, const QString &text, int width)
{
    QString result = first;
    int column = int(first.size());
    const int indent = column;
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (column > indent && column + 1 + word.size() > width) {
            result += QLatin1Char('\n') + QString(indent, QLatin1Char(' '));
            column = indent;
        } else if (column > indent) {
            result += QLatin1Char(' ');
            ++column;
        }
        result += word;
        column += int(word.size());
    }
    return result + QLatin1Char('\n');
}

/// A line \a name of a list and what it \a description means.
QString entry(const QString &name, const QString &description, int columns, int width)
{
    return wrapped(QStringLiteral("  %1  ").arg(name, -columns), description, width);
}

QString optionName(const Option &option)
{
    const QString name = QLatin1String("--") + QLatin1String(option.name);
    return option.value ? name + QLatin1Char(' ') + QLatin1String(option.value) : name;
}

QString optionList(const std::vector<Option> &options, int width)
{
    QString list;
    for (const Option &option : options)
        list += entry(optionName(option), QLatin1String(option.description), nameWidth, width);
    return list;
}

/// Returns the first argument of \a syntax, such as "CHANNEL" of "[CHANNEL...] --keep N".
QString argumentName(const QString &syntax)
{
    return syntax.section(QLatin1Char(' '), 0, 0).remove(QRegularExpression(QStringLiteral("[][.]")));
}

} // namespace

QString programHelp(int width)
{
    width = std::min(width, widestText);
    QString text = QStringLiteral("Usage: tidel COMMAND [ARGUMENT...]\n\n"
                                  "A feed reader that keeps its feeds in the desktop's store.\n");
    for (const CommandGroup &group : commandGroups()) {
        text += QStringLiteral("\n%1:\n").arg(QLatin1String(group.title));
        for (const Command *command : group.commands)
            text += entry(QLatin1String(command->name), QLatin1String(command->summary), 11, width);
    }
    return text + QStringLiteral("\nOptions:\n") + optionList(programOptions(), width)
        + optionList(commonOptions(), width)
        + QStringLiteral("\n\"tidel COMMAND --help\" describes a command and shows examples.\n"
                         "Put arguments that begin with - after --.\n");
}

QString commandHelp(const Command &command, int width)
{
    width = std::min(width, widestText);
    const QString syntax = QLatin1String(command.syntax);
    QString text = wrapped(QStringLiteral("Usage: tidel %1 ").arg(QLatin1String(command.name)), syntax, width)
        + QLatin1Char('\n') + wrapped(QString(), QLatin1String(command.summary), width);
    if (*command.details)
        text += QStringLiteral("\nArguments:\n")
            + entry(argumentName(syntax), QLatin1String(command.details), nameWidth, width);
    text += QStringLiteral("\nOptions:\n") + optionList(command.options, width)
        + optionList(commonOptions(), width) + optionList({{"help", nullptr, "Displays this help."}}, width);
    text += QLatin1String(command.examples.size() == 1 ? "\nExample:\n" : "\nExamples:\n");
    for (const char *example : command.examples)
        text += QStringLiteral("  %1\n").arg(QLatin1String(example));
    return text;
}

} // namespace Tidel
