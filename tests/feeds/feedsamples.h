// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDSAMPLES_H
#define FEEDSAMPLES_H

#include <feedreader.h>

#include <QString>
#include <QVector>

/// A document in tests/data.
struct FeedSample
{
    QString name; ///< The path below tests/data.
    QByteArray document;
    QByteArray charset; ///< What its server named: the content of the file with the suffix ".charset".
};

/// The documents in the folder \a folder of tests/data, sorted by name.
QVector<FeedSample> samplesIn(const QString &folder);

/// What readFeed() returned as text: one line for each value that is set, or the reason of a refusal.
QString describe(const tl::expected<Tidel::FeedRecord, Tidel::FeedRefusal> &feed);

#endif
