// SPDX-License-Identifier: LGPL-2.1-or-later
#include "output.h"

#include "table.h"
#include "terminaltext.h"

#include <TidelReader/error.h>

#include <limits>

#include <sys/ioctl.h>
#include <unistd.h>

namespace Tidel {

namespace {

void writeLine(FILE *stream, const QString &text)
{
    const QByteArray utf8 = terminalText(text).toUtf8() + '\n';
    fwrite(utf8.constData(), 1, size_t(utf8.size()), stream);
}

/// The number of characters in a line of \a terminal; the largest number if it is unknown.
int lineLength(FILE *terminal)
{
    winsize size = {};
    const bool isKnown = ioctl(fileno(terminal), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : std::numeric_limits<int>::max();
}

} // namespace

Output::Output(FILE *results, FILE *errors)
    : m_results(results), m_errors(errors), m_showsProgress(isatty(fileno(errors)) == 1)
{
}

void Output::line(const QString &text)
{
    eraseProgress();
    writeLine(m_results, text);
}

void Output::table(const Table &table)
{
    const QStringList lines = table.lines();
    for (const QString &text : lines)
        line(text);
}

void Output::note(const QString &text)
{
    eraseProgress();
    fflush(m_results);
    writeLine(m_errors, text);
}

void Output::warnings(const QString &subject, const QStringList &warnings)
{
    for (const QString &warning : warnings)
        note(QStringLiteral("tidel: %1: %2").arg(subject, warning));
}

void Output::progress(const QString &text)
{
    if (!m_showsProgress)
        return;
    eraseProgress();
    fflush(m_results);
    // A text of two lines could not be erased.
    const QByteArray utf8 = terminalText(text).left(lineLength(m_errors) - 1).toUtf8();
    fwrite(utf8.constData(), 1, size_t(utf8.size()), m_errors);
    fflush(m_errors);
    m_hasProgress = true;
}

void Output::eraseProgress()
{
    if (m_hasProgress)
        fputs("\r\033[K", m_errors);
    m_hasProgress = false;
}

void Output::error(const QString &text)
{
    m_hasFailed = true;
    note(QLatin1String("tidel: ") + text);
}

void Output::failure(const Error &error, const QString &advice) { this->error(error.text() + advice); }

void Output::failure(const QString &subject, const Error &error, const QString &advice)
{
    this->error(subject + QLatin1String(": ") + error.text() + advice);
}

bool Output::finish()
{
    eraseProgress();
    if (fflush(m_results) != 0 || ferror(m_results))
        error(QStringLiteral("could not write the results to the standard output"));
    return !m_hasFailed;
}

} // namespace Tidel
