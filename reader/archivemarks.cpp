// SPDX-License-Identifier: LGPL-2.1-or-later
#include "archivemarks_p.h"

#include "statements_p.h"

#include <QDateTime>

#include <algorithm>

namespace Tidel {

namespace {

struct Mark
{
    bool isSet = false;
    QDateTime time; ///< Of the last change; invalid if it is not known.
};

const QLatin1String favoriteTag("#predefined-tag-favorite>");

/// The time in the first value of the property \a name, which is not a full name.
QDateTime timeIn(const StoredFacts &facts, const char *name)
{
    const QString text = valuesNamed(facts, name).value(0).section(QLatin1Char('"'), 1, 1);
    return QDateTime::fromString(text, Qt::ISODateWithMs);
}

Mark readMark(const StoredFacts &facts)
{
    const QDateTime read = timeIn(facts, "readTime");
    return read.isValid() ? Mark{true, read} : Mark{false, timeIn(facts, "unreadTime")};
}

Mark favoriteMark(const StoredFacts &facts)
{
    Mark mark{false, timeIn(facts, "favoriteTime")};
    const QStringList tags = valuesNamed(facts, "hasTag");
    for (const QString &tag : tags)
        mark.isSet |= tag.endsWith(favoriteTag);
    return mark;
}

/// Returns true if \a other is to replace \a own; otherwise returns false.
bool isLater(const Mark &other, const Mark &own)
{
    if (other.time.isValid())
        return !own.time.isValid() || other.time > own.time;
    return !own.time.isValid() && other.isSet && !own.isSet;
}

void removeMarks(StoredFacts *facts)
{
    removeNamed(facts, {"readTime", "unreadTime", "favoriteTime"});
    for (QStringList &values : *facts)
        values.erase(std::remove_if(values.begin(), values.end(),
                                    [](const QString &term) { return term.endsWith(favoriteTag); }),
                     values.end());
}

} // namespace

QString laterMarks(const QString &uri, const StoredFacts &own, StoredFacts *others)
{
    QString text;
    const Mark read = readMark(*others);
    if (isLater(read, readMark(own)))
        text += Statements::replaceReadState({uri}, read.isSet, read.time);
    const Mark favorite = favoriteMark(*others);
    if (isLater(favorite, favoriteMark(own)))
        text += Statements::replaceFavorite(uri, favorite.isSet, favorite.time);
    removeMarks(others);
    return text;
}

} // namespace Tidel
