// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_SHOWNMESSAGE_H
#define TIDEL_DESKTOP_SHOWNMESSAGE_H

#include <TidelReader/details.h>

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <feedmessage.h>

namespace Tidel {

/// What an ArticleView shows of a message.
struct ShownMessage
{
    QString uri;
    FeedMessage message;
    MessageDetails details;
    QString channelUri; ///< Pictures are allowed for the messages of a channel.
    QStringList channelTitles;
    QList<FeedEnclosure> enclosures;
    QHash<QString, EnclosureDetails> enclosureDetails; ///< By the URIs of the enclosures.
    QHash<QString, qint64> partSizes; ///< Of files that were downloaded in part, in bytes, by the same.
};

} // namespace Tidel

#endif
