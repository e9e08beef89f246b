// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDMESSAGE_P_H
#define FEEDMESSAGE_P_H

#include "feedmessage.h"

#include <QSharedData>

class FeedMessagePrivate : public QSharedData
{
public:
    QString title;
    QString link;
    QString id;
    QString description;
    QString summary;
    QUrl baseUrl;
    QDateTime publishedDate;
    QList<FeedEnclosure> enclosures;
    QDateTime downloadedTime;
    bool favorite = false;
};

#endif
