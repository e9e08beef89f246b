// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OUTPUT_H
#define TIDEL_OUTPUT_H

#include <QString>

#include <cstdio>

namespace Tidel {

class Error;
class Table;

/// Where a command writes: results to one stream, notes and errors to the other. All text is UTF-8 and is
/// made safe for a terminal, since most of it comes from feeds of strangers.
class Output
{
public:
    Output(FILE *results, FILE *errors);

    /// One line of results.
    void line(const QString &text);
    void table(const Table &table);
    /// One line for the user that is neither a result nor a failure.
    void note(const QString &text);
    /// One line that says what failed. The command then has failed.
    void error(const QString &text);
    /// The same for \a error. \a advice is appended to its text.
    void failure(const Error &error, const QString &advice = QString());
    /// The same for an error that concerns \a subject, such as the title of a channel.
    void failure(const QString &subject, const Error &error, const QString &advice = QString());

    /// Shows the progress of the command, on a terminal only. The next line or progress replaces it.
    void progress(const QString &text);

    /// Notes that the signal with this number ended the command early.
    void interrupted(int signal) { m_signal = signal; }
    /// The number of that signal; 0 if there was none.
    int signal() const { return m_signal; }

    /// Writes what is buffered. Returns true if nothing failed; otherwise returns false.
    bool finish();

private:
    void eraseProgress();

    FILE *const m_results;
    FILE *const m_errors;
    const bool m_showsProgress;
    bool m_hasProgress = false;
    bool m_hasFailed = false;
    int m_signal = 0;
};

} // namespace Tidel

#endif
