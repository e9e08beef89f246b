// SPDX-License-Identifier: LGPL-2.1-or-later
#include "output.h"

#include "pager.h"
#include "phrases.h"
#include "table.h"
#include "terminaltext.h"

#include <TidelReader/error.h>
#include <TidelReader/usertext.h>

#include <QJsonDocument>

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

/// The size of \a terminal; zeros if it is unknown.
winsize sizeOf(FILE *terminal)
{
    winsize size = {};
    ioctl(fileno(terminal), TIOCGWINSZ, &size);
    return size;
}

/// The number of characters in a line of \a terminal; the largest number if it is unknown.
int lineLength(FILE *terminal)
{
    const int columns = sizeOf(terminal).ws_col;
    return columns > 0 ? columns : std::numeric_limits<int>::max();
}

} // namespace

Output::Output(FILE *results, FILE *errors)
    : m_results(results), m_errors(errors),
      m_showsProgress(isatty(fileno(errors)) == 1 && qgetenv("TERM") != "dumb"),
      m_isTerminal(isatty(fileno(results)) == 1),
      m_showsMarks(m_isTerminal && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb")
{
}

void Output::setStyle(Style style, bool isQuiet)
{
    m_style = style;
    m_isQuiet = isQuiet;
}

void Output::object(const QJsonObject &object)
{
    if (m_style != Json)
        return;
    eraseProgress();
    const QByteArray json = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    fwrite(json.constData(), 1, size_t(json.size()), m_results);
}

void Output::report(const QString &text, const QJsonObject &object)
{
    if (!object.isEmpty())
        this->object(object);
    if (!m_isQuiet)
        line(text);
}

void Output::line(const QString &text)
{
    if (m_style == Json)
        return;
    eraseProgress();
    writeLine(m_results, text);
}

void Output::line(const QString &text, const QVector<QPair<int, int>> &marks)
{
    // A mark within an address would hide a password in it from terminalText().
    if (!m_showsMarks || withoutPasswords(text) != text) {
        line(text);
        return;
    }
    eraseProgress();
    QByteArray utf8;
    int at = 0;
    for (const auto &[from, length] : marks) {
        utf8 += terminalText(text.mid(at, from - at)).toUtf8() + "\033[1m"
            + terminalText(text.mid(from, length)).toUtf8() + "\033[22m";
        at = from + length;
    }
    utf8 += terminalText(text.mid(at)).toUtf8() + '\n';
    fwrite(utf8.constData(), 1, size_t(utf8.size()), m_results);
}

void Output::table(const Table &table)
{
    const QStringList lines = m_isTerminal ? table.lines(width()) : table.lines();
    for (const QString &text : lines)
        line(text);
}

void Output::page(const QStringList &lines)
{
    if (m_style == Json)
        return;
    eraseProgress();
    const int rows = sizeOf(m_results).ws_row;
    if (rows > 0 && lines.size() >= rows && m_isTerminal) {
        QByteArray text;
        for (const QString &each : lines)
            text += terminalText(each).toUtf8() + '\n';
        fflush(m_results);
        if (showInPager(text))
            return;
    }
    for (const QString &each : lines)
        line(each);
}

void Output::document(const QByteArray &utf8)
{
    if (m_isTerminal)
        page(QString::fromUtf8(utf8).trimmed().split(QLatin1Char('\n')));
    else
        fwrite(utf8.constData(), 1, size_t(utf8.size()), m_results);
}

int Output::width() const
{
    const int columns = sizeOf(m_results).ws_col;
    return columns > 0 ? columns : 80;
}

int Output::height() const { return m_isTerminal ? sizeOf(m_results).ws_row : 0; }

void Output::note(const QString &text)
{
    if (!m_isQuiet)
        notify(text);
}

void Output::notify(const QString &text)
{
    eraseProgress();
    fflush(m_results);
    writeLine(m_errors, shownReason(text));
}

void Output::warnings(const QString &subject, const QStringList &warnings)
{
    for (const QString &warning : warnings)
        note(QStringLiteral("tidel: %1: %2").arg(subject, warning));
}

void Output::progress(const QString &text)
{
    constexpr int interval = 100; // milliseconds
    if (!m_showsProgress || m_isQuiet || (m_lastProgress.isValid() && m_lastProgress.elapsed() < interval))
        return;
    m_lastProgress.start();
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

void Output::error(const QString &text, QJsonObject object)
{
    m_hasFailed = true;
    if (m_style == Json) {
        object.insert(QStringLiteral("error"), shownReason(text));
        this->object(object);
    } else {
        notify(QLatin1String("tidel: ") + text);
    }
}

void Output::failure(const Error &error, const QString &advice)
{
    this->error(error.text() + damageAdvice(error) + advice);
}

void Output::failure(const QString &subject, const Error &error, const QString &advice)
{
    this->error(subject + QLatin1String(": ") + error.text() + damageAdvice(error) + advice);
}

bool Output::finish()
{
    eraseProgress();
    if (fflush(m_results) != 0 || ferror(m_results))
        error(QStringLiteral("could not write the results to the standard output"));
    return !m_hasFailed;
}

} // namespace Tidel
