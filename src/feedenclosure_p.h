// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDENCLOSURE_P_H
#define FEEDENCLOSURE_P_H

#include "feedenclosure.h"

#include <QSharedData>

class FeedEnclosurePrivate : public QSharedData
{
public:
    QString uri;
    QString remoteUrl;
    QString localUrl;
    QString sourceNamespace;
    unsigned int length = 0;
    FeedEnclosure::Type type = FeedEnclosure::Optional;
    unsigned int groupId = 0;
    bool isDefault = false;
    QString mimeType;
    QString typeIcon;
};

#endif
