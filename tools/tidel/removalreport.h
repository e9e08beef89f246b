// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_REMOVALREPORT_H
#define TIDEL_REMOVALREPORT_H

#include <TidelReader/removal.h>

namespace Tidel {

class Output;

/// Counts what a command removes from the store, and removes the downloaded files of its enclosures.
class RemovalReport
{
public:
    explicit RemovalReport(Output &output) : m_output(output) { }

    /// Hears of each step. Must not outlive this object.
    RemovalStep step();

    int messages() const { return m_messages; }
    int enclosures() const { return m_enclosures; }
    int files() const { return m_files; }

private:
    Output &m_output;
    int m_messages = 0;
    int m_enclosures = 0;
    int m_files = 0;
};

} // namespace Tidel

#endif
