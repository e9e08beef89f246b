// SPDX-License-Identifier: LGPL-2.1-or-later
#include "manual.h"

#include "commandtable.h"

namespace Tidel {

namespace {

/// \a text as text of a manual page, in which nothing is a request.
QString escaped(const QString &text)
{
    QString result = text;
    result.replace(QLatin1Char('\\'), QLatin1String("\\e")).replace(QLatin1Char('-'), QLatin1String("\\-"));
    const bool looksLikeRequest = result.startsWith(QLatin1Char('.')) || result.startsWith(QLatin1Char('\''));
    return looksLikeRequest ? QLatin1String("\\&") + result : result;
}

QString escaped(const char *text) { return escaped(QString::fromUtf8(text)); }

QString paragraph(const QString &text) { return QLatin1String(".PP\n") + text + QLatin1Char('\n'); }

QString optionEntry(const Option &option)
{
    const QString value = option.value ? QStringLiteral(" \\fI%1\\fR").arg(escaped(option.value)) : QString();
    return QStringLiteral(".TP\n\\fB\\-\\-%1\\fR%2\n%3\n")
        .arg(escaped(option.name), value, escaped(option.description));
}

QString commandEntry(const Command &command)
{
    QString text =
        QStringLiteral(".SS \"tidel %1 %2\"\n").arg(escaped(command.name), escaped(command.syntax));
    text += escaped(command.summary) + QLatin1Char('\n');
    if (*command.details)
        text += paragraph(escaped(command.details));
    for (const Option &option : command.options)
        text += optionEntry(option);
    text += QLatin1String(".PP\n.nf\n");
    for (const char *example : command.examples)
        text += QLatin1String("    ") + escaped(example) + QLatin1Char('\n');
    return text + QLatin1String(".fi\n");
}

const char *const beginning = R"(.SH NAME
tidel \- feed reader for the terminal
.SH SYNOPSIS
.B tidel
.I COMMAND
.RI [ ARGUMENT ...]
.SH DESCRIPTION
.B tidel
subscribes to RSS, Atom, RDF and JSON feeds, keeps their messages in an archive, and lists, shows and searches them.
)";

const char *const end = R"(.SH EXIT STATUS
.TP
.B 0
Everything was done.
.TP
.B 1
Something failed, and the rest was done.
.TP
.B 2
The arguments are wrong, and nothing was done.
.TP
.BR 130 ", " 143
The user or another program interrupted the command.
.SH ENVIRONMENT
.TP
.B XDG_DATA_HOME
The archive is in the folder tidel below it; by default in ~/.local/share.
.TP
.B PAGER
Shows what is longer than the terminal; by default less.
.TP
.B NO_COLOR
If it is set, nothing is highlighted.
.SH SEE ALSO
.BR tidel\-json (5)
)";

} // namespace

QString manualPage(const QString &version)
{
    QString text =
        QStringLiteral(".\\\" SPDX-License-Identifier: LGPL-2.1-or-later\n.TH TIDEL 1 \"\" \"tidel %1\"\n")
            .arg(version)
        + QLatin1String(beginning);
    for (const CommandGroup &group : commandGroups()) {
        text += QStringLiteral(".SH %1\n").arg(QString::fromLatin1(group.title).toUpper());
        for (const Command *command : group.commands)
            text += commandEntry(*command);
    }
    text += QLatin1String(".SH OPTIONS OF EVERY COMMAND\n");
    for (const Option &option : commonOptions())
        text += optionEntry(option);
    text += optionEntry({"help", nullptr, "Displays the help of the command."});
    text += QLatin1String(".SH OPTIONS BEFORE THE COMMAND\n");
    for (const Option &option : programOptions())
        text += optionEntry(option);
    return text + QLatin1String(end);
}

} // namespace Tidel
