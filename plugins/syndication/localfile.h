// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LOCALFILE_H
#define TIDEL_LOCALFILE_H

#include "source.h"

#include <QFile>
#include <QTimer>

namespace Tidel {

/// Reads a file piece by piece, so that the event loop goes on.
class LocalFile : public Source
{
    Q_OBJECT

public:
    /// Reads the file at \a path.
    LocalFile(const QString &path, const Receiver &receiver);

    void start() override;
    Outcome outcome() const override { return m_outcome; }

private:
    void readPiece();

    const Receiver m_receiver;
    QFile m_file;
    QTimer m_next;
    Outcome m_outcome;
};

} // namespace Tidel

#endif
