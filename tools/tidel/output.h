// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OUTPUT_H
#define TIDEL_OUTPUT_H

#include <QString>

#include <cstdio>

namespace Tidel {

class Table;

/// Where a command writes: results to one stream, what went wrong to the other. All text is UTF-8, and made
/// fit for a terminal, since most of it comes from strangers' feeds.
class Output
{
public:
    Output(FILE *results, FILE *errors);

    /// One line of results.
    void line(const QString &text);
    void table(const Table &table);
    /// One line for the user beside the results that is no failure.
    void note(const QString &text);
    /// One line that says what failed, and that something did.
    void error(const QString &text);

    /// Shows how far things are, in the place of what was last shown, until the next line; on a terminal
    /// only.
    void progress(const QString &text);

    /// Notes that the signal with this number ended the command early.
    void interrupted(int signal) { m_signal = signal; }
    int signal() const { return m_signal; }

    /// Whether all went well, the writing too.
    bool finish();

private:
    FILE *const m_results;
    FILE *const m_errors;
    void eraseProgress();

    const bool m_showsProgress;
    bool m_hasProgress = false;
    bool m_hasFailed = false;
    int m_signal = 0;
};

} // namespace Tidel

#endif
