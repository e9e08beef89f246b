// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_JSONOBJECTS_H
#define TIDEL_JSONOBJECTS_H

#include <QJsonObject>

#include <TidelReader/details.h>
#include <TidelReader/messagelist.h>

#include <feedchannel.h>
#include <feedenclosure.h>

namespace Tidel {

class Schedule;

// What other programs get. What is unknown is left out, times are in UTC as of ISO 8601, and addresses have
// no passwords.

/// Adds \a value as \a key to \a object if it is not empty.
void addText(QJsonObject &object, const char *key, const QString &value);
/// Adds \a value as \a key to \a object if it has elements.
void addList(QJsonObject &object, const char *key, const QStringList &value);
/// Adds \a value as \a key to \a object if it is positive.
void addNumber(QJsonObject &object, const char *key, qint64 value);
/// Adds \a value as \a key to \a object if it is valid.
void addTime(QJsonObject &object, const char *key, const QDateTime &value);

/// The channel: `uri`, `link`, `title`, `type`.
QJsonObject channelJson(const FeedChannel &channel);

/// Adds when \a channel was read last and is due, and why it failed: `updated`, `due`, `error`.
void addTimes(QJsonObject &object, const FeedChannel &channel, const Schedule &schedule);

/// The message: `uri`, `link`, `title`, `channels`, `published`, `read`, `favorite`.
QJsonObject headlineJson(const MessageHeadline &message);

/// The enclosure: `uri`, `url`, `type`, `length` in bytes, `duration` in seconds, `title`, `file`, and
/// `queued` if it waits to be downloaded since then.
QJsonObject enclosureJson(const FeedEnclosure &enclosure, const EnclosureDetails &details = {},
                          const QDateTime &queued = {});

} // namespace Tidel

#endif
