// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGETEXT_H
#define TIDEL_MESSAGETEXT_H

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <TidelReader/details.h>
#include <TidelReader/messagelist.h>
#include <TidelReader/store.h>

#include <feedenclosure.h>
#include <feedmessage.h>

namespace Tidel {

/// All that the store knows of a message.
struct WholeMessage
{
    MessageHeadline headline;
    FeedMessage message;
    MessageDetails details;
    QList<FeedEnclosure> enclosures;
    QHash<QString, EnclosureDetails> enclosureDetails; ///< By URI.
};

/// Reads the message \a headline. Fails as the functions of Messages and Enclosures do.
Result<WholeMessage> readMessage(const Store &store, const MessageHeadline &headline);

/// The HTML text of the message: its text, or its summary if it has none.
QString htmlOf(const WholeMessage &whole);

/// The message as a person reads it, in lines of at most \a width columns: what is known of it, and its text.
QStringList messageLines(const WholeMessage &whole, int width);

/// The message as JSON. Dates are in UTC as of ISO 8601; what is unknown is left out.
QJsonObject messageJson(const WholeMessage &whole);

} // namespace Tidel

#endif
