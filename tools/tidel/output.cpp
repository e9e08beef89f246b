// SPDX-License-Identifier: LGPL-2.1-or-later
#include "output.h"

#include "table.h"
#include "terminaltext.h"

namespace Tidel {

namespace {

void writeLine(FILE *stream, const QString &text)
{
    const QByteArray utf8 = terminalText(text).toUtf8() + '\n';
    fwrite(utf8.constData(), 1, size_t(utf8.size()), stream);
}

} // namespace

Output::Output(FILE *results, FILE *errors) : m_results(results), m_errors(errors) { }

void Output::line(const QString &text) { writeLine(m_results, text); }

void Output::table(const Table &table)
{
    const QStringList lines = table.lines();
    for (const QString &text : lines)
        line(text);
}

void Output::note(const QString &text)
{
    fflush(m_results);
    writeLine(m_errors, text);
}

void Output::error(const QString &text)
{
    m_hasFailed = true;
    note(QLatin1String("tidel: ") + text);
}

bool Output::finish()
{
    if (fflush(m_results) != 0 || ferror(m_results))
        error(QStringLiteral("the results cannot be written"));
    return !m_hasFailed;
}

} // namespace Tidel
