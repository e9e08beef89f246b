// SPDX-License-Identifier: LGPL-2.1-or-later
#include "download.h"

namespace Tidel {

Download::Download(const DownloadTools &tools) : m_tools(tools) { }

Download::~Download() = default;

Transfer *Download::transfer(const TransferRequest &request, QIODevice &target)
{
    // The last transfer may be the one that is just reporting its end.
    if (m_transfer)
        m_transfer.release()->deleteLater();
    m_transfer = std::make_unique<Transfer>(m_tools.connections, request, m_tools.limits, target);
    connect(m_transfer.get(), &Transfer::finished, this, [this] {
        if (m_transfer->outcome().isFine())
            transferred(*m_transfer);
        else
            failed(m_transfer->outcome());
    });
    return m_transfer.get();
}

void Download::cancel()
{
    if (m_transfer)
        m_transfer->cancel();
    finish(canceledOutcome());
}

void Download::finish(const Outcome &outcome)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_outcome = outcome;
    Q_EMIT finished();
}

} // namespace Tidel
