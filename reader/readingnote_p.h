// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_READINGNOTE_P_H
#define TIDEL_READINGNOTE_P_H

#include "feeds.h"

namespace Tidel {

/// What an item note is stored with. It counts only as long as nobody else changes the channel, which has
/// \a parts and was read at \a time.
QString itemNoteStamp(int parts, const QString &time);

/// The pieces of the update that notes \a reading.
QString noteOf(const Reading &reading, const QString &channelUri);

} // namespace Tidel

#endif
