// SPDX-License-Identifier: LGPL-2.1-or-later
#include "earlierversions_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Tidel {

namespace {

constexpr int maximumVersions = 3;

const QLatin1String replacedKey("replaced");
const QLatin1String titleKey("title");
const QLatin1String textKey("text");
const QLatin1String summaryKey("summary");

QJsonArray arrayIn(const QString &text) { return QJsonDocument::fromJson(text.toUtf8()).array(); }

} // namespace

QList<EarlierVersion> versionsIn(const QString &text)
{
    QList<EarlierVersion> versions;
    const QJsonArray array = arrayIn(text);
    for (const QJsonValue &value : array) {
        const QJsonObject object = value.toObject();
        versions.append({QDateTime::fromString(object.value(replacedKey).toString(), Qt::ISODate),
                         object.value(titleKey).toString(), object.value(textKey).toString(),
                         object.value(summaryKey).toString()});
    }
    return versions;
}

QString withVersion(const EarlierVersion &newest, const QString &versions)
{
    QJsonArray array = arrayIn(versions);
    array.prepend(QJsonObject{{replacedKey, newest.replaced.toString(Qt::ISODate)},
                              {titleKey, newest.title},
                              {textKey, newest.text},
                              {summaryKey, newest.summary}});
    while (array.size() > maximumVersions)
        array.removeLast();
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

} // namespace Tidel
