// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HEADLINELIST_H
#define TIDEL_HEADLINELIST_H

#include <QString>

#include <TidelReader/messagelist.h>

namespace Tidel {

class Output;

/// "•" for an unread message, and "*" for a favorite; a blank for each that it is not.
QString shownMarks(const MessageHeadline &message);

/// Lists \a messages with numbers, and remembers them as the last list.
void showHeadlines(const QList<MessageHeadline> &messages, bool withUris, Output &output);

} // namespace Tidel

#endif
