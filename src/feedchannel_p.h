// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDCHANNEL_P_H
#define FEEDCHANNEL_P_H

#include "feedchannel.h"

#include <QSharedData>

class FeedChannelPrivate : public QSharedData
{
public:
    QString uri;
    QString link;
    QString title;
    FeedEnclosure icon;
    QString description;
    QString type;
    QDateTime subscribedTime;
    QDateTime updatedTime;
    QString lastModifiedTime;
    QList<FeedMessage> messages;
};

#endif
