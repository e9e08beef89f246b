// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEFINDER_H
#define TIDEL_MESSAGEFINDER_H

#include <QList>
#include <QStringList>

#include <TidelReader/messagelist.h>

#include <optional>

namespace Tidel {

class Output;

/// Returns the message of \a store that the user calls \a name: the number of a row in the last list of
/// messages, its URI, its link, its title, or a part of its title that no other title contains. If there is
/// none or more than one, reports it to \a output with the messages that may be meant, and returns nothing.
std::optional<MessageHeadline> chooseMessage(const Store &store, const QString &name, Output &output);

/// Returns the messages that \a names identify, each once, as chooseMessage() does.
QList<MessageHeadline> chooseMessages(const Store &store, const QStringList &names, Output &output);

} // namespace Tidel

#endif
