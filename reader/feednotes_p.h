// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDNOTES_P_H
#define TIDEL_FEEDNOTES_P_H

#include "feedanswer.h"

namespace Tidel {

constexpr int goneStatus = 410; ///< The HTTP status of a document that was removed permanently.
constexpr int movesToFollow = 3; ///< So many answers in a row must say that a feed has moved.

/// The piece of an update that notes \a answer, which came at \a now for the channel with \a plan. Empty if
/// all is as before.
QString noteOfAnswer(const QString &channelUri, const FeedAnswer &answer, const FeedPlan &plan,
                     const QDateTime &now);

} // namespace Tidel

#endif
