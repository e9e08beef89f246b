// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_REMOVALREPORT_H
#define TIDEL_REMOVALREPORT_H

#include <QJsonObject>

#include <TidelReader/removal.h>

namespace Tidel {

class Output;

/// Counts what a command removes from the store, and removes the downloaded files.
class RemovalReport
{
public:
    /// Creates a report that writes errors to \a output.
    explicit RemovalReport(Output &output) : m_output(output) { }

    /// Returns the function to call after each step of the removal. It must not outlive this object.
    RemovalStep step();

    /// The numbers as `deletedMessages`, `deletedEnclosures` and `deletedFiles`, added to \a object.
    QJsonObject json(QJsonObject object = {}) const;
    /// The number of removed messages.
    int messages() const { return m_messages; }
    /// The number of removed enclosures.
    int enclosures() const { return m_enclosures; }
    /// The number of removed files.
    int files() const { return m_files; }

private:
    Output &m_output;
    int m_messages = 0;
    int m_enclosures = 0;
    int m_files = 0;
};

} // namespace Tidel

#endif
