// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OUTPUT_H
#define TIDEL_OUTPUT_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdio>

namespace Tidel {

class Error;
class Table;

/// Writes the results of a command to one stream, and notes and errors to another one. All text is UTF-8.
/// Control characters are removed and errors are shortened, because most of the text comes from feeds. No
/// password of an address is shown.
class Output
{
public:
    /// How results and errors are written.
    enum Style {
        Text, ///< For a person: line(), table() and page() write, and errors go to their own stream.
        Json ///< For a program: object() writes, and errors are objects among the results.
    };

    /// Creates an output in the style Text that writes to \a results and \a errors.
    Output(FILE *results, FILE *errors);
    /// Uses \a style from now on. If \a isQuiet is true, notes, progress and the texts of reports are left
    /// out.
    void setStyle(Style style, bool isQuiet);
    /// The style.
    Style style() const { return m_style; }

    /// Writes \a object as one line of JSON, in the style Json only.
    void object(const QJsonObject &object);
    /// Reports what the command did: \a text or \a object, by the style. An empty object is left out.
    void report(const QString &text, const QJsonObject &object);
    /// Writes one line of results, in the style Text only.
    void line(const QString &text);
    /// Writes one line of results, and the parts \a marks of it bold on a terminal: position and length of
    /// each.
    void line(const QString &text, const QVector<QPair<int, int>> &marks);
    /// Writes the lines of \a table as results. On a terminal, makes them fit its width.
    void table(const Table &table);
    /// Writes \a lines as results. On a terminal that is too short for them, shows them in a pager.
    void page(const QStringList &lines);
    /// Writes \a utf8, which another program is to read, as it is. On a terminal, writes it as page() does.
    void document(const QByteArray &utf8);
    /// The number of columns for results: those of the terminal, or 80 if the results go elsewhere.
    int width() const;
    /// The number of lines of the terminal that the results go to; 0 if they go elsewhere.
    int height() const;
    /// Writes one line for the user that is neither a result nor an error.
    void note(const QString &text);
    /// Writes \a warnings about \a subject, such as the title of a channel, a line for each.
    void warnings(const QString &subject, const QStringList &warnings);
    /// Writes one line of an error. The command then has failed. \a object describes what it concerns for
    /// other programs.
    void error(const QString &text, QJsonObject object = {});
    /// Writes the text of \a error and \a advice as an error.
    void failure(const Error &error, const QString &advice = QString());
    /// Writes the text of an error that concerns \a subject, such as the title of a channel.
    void failure(const QString &subject, const Error &error, const QString &advice = QString());

    /// Shows the progress of the command, on a terminal that can erase it only, and at most ten times a
    /// second. The next line or progress replaces it.
    void progress(const QString &text);

    /// Notes that \a signal has interrupted the command.
    void interrupted(int signal) { m_signal = signal; }
    /// The signal that has interrupted the command; 0 if there was none.
    int signal() const { return m_signal; }

    /// Writes buffered results. Returns true if nothing has failed; otherwise returns false.
    bool finish();

private:
    /// Writes \a text for the user.
    void notify(const QString &text);
    /// Removes the progress from the terminal.
    void eraseProgress();

    FILE *const m_results;
    FILE *const m_errors;
    const bool m_showsProgress;
    const bool m_isTerminal; ///< The results go to a terminal.
    const bool m_showsMarks;
    Style m_style = Text;
    bool m_isQuiet = false;
    bool m_hasProgress = false;
    bool m_hasFailed = false;
    QElapsedTimer m_lastProgress;
    int m_signal = 0;
};

} // namespace Tidel

#endif
